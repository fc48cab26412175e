// Messages of the C source analysis into the caller's text sink.
#pragma once
#include <cstdint>

struct TextBuffer;

// Where a message is about: the sink, the file name and the current line.
struct SourcePlace {
  TextBuffer* sink;
  const char* fileName;
  uint32_t line;
};

// Fixed codes of "Syntex Error" (the spelling is the program's).
enum : int {
  kSyntaxMakefileDefined = 185,      // !if defined( without )
  kSyntaxMakefileExpansion = 224,    // !if with an unfinished macro reference
  kSyntaxMacroParams = 574,          // #define F(a without )
  kSyntaxMissingArgument = 971,      // F(a) where F takes two
  kSyntaxDefined = 1153,             // defined( without )
  kSyntaxUnclosedBlock = 1244,       // struct tag { without }
  kSyntaxDeclaration = 1269,         // a declaration that can't be read
  kSyntaxTypedef = 1355,             // typedef without ;
  kSyntaxConditionExpansion = 1418,  // #if with an unfinished macro call
  kSyntaxCondition = 1426,           // #if expression error
  kSyntaxExternCpp = 1699,           // extern "C++" block skipped
};

// "[%s #%d] Syntex Error (%d)\r\n".
void ReportSyntaxError(TextBuffer* sink, const char* fileName, int line, int code);
void ReportSyntaxError(const SourcePlace* place, int code);
