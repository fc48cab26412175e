// Loading and saving: the encodings, line ends, tabs, the size and text checks and their
// messages, and saves that fail without harming the file on disk.
#include <filesystem>

#ifndef _WIN32
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>
#endif

#include "editor/text_edit.h"
#include "editor/undo.h"
#include "encoding/text_encoding.h"
#include "encoding/unmappable.h"
#include "foundation/fileutil.h"
#include "tests/editor/editor_fixture.h"

namespace {

using Texts = std::vector<std::string>;

class DocumentFile : public EditorTest {};

TEST_F(DocumentFile, AnEmptyFileHasNoLinesNoEncodingAndSavesEmpty) {
  ASSERT_TRUE(Load(""));
  EXPECT_EQ(document->lineCount, 0);
  EXPECT_EQ(document->encoding, ENCODING_DETECT);
  EXPECT_EQ(Save(), "");
  document->hasBom = 1;
  document->encoding = UTF8;
  EXPECT_EQ(Save(), "\xEF\xBB\xBF");
}

TEST_F(DocumentFile, PureAsciiIsUtf8WithoutAMarkAndGainsItsFinalLineEnd) {
  ASSERT_TRUE(Load("int a;  \r\n\r\nreturn 0;   "));
  EXPECT_EQ(document->encoding, UTF8);
  EXPECT_EQ(document->hasBom, 0);
  EXPECT_EQ(document->lfOnly, 0);
  EXPECT_EQ(Lines(document), (Texts{"int a;  ", "", "return 0;   "}));
  EXPECT_EQ(Save(), "int a;\r\n\r\nreturn 0;\r\n");
  // The blanks are gone from memory too.
  EXPECT_EQ(Lines(document), (Texts{"int a;", "", "return 0;"}));
  EXPECT_EQ(document->modified, 0);
}

TEST_F(DocumentFile, JohabIsReadAndWrittenBackAsEucKr) {
  ASSERT_TRUE(Load("\x88\x7d\x94\x61\x20\xd0\x61\x93\x69\n"));
  EXPECT_EQ(Lines(document), (Texts{"갛다 하늘"}));
  EXPECT_EQ(document->encoding, EUCKR);
  EXPECT_EQ(document->lfOnly, 1);
  EXPECT_EQ(Save(), "\xb0\xb2\xb4\xd9\x20\xc7\xcf\xb4\xc3\n");
}

TEST_F(DocumentFile, Utf16WithMarkAndUtf8WithMarkComeBackAsTheyWere) {
  std::string utf16(
      "\xFF\xFE"
      "a\0\r\0\n\0\x00\xAC\r\0\n\0",
      14);
  ASSERT_TRUE(Load(utf16));
  EXPECT_EQ(document->encoding, UTF16);
  EXPECT_EQ(document->hasBom, 1);
  EXPECT_EQ(Lines(document), (Texts{"a", "가"}));
  EXPECT_EQ(Save(), utf16);

  document->encoding = ENCODING_DETECT;
  ASSERT_TRUE(Load("\xEF\xBB\xBF\xEA\xB0\x80\n", "b.txt"));
  EXPECT_EQ(document->encoding, UTF8);
  EXPECT_EQ(document->hasBom, 1);
  EXPECT_EQ(Lines(document), (Texts{"가"}));
  EXPECT_EQ(Save(), "\xEF\xBB\xBF\xEA\xB0\x80\n");
}

// Beyond the Basic Multilingual Plane: four UTF-8 bytes are a surrogate pair of two columns and
// are written back as the same four bytes; UTF-16 keeps its pairs. A sequence cut off at the end
// of the file reads as its bytes, one unit each, and is saved as those characters.
TEST_F(DocumentFile, CharactersBeyondTheBasicPlaneKeepTheirBytesAndTakeTwoColumns) {
  tabAnswer = {4, true, true};
  ASSERT_TRUE(Load("\xF0\x9F\x98\x80\tb\n\xF0\x90\x80\x80\xF4\x8F\xBF\xBF\n"));
  EXPECT_EQ(document->encoding, UTF8);
  EXPECT_EQ(Lines(document), (Texts{"\xF0\x9F\x98\x80  b", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"}));
  EXPECT_EQ(LineColumns(document->lines[0]), 5);
  EXPECT_EQ(Save(), "\xF0\x9F\x98\x80\tb\n\xF0\x90\x80\x80\xF4\x8F\xBF\xBF\n");

  std::string utf16("\xFF\xFE\x3D\xD8\x00\xDE\t\0b\0\r\0\n\0", 14);
  document->encoding = ENCODING_DETECT;
  ASSERT_TRUE(Load(utf16, "b.txt"));
  EXPECT_EQ(document->encoding, UTF16);
  EXPECT_EQ(Lines(document), (Texts{"\xF0\x9F\x98\x80  b"}));
  EXPECT_EQ(Save(), utf16);

  document->encoding = ENCODING_DETECT;
  ASSERT_TRUE(Load("ok \xF0\x9F\x98", "c.txt"));
  EXPECT_EQ(document->encoding, UTF8);
  EXPECT_EQ(Lines(document), (Texts{"ok \xC3\xB0\xC2\x9F\xC2\x98"}));
  EXPECT_EQ(Save(), "ok \xC3\xB0\xC2\x9F\xC2\x98\r\n");
}

TEST_F(DocumentFile, LineEndPairsInEitherOrderAreOneLineEnd) {
  ASSERT_TRUE(Load("a\n\rb\r\rc\r\nd"));
  EXPECT_EQ(Lines(document), (Texts{"a", "b", "", "c", "d"}));
  EXPECT_EQ(document->lfOnly, 1);
  EXPECT_EQ(Save(), "a\nb\n\nc\nd\n");
}

TEST_F(DocumentFile, TabsExpandWithTheAnsweredWidthAndCompressBack) {
  tabAnswer = {4, true, true};
  ASSERT_TRUE(Load("a\tb\r\n"));
  EXPECT_EQ(proposedTab, 8);
  EXPECT_EQ(Lines(document), (Texts{"a   b"}));
  EXPECT_EQ(document->tabSize, 4);
  EXPECT_EQ(ReadInt(kConfigSection, "DefTabSize", 0), 4);
  EXPECT_EQ(Save(), "a\tb\r\n");
  document->tabSize = 0;
  EXPECT_EQ(Save(), "a   b\r\n");
}

TEST_F(DocumentFile, AnUncheckedBoxOrNoAnswerForgetsTheWidthAfterLoading) {
  WriteNums(kConfigSection, "DefTabSize", 6);
  tabAnswer = {4, false, true};
  ASSERT_TRUE(Load("a\tb\n"));
  EXPECT_EQ(proposedTab, 6);
  EXPECT_EQ(Lines(document), (Texts{"a   b"}));
  EXPECT_EQ(document->tabSize, 0);

  // Cancel: tabs go to 8-column stops and nothing is kept.
  tabAnswer = {0, false, true};
  document->keepTabSize = 0;
  ASSERT_TRUE(Load("\xea\xb0\x80\tx\n", "wide.cpp"));
  EXPECT_EQ(Lines(document), (Texts{"가      x"}));  // the wide unit counts two columns
  EXPECT_EQ(document->tabSize, 0);
}

TEST_F(DocumentFile, CompressionLeavesLiteralsAndSingleSpacesAlone) {
  char16_t out[64];
  auto compress = [&](const std::u16string& in, int tab) {
    return Utf8(std::u16string(
        out, static_cast<size_t>(CompressTabs(in.data(), static_cast<int>(in.size()), tab, out))));
  };
  EXPECT_EQ(compress(u"        x", 4), "\t\tx");
  EXPECT_EQ(compress(u"abc x", 4), "abc x");  // one space before the stop stays
  EXPECT_EQ(compress(u"ab  x", 4), "ab\tx");
  EXPECT_EQ(compress(u"a \"b   \\\"    \" c", 4), "a \"b   \\\"    \" c");
  EXPECT_EQ(compress(u"'    '        x", 4), "'    '\t\t  x");
  EXPECT_EQ(compress(u"가  x", 4), "가\tx");  // 가 takes columns 0 and 1
  EXPECT_EQ(compress(u"x  \x01 ", 4), "x");   // trailing units below 33 go
}

TEST_F(DocumentFile, ALongLineLoadsAndAVeryLongOneIsSplitAndToldOnce) {
  std::string line(4097, 'x');
  ASSERT_TRUE(Load(line + "\n"));
  EXPECT_TRUE(messages.empty());
  ASSERT_EQ(document->lineCount, 1);
  EXPECT_EQ(LineLength(document->lines[0]), 4097);

  // Not text any more: the question comes, Cancel is its default and leaves the old lines.
  std::string huge(70000, 'y');
  ASSERT_FALSE(Load(huge + "\n" + huge + "\n", "huge.bin"));
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_NE(messages[0].find("텍스트 파일이 아닌 것 같습니다"), std::string::npos);
  EXPECT_EQ(messageFlags[0] & 0xF0F, kMbOkCancel | kMbDefButton2);
  EXPECT_EQ(document->lineCount, 1);

  answers = {kIdOk, kIdOk};
  ASSERT_TRUE(Load(huge + "\n" + huge + "\n", "huge.bin"));
  ASSERT_EQ(messages.size(), 3u);
  EXPECT_NE(messages[2].find("나누어 읽었습니다"), std::string::npos);
  ASSERT_EQ(document->lineCount, 4);
  EXPECT_EQ(LineLength(document->lines[0]), kMaxLineUnits);
  EXPECT_EQ(LineLength(document->lines[1]), 70000 - kMaxLineUnits);
}

TEST_F(DocumentFile, ZeroBytesMakeTheDataBinaryUnlessItIsUtf16) {
  EXPECT_FALSE(LooksLikeText("ab\0\0cd", 6));
  EXPECT_TRUE(LooksLikeText("ab\0cd", 5));  // as UTF-16 it has no zero unit
  EXPECT_TRUE(LooksLikeText("a\0b\0\r\0\n\0", 8));
  std::string wide(2 * 4097, 'a');
  EXPECT_FALSE(LooksLikeText(wide.data(), static_cast<long long>(wide.size())));
}

TEST_F(DocumentFile, TooLargeAFileIsRefusedWithItsMessage) {
  std::string path = In("big.txt");
  WriteBytes(path, "x");
  std::filesystem::resize_file(std::filesystem::u8path(path), kMaxFileSize);
  snprintf(document->path, sizeof document->path, "%s", path.c_str());
  EXPECT_FALSE(LoadDocument(&view));
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0], "'" + Shown(path) + "'은 너무 큰 파일입니다. (최대 50 MByte)");
  std::filesystem::resize_file(std::filesystem::u8path(path), kMaxFileSize - 1);
  messages.clear();
  answers = {kIdCancel};
  document->untitled = 0;             // as a window opened on a path has it
  EXPECT_FALSE(LoadDocument(&view));  // only the text check stops it now
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_NE(messages[0].find("텍스트"), std::string::npos);
  // The empty window does not stand for the file: Save asks for a name (none given here) and
  // the 50 MB on disk stay.
  EXPECT_EQ(document->untitled, 1);
  EXPECT_FALSE(SaveDocument(&view, false));
  EXPECT_EQ(std::filesystem::file_size(std::filesystem::u8path(path)), kMaxFileSize - 1u);

  // A reload that fails keeps what the window holds.
  SetText({"kept"});
  answers = {kIdCancel};
  EXPECT_FALSE(LoadDocument(&view));
  EXPECT_EQ(Lines(document), (std::vector<std::string>{"kept"}));
}

TEST_F(DocumentFile, AMissingFileFailsQuietlyAndLeavesANamedEmptyDocument) {
  SetText({"old"});
  ASSERT_EQ(document->untitled, 1);
  snprintf(document->path, sizeof document->path, "%s", In("absent.cpp").c_str());
  EXPECT_FALSE(LoadDocument(&view));
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(document->untitled, 0);
  EXPECT_EQ(document->lineCount, 0);
  // Save then creates it without asking for a name.
  SetText({"new"});
  EXPECT_EQ(Save(), "new\r\n");
}

TEST_F(DocumentFile, PortSpecificationsGoToTheTerminalOpener) {
  snprintf(document->path, sizeof document->path, "COM3,9600,8,0,0,0");
  EXPECT_FALSE(LoadDocument(&view));
  EXPECT_EQ(terminalSpecification, "COM3,9600,8,0,0,0");
  snprintf(document->path, sizeof document->path, "cOm12,9600");
  EXPECT_FALSE(LoadDocument(&view));
  EXPECT_EQ(terminalSpecification, "cOm12,9600");
  // Not ports: read from disk (and missing).
  for (const char* name : {"COM3.txt", "COM0,9600,0,8,0,0", "COM3;9600,0,8,0,0"}) {
    terminalSpecification.clear();
    snprintf(document->path, sizeof document->path, "%s", name);
    EXPECT_FALSE(LoadDocument(&view));
    EXPECT_EQ(terminalSpecification, "") << name;
  }
}

TEST_F(DocumentFile, SourcePathIsReadButPathNamesTheDocument) {
  WriteBytes(In("temp.out"), "shown\n");
  snprintf(document->sourcePath, sizeof document->sourcePath, "%s", In("temp.out").c_str());
  snprintf(document->path, sizeof document->path, "%s", In("Parser Window").c_str());
  ASSERT_TRUE(LoadDocument(&view));
  EXPECT_EQ(Lines(document), (Texts{"shown"}));
  EXPECT_EQ(document->fileStamp, kMissingFileStamp);
}

TEST_F(DocumentFile, EveryEncodingWritesItsOwnBytesAndLineEnds) {
  SetText({"가a", ""});
  document->untitled = 0;
  snprintf(document->path, sizeof document->path, "%s", In("out.txt").c_str());
  document->encoding = UTF8;
  EXPECT_EQ(Save(),
            "\xEA\xB0\x80"
            "a\r\n\r\n");
  document->encoding = EUCKR;
  EXPECT_EQ(Save(),
            "\xB0\xA1"
            "a\r\n\r\n");
  document->encoding = JOHAP;
  EXPECT_EQ(Save(),
            "\x88\x61"
            "a\r\n\r\n");
  document->encoding = UTF16;
  document->lfOnly = 1;
  EXPECT_EQ(Save(), std::string("\x00\xAC"
                                "a\0\n\0\n\0",
                                8));
}

TEST_F(DocumentFile, AReadOnlyFileIsWrittenOnlyOnYesAndStaysReadOnly) {
  ASSERT_TRUE(Load("original\r\n"));
  SetText({"changed"});
  document->modified = 1;
  auto path = std::filesystem::u8path(document->path);
  auto readOnly = std::filesystem::perms::owner_read | std::filesystem::perms::group_read;
  std::filesystem::permissions(path, readOnly);
  EXPECT_FALSE(SaveDocument(&view, false));
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0],
            "'" + Shown(document->path) + "' 파일은 읽기 전용입니다. 그래도 저장할까요?");
  EXPECT_EQ(messageFlags[0] & 0xF, kMbYesNo);
  EXPECT_EQ(document->modified, 1);
  EXPECT_EQ(ReadBytes(document->path), "original\r\n");
  answers = {kIdYes};
  EXPECT_EQ(Save(), "changed\r\n");
  EXPECT_EQ(document->modified, 0);
  EXPECT_EQ(std::filesystem::status(path).permissions() & std::filesystem::perms::owner_write,
            std::filesystem::perms::none);
  // Nothing of the safe save is left beside the file.
  EXPECT_FALSE(
      std::filesystem::exists(std::filesystem::u8path(std::string(document->path) + ".~qs")));
  EXPECT_FALSE(
      std::filesystem::exists(std::filesystem::u8path(std::string(document->path) + ".~qb")));
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
#ifdef _WIN32
  // Hidden and system stay with the file that takes the old one's place, and a second name of
  // the file sees the new text.
  ASSERT_TRUE(FileSetAttributes(document->path, kAttrHidden | kAttrSystem | kAttrArchive));
  SetText({"hidden"});
  EXPECT_EQ(Save(), "hidden\r\n");
  EXPECT_EQ(FileGetAttributes(document->path) & (kAttrHidden | kAttrSystem),
            kAttrHidden | kAttrSystem);
  ASSERT_TRUE(FileSetAttributes(document->path, kAttrArchive));
  std::filesystem::create_hard_link(path, std::filesystem::u8path(In("second.cpp")));
  SetText({"linked"});
  EXPECT_EQ(Save(), "linked\r\n");
  EXPECT_EQ(ReadBytes(In("second.cpp")), "linked\r\n");
  FileFacts facts{};
  ASSERT_TRUE(FileGetFacts(document->path, &facts));  // the C library counts every file once
  EXPECT_EQ(facts.links, 2u);
  EXPECT_TRUE(facts.regular);
#endif
}

