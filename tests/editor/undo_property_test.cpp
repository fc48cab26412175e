// Random sequences of every undoable edit on random Korean and ASCII text: undoing all of them
// must give back the original text, redoing all of them the final text, and Modified must say
// which of the two is on screen. QUILL_UNDO_SEQUENCES sets how many sequences run (the long
// mode); QUILL_UNDO_SEED another seed.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <random>
#include <utility>

#include "editor/case_change.h"
#include "editor/editing.h"
#include "editor/find_replace.h"
#include "editor/line_continuation.h"
#include "editor/search_request.h"
#include "editor/text_edit.h"
#include "editor/view_commands.h"
#include "editor/word_moves.h"
#include "foundation/memory.h"
#include "tests/editor/editor_fixture.h"

namespace {

constexpr char16_t kAlphabet[] = u"abcXYZ_ *(/){};\"'가나다힣한글";

// The text as a saved file would hold it: trailing blanks do not survive a save, so padding that
// a caret behind the end of a line brought in is not a difference.
std::u16string Saved(const EditDocument* document) {
  std::u16string text;
  for (int i = 0; i < document->lineCount; ++i) {
    const LineRecord* line = document->lines[i];
    std::u16string units = line ? std::u16string(line->text, line->length) : std::u16string();
    while (!units.empty() && units.back() == u' ')
      units.pop_back();
    text += units;
    text += u'\n';
  }
  return text;
}

long EnvNumber(const char* name, long fallback) {
  const char* value = getenv(name);
  return value && *value ? strtol(value, nullptr, 10) : fallback;
}

class UndoProperty : public EditorTest {
 protected:
  int Pick(int bound) { return static_cast<int>(random_() % static_cast<unsigned>(bound)); }

  char16_t RandomUnit() { return kAlphabet[Pick(static_cast<int>(sizeof kAlphabet / 2 - 1))]; }

  std::u16string RandomRun(int maxLength) {
    std::u16string run;
    for (int n = Pick(maxLength) + 1; n > 0; --n)
      run += Pick(8) == 0 ? u'\n' : RandomUnit();
    return run;
  }

  void RandomText() {
    ClearLines(document);
    for (int lines = Pick(8) + 1; lines > 0; --lines) {
      std::u16string line(static_cast<size_t>(Pick(4)), u' ');
      for (int n = Pick(12); n > 0; --n)
        line += Pick(16) ? std::u16string(1, RandomUnit()) : std::u16string(u"\U0001F600");
      AppendUtf16Line(document, line.data(), static_cast<int>(line.size()));
    }
  }

  // Steps back from the second half of a surrogate pair: the caret never stands inside one.
  static int Boundary(const LineRecord* record, int index) {
    if (index > 0 && index < LineLength(record) && record->text[index] >= 0xDC00 &&
        record->text[index] <= 0xDFFF && record->text[index - 1] >= 0xD800 &&
        record->text[index - 1] <= 0xDBFF)
      --index;
    return index;
  }

  // A column on a character boundary of `line`, sometimes behind its end.
  int RandomColumn(int line) {
    const LineRecord* record = DocumentLine(document, line);
    int index = Boundary(record, Pick(LineLength(record) + 1));
    int column = ColumnOfIndex(record, index);
    return Pick(6) == 0 ? column + Pick(4) : column;
  }

  void RandomCaret() {
    int line = document->lineCount ? Pick(document->lineCount) : 0;
    int column = RandomColumn(line);
    if (Pick(3) == 0)
      JumpCaret(&view, column, line);
    else
      Caret(column, line);
  }

  void RandomSelection() {
    int lines = document->lineCount ? document->lineCount : 1;
    int l1 = Pick(lines), l2 = Pick(lines);
    int c1 = RandomColumn(l1), c2 = RandomColumn(l2), mode = Pick(3) == 0 ? 1 : 0;
    Select(c1, l1, c2, l2, mode);
    log_ += "[" + std::to_string(c1) + "," + std::to_string(l1) + "-" + std::to_string(c2) + "," +
            std::to_string(l2) + (mode ? " column] " : "] ");
  }

