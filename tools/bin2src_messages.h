// The string-table texts of the messages that binary to source shows, by number.
#pragma once
#include "foundation/language.h"

constexpr int kMsgFileNotOpened = 2;
constexpr int kMsgFileNotCreated = 3;
constexpr int kMsgFileNotRead = 4;
constexpr int kMsgFileNotWritten = 5;
constexpr int kMsgDiskFull = 20;
constexpr int kMsgOverwrite = 116;
constexpr int kMsgNeedDataFormat = 125;
constexpr int kMsgLineTooLong = 172;

// Through the string table, so that a language file translates them.
inline const char* Bin2SrcMessage(int id) { return GetStr(id); }