TEST_F(DocumentFile, CharactersTheEncodingCannotHoldAreCountedOncePerCharacter) {
  const char16_t pairAndLone[] = {u'\u00e9', 0xD83D, 0xDE00, u'x', 0xD800, 0};
  struct Case {
    std::u16string text;
    int encoding;
    int count;
    int first;
  } cases[] = {
      {u"가a똠€·Ω\u3000", EUCKR, 0, -1},  // extended code page syllables and symbols are there
      {u"가a똠€·Ω\u3000", JOHAP, 0, -1}, {u"가\u00e9", EUCKR, 1, 1},  // no code at all
      {u"ab\u4e02", JOHAP, 1, 2},        {pairAndLone, EUCKR, 3, 0},  // a pair is one character, a
                                                                      // lone half another
      {pairAndLone, JOHAP, 3, 0},        {pairAndLone, UTF8, 0, -1}, {pairAndLone, UTF16, 0, -1},
      // Behind ASCII and among characters that are there; past the length read in one piece.
      {u"ab가\u00e9나다\u00e9", EUCKR, 2, 3}, {std::u16string(1100, u'가') + u"\u00e9", EUCKR, 1, 1100},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Utf8(c.text) + " in " + std::to_string(c.encoding));
    int first = 99;
    EXPECT_EQ(CountUnmappable(c.text.data(), static_cast<int>(c.text.size()), c.encoding, &first),
              c.count);
    EXPECT_EQ(first, c.first);
  }
  // Over a document: every line counts, the first one is placed by line and display column.
  SetText({"abc", "\t가\u00e9", "\u00e9\U0001F600"});
  UnmappableText found = FindUnmappable(document, EUCKR);
  EXPECT_EQ(found.count, 3);
  EXPECT_EQ(found.line, 2);
  EXPECT_EQ(found.column, 11);  // eight columns of the tab, two of 가
  EXPECT_EQ(FindUnmappable(document, UTF8).count, 0);
}

