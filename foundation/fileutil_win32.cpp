#include <windows.h>

#include <shellapi.h>

#include <cstring>
#include <cwchar>

#include "foundation/fileutil.h"
#include "foundation/memory.h"

namespace {

constexpr int kOwnerCommandLine = 30;
constexpr int kCommandLineUnits = 32768;

// A path in the system's form: UTF-16 with '\' separators, at most MAX_PATH units.
struct WidePath {
  wchar_t text[MAX_PATH];
  bool ok;
  explicit WidePath(const char* path) {
    int length = path ? MultiByteToWideChar(CP_UTF8, 0, path, -1, text, MAX_PATH) : 0;
    ok = length > 0;
    for (int i = 0; ok && i < length; ++i) {
      if (text[i] == L'/') text[i] = L'\\';
    }
    if (!ok) SetLastError(kErrorNotEnoughMemory);
  }
};

void ToInternal(const wchar_t* wide, char* target, int size) {
  int length = WideCharToMultiByte(CP_UTF8, 0, wide, -1, target, size, nullptr, nullptr);
  if (length <= 0) target[0] = '\0';
  for (char* p = target; *p; ++p) {
    if (*p == '\\') *p = '/';
  }
}

void FillFindData(const WIN32_FIND_DATAW& data, FindData* found) {
  ToInternal(data.cFileName, found->name, sizeof found->name);
  found->attributes = data.dwFileAttributes;
  found->size = (static_cast<uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
}

HANDLE Handle(FileHandle file) {
  return reinterpret_cast<HANDLE>(file);
}

// A UTF-16 copy of up to 32768 units in a block of its own.
wchar_t* WideText(const char* text) {
  wchar_t* wide =
      static_cast<wchar_t*>(AllocMem(kCommandLineUnits * sizeof(wchar_t), kOwnerCommandLine));
  if (wide && MultiByteToWideChar(CP_UTF8, 0, text, -1, wide, kCommandLineUnits) <= 0) {
    FreeMem(wide);
    wide = nullptr;
  }
  if (!wide) SetLastError(kErrorNotEnoughMemory);
  return wide;
}

// The command line in UTF-16 with the program's '/' turned into '\'.
wchar_t* WideCommandLine(const char* commandLine) {
  wchar_t* wide = WideText(commandLine);
  if (!wide) return nullptr;
  wchar_t* p = wide;
  bool quoted = *p == L'"';
  if (quoted) ++p;
  for (; *p && (quoted ? *p != L'"' : *p > L' '); ++p) {
    if (*p == L'/') *p = L'\\';
  }
  return wide;
}

bool Start(const char* commandLine, int show, PROCESS_INFORMATION* process) {
  wchar_t* wide = WideCommandLine(commandLine);
  if (!wide) return false;
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = static_cast<WORD>(show);
  BOOL ok = CreateProcessW(nullptr, wide, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                           process);
  FreeMem(wide);
  return ok != FALSE;
}

}  // namespace

bool FileCopy(const char* source, const char* target, bool failIfExists) {
  WidePath from(source), to(target);
  return from.ok && to.ok && CopyFileW(from.text, to.text, failIfExists);
}

bool FileMove(const char* source, const char* target) {
  WidePath from(source), to(target);
  return from.ok && to.ok && MoveFileW(from.text, to.text);
}

bool FileDelete(const char* path) {
  WidePath wide(path);
  return wide.ok && DeleteFileW(wide.text);
}

bool FolderCreate(const char* path) {
  WidePath wide(path);
  return wide.ok && CreateDirectoryW(wide.text, nullptr);
}

bool FolderRemove(const char* path) {
  WidePath wide(path);
  return wide.ok && RemoveDirectoryW(wide.text);
}

FileHandle FileOpen(const char* path, unsigned access, unsigned share, unsigned disposition,
                    unsigned flags) {
  WidePath wide(path);
  if (!wide.ok) {
    SetLastError(0);
    return kInvalidFile;
  }
  HANDLE file = CreateFileW(wide.text, access, share, nullptr, disposition,
                            flags ? flags : FILE_ATTRIBUTE_NORMAL, nullptr);
  return file == INVALID_HANDLE_VALUE ? kInvalidFile : reinterpret_cast<FileHandle>(file);
}

void FileClose(FileHandle file) {
  if (file != kInvalidFile) CloseHandle(Handle(file));
}

bool FileSetAttributes(const char* path, unsigned attributes) {
  WidePath wide(path);
  return wide.ok && SetFileAttributesW(wide.text, attributes);
}

unsigned FileGetAttributes(const char* path) {
  WidePath wide(path);
  return wide.ok ? static_cast<unsigned>(GetFileAttributesW(wide.text)) : unsigned{kNoAttributes};
}

bool FileGetFacts(const char* path, FileFacts* facts) {
  WidePath wide(path);
  if (!wide.ok) return false;
  // No access asked: enough to look at a file, a folder or a device without disturbing it.
  HANDLE file = CreateFileW(wide.text, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                            nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  facts->regular = false;
  facts->links = 1;
  facts->attributes = 0;
  BY_HANDLE_FILE_INFORMATION information;
  if (GetFileType(file) == FILE_TYPE_DISK && GetFileInformationByHandle(file, &information)) {
    facts->attributes = information.dwFileAttributes;
    facts->regular = !(information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY);
    facts->links = information.nNumberOfLinks;
  }
  CloseHandle(file);
  SetLastError(0);
  return true;
}

namespace {

bool CopyName(const char* path, char* resolved, int size) {
  int length = static_cast<int>(strlen(path));
  if (length >= size) {
    SetLastError(206);
    return false;
  }
  memcpy(resolved, path, static_cast<size_t>(length) + 1);
  return true;
}

}  // namespace

bool FileResolveLinks(const char* path, char* resolved, int size) {
  // Looked up at run time: Windows before Vista lacks the call (and symbolic links to files);
  // there the name is written as it is.
  using FinalPathProc = DWORD(WINAPI*)(HANDLE, LPWSTR, DWORD, DWORD);
  static FinalPathProc finalPath = reinterpret_cast<FinalPathProc>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"KERNEL32"), "GetFinalPathNameByHandleW")));
  WidePath wide(path);
  if (!wide.ok) return false;
  DWORD attributes = GetFileAttributesW(wide.text);
  HANDLE file = INVALID_HANDLE_VALUE;
  if (finalPath && attributes != INVALID_FILE_ATTRIBUTES &&
      (attributes & FILE_ATTRIBUTE_REPARSE_POINT))
    file = CreateFileW(wide.text, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                       nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  // No link, or one whose target is missing: the name itself is what a save writes.
  if (file == INVALID_HANDLE_VALUE) return CopyName(path, resolved, size);
  wchar_t name[MAX_PATH + 8];
  DWORD length = finalPath(file, name, MAX_PATH + 8, VOLUME_NAME_DOS);
  CloseHandle(file);
  if (length == 0 || length >= MAX_PATH + 8) {
    if (length) SetLastError(206);
    return false;
  }
  // The system names it "\\?\C:\..." or "\\?\UNC\server\...": back to the usual forms.
  const wchar_t* start = name;
  if (wcsncmp(name, L"\\\\?\\UNC\\", 8) == 0) {
    start = name + 6;
    name[6] = L'\\';
  } else if (wcsncmp(name, L"\\\\?\\", 4) == 0) {
    start = name + 4;
  }
  ToInternal(start, resolved, size);
  return resolved[0] != '\0';
}

