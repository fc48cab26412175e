// The editor fixture with a scripted command host: the dialogs answer from the test's script and
// record what they were shown.
#pragma once

#include <cstring>

#include "editor/command_host.h"
#include "editor/editor_view.h"
#include "editor/line_sort.h"
#include "editor/pending_prefix.h"
#include "editor/search_request.h"
#include "editor/undo.h"
#include "tests/editor/editor_fixture.h"

class CommandTest : public EditorTest {
 protected:
  void SetUp() override {
    EditorTest::SetUp();
    PendingPrefix = kPrefixNone;
    memset(&g_searchRequest, 0, sizeof g_searchRequest);
    g_searchRequest.direction = 1;
    commands_.context = this;
    commands_.searchDialog = [](void* c, EditorView*, SearchRequest* request) {
      CommandTest* self = Me(c);
      self->dialogs.push_back(request->mode);
      self->proposals.push_back(Utf8(request->findText));
      if (!self->dialogAnswer) return false;
      SetSearchText(request->findText, self->findAnswer.data(),
                    static_cast<int>(self->findAnswer.size()));
      SetSearchText(request->replaceText, self->replaceAnswer.data(),
                    static_cast<int>(self->replaceAnswer.size()));
      request->replaceAll = self->replaceAllAnswer;
      return true;
    };
    commands_.askLineNumber = [](void* c, EditorView*, int* number) {
      CommandTest* self = Me(c);
      ++self->lineQuestions;
      *number = self->lineAnswer;
      return self->lineAnswer != kCancel;
    };
    commands_.openFile = [](void* c, const char* path) {
      Me(c)->opened.push_back(path);
      return true;
    };
    commands_.lookUpDeclaration = [](void* c, EditorView*, const char16_t* word, int length) {
      Me(c)->lookedUp.push_back(Utf8(std::u16string(word, static_cast<size_t>(length))));
    };
    commands_.includeFolders = [](void* c, EditorView*, char* list, int size) {
      return snprintf(list, static_cast<size_t>(size), "%s", Me(c)->includes.c_str());
    };
    commands_.askOtherFormat = [](void* c, EditorView*, OtherFormatAnswer* answer) {
      CommandTest* self = Me(c);
      self->formatShown = *answer;
      if (!self->formatOk) return false;
      *answer = self->formatAnswer;
      return true;
    };
    commands_.askSortOptions = [](void* c, EditorView*, LineSortOptions* options) {
      CommandTest* self = Me(c);
      self->sortShown.push_back(*options);
      if (!self->sortOk) return false;
      *options = self->sortAnswer;
      return true;
    };
    previousCommands_ = SetCommandHost(&commands_);
    statusHost_ = *SetEditorHost(nullptr);
    statusHost_.statusText = [](void* c, int part, const char* text) {
      Me(c)->status.push_back(std::to_string(part) + ":" + text);
    };
    SetEditorHost(&statusHost_);
  }
  void TearDown() override {
    SetCommandHost(previousCommands_);
    PendingPrefix = kPrefixNone;
    EditorTest::TearDown();
  }
  static CommandTest* Me(void* context) {
    return static_cast<CommandTest*>(static_cast<EditorTest*>(context));
  }

  void UndoAll() {
    while (document->undoList)
      Undo(&view);
  }

  static constexpr int kCancel = -12345;
  bool dialogAnswer = false;
  std::u16string findAnswer;
  std::u16string replaceAnswer;
  int replaceAllAnswer = 0;
  std::vector<int> dialogs;
  std::vector<std::string> proposals;
  int lineAnswer = kCancel;
  int lineQuestions = 0;
  std::vector<std::string> opened;
  std::vector<std::string> lookedUp;
  std::string includes;
  bool formatOk = false;
  OtherFormatAnswer formatAnswer{};
  OtherFormatAnswer formatShown{};
  std::vector<std::string> status;
  bool sortOk = false;
  LineSortOptions sortAnswer{};
  std::vector<LineSortOptions> sortShown;

 private:
  CommandHost commands_{};
  const CommandHost* previousCommands_ = nullptr;
  EditorHost statusHost_{};
};