TEST_F(DocumentFile, ASaveAsksBeforeSubstitutingAndCanSwitchToUtf8) {
  ASSERT_TRUE(Load("\xb0\xa1\r\n", "k.txt"));
  ASSERT_EQ(document->encoding, EUCKR);
  SetText({"가\u4e02", "x\u4e02"});
  // Cancel: nothing written, nothing changed.
  EXPECT_FALSE(SaveDocument(&view, false));
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0],
            "'" + Shown(In("k.txt")) +
                "' 파일에 EUCKR(으)로 저장할 수 없는 문자가 2개 있습니다. (첫 문자: 1행 3열)"
                "\n\n예: UTF-8로 바꾸어 저장합니다.\n아니오: 그대로 저장합니다. 그 문자들은 다른 "
                "문자로 바뀝니다.\n취소: 저장하지 않습니다.");
  EXPECT_EQ(messageFlags[0] & 0xF, kMbYesNoCancel);
  EXPECT_EQ(ReadBytes(In("k.txt")), "\xb0\xa1\r\n");
  EXPECT_EQ(document->encoding, EUCKR);
  // No: the encoding's substitutes, as before.
  answers = {kIdNo};
  EXPECT_EQ(Save(), "\xb0\xa1?\r\nx?\r\n");
  EXPECT_EQ(document->encoding, EUCKR);
  // Yes: the document becomes UTF-8 without a mark.
  document->hasBom = 1;
  answers = {kIdYes};
  EXPECT_EQ(Save(), "\xea\xb0\x80\xe4\xb8\x82\r\nx\xe4\xb8\x82\r\n");
  EXPECT_EQ(document->encoding, UTF8);
  EXPECT_EQ(document->hasBom, 0);
  EXPECT_EQ(messages.size(), 3u);
  // Now that it holds everything, no more questions.
  Save();
  EXPECT_EQ(messages.size(), 3u);
}

