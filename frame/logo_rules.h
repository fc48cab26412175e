// The logo window's and the update check's rules that need no window: where the picture comes
// from, when the server's copy is newer, where the window goes, and which version is offered.
#pragma once
#include <cstddef>
#include <cstdint>

// The last component of a web address ("Logo.png" of "http://host/a/Logo.png"); false when the
// address ends in '/' or the name does not fit.
bool AddressLastComponent(const char* url, char* name, size_t size);
// The address with its last component replaced by `name` (a file beside the logo).
bool AddressBeside(const char* url, const char* name, char* target, size_t size);

// Whether the server's copy is newer than the cached one written at `localSeconds` (since 1970,
// UTC): judged by the reply's Last-Modified; a reply without a readable date counts as newer,
// since nothing says the cached copy is as good.
bool ServerCopyIsNewer(const char* lastModified, int64_t localSeconds);

struct LogoRect {
  int x, y, width, height;
};
// The window for a picture: 2 pixels of frame each side, centred on the frame's window
// rectangle, halves rounded down.
LogoRect PlaceLogo(int frameLeft, int frameTop, int frameRight, int frameBottom, int pictureWidth,
                   int pictureHeight);

// Compares dotted version numbers ("1.27" < "1.28" < "1.100" < "2"); missing parts are 0.
// A text that is not a version compares below every version.
int CompareVersions(const char* a, const char* b);

// The update check's text from the server: the newest version on its first line, the address of
// the download page on the second (when absent, the server's folder of the version file).
struct VersionOffer {
  char version[32];
  char page[512];
};
bool ParseVersionOffer(const char* text, size_t size, const char* versionUrl, VersionOffer* offer);
// Whether to ask about `offered`: newer than the running `current` version, and not the one that
// was asked about last (`asked`, empty when none).
bool ShouldOfferVersion(const char* offered, const char* current, const char* asked);
