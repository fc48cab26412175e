// Owner numbers of the images subsystem's blocks.
#pragma once

enum : int {
  kOwnerInflateTables = 8000,  // the Huffman tables of one inflate
  kOwnerPngData = 8001,        // the image's compressed data, every IDAT joined
  kOwnerPngRaw = 8002,         // the inflated, filtered scanlines
  kOwnerPngPixels = 8003,      // the decoded picture handed to the caller
  kOwnerPngRow = 8004,         // one interlaced pass's row and the zero row
};

enum : int {
  kOwnerDeflateState = 7150,  // one deflate's hash chains and block symbols
};