TEST_F(DocumentFile, SaveAsCopyLeavesTheDocumentsStateAlone) {
  ASSERT_TRUE(Load("a\n"));
  document->modified = 1;
  unsigned stamp = document->fileStamp;
  std::filesystem::last_write_time(
      std::filesystem::u8path(document->path),
      std::filesystem::file_time_type::clock::now() - std::chrono::hours(5));
  EXPECT_TRUE(SaveDocument(&view, true));
  EXPECT_EQ(document->modified, 1);
  EXPECT_EQ(document->fileStamp, stamp);
}

TEST_F(DocumentFile, AnUntitledDocumentAsksForANameAndKeepsItsOwnWhenCancelled) {
  SetText({"x"});
  std::string old = document->path;
  EXPECT_FALSE(SaveDocument(&view, false));
  EXPECT_EQ(document->path, old);
  EXPECT_EQ(document->untitled, 1);
  savePathAnswer = In("named.cpp");
  EXPECT_TRUE(SaveDocument(&view, false));
  EXPECT_EQ(document->path, savePathAnswer);
  EXPECT_EQ(document->untitled, 0);
  EXPECT_EQ(ReadBytes(savePathAnswer), "x\r\n");
}

TEST_F(DocumentFile, AChangeOnDiskAsksToReloadOnceAndAVanishedFileIsToldOnce) {
  ASSERT_TRUE(Load("one\n"));
  EXPECT_FALSE(CheckChangedOnDisk(&view));
  EXPECT_TRUE(messages.empty());
  auto path = std::filesystem::u8path(document->path);
  WriteBytes(document->path, "two\n");
  std::filesystem::last_write_time(path,
                                   std::filesystem::last_write_time(path) + std::chrono::hours(1));
  EXPECT_FALSE(CheckChangedOnDisk(&view));  // Cancel
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0], "'" + Shown(document->path) + "' 파일이 변경되었습니다. 다시 로딩할까요?");
  EXPECT_EQ(messageFlags[0] & 0xF0F, kMbOkCancel);  // OK is the default
  EXPECT_FALSE(CheckChangedOnDisk(&view));          // the new stamp was recorded
  EXPECT_EQ(messages.size(), 1u);

  // Unsaved edits: the question warns that they go, and Cancel is the default.
  document->modified = 1;
  std::filesystem::last_write_time(path,
                                   std::filesystem::last_write_time(path) + std::chrono::hours(1));
  EXPECT_FALSE(CheckChangedOnDisk(&view));
  ASSERT_EQ(messages.size(), 2u);
  EXPECT_NE(messages[1].find("저장하지 않은 수정 내용이 모두 사라집니다"), std::string::npos);
  EXPECT_EQ(messageFlags[1] & 0xF0F, kMbOkCancel | kMbDefButton2);
  EXPECT_EQ(Lines(document), (Texts{"one"}));
  document->modified = 0;

  std::filesystem::last_write_time(path,
                                   std::filesystem::last_write_time(path) + std::chrono::hours(1));
  answers = {kIdOk};
  document->skipReloadCheck = 1;
  EXPECT_FALSE(CheckChangedOnDisk(&view));  // skipped once
  EXPECT_TRUE(CheckChangedOnDisk(&view));
  EXPECT_EQ(Lines(document), (Texts{"two"}));

  std::filesystem::remove(path);
  EXPECT_FALSE(CheckChangedOnDisk(&view));
  EXPECT_FALSE(CheckChangedOnDisk(&view));
  ASSERT_EQ(messages.size(), 4u);
  EXPECT_EQ(messages[3], "'" + Shown(document->path) + "' 파일이 없어졌습니다.");
  EXPECT_EQ(document->fileStamp, kMissingFileStamp);
}

