// quill-tool http: one request of the program's HTTP client, its status and body.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "cli/tool.h"
#include "comm/http_client.h"
#include "foundation/fileutil.h"
#include "foundation/memory.h"
#include "foundation/os_socket.h"

namespace {

constexpr int kMostParts = 16;

struct HttpRun {
  const char* url = nullptr;
  const char* out = nullptr;
  int64_t first = -1, last = -1;
  const char* since = nullptr;
  HttpFormPart parts[kMostParts] = {};
  char* files[kMostParts] = {};  // blocks read for FIELD=@FILE
  char names[kMostParts][128] = {};
  int partCount = 0;
};

bool ParseRange(const char* text, HttpRun* run) {
  char* end;
  run->first = strtoll(text, &end, 10);
  if (end == text || *end != '-' || run->first < 0) return false;
  if (!end[1]) return true;
  const char* lastText = end + 1;
  run->last = strtoll(lastText, &end, 10);
  return end != lastText && !*end && run->last >= run->first;
}

// FIELD=VALUE, or FIELD=@FILE for a file's contents under its name.
int AddPart(const char* text, HttpRun* run) {
  const char* equals = strchr(text, '=');
  if (!equals || equals == text || run->partCount == kMostParts) return kExitUsage;
  int i = run->partCount++;
  size_t nameLength = static_cast<size_t>(equals - text);
  if (nameLength >= sizeof run->names[i]) return kExitUsage;
  memcpy(run->names[i], text, nameLength);
  HttpFormPart& part = run->parts[i];
  part.name = run->names[i];
  if (equals[1] != '@') {
    part.data = equals + 1;
    part.size = strlen(equals + 1);
    return kExitOk;
  }
  const char* path = equals + 2;
  size_t length;
  run->files[i] = ReadWholeFile(path, &length, kOwnerTool);
  if (!run->files[i]) {
    fprintf(stderr, "quill-tool: cannot read %s\n", path);
    return kExitFailed;
  }
  const char* slash = strrchr(path, '/');
  part.fileName = slash ? slash + 1 : path;
  part.data = run->files[i];
  part.size = length;
  return kExitOk;
}

int ParseArgs(int argc, char** argv, HttpRun* run) {
  for (int i = 0; i < argc; ++i) {
    const char* arg = argv[i];
    const char* value = i + 1 < argc ? argv[i + 1] : nullptr;
    if (arg[0] == '-' && arg[1] == '-') {
      if (!value) return kExitUsage;
      ++i;
      if (strcmp(arg, "--range") == 0) {
        if (!ParseRange(value, run)) return kExitUsage;
      } else if (strcmp(arg, "--since") == 0) {
        run->since = value;
      } else if (strcmp(arg, "--post") == 0) {
        int status = AddPart(value, run);
        if (status != kExitOk) return status;
      } else {
        return kExitUsage;
      }
    } else if (!run->url) {
      run->url = arg;
    } else if (!run->out) {
      run->out = arg;
    } else {
      return kExitUsage;
    }
  }
  return run->url ? kExitOk : kExitUsage;
}

bool WriteBody(void* context, const char* data, size_t size, int64_t) {
  return fwrite(data, 1, size, static_cast<FILE*>(context)) == size;
}

int Fetch(const HttpRun& run) {
  FILE* out = nullptr;
  if (run.out && !(out = fopen(run.out, "wb"))) {
    fprintf(stderr, "quill-tool: cannot write %s\n", run.out);
    return kExitFailed;
  }
  HttpRequest request;
  StartHttpRequest(&request, run.url);
  request.rangeFirst = run.first;
  request.rangeLast = run.last;
  request.ifModifiedSince = run.since;
  request.parts = run.parts;
  request.partCount = run.partCount;
  request.receive = out ? WriteBody : nullptr;
  request.context = out;
  HttpResponse response;
  int error = HttpFetch(request, &response);
  if (response.status) {
    printf("%d\n", response.status);
    if (response.lastModified[0]) printf("Last-Modified: %s\n", response.lastModified);
    printf("Body: %llu bytes\n", static_cast<unsigned long long>(response.bodyBytes));
  }
  if (out) fclose(out);
  fflush(stdout);  // the status lines before the reason, when both go to one place
  if (error != kHttpOk) {
    fprintf(stderr, "quill-tool: %s: %s\n", run.url, HttpErrorText(error));
    return kExitFailed;
  }
  return response.status < 400 ? kExitOk : kExitFailed;
}

}  // namespace

int RunHttpCommand(int argc, char** argv) {
  HttpRun run;
  int status = ParseArgs(argc, argv, &run);
  if (status == kExitOk) {
    if (!OsStartSockets()) {
      fputs("quill-tool: the sockets cannot start\n", stderr);
      status = kExitFailed;
    } else {
      status = Fetch(run);
      OsStopSockets();
    }
  }
  for (char* file : run.files)
    FreeMem(file);
  return status;
}
