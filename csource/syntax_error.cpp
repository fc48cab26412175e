#include "csource/syntax_error.h"

#include "foundation/text_builder.h"

void ReportSyntaxError(TextBuffer* sink, const char* fileName, int line, int code) {
  if (sink)
    AppendFormat(sink, "[%s #%d] Syntex Error (%d)\r\n", fileName ? fileName : "", line, code);
}

void ReportSyntaxError(const SourcePlace* place, int code) {
  if (place) ReportSyntaxError(place->sink, place->fileName, static_cast<int>(place->line), code);
}
