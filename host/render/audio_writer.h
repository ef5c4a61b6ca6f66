// An audio file written a piece at a time.

#pragma once

#include <span>
#include <string>
#include <vector>

#include "audio_format.h"
#include "replacement_file.h"
#include "sndfile_handle.h"

namespace channelstrip::host {

// Frames are interleaved, full scale is 1.0. What stands at the path stays as it is until commit().
// All errors are std::runtime_error and begin with the path.
class AudioWriter {
 public:
  AudioWriter(const std::string& path, const AudioFormat& format);

  void write(std::span<const float> frames);

  // Completes the file and puts it in its place.
  void commit();

  // Samples of any type but floating point that lay above full scale and were clamped.
  long long clipped() const { return clipped_; }

  // Whether the file says which speaker each channel feeds, if that was asked for.
  bool keeps_channel_map() const { return keeps_channel_map_; }

 private:
  // libsndfile's output, by hand so that no failed write is missed, be it the last one of all.
  struct Output {
    int descriptor = -1;
    sf_count_t limit = 0;  // bytes that the container can count
    int error = 0;         // errno of the first failure
  };
  static SF_VIRTUAL_IO output_calls();

  void check() const;

  std::string path_;
  AudioFormat format_;
  ReplacementFile replacement_;
  Output output_;
  Sndfile file_;
  bool keeps_channel_map_ = true;
  long long clipped_ = 0;
  std::vector<int> integers_;
  std::vector<float> floats_;
};

}  // namespace channelstrip::host
