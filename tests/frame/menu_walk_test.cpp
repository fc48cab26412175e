// Every item of the menu (read from quill.rc) leads somewhere: to the frame, the project window or
// an editor command that the editor runs without the "not finished" box. The items still waiting
// for their windows are listed here by number, and each must still be waiting.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>

#include "editor/key_commands.h"
#include "frame/frame_commands.h"
#include "tests/editor/command_fixture.h"

namespace {

// The items whose windows are not in this build yet.
const std::set<int> kWaiting = {23};
// Forwarded items that the project window runs when it is the active child.
const std::set<int> kProjectWindowItems = {45, 120, 121, 122, 123};

std::string SourceFile(const char* relative) {
  std::string here = __FILE__;
  for (char& c : here) {
    if (c == '\\') c = '/';
  }
  return here.substr(0, here.rfind("tests/")) + relative;
}

std::map<std::string, int> Defines() {
  std::map<std::string, int> names;
  std::ifstream file(SourceFile("resources/resource.h"));
  std::regex define(R"(^#define\s+(\w+)\s+(-?\d+))");
  std::smatch match;
  for (std::string line; std::getline(file, line);) {
    if (std::regex_search(line, match, define)) names[match[1]] = std::stoi(match[2]);
  }
  return names;
}

// The command numbers of the menu's items, in the script's order.
std::vector<int> MenuItems() {
  std::map<std::string, int> names = Defines();
  std::ifstream file(SourceFile("resources/quill.rc"));
  std::regex item(R"re(^\s*MENUITEM\s+".*",\s*(\w+))re");
  std::smatch match;
  std::vector<int> ids;
  bool inMenu = false;
  for (std::string line; std::getline(file, line);) {
    if (line.find(" MENU") != std::string::npos && line.find("MENUITEM") == std::string::npos)
      inMenu = true;
    if (inMenu && line == "END") break;
    if (!inMenu || !std::regex_search(line, match, item)) continue;
    std::string id = match[1];
    ids.push_back(isdigit(static_cast<unsigned char>(id[0])) ? std::stoi(id) : names.at(id));
  }
  return ids;
}

class MenuWalk : public CommandTest {
 protected:
  // Whether choosing item `id` reaches something other than the "not finished" box.
  bool Reaches(int id) {
    switch (FrameCommand(id)) {
      case kCommandFrame:
      case kCommandProjectWindow:
      case kCommandWindowList:
        return id != kCmdUnfinished;
      case kCommandUnfinished:
        return false;
      case kCommandForward:
        break;
    }
    if (kProjectWindowItems.count(id)) return true;
    messages.clear();
    bool ran = RunEditorCommand(&view, id);
    bool unfinished = std::count(messages.begin(), messages.end(), kUnfinishedText) > 0;
    return ran && !unfinished;
  }
};

TEST_F(MenuWalk, EveryItemLeadsSomewhereButTheOnesStillWaiting) {
  std::vector<int> items = MenuItems();
  ASSERT_GT(items.size(), 50u);
  SetText({"int main() { return 0; }"});
  std::set<int> dead;
  for (int id : items) {
    if (!Reaches(id)) dead.insert(id);
  }
  // A new dead item fails here; so does a waiting one that has landed (take it off the list).
  EXPECT_EQ(dead, kWaiting);
  // The walk tells the two apart: the placeholder command itself reaches nothing.
  EXPECT_FALSE(Reaches(kCmdUnfinished));
  EXPECT_FALSE(Reaches(kCmdNotFinished));
}

}  // namespace
