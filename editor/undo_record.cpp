#include "editor/undo_record.h"

#include "foundation/memory.h"

namespace {

void FreeRecord(UndoRecord* record) {
  FreeMem(record->text);
  FreeMem(record->positions);
  FreeMem(record);
}

}  // namespace

void FreeUndoList(UndoRecord* list) {
  while (list) {
    UndoRecord* next = list->next;
    FreeRecord(list);
    list = next;
  }
}
