// The profile-file text with arbitrary contents: finding never reads outside the text, and a
// value that was set is found again, with every other line kept.
#include <cstdint>
#include <cstring>
#include <string>

#include "foundation/profile_text.h"

namespace {

// Names the program could write: no line breaks, '=', brackets or blanks at the ends.
bool IsWritableName(const std::string& name) {
  if (name.empty() || name[0] == ';' || name[0] == ' ' || name.back() == ' ') return false;
  for (char c : name) {
    if (c == '\n' || c == '\r' || c == '=' || c == '[' || c == ']' || c == '\t' || c == '\0') {
      return false;
    }
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string input(reinterpret_cast<const char*>(data), size);
  size_t first = input.find('\n');
  size_t second = first == std::string::npos ? first : input.find('\n', first + 1);
  if (second == std::string::npos) return 0;
  std::string section = input.substr(0, first);
  std::string key = input.substr(first + 1, second - first - 1);
  std::string text = input.substr(second + 1);

  ProfileSpan value;
  if (ProfileFindValue(text.data(), text.size(), section.c_str(), key.c_str(), &value)) {
    if (value.text < text.data() || value.text + value.length > text.data() + text.size()) {
      __builtin_trap();
    }
    ProfileStripQuotes(value);
  }
  ProfileParseInt({text.data(), text.size()});

  if (!IsWritableName(section) || !IsWritableName(key)) return 0;
  size_t needed =
      ProfileSetValue(text.data(), text.size(), section.c_str(), key.c_str(), "v=1", nullptr, 0);
  std::string updated(needed, '\0');
  if (ProfileSetValue(text.data(), text.size(), section.c_str(), key.c_str(), "v=1", &updated[0],
                      needed) != needed) {
    __builtin_trap();
  }
  if (!ProfileFindValue(updated.data(), updated.size(), section.c_str(), key.c_str(), &value) ||
      std::string(value.text, value.length) != "v=1") {
    __builtin_trap();
  }
  return 0;
}
