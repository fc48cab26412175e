#include <cstdio>
#include <cstring>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

#include "cli/tool.h"
#include "foundation/library.h"
#include "foundation/version.h"

namespace {

const ToolCommand kCommands[] = {
    {"format", RunFormatCommand,
     "format [--size N] FORMAT [ARG...]   the program's formatter; an ARG is a number (decimal\n"
     "                                    or 0x), s:TEXT, w:TEXT (as UTF-16), c:X (its first\n"
     "                                    byte) or null"},
    {"hexdump", RunHexDumpCommand,
     "hexdump FILE                        the log's hex dump of a file"},
    {"lang", RunLangCommand,
     "lang FILE KEY                       a language file's entry for a number or a name"},
    {"str", RunStrCommand, "str ID [LANGUAGE-FILE]              the program's text for string ID"},
    {"ini", RunIniCommand,
     "ini get FILE SECTION KEY [DEFAULT]  a profile file's value as the settings store reads it\n"
     "  ini int FILE SECTION KEY DEFAULT    ... as an integer\n"
     "  ini set FILE SECTION KEY VALUE      writes a value, keeping every other line"},
    {"calc", RunCalcCommand,
     "calc EXPR                           what the integer calculator shows for EXPR"},
    {"rcalc", RunRcalcCommand,
     "rcalc [--running] EXPR...           what the real calculator shows for each EXPR in turn\n"
     "                                    (expression or running style; registers carry over)"},
    {"bin2src", RunBin2SrcCommand,
     "bin2src [--lang c|asm|java] [--form hex|signed|unsigned] [--size 1|2|4] [--swap]\n"
     "        [--format F] [--skip N] [--line-len N] [--force] IN [OUT]\n"
     "                                    binary to source; OUT defaults to IN with the\n"
     "                                    language's extension and prints where it went"},
    {"detect", RunDetectCommand,
     "detect FILE...                      the encoding opening each FILE would choose (JOHAP,\n"
     "                                    EUCKR, UTF8 or UTF16, then BOM when it has a mark),\n"
     "                                    one line a file"},
    {"convert", RunConvertCommand,
     "convert [--from ENC] [--tab N] [--to ENC] [--save-tab N] [--lf|--crlf] [--bom|--no-bom]\n"
     "        [--force] IN OUT            opens IN as File > Open would (tabs expanded with N)\n"
     "                                    and writes OUT as saving in another format would;\n"
     "                                    characters ENC cannot hold fail it unless --force\n"
     "                                    writes the encoding's substitutes"},
    {"colour", RunColourCommand,
     "colour FILE                         the colour runs of every line as the editor paints\n"
     "                                    them: column:class pairs, one line per line"},
    {"errmsg", RunErrMsgCommand,
     "errmsg CODE                         the system's text for a Win32 error code (Windows)"},
    {"make", RunMakeCommand,
     "make PROJECT TARGET [--rebuild | --run]\n"
     "                                    writes TARGET's makefile and C.BAT as Build (Rebuild,\n"
     "                                    Build and Run) would, without starting C.BAT"},
    {"lookup", RunLookupCommand,
     "lookup [-I DIR]... [-D NAME[=VALUE]]... [--project PRJ] SOURCE WORD\n"
     "                                    what the parser window shows for WORD at a caret in\n"
     "                                    SOURCE: the preprocessor's messages, then the "
     "definition"},
    {"frame", RunFrameCommand,
     "frame cmdline LINE | status COL LN [--modified] | format ENCODING [--bom] [--lf] |\n"
     "      menu MODE QUICK PROJECT | command ID | session INI | font FILE\n"
     "                                    the frame's rules: the command line's path, the\n"
     "                                    status texts, the menu state, where a command goes,\n"
     "                                    the kept document list, a bitmap font's cell"},
    {"find", RunFindCommand,
     "find [--case] [--word] [--up | --replace TEXT [--all]] FILE PATTERN\n"
     "                                    searches FILE from the top as the find dialog would\n"
     "                                    and prints where the caret ends (Col, Ln); with\n"
     "                                    --replace replaces the first match (--all: every one),\n"
     "                                    saves FILE as the editor does and prints the count"},
    {"keys", RunKeysCommand,
     "keys FILE SCRIPT                    plays a key and mouse script into FILE as the editor\n"
     "                                    window would (one event a line: text T, key CHORD,\n"
     "                                    click/shiftclick/dblclick ROW COL, drag R C R C,\n"
     "                                    wait MS, page LINES COLUMNS); Ctrl+S saves"},
    {"png", RunPngCommand,
     "png FILE                            a PNG's width, height and the SHA-256 of its pixels\n"
     "                                    as R G B A bytes, alpha not premultiplied"},
    {"http", RunHttpCommand,
     "http [--range A-[B]] [--since DATE] [--post FIELD=VALUE | --post FIELD=@FILE]... URL [OUT]\n"
     "                                    one request of the HTTP client: prints the status,\n"
     "                                    Last-Modified and the body's length, writes the body\n"
     "                                    to OUT; exit 1 on a failure or an HTTP error"},
    {"sort", RunSortCommand,
     "sort [-r] [-f] [-n] [-u] [--block LEFT-RIGHT] FILE\n"
     "                                    FILE's lines as the line sort leaves them (descending,\n"
     "                                    ignoring case, numbers by value, without duplicates;\n"
     "                                    keyed by the columns LEFT to RIGHT), stable"},
    {"strcode", RunStrcodeCommand,
     "strcode TEXT...                     what the string code view shows for TEXT: its codes,\n"
     "                                    or the text behind codes such as \\xB0\\xA1 or 0xAC00"},
    {"lineq", RunLineqCommand,
     "lineq EQUATION... | lineq -f FILE   what the linear equation calculator shows for the\n"
     "                                    equations (one an argument, or FILE's lines)"},
    {"zip", RunZipCommand,
     "zip [--output ARCHIVE] [--force] PROJECT\n"
     "                                    packs the project file and every target's files into\n"
     "                                    PROJECT's name with .zip as Compress Project does;\n"
     "                                    missing files are listed and skipped"},
    {"style", RunStyleCommand,
     "style [--brace-next-line | --brace-same-line] [--indent N] [--tabs]\n"
     "      [--no-keyword-blank] [--no-operator-blanks] [--one-statement] FILE\n"
     "                                    FILE converted to the coding style (default: same-line\n"
     "                                    braces, 4 blanks, blanks after keywords and around\n"
     "                                    binary operators) as command 27 opens it"},
};

int Usage() {
  fputs("usage: quill-tool COMMAND ...\n", stderr);
  fputs("  --version                           the program's version\n", stderr);
  for (const ToolCommand& command : kCommands)
    fprintf(stderr, "  %s\n", command.usage);
  return kExitUsage;
}

int Dispatch(int argc, char** argv) {
  if (argc < 2) return Usage();
  if (strcmp(argv[1], "--version") == 0) {
    if (argc != 2) return Usage();
    puts("quill-tool " QUILL_VERSION_TEXT);
    return kExitOk;
  }
  for (const ToolCommand& command : kCommands) {
    if (strcmp(argv[1], command.name) == 0) {
      int status = command.run(argc - 2, argv + 2);
      return status == kExitUsage ? Usage() : status;
    }
  }
  return Usage();
}

}  // namespace

int main(int argc, char** argv) {
#ifdef _WIN32
  _setmode(_fileno(stdout), _O_BINARY);
#endif
  InitKLib(nullptr, nullptr);
  int status = Dispatch(argc, argv);
  fflush(stdout);
  // A leak is a fault of the tool itself.
  if (CloseKLib() != 0 && status == kExitOk) status = kExitFailed;
  return status;
}