  void ReplaceSomething() {
    const LineRecord* line =
        DocumentLine(document, Pick(document->lineCount ? document->lineCount : 1));
    if (LineLength(line) == 0) return;
    int from = Boundary(line, Pick(LineLength(line)));
    int to = Boundary(
        line, from + Pick(3) + 1 < LineLength(line) ? from + Pick(3) + 1 : LineLength(line));
    int length = to - from;
    if (length <= 0) return;
    SearchRequest request = {};
    request.mode = 1;
    request.caseSensitive = Pick(2);
    request.scope = Pick(4) == 0 ? 1 : 0;
    request.origin = Pick(2);
    request.replaceAll = Pick(3) != 0;
    SetSearchText(request.findText, line->text + from, length);
    std::u16string replacement = RandomRun(3);
    replacement.erase(std::remove(replacement.begin(), replacement.end(), u'\n'),
                      replacement.end());
    SetSearchText(request.replaceText, replacement.data(), static_cast<int>(replacement.size()));
    answers.push_back(kIdOk);
    ReplaceAll(&view, &request);
    answers.clear();
  }

  // One user action; undo and redo runs are among them. Each is logged for the failure report.
  void RandomAction() {
    int action = lastAction_ = Pick(25);
    log_ += std::to_string(action) + "@" + std::to_string(view.caretColumn) + "," +
            std::to_string(view.caretLine) + " ";
    switch (action) {
      case 0:
      case 1:
      case 2:
      case 3:
        TypeCharacter(&view, RandomUnit());
        break;
      case 4:  // a character beyond the BMP comes as its two halves
        TypeCharacter(&view, 0xD83D);
        TypeCharacter(&view, static_cast<char16_t>(0xDE00 + Pick(64)));
        break;
      case 5:
        KeyEnter(&view);
        break;
      case 6:
        KeyBackspace(&view);
        break;
      case 7:
        KeyDelete(&view);
        break;
      case 8:
        tick += Pick(2) ? 100 : 1000;
        KeyTab(&view, Pick(3) == 0);
        break;
      case 9:
        RandomCaret();
        break;
      case 10:
        RandomSelection();
        break;
      case 11:
        RandomSelection();
        ShiftBlock(&view, Pick(2) ? 4 : -4);
        break;
      case 12:
        RandomSelection();
        Pick(2) ? (void)CutSelection(&view) : (void)DeleteSelection(&view);
        break;
      case 13:
        if (Pick(2)) RandomSelection();
        CopySelection(&view);
        break;
      case 14:
        if (clipboard.empty()) clipboard = RandomRun(10);
        view.blockMode = Pick(3) == 0 ? 1 : 0;
        Paste(&view);
        break;
      case 15:
        RandomSelection();
        view.blockMode = 1;
        fillAnswer = RandomUnit();
        FillColumnBlock(&view, 0);
        break;
      case 16:
        ChangeWordCase(&view, Pick(2));
        break;
      case 17:
        ChangeCharacterCase(&view);
        break;
      case 18:
        ReplaceSomething();
        break;
      case 19:
        DeletePreviousWord(&view);
        break;
      case 20:
        ToggleContinuation(&view);
        break;
      case 21:
        InsertDateTime(&view);
        break;
      case 24:
        view.overwrite = !view.overwrite;
        break;
      case 22:
        for (int n = Pick(4) + 1; n > 0; --n)
          Undo(&view);
        break;
      default:
        for (int n = Pick(3) + 1; n > 0; --n)
          Redo(&view);
        break;
    }
  }

  static UndoRecord* CopyList(const UndoRecord* list) {
    UndoRecord* head = nullptr;
    UndoRecord** tail = &head;
    for (; list; list = list->next) {
      auto* copy = static_cast<UndoRecord*>(AllocMem(sizeof(UndoRecord), kOwnerUndo));
      *copy = *list;
      copy->next = nullptr;
      copy->text = static_cast<char16_t*>(
          AllocMem(static_cast<size_t>(list->textCapacity + 1) * sizeof(char16_t), kOwnerUndo));
      if (list->textLength)
        memcpy(copy->text, list->text, static_cast<size_t>(list->textLength) * sizeof(char16_t));
      copy->positions = static_cast<int32_t*>(AllocMem(
          static_cast<size_t>(list->positionCapacity + 1) * 2 * sizeof(int32_t), kOwnerUndo));
      if (list->positionCount)
        memcpy(copy->positions, list->positions,
               static_cast<size_t>(list->positionCount) * 2 * sizeof(int32_t));
      *tail = copy;
      tail = &copy->next;
    }
    return head;
  }

