#include "frame/menu_state.h"

namespace {

const int kDocumentCommands[] = {82,  83,  34,  70, 71, 105, 106, 107,
                                 108, 109, 110, 74, 76, 111, 38,  26};
const int kProjectCommands[] = {116, 117, 119, 124, 125, 126};
const int kProjectWindowCommands[] = {120, 122, 123, 45};

void Add(MenuStatePlan* plan, int id, bool byPosition, bool enabled) {
  if (plan->count < kMenuStateMaxItems) plan->items[plan->count++] = {id, byPosition, enabled};
}

}  // namespace

void PlanMenuState(int mode, bool quick, bool projectOpen, MenuStatePlan* plan) {
  plan->count = 0;
  plan->redrawBar = false;
  if (mode == 1 || !quick) {
    for (int id : kDocumentCommands)
      Add(plan, id, false, mode == 1);
  }
  // Switching between documents changes nothing on the project's side.
  if (quick && mode != 2) {
    plan->redrawBar = true;
    return;
  }
  Add(plan, 121, false, mode == 2);
  bool project = mode != 0 && projectOpen;
  for (int id : kProjectCommands)
    Add(plan, id, false, project);
  for (int position = 6; position <= 8; ++position)
    Add(plan, position, true, project);
  for (int id : kProjectWindowCommands)
    Add(plan, id, false, mode == 2 && projectOpen);
  plan->redrawBar = true;
}
