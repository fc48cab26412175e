// The PNG reader and its inflate against libpng and zlib on the same data in the same run: a
// 4096x4096 RGBA picture (smooth gradients with noise, encoded by libpng with its default
// filters and level) and 50 MB of text-like data deflated by zlib at level 6.
#include <png.h>
#include <zlib.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "foundation/library.h"
#include "images/inflate.h"
#include "images/png.h"

namespace {

template <typename Work>
double BestSeconds(Work work) {
  double best = 1e30;
  for (int run = 0; run < 5; ++run) {
    auto start = std::chrono::steady_clock::now();
    work();
    std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    if (took.count() < best) best = took.count();
  }
  return best;
}

std::vector<uint8_t> MakePicture(int side) {
  std::vector<uint8_t> rgba(static_cast<size_t>(side) * side * 4);
  std::mt19937 random(19);
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++x) {
      uint8_t* p = &rgba[(static_cast<size_t>(y) * side + x) * 4];
      unsigned noise = random() & 7;
      p[0] = static_cast<uint8_t>(x / 16 + noise);
      p[1] = static_cast<uint8_t>(y / 16 + (x * y >> 12));
      p[2] = static_cast<uint8_t>((x + y) / 32 + noise);
      p[3] = static_cast<uint8_t>(255 - (x / 64) - noise);
    }
  }
  return rgba;
}

std::vector<uint8_t> EncodePng(const std::vector<uint8_t>& rgba, int side) {
  png_image image;
  memset(&image, 0, sizeof image);
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(side);
  image.height = static_cast<png_uint_32>(side);
  image.format = PNG_FORMAT_RGBA;
  png_alloc_size_t size = 0;
  png_image_write_to_memory(&image, nullptr, &size, 0, rgba.data(), 0, nullptr);
  std::vector<uint8_t> file(size);
  if (!png_image_write_to_memory(&image, file.data(), &size, 0, rgba.data(), 0, nullptr)) {
    fprintf(stderr, "libpng: %s\n", image.message);
    return {};
  }
  file.resize(size);
  return file;
}

std::string MakeText(size_t bytes) {
  static const char* const kWords[] = {
      "int",  "return", "window", "    ",  "\r\n",        "message", "0x7FFF", "/* 창 */",
      "if (", ") {",    "}",      "Quill", "const char*", "; ",      "buffer", "= "};
  std::mt19937 random(7);
  std::string text;
  text.reserve(bytes + 64);
  while (text.size() < bytes) {
    text += kWords[random() % 16];
    if (random() % 50 == 0) text += std::to_string(random());
  }
  text.resize(bytes);
  return text;
}

void Report(const char* what, double ours, const char* reference, double theirs) {
  printf("%-44s %8.3f s   %-22s %8.3f s   ratio %.2f\n", what, ours, reference, theirs,
         ours / theirs);
}

}  // namespace

int main() {
  InitKLib(nullptr, nullptr);
  const int side = 4096;
  std::vector<uint8_t> rgba = MakePicture(side);
  std::vector<uint8_t> file = EncodePng(rgba, side);
  printf("picture: %dx%d RGBA, PNG %.1f MB\n", side, side, file.size() / 1048576.0);

  PngImage decoded;
  bool same = false;
  double ours = BestSeconds([&] {
    if (DecodePng(file.data(), file.size(), kPngRgbaStraight, &decoded) == kPngOk) {
      same = memcmp(decoded.pixels, rgba.data(), rgba.size()) == 0;
      FreePngImage(&decoded);
    }
  });
  std::vector<uint8_t> theirsOut(rgba.size());
  double theirs = BestSeconds([&] {
    png_image image;
    memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    png_image_begin_read_from_memory(&image, file.data(), file.size());
    image.format = PNG_FORMAT_RGBA;
    png_image_finish_read(&image, nullptr, theirsOut.data(), 0, nullptr);
  });
  if (!same || theirsOut != rgba) printf("DECODED PICTURES DIFFER\n");
  Report("decode the 4096x4096 RGBA PNG", ours, "libpng (simplified API)", theirs);

  std::string text = MakeText(50u << 20);
  uLongf bound = compressBound(text.size());
  std::vector<uint8_t> stream(bound);
  compress2(stream.data(), &bound, reinterpret_cast<const uint8_t*>(text.data()), text.size(), 6);
  stream.resize(bound);
  printf("inflate: %.1f MB of zlib data to %.1f MB\n", stream.size() / 1048576.0,
         text.size() / 1048576.0);
  std::vector<uint8_t> out(text.size());
  int status = -1;
  ours = BestSeconds([&] {
    size_t written;
    status = InflateZlib(stream.data(), stream.size(), out.data(), out.size(), &written);
  });
  if (status != kInflateOk || memcmp(out.data(), text.data(), text.size()) != 0)
    printf("INFLATE FAILED: %s\n", InflateStatusText(status));
  theirs = BestSeconds([&] {
    uLongf length = out.size();
    uncompress(out.data(), &length, stream.data(), stream.size());
  });
  Report("inflate 50 MB (zlib level 6)", ours, "zlib uncompress", theirs);
  CloseKLib();
  return 0;
}
