// The one path module: what counts as absolute, when two names are the same file, joining, and
// the form shown to the user.
#include <gtest/gtest.h>

#include <string>

#include "foundation/os_path.h"
#include "foundation/path.h"

namespace {

TEST(Path, AbsoluteSameJoinedAndShown) {
  for (const char* absolute : {"/usr/x.h", "\\x.h", "C:x.h", "c:/w/x.h"})
    EXPECT_TRUE(IsAbsolutePath(absolute)) << absolute;
  for (const char* relative : {"x.h", "./x.h", "", "sub/x.h"})
    EXPECT_FALSE(IsAbsolutePath(relative)) << relative;

  EXPECT_TRUE(SamePath("C:/Work/Main.C", "c:\\work\\main.c"));
  EXPECT_FALSE(SamePath("C:/Work/Main.C", "C:/Work/Main.Cpp"));
  EXPECT_FALSE(SamePath("a/b", "a/b/"));

  char out[12];
  struct Join {
    const char* folder;
    const char* name;
    const char* joined;  // null: does not fit
  };
  for (const Join& join : {Join{"C:/w", "x.c", "C:/w/x.c"}, Join{"C:/w/", "x.c", "C:/w/x.c"},
                           Join{"C:/w", "D:/y.c", "D:/y.c"}, Join{"", "x.c", "x.c"},
                           Join{"C:/work", "long.c", nullptr}}) {
    bool fits = JoinPath(join.folder, join.name, out, sizeof out);
    EXPECT_EQ(fits, join.joined != nullptr) << join.folder << " " << join.name;
    if (fits) EXPECT_STREQ(out, join.joined);
  }

  char shown[kPathSize];
  ShownPath("C:/work/a.c", shown, kPathSize);
  EXPECT_EQ(std::string(shown),
            std::string("C:") + kOsPathSeparator + "work" + kOsPathSeparator + "a.c");
  EXPECT_EQ(ShownPath("C:/work/a.c", shown, 4), 3);  // cut to the room there is
}

}  // namespace