TEST_F(DocumentFile, ClosingAModifiedDocumentAsks) {
  EXPECT_EQ(ConfirmSaveIfModified(&view), kIdNo);
  EXPECT_TRUE(messages.empty());
  document->modified = 1;
  answers = {kIdYes};
  EXPECT_EQ(ConfirmSaveIfModified(&view), kIdYes);
  EXPECT_EQ(messages[0], "'" + Shown(document->path) + "' 파일이 수정되었습니다. 저장할까요?");
  EXPECT_EQ(messageFlags[0] & 0xF, kMbYesNoCancel);
}

TEST_F(DocumentFile, CaretAndBookmarksAreRememberedPerFile) {
  EXPECT_EQ(PathCrc32("123456789", 9), 0x2DFD2D88u);
  ASSERT_TRUE(Load("a\nb\nc\nd\n"));
  view.caretColumn = 2;
  view.caretLine = 3;
  view.firstColumn = 1;
  view.firstLine = 2;
  document->bookmarks[1] = {1, 2};
  document->bookmarks[3] = {0, 1};
  SaveFileState(&view);
  char section[16];
  snprintf(section, sizeof section, "%08X",
           PathCrc32(document->path, static_cast<int>(strlen(document->path))));
  char text[256];
  ReadStr(section, "BookMark", text, sizeof text);
  EXPECT_STREQ(text, "-1 -1 1 2 -1 -1 0 1");
  ReadStr(section, "Cursor", text, sizeof text);
  EXPECT_STREQ(text, "2 3 1 2");
  ReadText(section, "File", text, sizeof text, "");
  EXPECT_STREQ(text, document->path);

  ASSERT_TRUE(LoadDocument(&view));
  EXPECT_EQ(view.caretLine, 3);
  EXPECT_EQ(view.caretColumn, 2);
  EXPECT_EQ(view.firstLine, 2);
  EXPECT_EQ(document->bookmarks[1].line, 2);
  EXPECT_EQ(document->bookmarks[0].index, -1);
  EXPECT_EQ(document->bookmarks[3].index, 0);

  // A caret beyond the shorter file puts everything at the top.
  ASSERT_TRUE(Load("a\n"));
  EXPECT_EQ(view.caretLine, 0);
  EXPECT_EQ(view.firstLine, 0);
}

