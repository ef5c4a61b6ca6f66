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
  Existing existing = Existing::kKept;
  sf_count_t frames = 0;  // that will be written, as far as is known; below 0: any number
};

// Frames are interleaved, full scale is 1.0. "-" is standard output. A file that exists at the path
// is kept, or stays untouched until commit(). A WAV file that grows beyond 4 GiB is RF64. The same
// samples give the same file, byte for byte. All errors are std::runtime_error and begin with the
// path.
class AudioWriter {
 public:
  AudioWriter(const std::string& path, const AudioFormat& format, AudioWriterOptions options = {});

  // `sources`, as many as `frames` or none, are what the frames were before they were processed:
  // what wasn't changed isn't dithered.
  void write(std::span<const float> frames, std::span<const float> sources = {});

  // Completes the file and puts it in its place.
  void commit();

  // Samples above full scale that were clamped; none in floating-point files.
  long long clipped() const { return clipped_; }

  // False if the format has a channel map that the container can't hold.
  bool keeps_channel_map() const { return keeps_channel_map_; }

  // The metadata that the file doesn't hold, each item in a word or two; known after commit().
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
  bool guesses_mask_ = false;  // libsndfile writes a guessed mask, which commit() clears
  std::vector<std::string> lost_metadata_;
  long long clipped_ = 0;
  std::uint32_t written_ = 0;  // samples, of all channels, wrapping
  std::vector<std::int16_t> shorts_;
  std::vector<std::int32_t> integers_;
  std::vector<float> floats_;
};

}  // namespace channelstrip::host
