#include "tools/zip_archive.h"

#include <cstring>

#include "foundation/fileutil.h"
#include "foundation/memory.h"
#include "images/png.h"
#include "tools/tool_owners.h"

struct ZipMemberRecord {
  char* name;
  uint32_t crc;
  uint32_t packedSize;
  uint32_t size;
  uint32_t offset;
  uint16_t method;
  uint16_t flags;
  uint16_t time;
  uint16_t date;
};

namespace {

constexpr uint16_t kMethodStored = 0;
constexpr uint16_t kMethodDeflated = 8;
constexpr uint16_t kFlagUtf8 = 1 << 11;
constexpr uint16_t kVersionNeeded = 20;
constexpr uint32_t kDosArchiveAttribute = 0x20;

void Put16(uint8_t* p, uint32_t v) {
  p[0] = static_cast<uint8_t>(v);
  p[1] = static_cast<uint8_t>(v >> 8);
}
void Put32(uint8_t* p, uint32_t v) {
  Put16(p, v & 0xFFFF);
  Put16(p + 2, v >> 16);
}

void Write(ZipWriter* zip, const void* data, size_t size) {
  SafeFileWrite(&zip->file, data, static_cast<unsigned>(size));
  zip->offset += size;
}

bool PlainAscii(const char* text) {
  for (; *text; ++text) {
    if (static_cast<unsigned char>(*text) >= 0x80) return false;
  }
  return true;
}

// The fields the local and the central header share, from "version needed" to the name length.
void PutCommon(uint8_t* p, const ZipMemberRecord& m, size_t nameLength) {
  Put16(p, kVersionNeeded);
  Put16(p + 2, m.flags);
  Put16(p + 4, m.method);
  Put16(p + 6, m.time);
  Put16(p + 8, m.date);
  Put32(p + 10, m.crc);
  Put32(p + 14, m.packedSize);
  Put32(p + 18, m.size);
  Put16(p + 22, static_cast<uint32_t>(nameLength));
  Put16(p + 24, 0);  // no extra field
}

bool Grow(ZipWriter* zip) {
  if (zip->count < zip->capacity) return true;
  int capacity = zip->capacity ? zip->capacity * 2 : 64;
  auto* members = static_cast<ZipMemberRecord*>(
      AllocMem(sizeof(ZipMemberRecord) * static_cast<size_t>(capacity), kOwnerZipMembers));
  if (!members) return false;
  if (zip->count) memcpy(members, zip->members, sizeof(ZipMemberRecord) * zip->count);
  FreeMem(zip->members);
  zip->members = members;
  zip->capacity = capacity;
  return true;
}

void FreeMembers(ZipWriter* zip) {
  for (int i = 0; i < zip->count; ++i)
    FreeMem(zip->members[i].name);
  FreeMem(zip->members);
  zip->members = nullptr;
  zip->count = zip->capacity = 0;
}

}  // namespace

uint16_t DosDate(const OsDateTime& t) {
  if (t.year < 1980) return 1 << 5 | 1;
  int year = t.year > 2107 ? 127 : t.year - 1980;
  return static_cast<uint16_t>(year << 9 | t.month << 5 | t.day);
}

uint16_t DosTime(const OsDateTime& t) {
  if (t.year < 1980) return 0;
  return static_cast<uint16_t>(t.hour << 11 | t.minute << 5 | t.second / 2);
}

int ZipBegin(ZipWriter* zip, const char* path) {
  memset(zip, 0, sizeof *zip);
  zip->file.file = kInvalidFile;
  unsigned attributes = FileGetAttributes(path);
  if (attributes != kNoAttributes && (attributes & kAttrReadOnly)) {
    zip->error = kErrorAccessDenied;
    return kZipWriteFailed;
  }
  if (!SafeFileLocate(&zip->file, path) || !SafeFileOpen(&zip->file)) {
    zip->error = zip->file.error ? zip->file.error : FileLastError();
    return kZipWriteFailed;
  }
  return kZipOk;
}