TEST_F(DocumentFile, NewDocumentsAreNumberedAndNeverReuseANumber) {
  EditDocument* second = NewDocument();
  EditDocument* third = NewDocument();
  ASSERT_TRUE(second && third);
  std::string first = document->path;
  size_t at = first.rfind("NoName");
  ASSERT_NE(at, std::string::npos);
  int number = std::stoi(first.substr(at + 6));
  char expected[32];
  snprintf(expected, sizeof expected, "NoName%02d.cpp", number + 2);
  EXPECT_EQ(std::string(third->path), first.substr(0, at) + expected);
  EXPECT_EQ(first.substr(0, at), std::filesystem::current_path().generic_u8string() + "/");
  EXPECT_EQ(third->untitled, 1);
  EXPECT_EQ(third->scrollScale, 1);
  EXPECT_EQ(third->bookmarks[8].line, -1);
  FreeDocument(third);
  FreeDocument(second);
  EditDocument* fourth = NewDocument();
  snprintf(expected, sizeof expected, "NoName%02d.cpp", number + 3);
  EXPECT_NE(std::string(fourth->path).find(expected), std::string::npos);
  FreeDocument(fourth);

  // A document made for a file takes no number: the next untitled one follows the last.
  EditDocument* named = NewDocumentFor("C:/src/a.c");
  EXPECT_EQ(std::string(named->path), "C:/src/a.c");
  EXPECT_EQ(named->untitled, 0);
  EXPECT_EQ(named->scrollScale, 1);
  EXPECT_EQ(named->bookmarks[0].index, -1);
  FreeDocument(named);
  EditDocument* fifth = NewDocument();
  snprintf(expected, sizeof expected, "NoName%02d.cpp", number + 4);
  EXPECT_NE(std::string(fifth->path).find(expected), std::string::npos);
  FreeDocument(fifth);
}

TEST_F(DocumentFile, TheLineTableGrowsByWhatIsNeededPlusAThousand) {
  EXPECT_TRUE(GrowLineTable(document, 1));
  EXPECT_EQ(document->lineCapacity, 1001);
  document->lineCount = 1000;  // null slots
  EXPECT_TRUE(GrowLineTable(document, 1));
  EXPECT_EQ(document->lineCapacity, 2002);
  document->lineCount = 0;
}

