// The string-table texts of the messages that binary to source shows, by number.
#pragma once

constexpr int kMsgFileNotOpened = 2;
constexpr int kMsgFileNotCreated = 3;
constexpr int kMsgFileNotRead = 4;
constexpr int kMsgFileNotWritten = 5;
constexpr int kMsgDiskFull = 20;
constexpr int kMsgOverwrite = 116;
constexpr int kMsgNeedDataFormat = 125;

inline const char* Bin2SrcMessage(int id) {
  switch (id) {
    case kMsgFileNotOpened:
      return "'%s' 파일이 열리지 않습니다.";
    case kMsgFileNotCreated:
      return "'%s' 파일이 만들어지지 않습니다.";
    case kMsgFileNotRead:
      return "'%s' 파일이 읽히지 않습니다.";
    case kMsgFileNotWritten:
      return "'%s' 파일이 기록되지 않습니다.";
    case kMsgDiskFull:
      return "%c: 드라이브가 꽉찼습니다.";
    case kMsgOverwrite:
      return "'%s' 파일이 이미 있습니다.\n\n덮어 쓸까요?";
    case kMsgNeedDataFormat:
      return "%d, %u, %X 같은 데이터 형식을 넣어야 합니다.";
  }
  return "";
}