int ZipAddMember(ZipWriter* zip, const char* name, const uint8_t* data, size_t size,
                 const OsDateTime& time, const DeflateProgress* progress) {
  size_t nameLength = strlen(name);
  if (zip->count >= 0xFFFF || size >= 0xFFFFFFFFu || nameLength > 0xFFFF) return kZipTooLarge;
  if (!Grow(zip)) return kZipNoMemory;
  ZipMemberRecord m = {};
  m.name = static_cast<char*>(AllocMem(nameLength + 1, kOwnerZipMembers));
  uint8_t* packed = static_cast<uint8_t*>(AllocMem(DeflateBound(size), kOwnerZipPacked));
  if (!m.name || !packed) {
    FreeMem(m.name);
    FreeMem(packed);
    return kZipNoMemory;
  }
  memcpy(m.name, name, nameLength + 1);
  size_t packedSize = 0;
  int status = DeflateRaw(data, size, packed, &packedSize, progress);
  if (status != kDeflateOk) {
    FreeMem(m.name);
    FreeMem(packed);
    return status == kDeflateStopped ? kZipStopped : kZipNoMemory;
  }
  bool deflated = packedSize < size;
  if (!deflated) packedSize = size;
  uint64_t end = zip->offset + 30 + nameLength + packedSize;
  if (end > 0xFFFFFFFFu) {
    FreeMem(m.name);
    FreeMem(packed);
    return kZipTooLarge;
  }
  m.crc = Crc32(0, data, size);
  m.packedSize = static_cast<uint32_t>(packedSize);
  m.size = static_cast<uint32_t>(size);
  m.offset = static_cast<uint32_t>(zip->offset);
  m.method = deflated ? kMethodDeflated : kMethodStored;
  m.flags = PlainAscii(name) ? 0 : kFlagUtf8;
  m.time = DosTime(time);
  m.date = DosDate(time);
  uint8_t header[30];
  Put32(header, 0x04034b50);
  PutCommon(header + 4, m, nameLength);
  Write(zip, header, sizeof header);
  Write(zip, name, nameLength);
  Write(zip, deflated ? packed : data, packedSize);
  FreeMem(packed);
  zip->members[zip->count++] = m;
  if (zip->file.error) {
    zip->error = zip->file.error;
    return kZipWriteFailed;
  }
  return kZipOk;
}

int ZipFinish(ZipWriter* zip) {
  uint64_t start = zip->offset;
  for (int i = 0; i < zip->count; ++i) {
    const ZipMemberRecord& m = zip->members[i];
    size_t nameLength = strlen(m.name);
    uint8_t header[46];
    Put32(header, 0x02014b50);
    Put16(header + 4, kVersionNeeded);  // made by: MS-DOS attributes
    PutCommon(header + 6, m, nameLength);
    Put16(header + 32, 0);  // comment
    Put16(header + 34, 0);  // disk
    Put16(header + 36, 0);  // internal attributes
    Put32(header + 38, kDosArchiveAttribute);
    Put32(header + 42, m.offset);
    Write(zip, header, sizeof header);
    Write(zip, m.name, nameLength);
  }
  if (zip->offset > 0xFFFFFFFFu) {
    ZipAbandon(zip);
    return kZipTooLarge;
  }
  uint8_t end[22];
  Put32(end, 0x06054b50);
  Put32(end + 4, 0);  // this disk, the directory's disk
  Put16(end + 8, static_cast<uint32_t>(zip->count));
  Put16(end + 10, static_cast<uint32_t>(zip->count));
  Put32(end + 12, static_cast<uint32_t>(zip->offset - start));
  Put32(end + 16, static_cast<uint32_t>(start));
  Put16(end + 20, 0);
  Write(zip, end, sizeof end);
  FreeMembers(zip);
  if (!SafeFileCommit(&zip->file)) {
    zip->error = zip->file.error;
    return kZipWriteFailed;
  }
  return kZipOk;
}

void ZipAbandon(ZipWriter* zip) {
  FreeMembers(zip);
  SafeFileAbandon(&zip->file);
}
