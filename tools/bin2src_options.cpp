// The options of binary to source in the settings file, section "Config".
#include "tools/bin2src_options.h"

#include "foundation/path.h"
#include "foundation/settings.h"

void LoadBin2SrcOptions(Bin2SrcOptions* options) {
  SetDefaultBin2SrcOptions(options);
  ReadText(kConfigSection, "Bin2SrcBinFile", options->binFile, kPathSize, "");
  ReadText(kConfigSection, "Bin2SrcToSaveFile", options->saveFile, kPathSize, "");
  options->type = ReadInt(kConfigSection, "Bin2SrcType", options->type);
  options->dataExp = ReadInt(kConfigSection, "Bin2SrcDataExp", options->dataExp);
  options->dataSize = ReadInt(kConfigSection, "Bin2SrcDataSize", options->dataSize);
  options->endian = ReadInt(kConfigSection, "Bin2SrcEndian", options->endian);
  NormaliseBin2SrcOptions(options);
  ReadText(kConfigSection, "Bin2SrcDataForm", options->dataForm, kBin2SrcFormatSize, "");
  ReadText(kConfigSection, "Bin2SrcSkipBytes", options->skipBytes, kBin2SrcSkipSize, "0");
  options->lineLen = static_cast<unsigned>(
      ReadInt(kConfigSection, "Bin2Src1LineLen", static_cast<int>(options->lineLen)));
  options->openEditor = ReadInt(kConfigSection, "Bin2SrcOpenEditor", options->openEditor);
  RefreshBin2SrcFormat(options);
}

bool SaveBin2SrcOptions(const Bin2SrcOptions& options) {
  bool ok = WriteText(kConfigSection, "Bin2SrcBinFile", options.binFile);
  ok &= WriteText(kConfigSection, "Bin2SrcToSaveFile", options.saveFile);
  ok &= WriteNums(kConfigSection, "Bin2SrcType", options.type);
  ok &= WriteNums(kConfigSection, "Bin2SrcDataExp", options.dataExp);
  ok &= WriteNums(kConfigSection, "Bin2SrcDataSize", options.dataSize);
  ok &= WriteNums(kConfigSection, "Bin2SrcEndian", options.endian);
  ok &= WriteText(kConfigSection, "Bin2SrcDataForm", options.dataForm);
  ok &= WriteText(kConfigSection, "Bin2SrcSkipBytes", options.skipBytes);
  ok &= WriteNums(kConfigSection, "Bin2Src1LineLen", static_cast<int>(options.lineLen));
  ok &= WriteNums(kConfigSection, "Bin2SrcOpenEditor", options.openEditor);
  return ok;
}
