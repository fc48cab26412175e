// The editor tests' fixture: the support library up, a fresh folder, the settings in a file of
// their own, a document with its view, and scripted hosts that record what was asked and shown.
#pragma once
#include <gtest/gtest.h>

#include <cstdio>
#include <deque>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

#include "editor/document.h"
#include "editor/document_io.h"
#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "editor/undo.h"
#include "foundation/host.h"
#include "foundation/settings.h"
#include "foundation/unicode.h"
#include "tests/support/klib_test.h"

// A path as messages show it: with the system's separators.
inline std::string Shown(std::string path) {
#ifdef _WIN32
  for (char& c : path)
    if (c == '/') c = '\\';
#endif
  return path;
}

inline std::string Utf8(const std::u16string& text) {
  std::string out(text.size() * 3 + 1, '\0');
  int n = Utf16ToUtf8(text.data(), static_cast<int>(text.size()), &out[0],
                      static_cast<int>(out.size()));
  out.resize(static_cast<size_t>(n));
  return out;
}

inline std::u16string Utf16(const std::string& text) {
  std::u16string out(text.size() + 1, u'\0');
  int n = Utf8ToUtf16(text.data(), static_cast<int>(text.size()), &out[0],
                      static_cast<int>(out.size()));
  out.resize(static_cast<size_t>(n));
  return out;
}

// The lines of a document as UTF-8 (an empty line is "").
inline std::vector<std::string> Lines(const EditDocument* document) {
  std::vector<std::string> lines;
  for (int i = 0; i < document->lineCount; ++i) {
    const LineRecord* line = document->lines[i];
    lines.push_back(line ? Utf8(std::u16string(line->text, line->length)) : std::string());
  }
  return lines;
}

inline std::string ReadBytes(const std::string& path) {
  std::ifstream file(std::filesystem::u8path(path), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

inline void WriteBytes(const std::string& path, const std::string& bytes) {
  std::ofstream(std::filesystem::u8path(path), std::ios::binary) << bytes;
}

class EditorTest : public KLibTest {
 protected:
  void SetUp() override {
    KLibTest::SetUp();
    std::string base = testing::TempDir();
    for (char& c : base)
      if (c == '\\') c = '/';
    if (!base.empty() && base.back() != '/') base += '/';
    const testing::TestInfo* info = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = base + "quill_doc_" + info->test_suite_name() + "_" + info->name();
    std::error_code error;
    std::filesystem::remove_all(std::filesystem::u8path(folder_), error);
    std::filesystem::create_directories(std::filesystem::u8path(folder_), error);
    ASSERT_TRUE(SetSettingsPath(In("settings.ini").c_str()));
    ui_ = {&EditorTest::Message, this};
    previousUi_ = SetUiHost(&ui_);
    host_.context = this;
    host_.repaintLine = [](void* c, EditorView*, int line) {
      Self(c)->repaintedLines.push_back(line);
    };
    host_.repaintAll = [](void* c, EditorView*) { ++Self(c)->fullRepaints; };
    host_.askTabSize = [](void* c, int proposed, TabSizeAnswer* answer) {
      EditorTest* self = Self(c);
      self->proposedTab = proposed;
      if (self->tabAnswer.size == 0) return false;
      *answer = self->tabAnswer;
      return true;
    };
    host_.askFillCharacter = [](void* c) { return Self(c)->fillAnswer; };
    host_.askSavePath = [](void* c, const char*, char* path, int size) {
      EditorTest* self = Self(c);
      if (self->savePathAnswer.empty()) return false;
      snprintf(path, static_cast<size_t>(size), "%s", self->savePathAnswer.c_str());
      return true;
    };
    host_.setClipboard = [](void* c, const char16_t* units, int count) {
      Self(c)->clipboard.assign(units, static_cast<size_t>(count));
      return true;
    };
    host_.getClipboard = [](void* c, int* count) -> const char16_t* {
      EditorTest* self = Self(c);
      *count = static_cast<int>(self->clipboard.size());
      return self->clipboard.empty() ? nullptr : self->clipboard.c_str();
    };
    host_.openTerminal = [](void* c, EditDocument*, const char* specification) {
      Self(c)->terminalSpecification = specification;
      return false;
    };
    host_.tickCount = [](void* c) { return Self(c)->tick; };
    host_.localTime = [](void*) { return LocalTime{2024, 3, 9, 7, 5}; };
    previousHost_ = SetEditorHost(&host_);
    document = NewDocument();
    ASSERT_NE(document, nullptr);
    view = EditorView{};
    view.document = document;
  }
  void TearDown() override {
    FreeDocument(document);
    SetEditorHost(previousHost_);
    SetUiHost(previousUi_);
    std::error_code error;
    std::filesystem::remove_all(std::filesystem::u8path(folder_), error);
    KLibTest::TearDown();
  }

  static EditorTest* Self(void* context) { return static_cast<EditorTest*>(context); }
  static int Message(void* context, const char* text, unsigned flags) {
    EditorTest* self = Self(context);
    self->messages.push_back(text);
    self->messageFlags.push_back(flags);
    if (self->answers.empty()) return (flags & 0xF) == kMbOk ? kIdOk : kIdCancel;
    int answer = self->answers.front();
    self->answers.pop_front();
    return answer;
  }

  std::string In(const std::string& name) const { return folder_ + "/" + name; }

  // Points the document at a file holding `bytes` and loads it.
  bool Load(const std::string& bytes, const std::string& name = "file.cpp") {
    WriteBytes(In(name), bytes);
    snprintf(document->path, sizeof document->path, "%s", In(name).c_str());
    return LoadDocument(&view);
  }
  // Saves under the document's path and returns the bytes written.
  std::string Save() {
    EXPECT_TRUE(SaveDocument(&view, false));
    return ReadBytes(document->path);
  }
  // The caret at (column, line) with nothing selected; a selection ending at the caret.
  void Caret(int column, int line) {
    view.caretColumn = column;
    view.caretLine = line;
    CollapseSelection(&view);
  }
  void Select(int c1, int l1, int c2, int l2, int mode = 0) {
    view.blockMode = mode;
    view.selStartColumn = c1;
    view.selStartLine = l1;
    view.selEndColumn = c2;
    view.selEndLine = l2;
    view.caretColumn = c2;
    view.caretLine = l2;
  }
  int UndoCount() const {
    int n = 0;
    for (UndoRecord* r = document->undoList; r; r = r->next)
      ++n;
    return n;
  }
  // Replaces the text with `lines` (no undo records).
  void SetText(const std::vector<std::string>& lines) {
    ClearLines(document);
    for (const std::string& line : lines) {
      std::u16string units = Utf16(line);
      AppendUtf16Line(document, units.data(), static_cast<int>(units.size()));
    }
  }

  EditDocument* document = nullptr;
  EditorView view{};
  std::vector<std::string> messages;
  std::vector<unsigned> messageFlags;
  std::deque<int> answers;
  std::vector<int> repaintedLines;
  int fullRepaints = 0;
  TabSizeAnswer tabAnswer{0, false, true};
  int proposedTab = 0;
  char16_t fillAnswer = 0;
  std::string savePathAnswer;
  std::u16string clipboard;
  std::string terminalSpecification;
  unsigned tick = 1000;

 private:
  std::string folder_;
  UiHost ui_{};
  const UiHost* previousUi_ = nullptr;
  EditorHost host_{};
  const EditorHost* previousHost_ = nullptr;
};
