// The output calls of libsndfile, made here for two reasons: every failed write is noticed, even
// the very last one, and chunks of our own can follow the header.

#pragma once

#include <sndfile.h>

#include <string>

#include "chunks.h"

namespace channelstrip::host {

class SndfileOutput {
 public:
  // `chunks` are serialised; the file may grow to `limit` bytes.
  SndfileOutput(int descriptor, ChunkFamily family, std::string chunks, sf_count_t limit);

  // For sf_open_virtual, with this object as the user data.
  static SF_VIRTUAL_IO calls();

  // Adds the chunks to the size in the file's header, after libsndfile has closed the file.
  void finish();

  // errno of the first failure, 0 if there was none.
  int error() const { return error_; }

 private:
  sf_count_t length() const;
  sf_count_t write(std::string_view bytes);
  void put(std::string_view bytes, sf_count_t offset);

  int descriptor_;
  ChunkFamily family_;
  std::string chunks_;
  sf_count_t limit_;
  sf_count_t position_ = 0;   // as libsndfile sees it: without the chunks
  sf_count_t chunks_at_ = 0;  // 0: they aren't there yet
  int error_ = 0;
};

}  // namespace channelstrip::host