TEST_F(DocumentFile, LineRecordsHaveTheirTwoSizes) {
  LiveBlocks();
  std::u16string text = u"abc";
  LineRecord* file = MakeFileLine(text.data(), 3);
  LineRecord* copy = MakeLine(text.data(), 3);
  EXPECT_EQ(file->capacity, 4);
  EXPECT_EQ(copy->capacity, 3);
  EXPECT_EQ(copy->length, 3);
  EXPECT_EQ(copy->commentState, 0);
  EXPECT_EQ(MakeLine(text.data(), 0), nullptr);
  EXPECT_EQ(MakeFileLine(text.data(), kMaxLineUnits + 1), nullptr);
  FreeLine(file);
  FreeLine(copy);
  // Columns: a unit of 256 or more is two wide.
  std::u16string wide = u"a가b";
  LineRecord* line = MakeLine(wide.data(), 3);
  EXPECT_EQ(LineColumns(line), 4);
  EXPECT_EQ(UnitIndexAtColumn(line, 2), 1);
  EXPECT_EQ(UnitIndexAtColumn(line, 3), 2);
  EXPECT_EQ(ColumnOfIndex(line, 2), 3);
  FreeLine(line);
  // A surrogate pair is one character of two columns; lone surrogates are two columns each.
  struct Columns {
    std::u16string text;
    int columns;
    std::vector<int> indexAtColumn;  // for columns 0, 1, 2, ...
  } rows[] = {
      {u"a\U0001F600b", 4, {0, 1, 1, 3, 4}},
      {u"\U0001F600\U0001F600", 4, {0, 0, 2, 2, 4}},
      {u"\xD83D"
       u"a",
       3,
       {0, 0, 1, 2}},
      {u"\xDE00\xD83D", 4, {0, 0, 1, 1, 2}},
  };
  for (const Columns& row : rows) {
    LineRecord* record = MakeLine(row.text.data(), static_cast<int>(row.text.size()));
    EXPECT_EQ(LineColumns(record), row.columns) << testing::PrintToString(row.text);
    for (size_t column = 0; column < row.indexAtColumn.size(); ++column)
      EXPECT_EQ(UnitIndexAtColumn(record, static_cast<int>(column)), row.indexAtColumn[column])
          << testing::PrintToString(row.text) << " column " << column;
    FreeLine(record);
  }
  std::u16string pair = u"a\U0001F600b";
  line = MakeLine(pair.data(), 4);
  EXPECT_EQ(ColumnOfIndex(line, 3), 3);
  EXPECT_EQ(PreviousCharacterIndex(line, 3), 1);
  EXPECT_EQ(PreviousCharacterIndex(line, 1), 0);
  EXPECT_EQ(CharacterUnitsAt(line, 1), 2);
  EXPECT_EQ(CharacterUnitsAt(line, 3), 1);
  FreeLine(line);
  // The caret's steps over a, the pair (columns 1-2), b, 가 (4-5) and the cells behind the end.
  std::u16string mixed = u"a\U0001F600b가";
  line = MakeLine(mixed.data(), 5);
  struct Step {
    int column, start, previous, next;
  } steps[] = {{0, 0, 0, 1}, {1, 1, 0, 3}, {2, 1, 0, 3}, {3, 3, 1, 4},
               {4, 4, 3, 6}, {5, 4, 3, 6}, {6, 6, 4, 7}, {8, 8, 7, 9}};
  for (const Step& step : steps) {
    EXPECT_EQ(CharacterStartColumn(line, step.column), step.start) << step.column;
    EXPECT_EQ(PreviousCharacterColumn(line, step.column), step.previous) << step.column;
    EXPECT_EQ(NextCharacterColumn(line, step.column), step.next) << step.column;
  }
  FreeLine(line);
}

}  // namespace

namespace {

TEST_F(DocumentFile, AStrayLeadByteLosesNothingBehindIt) {
  // 0xFF leads no EUC-KR character: the conversion gives it a unit of its own, so the line has
  // more units than the pair count says.
  ASSERT_TRUE(Load("\xffre\n"));
  EXPECT_EQ(document->encoding, EUCKR);
  ASSERT_EQ(document->lineCount, 1);
  std::u16string line(document->lines[0]->text, document->lines[0]->length);
  ASSERT_GE(line.size(), 3u);
  EXPECT_EQ(line.substr(line.size() - 2), u"re");
}

}  // namespace

