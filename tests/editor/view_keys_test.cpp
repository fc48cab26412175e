// The keyboard without the window: the accelerator table that quill-tool plays key scripts
// through must be the one Quill.exe loads from its resources.
#include "editor/view_keys.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::string SourceFile(const std::string& name) {
  std::string here = __FILE__;
  return here.substr(0, here.rfind("tests")) + name;
}

std::string Trim(const std::string& text) {
  size_t from = text.find_first_not_of(" \t");
  size_t to = text.find_last_not_of(" \t\r");
  return from == std::string::npos ? "" : text.substr(from, to - from + 1);
}

// "IDM_NEW" or "50": the number, by the resource header's definitions.
int Number(const std::string& text, const std::map<std::string, int>& defines) {
  auto found = defines.find(text);
  if (found != defines.end()) return found->second;
  return static_cast<int>(std::stol(text, nullptr, 0));
}

struct Row {
  int key, modifiers, command;
  bool character;
  bool operator==(const Row& o) const {
    return key == o.key && modifiers == o.modifiers && command == o.command &&
           character == o.character;
  }
};

std::vector<Row> ResourceRows() {
  std::map<std::string, int> defines = {{"VK_BACK", 0x08}, {"VK_END", 0x23}, {"VK_HOME", 0x24},
                                        {"VK_LEFT", 0x25}, {"VK_UP", 0x26},  {"VK_RIGHT", 0x27},
                                        {"VK_DOWN", 0x28}, {"VK_F1", 0x70},  {"VK_F3", 0x72},
                                        {"VK_F4", 0x73},   {"VK_F5", 0x74},  {"VK_F7", 0x76}};
  std::ifstream header(SourceFile("resources/resource.h"));
  std::string line;
  while (std::getline(header, line)) {
    std::istringstream words(line);
    std::string define, name, value;
    if (words >> define >> name >> value && define == "#define") defines[name] = std::stoi(value);
  }
  std::ifstream rc(SourceFile("resources/quill.rc"));
  std::vector<Row> rows;
  bool inside = false;
  while (std::getline(rc, line)) {
    line = Trim(line.substr(0, line.find("//")));
    if (line.find(" ACCELERATORS") != std::string::npos) {
      inside = true;
    } else if (inside && line == "END") {
      break;
    } else if (inside && !line.empty() && line != "BEGIN") {
      std::vector<std::string> fields;
      std::istringstream parts(line);
      for (std::string field; std::getline(parts, field, ',');)
        fields.push_back(Trim(field));
      Row row = {0, 0, Number(fields[1], defines), false};
      row.key = fields[0][0] == '"' ? fields[0][1] : Number(fields[0], defines);
      for (size_t i = 2; i < fields.size(); ++i) {
        if (fields[i] == "ASCII") row.character = true;
        if (fields[i] == "SHIFT") row.modifiers |= kChordShift;
        if (fields[i] == "CONTROL") row.modifiers |= kChordControl;
        if (fields[i] == "ALT") row.modifiers |= kChordAlt;
      }
      rows.push_back(row);
    }
  }
  return rows;
}

TEST(ViewKeys, TheAcceleratorTableIsTheResourcesOne) {
  std::vector<Row> resource = ResourceRows();
  ASSERT_EQ(static_cast<int>(resource.size()), AcceleratorCount());
  for (int i = 0; i < AcceleratorCount(); ++i) {
    Row row;
    AcceleratorAt(i, &row.key, &row.modifiers, &row.command, &row.character);
    EXPECT_TRUE(row == resource[i])
        << "row " << i << ": key " << row.key << " command " << row.command
        << ", the resource has key " << resource[i].key << " command " << resource[i].command;
  }
  // A character chord is never found by a virtual key of the same number.
  EXPECT_EQ(AcceleratorCommand('[', kChordAlt), 0);
  EXPECT_EQ(AcceleratorCommand('Z', kChordControl), 70);
  EXPECT_EQ(AcceleratorCommand('Z', kChordControl | kChordShift), 0);
}

}  // namespace