bool FileReplace(const char* target, const char* replacement) {
  WidePath to(target), from(replacement);
  // The system's replacement keeps the old file's attributes, security, creation time and short
  // name, and restores the old file when it cannot finish.
  return to.ok && from.ok &&
         ReplaceFileW(to.text, from.text, nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr,
                      nullptr);
}

FileHandle FileFindFirst(const char* pattern, FindData* found) {
  WidePath wide(pattern);
  if (!wide.ok) return kInvalidFile;
  WIN32_FIND_DATAW data;
  HANDLE search = FindFirstFileW(wide.text, &data);
  if (search == INVALID_HANDLE_VALUE) return kInvalidFile;
  FillFindData(data, found);
  return reinterpret_cast<FileHandle>(search);
}

bool FileFindNext(FileHandle search, FindData* found) {
  WIN32_FIND_DATAW data;
  if (!FindNextFileW(Handle(search), &data)) return false;
  FillFindData(data, found);
  return true;
}

void FileFindClose(FileHandle search) {
  if (search != kInvalidFile) FindClose(Handle(search));
}

bool FileRead(FileHandle file, void* buffer, unsigned size, unsigned* done) {
  DWORD count = 0;
  BOOL ok = ReadFile(Handle(file), buffer, size, &count, nullptr);
  *done = count;
  return ok != FALSE;
}

