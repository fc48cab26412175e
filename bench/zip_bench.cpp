// Compression of 50 MB of C sources: the deflate on one file beside `gzip -6`, and the project
// archive of the MinGW-w64 headers (files up to 50 MB) beside `zip -6` on the same files. Prints
// time and size ratios; the aims are 1.5 times zip's time and 1.1 times its size at most.
#include <sys/stat.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "bench/header_corpus.h"
#include "foundation/library.h"
#include "images/deflate.h"
#include "project/project.h"
#include "tools/project_zip.h"

namespace {

long FileSize(const std::string& path) {
  struct stat info;
  return stat(path.c_str(), &info) == 0 ? static_cast<long>(info.st_size) : -1;
}

template <typename Work>
double BestSeconds(Work work) {
  double best = 1e30;
  for (int round = 0; round < 3; ++round) {
    auto start = std::chrono::steady_clock::now();
    work();
    if (SecondsSince(start) < best) best = SecondsSince(start);
  }
  return best;
}

void Line(const char* what, double ours, long ourSize, const char* tool, double theirs,
          long theirSize) {
  printf("%-26s %6.2f s %10ld B   %-8s %6.2f s %10ld B   time ratio %.2f   size ratio %.3f\n", what,
         ours, ourSize, tool, theirs, theirSize, ours / theirs,
         static_cast<double>(ourSize) / theirSize);
}

}  // namespace

int main() {
  InitKLib(nullptr, nullptr);
  std::string folder = "/tmp/quill_zip_bench";
  system(("rm -rf " + folder + " && mkdir -p " + folder).c_str());
  std::string corpus = folder + "/corpus.h";
  if (!WriteHeaderCorpus(corpus)) return 1;
  std::ifstream in(corpus, std::ios::binary);
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());

  std::vector<uint8_t> out(DeflateBound(text.size()));
  size_t packed = 0;
  double ours = BestSeconds([&] {
    DeflateRaw(reinterpret_cast<const uint8_t*>(text.data()), text.size(), out.data(), &packed,
               nullptr);
  });
  std::string gz = folder + "/corpus.gz";
  double gzip = BestSeconds([&] { system(("gzip -6 -n -c " + corpus + " >" + gz).c_str()); });
  // gzip's own header and trailer are 18 bytes of its size.
  Line("deflate, one 50 MB file", ours, static_cast<long>(packed), "gzip -6", gzip,
       FileSize(gz) - 18);

  // The headers as a project: one target holding every file, up to 50 MB of them.
  std::string list = folder + "/files.txt";
  system(("find " + std::string(kHeaderFolder) + " -type f -name '*.h' | sort >" + list).c_str());
  std::ifstream names(list);
  Project project{};
  snprintf(project.path, sizeof project.path, "%s/headers.prj", folder.c_str());
  std::ofstream(project.path) << "[Head]\r\nInfo=Quill Project File 1.00\r\n";
  ProjectTarget* target = NewTarget();
  AppendTarget(&project, target);
  std::string name, kept = folder + "/kept.txt";
  std::ofstream keptList(kept);
  long total = 0;
  while (std::getline(names, name) && total < static_cast<long>(kCorpusBytes)) {
    total += FileSize(name);
    AppendTargetFile(target, name.c_str());
    keptList << name << "\n";
  }
  keptList.close();
  std::string archive = folder + "/ours.zip", reference = folder + "/zip6.zip";
  double archiveTime = BestSeconds([&] {
    ProjectZipResult result;
    CompressProject(&project, archive.c_str(), nullptr, &result);
    FreeText(&result.skippedList);
  });
  double zipTime = BestSeconds([&] {
    system(("rm -f " + reference + " && zip -6 -q -X " + reference + " " + project.path + " -@ <" +
            kept)
               .c_str());
  });
  char label[64];
  snprintf(label, sizeof label, "archive, %d files %ld MB", CountTargetFiles(target), total >> 20);
  Line(label, archiveTime, FileSize(archive), "zip -6", zipTime, FileSize(reference));
  FreeProjectTargets(&project);
  system(("rm -rf " + folder).c_str());
  return 0;
}
