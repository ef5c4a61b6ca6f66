// The side-chain's samples, in step with the audio.

#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "../audio/audio_reader.h"
#include "strip_options.h"

namespace channelstrip::host {

class KeySource {
 public:
  // For audio of `format` read from `input`. Throws std::runtime_error, one line for the user, when
  // there is no such key or it has another sample rate.
  KeySource(const StripOptions& options, const std::string& input, const AudioFormat& format);

  // The key's samples for the next `frames` of the audio, which are interleaved: one per frame,
  // fewer once the key has ended, none without a key. A view, valid until the next call.
  std::span<const float> next(std::span<const float> frames);

  // As AudioReader::rewind().
  void rewind() {
    if (file_) file_->rewind();
  }

  // As AudioReader::cut_short(), of the key's own file.
  std::string cut_short() const { return file_ ? file_->cut_short() : std::string(); }

 private:
  std::optional<AudioReader> file_;
  std::size_t input_channels_;
  std::size_t channels_;                // of the file that holds the key
  std::optional<std::size_t> channel_;  // the key among them, from 0; none without a key
  std::vector<float> frames_, key_;
};

}  // namespace channelstrip::host