#ifndef _WIN32
namespace {

namespace fs = std::filesystem;

// The name that a save of `path` must leave alone: what it is and, for a plain file, its inode.
struct Identity {
  fs::file_type type;
  ino_t inode;
  bool operator==(const Identity& other) const {
    return type == other.type && inode == other.inode;
  }
};

Identity IdentityOf(const std::string& path) {
  struct stat info;
  lstat(path.c_str(), &info);
  return {fs::symlink_status(path).type(), info.st_ino};
}

TEST_F(DocumentFile, LinksStayLinksAndHardLinkedFilesAreWrittenWhereTheyAre) {
  WriteBytes(In("real.cpp"), "old\n");
  fs::permissions(In("real.cpp"),
                  fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
  fs::create_symlink("real.cpp", In("link.cpp"));
  fs::create_symlink(In("link.cpp"), In("link2.cpp"));  // a chain, absolute this time
  fs::create_symlink("absent.cpp", In("dangling.cpp"));
  fs::create_hard_link(In("real.cpp"), In("other.cpp"));
  fs::create_hard_link(In("real.cpp"), In("third.cpp"));
  struct Case {
    const char* saved;
    const char* text;
    const char* readBack;  // the name whose bytes show the save
  };
  const Case cases[] = {
      {"link.cpp", "one", "real.cpp"},        {"link2.cpp", "two", "other.cpp"},
      {"other.cpp", "three", "third.cpp"},    {"real.cpp", "four", "link.cpp"},
      {"dangling.cpp", "five", "absent.cpp"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.saved);
    std::vector<Identity> before;
    for (const char* name : {"real.cpp", "link.cpp", "link2.cpp", "dangling.cpp", "other.cpp"})
      before.push_back(IdentityOf(In(name)));
    snprintf(document->path, sizeof document->path, "%s", In(c.saved).c_str());
    document->untitled = 0;
    document->lfOnly = 1;
    SetText({c.text});
    EXPECT_TRUE(SaveDocument(&view, false));
    EXPECT_EQ(ReadBytes(In(c.readBack)), std::string(c.text) + "\n");
    std::vector<Identity> after;
    for (const char* name : {"real.cpp", "link.cpp", "link2.cpp", "dangling.cpp", "other.cpp"})
      after.push_back(IdentityOf(In(name)));
    EXPECT_EQ(before, after);
    EXPECT_EQ(fs::hard_link_count(In("real.cpp")), 3u);
    EXPECT_EQ(fs::status(In("real.cpp")).permissions(),
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
  }
  EXPECT_TRUE(messages.empty());
  // No temporary and no kept copy beside any of them.
  for (const auto& entry : fs::directory_iterator(fs::u8path(In(""))))
    EXPECT_EQ(entry.path().string().find(".~q"), std::string::npos) << entry.path();

  // A plain file with one name is replaced, and keeps its mode.
  fs::remove(In("link2.cpp"));
  fs::remove(In("dangling.cpp"));
  WriteBytes(In("alone.cpp"), "x\n");
  fs::permissions(In("alone.cpp"),
                  fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read);
  ino_t inode = IdentityOf(In("alone.cpp")).inode;
  snprintf(document->path, sizeof document->path, "%s", In("alone.cpp").c_str());
  EXPECT_TRUE(SaveDocument(&view, false));
  EXPECT_NE(IdentityOf(In("alone.cpp")).inode, inode);
  EXPECT_EQ(fs::status(In("alone.cpp")).permissions(),
            fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read);
}

TEST_F(DocumentFile, APipeIsWrittenInPlace) {
  ASSERT_EQ(mkfifo(In("pipe").c_str(), 0600), 0);
  // The reading end is open before the save, so the save neither waits for a reader nor, when it
  // wrongly replaced the pipe, leaves the test waiting for a writer.
  int reader = open(In("pipe").c_str(), O_RDONLY | O_NONBLOCK);
  ASSERT_GE(reader, 0);
  snprintf(document->path, sizeof document->path, "%s", In("pipe").c_str());
  document->untitled = 0;
  SetText({"through", "the pipe"});
  EXPECT_TRUE(SaveDocument(&view, false));
  char received[64];
  ssize_t length = read(reader, received, sizeof received);
  close(reader);
  EXPECT_EQ(std::string(received, length > 0 ? static_cast<size_t>(length) : 0),
            "through\r\nthe pipe\r\n");
  EXPECT_TRUE(fs::is_fifo(In("pipe")));
  EXPECT_EQ(document->noCheck, 1);  // looking at its time would wait for another writer
  EXPECT_FALSE(fs::exists(In("pipe.~qs")));
}

TEST_F(DocumentFile, ADeviceIsWrittenInPlaceAndAFullOneFailsWithItsMessage) {
  // Our own nodes of the null and the full device: a save that replaced them would otherwise
  // take the machine's devices away.
  if (mknod(In("full").c_str(), S_IFCHR | 0666, makedev(1, 7)) != 0 ||
      mknod(In("null").c_str(), S_IFCHR | 0666, makedev(1, 3)) != 0)
    GTEST_SKIP() << "no permission to make device nodes";
  SetText({"text"});
  document->untitled = 0;
  document->modified = 1;
  snprintf(document->path, sizeof document->path, "%s", In("null").c_str());
  EXPECT_TRUE(SaveDocument(&view, true));
  EXPECT_TRUE(fs::is_character_file(In("null")));
  snprintf(document->path, sizeof document->path, "%s", In("full").c_str());
  EXPECT_FALSE(SaveDocument(&view, false));
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0], "/: 드라이브 공간이 부족합니다.");
  EXPECT_EQ(document->modified, 1);
  EXPECT_TRUE(fs::is_character_file(In("full")));
  EXPECT_FALSE(fs::exists(In("full.~qs")));
  EXPECT_FALSE(fs::exists(In("full.~qb")));
}

// A write that stops half way (the file-size limit cuts it off as a full disk would) leaves the
// old bytes, whether the file was being replaced or written in place.
TEST_F(DocumentFile, AFailedWriteLeavesEveryByteOfTheOldFile) {
  const std::string original = "original\r\n";
  WriteBytes(In("plain.cpp"), original);
  WriteBytes(In("linked.cpp"), original);
  fs::create_hard_link(In("linked.cpp"), In("second.cpp"));
  std::vector<std::string> lines(40, std::string(60, 'x'));
  for (const char* name : {"plain.cpp", "linked.cpp"}) {
    SCOPED_TRACE(name);
    messages.clear();
    SetText(lines);
    snprintf(document->path, sizeof document->path, "%s", In(name).c_str());
    document->untitled = 0;
    document->modified = 1;
    struct rlimit old;
    getrlimit(RLIMIT_FSIZE, &old);
    struct rlimit limit = old;
    limit.rlim_cur = 1000;
    auto previous = signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &limit);
    bool saved = SaveDocument(&view, false);
    setrlimit(RLIMIT_FSIZE, &old);
    signal(SIGXFSZ, previous);
    EXPECT_FALSE(saved);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0], "'" + In(name) + "' 파일이 기록되지 않습니다.");
    EXPECT_EQ(ReadBytes(In(name)), original);
    EXPECT_EQ(document->modified, 1);
  }
  EXPECT_EQ(ReadBytes(In("second.cpp")), original);
  EXPECT_EQ(fs::hard_link_count(In("linked.cpp")), 2u);
  for (const auto& entry : fs::directory_iterator(fs::u8path(In(""))))
    EXPECT_EQ(entry.path().string().find(".~q"), std::string::npos) << entry.path();
}

}  // namespace
#endif
