#include "encoding/encoding_settings.h"

#include "encoding/text_encoding.h"
#include "foundation/settings.h"

namespace {
const char kSection[] = "Config";
constexpr int kDefaultImportTabSize = 8;
}  // namespace

int ReadUnrecognisedEncoding() {
  int encoding = ReadInt(kSection, "UnrecognzFileForm", EUCKR);
  return encoding >= JOHAP && encoding <= UTF16 ? encoding : EUCKR;
}

ImportChoice ReadImportChoice() {
  ImportChoice choice;
  choice.encoding = ReadInt(kSection, "ImportHanCode", ENCODING_DETECT);
  if (choice.encoding < ENCODING_DETECT || choice.encoding > UTF16)
    choice.encoding = ENCODING_DETECT;
  choice.tabSize = ReadInt(kSection, "ImportTabSize", kDefaultImportTabSize);
  return choice;
}

void WriteImportChoice(const ImportChoice& choice) {
  WriteNums(kSection, "ImportHanCode", choice.encoding);
  WriteNums(kSection, "ImportTabSize", choice.tabSize);
}
