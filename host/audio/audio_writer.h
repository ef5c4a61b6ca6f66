// An audio file written a piece at a time.

#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "../system/output_file.h"
#include "audio_format.h"
#include "dither.h"
#include "metadata.h"
#include "sndfile_handle.h"
#include "sndfile_output.h"

namespace channelstrip::host {

struct AudioWriterOptions {
  Dither dither = Dither::kNone;  // usual_dither(format) is what an engineer expects
  Metadata metadata = {};
};

// Frames are interleaved, full scale is 1.0. "-" is standard output. What stands at the path stays
// as it is until commit(). The same samples give the same file, byte for byte. All errors are
// std::runtime_error and begin with the path.
class AudioWriter {
 public:
  AudioWriter(const std::string& path, const AudioFormat& format, AudioWriterOptions options = {});

  void write(std::span<const float> frames);

  // Completes the file and puts it in its place.
  void commit();

  // Samples of any type but floating point that lay above full scale and were clamped.
  long long clipped() const { return clipped_; }

  // Whether the file says which speaker each channel feeds, if that was asked for.
  bool keeps_channel_map() const { return keeps_channel_map_; }

  // What of the metadata the file doesn't hold, each in a word or two; known after commit().
  const std::vector<std::string>& lost_metadata() const { return lost_metadata_; }

 private:
  void open();
  void set_channel_map();
  void clear_mask();
  void check() const;

  std::string name_;
  AudioFormat format_;
  AudioWriterOptions options_;
  std::unique_ptr<OutputFile> place_;
  SndfileOutput output_;
  Sndfile file_;
  bool keeps_channel_map_ = true;
  bool guesses_mask_ = false;  // libsndfile, of a file that names no speakers
  std::vector<std::string> lost_metadata_;
  long long clipped_ = 0;
  std::uint32_t written_ = 0;  // samples, of all channels, wrapping
  std::vector<std::int16_t> shorts_;
  std::vector<std::int32_t> integers_;
  std::vector<float> floats_;
};

}  // namespace channelstrip::host