  // Undo all and redo all lead to `original` and back, tried on a copy of the document so that
  // the run itself goes on undisturbed.
  bool RoundTrips(const std::u16string& original) {
    EditDocument* copy = NewDocument();
    for (int i = 0; i < document->lineCount; ++i) {
      const LineRecord* line = document->lines[i];
      AppendUtf16Line(copy, line ? line->text : nullptr, LineLength(line));
    }
    copy->undoList = CopyList(document->undoList);
    copy->redoList = CopyList(document->redoList);
    EditorView kept = view;
    std::swap(document, copy);
    view.document = document;
    std::u16string now = Saved(document);
    int steps = UndoAll();
    bool back = Saved(document) == original;
    if (!back) printf("undone:\n%s\n", Utf8(Saved(document)).c_str());
    for (int n = 0; n < steps; ++n) {
      if (getenv("QUILL_UNDO_VERBOSE")) {
        const UndoRecord* r = document->redoList;
        printf("redo kind %d %d,%d-%d,%d sel %d,%d-%d,%d text %s\n", r->kind, r->startColumn,
               r->startLine, r->endColumn, r->endLine, r->selStartColumn, r->selStartLine,
               r->selEndColumn, r->selEndLine,
               Utf8(std::u16string(r->text, r->textLength)).c_str());
      }
      Redo(&view);
      if (getenv("QUILL_UNDO_VERBOSE")) printf("%s---\n", Utf8(Saved(document)).c_str());
    }
    bool forth = Saved(document) == now;
    if (!forth) printf("now:\n%s\nredone:\n%s\n", Utf8(now).c_str(), Utf8(Saved(document)).c_str());
    std::swap(document, copy);
    FreeDocument(copy);
    view = kept;
    return back && forth;
  }

  // Presses Ctrl+Z until nothing is left to undo; how many presses that took.
  int UndoAll() {
    int steps = 0;
    for (; document->undoList; ++steps)
      Undo(&view);
    return steps;
  }

  std::mt19937 random_;
  std::string log_;
  int lastAction_ = 0;
};

TEST_F(UndoProperty, UndoAllGivesTheOriginalAndRedoAllTheFinalText) {
  long sequences = EnvNumber("QUILL_UNDO_SEQUENCES", 3000);
  // For hunting a failure down to its action: the round trip after every action.
  long checkFrom = EnvNumber("QUILL_UNDO_CHECK_FROM", -1);
  random_.seed(static_cast<unsigned>(EnvNumber("QUILL_UNDO_SEED", 20261123)));
  for (long sequence = 0; sequence < sequences; ++sequence) {
    bool checkEach = checkFrom >= 0 && sequence >= checkFrom;
    FreeUndoList(document->undoList);
    FreeUndoList(document->redoList);
    document->undoList = document->redoList = nullptr;
    document->modified = 0;
    RandomText();
    Caret(0, 0);
    std::u16string original = Saved(document);
    int actions = Pick(60) + 1;
    log_.clear();
    for (int n = 0; n < actions; ++n) {
      std::u16string before = checkEach ? Saved(document) : std::u16string();
      RandomAction();
      if (!checkEach) continue;
      if (Saved(document) != before && document->redoList && lastAction_ < 22)
        printf("a change kept the redo list: action %d\n", lastAction_);
      ASSERT_TRUE(RoundTrips(original)) << log_ << "\nbefore the last action:\n" << Utf8(before);
    }
    std::u16string final = Saved(document);
    SCOPED_TRACE("sequence " + std::to_string(sequence) + ", actions " + log_ + "\nfrom\n" +
                 Utf8(original));
    int steps = UndoAll();
    ASSERT_EQ(Utf8(Saved(document)), Utf8(original));
    ASSERT_EQ(document->modified, 0);
    for (int n = 0; n < steps; ++n)
      Redo(&view);
    ASSERT_EQ(Utf8(Saved(document)), Utf8(final));
    if (final != original) ASSERT_NE(document->modified, 0);
    messages.clear();
  }
}

}  // namespace
