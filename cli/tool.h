// quill-tool: the program's own logic on the command line. Each command prints exactly what the
// program would show, as UTF-8 with the program's line ends.
#pragma once

constexpr int kExitOk = 0;
constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;

// Owner number of the tool's own blocks.
constexpr int kOwnerTool = 900;

// A command gets the arguments after its name; a usage error returns kExitUsage and the tool then
// prints its usage text.
struct ToolCommand {
  const char* name;
  int (*run)(int argc, char** argv);
  const char* usage;
};

int RunFormatCommand(int argc, char** argv);
int RunHexDumpCommand(int argc, char** argv);
int RunIniCommand(int argc, char** argv);
int RunLangCommand(int argc, char** argv);
int RunStrCommand(int argc, char** argv);
int RunCalcCommand(int argc, char** argv);
int RunRcalcCommand(int argc, char** argv);
int RunBin2SrcCommand(int argc, char** argv);
int RunErrMsgCommand(int argc, char** argv);
int RunMakeCommand(int argc, char** argv);
int RunDetectCommand(int argc, char** argv);
int RunColourCommand(int argc, char** argv);
int RunConvertCommand(int argc, char** argv);
int RunFrameCommand(int argc, char** argv);
int RunFindCommand(int argc, char** argv);
int RunLookupCommand(int argc, char** argv);
int RunPngCommand(int argc, char** argv);
int RunHttpCommand(int argc, char** argv);
int RunKeysCommand(int argc, char** argv);
int RunSortCommand(int argc, char** argv);
int RunStrcodeCommand(int argc, char** argv);
int RunLineqCommand(int argc, char** argv);
int RunZipCommand(int argc, char** argv);
int RunStyleCommand(int argc, char** argv);
