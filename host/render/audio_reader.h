// An audio file read a piece at a time.

#pragma once

#include <span>
#include <string>

#include "audio_format.h"
#include "sndfile_handle.h"

namespace channelstrip::host {

// Frames are interleaved, full scale is 1.0. All errors are std::runtime_error and begin with the
// path.
class AudioReader {
 public:
  explicit AudioReader(const std::string& path);

  const AudioFormat& format() const { return format_; }

  // Fills as much of `frames` as there is; less only at the file's end. Refuses samples that aren't
  // finite: the strip's filters would never recover from one.
  std::span<const float> read(std::span<float> frames);

  // Frames read so far.
  sf_count_t position() const { return position_; }

 private:
  std::string path_;
  Sndfile file_;
  AudioFormat format_;
  sf_count_t position_ = 0;
};

}  // namespace channelstrip::host
