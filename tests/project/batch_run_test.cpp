// The batch file under the system's own command interpreter: it changes to the project folder and
// calls the compiler folder's NMAKE with the makefile and VCPATH, deletes NMAKE's working files,
// and runs the output when there is one. A stand-in NMAKE (stand_in_nmake.cpp) in the compiler
// folder "VCTEST" beside this program records what it was given.
#ifdef _WIN32
#include <cstring>

#include "foundation/fileutil.h"
#include "foundation/path.h"
#include "project/make_target.h"
#include "project/project.h"
#include "tests/project/project_fixture.h"

namespace {

class BatchRunTest : public ProjectTest {
 protected:
  void SetUp() override {
    ProjectTest::SetUp();
    // The batch file runs to its end before the test looks at what it did.
    waitHost_ = {this, [](void*) { return false; }, [](void*) {},
                 [](void* self, const char* line, int show) {
                   static_cast<BatchRunTest*>(self)->exitCode_ =
                       StartProgramAndWait(line, show, 60000);
                   return true;
                 },
                 [](void*) {}};
    SetProjectHost(&waitHost_);
  }
  static std::string Backslashed(std::string path) {
    for (char& c : path) {
      if (c == '/') c = '\\';
    }
    return path;
  }
  ProjectHost waitHost_{};
  int exitCode_ = -2;
};

TEST_F(BatchRunTest, CallsNmakeInTheProjectFolderAndRunsTheOutput) {
  ProjectTarget* target = AddTarget("app", kTargetWindow);
  strcpy(target->compiler, "VCTEST");
  AppendTargetFile(target, "app.cpp");
  ASSERT_EQ(MakeTarget(&project_, target, BuildMode::kRun), 1);
  EXPECT_EQ(exitCode_, 0);
  char program[kPathSize];
  ASSERT_GT(ProgramFolder(program, sizeof program), 0);
  std::string folder = Backslashed(folder_);
  std::string log = ReadFileBytes(In("NMAKE.LOG"));
  std::string expected = "NMAKE|" + folder + "|app.mak|VCPATH=" + Backslashed(program) +
                         "\\VCTEST\n" + "RUN|" + folder + "\n";
  // The interpreter may spell the folder in another case.
  EXPECT_EQ(_stricmp(log.c_str(), expected.c_str()), 0) << log << "\nexpected\n" << expected;
  EXPECT_FALSE(FileExists(In("TargetList.mak")));
  EXPECT_FALSE(FileExists(In("TargetCompile.mak")));
  EXPECT_TRUE(FileExists(In("app.exe")));
}

TEST_F(BatchRunTest, AFailedBuildDoesNotRunTheOldOutput) {
  ProjectTarget* target = AddTarget("gone", kTargetDialog);
  strcpy(target->compiler, "VCTEST");
  WriteFileBytes(In("gone.exe"), "an old build");
  SetTargetText(&target->makeStart, "FAIL=1");
  ASSERT_EQ(MakeTarget(&project_, target, BuildMode::kRun), 1);
  std::string log = ReadFileBytes(In("NMAKE.LOG"));
  EXPECT_EQ(log.find("RUN|"), std::string::npos) << log;
  EXPECT_NE(log.find("NMAKE|"), std::string::npos) << log;
}

}  // namespace
#endif