bool FileWrite(FileHandle file, const void* buffer, unsigned size, unsigned* done) {
  DWORD count = 0;
  BOOL ok = WriteFile(Handle(file), buffer, size, &count, nullptr);
  *done = count;
  return ok != FALSE;
}

uint64_t FileGetSize(FileHandle file) {
  DWORD high = 0;
  DWORD low = GetFileSize(Handle(file), &high);
  if (low == INVALID_FILE_SIZE && GetLastError() != NO_ERROR) return ~0ull;
  return (static_cast<uint64_t>(high) << 32) | low;
}

bool FileSeek(FileHandle file, int64_t offset, unsigned origin, uint64_t* position) {
  LARGE_INTEGER distance, result;
  distance.QuadPart = offset;
  if (!SetFilePointerEx(Handle(file), distance, &result, origin)) return false;
  if (position) *position = static_cast<uint64_t>(result.QuadPart);
  return true;
}

unsigned FileStamp(FileHandle file) {
  FILETIME written;
  if (!GetFileTime(Handle(file), nullptr, nullptr, &written)) return 0;
  return StampFromFileTime((static_cast<uint64_t>(written.dwHighDateTime) << 32) |
                           written.dwLowDateTime);
}

bool FileLocalWriteTime(FileHandle file, OsDateTime* time) {
  FILETIME written, local;
  SYSTEMTIME parts;
  if (!GetFileTime(Handle(file), nullptr, nullptr, &written) ||
      !FileTimeToLocalFileTime(&written, &local) || !FileTimeToSystemTime(&local, &parts))
    return false;
  *time = {parts.wYear, parts.wMonth, parts.wDay, parts.wHour, parts.wMinute, parts.wSecond};
  return true;
}

unsigned FileLastError() {
  return GetLastError();
}

bool StartProgram(const char* commandLine, int show) {
  PROCESS_INFORMATION process;
  if (!Start(commandLine, show, &process)) return false;
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return true;
}

int StartProgramAndWait(const char* commandLine, int show, unsigned timeoutMs) {
  PROCESS_INFORMATION process;
  if (!Start(commandLine, show, &process)) return -1;
  int result = -1;
  if (WaitForSingleObject(process.hProcess, timeoutMs) == WAIT_OBJECT_0) {
    DWORD code = 0;
    if (GetExitCodeProcess(process.hProcess, &code)) result = static_cast<int>(code);
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return result;
}

bool ShellOpen(void* owner, const char* verb, const char* file, const char* parameters,
               const char* folder, int show) {
  WidePath wideFile(file);
  if (!wideFile.ok) return false;
  wchar_t wideVerb[32] = L"";
  if (verb) MultiByteToWideChar(CP_UTF8, 0, verb, -1, wideVerb, 32);
  wchar_t* wideParameters = parameters ? WideText(parameters) : nullptr;
  WidePath wideFolder(folder ? folder : "");
  HINSTANCE result =
      ShellExecuteW(static_cast<HWND>(owner), verb ? wideVerb : nullptr, wideFile.text,
                    wideParameters, folder ? wideFolder.text : nullptr, show);
  FreeMem(wideParameters);
  return reinterpret_cast<INT_PTR>(result) > 32;
}
