// Source files in a scratch folder, run through the preprocessor and the declaration scan.
#pragma once
#include <filesystem>
#include <fstream>
#include <string>

#include "csource/parse_source.h"
#include "csource/show_definition.h"
#include "csource/symbol_table.h"
#include "foundation/text_builder.h"
#include "tests/support/klib_test.h"

class CSourceTest : public KLibTest {
 protected:
  void SetUp() override {
    KLibTest::SetUp();
    folder_ = testing::TempDir() + "quill_csrc_" +
              testing::UnitTest::GetInstance()->current_test_info()->name();
    // The program's own paths use '/' on Windows too.
    for (char& c : folder_) {
      if (c == '\\') c = '/';
    }
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
  }
  void TearDown() override {
    FreeSymbolTable(&table_);
    std::filesystem::remove_all(folder_);
    KLibTest::TearDown();
  }
  std::string Write(const std::string& name, const std::string& text) {
    std::string path = folder_ + "/" + name;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }
  // Parses `name` and returns the messages.
  std::string Parse(const std::string& name, const ParseOptions* options = nullptr) {
    TextBuffer sink;
    InitText(&sink, 1);
    std::string path = folder_ + "/" + name;
    ParseSourceFile(&table_, path.c_str(), &sink, options);
    std::string messages = TextOf(&sink);
    FreeText(&sink);
    return messages;
  }
  const SymbolRecord* Find(const char* name, uint32_t kind = kSymbolAny) {
    return FindSymbol(&table_, name, -1, kind);
  }
  std::string Body(const char* name) {
    const SymbolRecord* record = Find(name);
    return record ? record->body : "<none>";
  }
  SymbolTable table_ = {0, 0, nullptr};
  std::string folder_;
};
