// Which menu commands are enabled: mode 0 nothing open, 1 a document, 2 the project window
// active; the quick flag skips the project commands while the mode is not the project's.
#pragma once

constexpr int kMenuStateMaxItems = 32;

struct MenuItemState {
  int id;  // a command id, or a menu-bar position when byPosition is set
  bool byPosition;
  bool enabled;
};

struct MenuStatePlan {
  MenuItemState items[kMenuStateMaxItems];
  int count;
  bool redrawBar;
};

// The commands to enable or grey for (mode, quick, projectOpen), in order, and whether the menu
// bar is redrawn afterwards.
void PlanMenuState(int mode, bool quick, bool projectOpen, MenuStatePlan* plan);
