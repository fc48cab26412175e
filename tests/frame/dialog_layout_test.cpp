// The dialog templates: Tab walks the controls in the order the eye reads them, and a label's
// mnemonic lands on the field beside it. The order is read from quill.rc itself.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

namespace {

struct Control {
  std::string kind, text, id, style;
  int x, y, w, h;
  bool focusable;  // reached by Tab or, in a radio group, by the arrows
};

struct Dialog {
  std::string name;
  std::vector<Control> controls;  // in template order, invisible ones left out
};

std::string Trim(const std::string& text) {
  size_t begin = text.find_first_not_of(" \t\r");
  size_t end = text.find_last_not_of(" \t\r");
  return begin == std::string::npos ? "" : text.substr(begin, end - begin + 1);
}

// The comma-separated arguments of a control line; quoted texts keep their commas.
std::vector<std::string> Arguments(const std::string& line) {
  std::vector<std::string> result(1);
  bool quoted = false;
  for (char c : line) {
    if (c == '"') quoted = !quoted;
    if (c == ',' && !quoted)
      result.emplace_back();
    else
      result.back() += c;
  }
  for (std::string& argument : result)
    argument = Trim(argument);
  return result;
}

// A control line: KIND ["text",] id, [class, style,] x, y, w, h [, style].
bool ParseControl(const std::string& line, Control* control) {
  size_t space = line.find(' ');
  if (space == std::string::npos) return false;
  std::string kind = line.substr(0, space);
  std::vector<std::string> args = Arguments(line.substr(space));
  size_t at = 0;
  control->kind = kind;
  control->text = args[0][0] == '"' ? args[at++] : "";
  control->id = args[at++];
  if (kind == "CONTROL") {
    at++;  // the class
    control->style = args[at++];
  }
  if (args.size() < at + 4) return false;
  control->x = std::stoi(args[at]);
  control->y = std::stoi(args[at + 1]);
  control->w = std::stoi(args[at + 2]);
  control->h = std::stoi(args[at + 3]);
  if (kind != "CONTROL" && args.size() > at + 4) control->style = args[at + 4];
  // A drop-down's template height includes its list; on the page it is one field high.
  if (kind == "COMBOBOX") control->h = std::min(control->h, 14);
  bool isStatic = kind == "LTEXT" || kind == "RTEXT" || kind == "CTEXT" || kind == "GROUPBOX";
  bool tabByDefault = kind != "CONTROL" && !isStatic;
  bool tabStop = control->style.find("NOT WS_TABSTOP") == std::string::npos &&
                 (tabByDefault || control->style.find("WS_TABSTOP") != std::string::npos);
  control->focusable = tabStop || kind.find("RADIOBUTTON") != std::string::npos;
  return true;
}

std::vector<Dialog> ReadDialogs() {
  std::string here = __FILE__;
  std::ifstream file(here.substr(0, here.rfind("tests")) + "resources/quill.rc");
  std::vector<Dialog> dialogs;
  std::string line;
  bool header = false, inside = false;  // in a dialog's header lines, in its controls
  while (std::getline(file, line)) {
    line = Trim(line);
    if (line.find(" DIALOGEX ") != std::string::npos) {
      dialogs.push_back({line.substr(0, line.find(' ')), {}});
      header = true;
    } else if (header && line == "BEGIN") {
      header = false;
      inside = true;
    } else if (line == "END") {
      inside = false;
    } else if (inside) {
      Control control;
      if (ParseControl(line, &control) && control.style.find("NOT WS_VISIBLE") == std::string::npos)
        dialogs.back().controls.push_back(control);
    }
  }
  return dialogs;
}

// Reading order: a dialog is cut where a gap runs through it from edge to edge. A column of
// buttons at the right is cut off first and read after the rest; then come rows, then columns;
// each part is read the same way. What cannot be cut is read row by row.
bool IsButton(const Control& control) {
  return control.kind == "PUSHBUTTON" || control.kind == "DEFPUSHBUTTON";
}

void ReadingOrder(std::vector<Control> controls, std::vector<Control>* order) {
  enum { kButtonColumn, kRows, kColumns };
  for (int cut : {kButtonColumn, kRows, kColumns}) {
    bool columns = cut != kRows;
    auto begin = [&](const Control& c) { return columns ? c.x : c.y; };
    auto end = [&](const Control& c) { return columns ? c.x + c.w : c.y + c.h; };
    std::sort(controls.begin(), controls.end(),
              [&](const Control& a, const Control& b) { return begin(a) < begin(b); });
    int reach = end(controls[0]);
    for (size_t i = 1; i < controls.size(); ++i) {
      std::vector<Control> first(controls.begin(), controls.begin() + static_cast<long>(i));
      std::vector<Control> rest(controls.begin() + static_cast<long>(i), controls.end());
      if (begin(controls[i]) >= reach &&
          (cut != kButtonColumn || std::all_of(rest.begin(), rest.end(), IsButton))) {
        ReadingOrder(first, order);
        ReadingOrder(rest, order);
        return;
      }
      reach = std::max(reach, end(controls[i]));
    }
  }
  std::stable_sort(controls.begin(), controls.end(), [](const Control& a, const Control& b) {
    return a.y != b.y ? a.y < b.y : a.x < b.x;
  });
  order->insert(order->end(), controls.begin(), controls.end());
}

std::vector<std::string> FocusableIds(const std::vector<Control>& controls) {
  std::vector<std::string> ids;
  for (const Control& control : controls)
    if (control.focusable) ids.push_back(control.id);
  return ids;
}

TEST(DialogLayout, TabFollowsTheReadingOrderAndMnemonicsReachTheirFields) {
  std::vector<Dialog> dialogs = ReadDialogs();
  ASSERT_GE(dialogs.size(), 11u);  // every template was read
  for (const Dialog& dialog : dialogs) {
    SCOPED_TRACE(dialog.name);
    std::vector<Control> order;
    ReadingOrder(dialog.controls, &order);
    EXPECT_EQ(FocusableIds(dialog.controls), FocusableIds(order));
    // A label's mnemonic moves to the next control of the template: its own field.
    for (size_t i = 0; i < dialog.controls.size(); ++i) {
      const Control& label = dialog.controls[i];
      if (label.kind != "LTEXT" || label.text.find('&') == std::string::npos) continue;
      ASSERT_LT(i + 1, dialog.controls.size());
      const Control& field = dialog.controls[i + 1];
      EXPECT_TRUE(field.focusable) << label.text;
      EXPECT_TRUE(field.x >= label.x + label.w || field.y >= label.y + label.h) << label.text;
    }
  }
}

// The rule itself: on the find dialog's shape, fields and options on the left are read before the
// column of buttons at the right, even where a button sits beside the first field; on a small
// dialog whose buttons sit under the field, the field comes first.
TEST(DialogLayout, AButtonColumnIsReadAfterTheFieldsAndAButtonRowAfterTheRowAbove) {
  auto at = [](const char* kind, const char* id, int x, int y, int w, int h) {
    return Control{kind, "", id, "", x, y, w, h, true};
  };
  auto read = [](std::vector<Control> controls) {
    std::vector<Control> order;
    ReadingOrder(controls, &order);
    return FocusableIds(order);
  };
  EXPECT_EQ(
      read({at("COMBOBOX", "find", 60, 8, 140, 14), at("PUSHBUTTON", "clear", 204, 7, 48, 14),
            at("COMBOBOX", "replace", 60, 26, 140, 14), at("PUSHBUTTON", "ok", 204, 46, 48, 14),
            at("AUTOCHECKBOX", "left", 8, 46, 60, 10),
            at("AUTOCHECKBOX", "right", 124, 46, 60, 10)}),
      (std::vector<std::string>{"find", "replace", "left", "right", "clear", "ok"}));
  EXPECT_EQ(
      read({at("LTEXT", "label", 8, 10, 80, 10), at("EDITTEXT", "value", 92, 8, 24, 13),
            at("DEFPUSHBUTTON", "ok", 36, 30, 48, 14), at("PUSHBUTTON", "cancel", 92, 30, 48, 14)}),
      (std::vector<std::string>{"label", "value", "ok", "cancel"}));
}

}  // namespace
