// SHA-256 (FIPS 180-4), for checking decoded data against other programs' output.
#pragma once
#include <cstddef>
#include <cstdint>

struct Sha256 {
  uint32_t state[8];
  uint64_t length;  // bytes so far
  uint8_t block[64];
  unsigned used;  // bytes waiting in block
};

void Sha256Start(Sha256* sha);
void Sha256Add(Sha256* sha, const void* data, size_t size);
void Sha256Finish(Sha256* sha, uint8_t digest[32]);
// The digest as 64 lowercase hexadecimal digits and a terminating zero.
void Sha256Hex(const uint8_t digest[32], char text[65]);
