// Runs an audio file through a strip, piece by piece.

#pragma once

#include <span>
#include <string>
#include <vector>

#include "../audio/audio_reader.h"
#include "control/design/channel_layout.h"
#include "control/preset/preset.h"
#include "control/strip/strip_stream.h"
#include "key_source.h"
#include "strip_options.h"

namespace channelstrip::host {

// Throws std::runtime_error, one line for the user, for options that are wrong whatever the input.
void check_strip_options(const StripOptions& options);

// All calls throw likewise. All settings, those of the preset's changes included, are judged before
// the first frame is read.
class StripRun {
 public:
  StripRun(const std::string& input, const StripOptions& options);

  // With the options' assignments and key.
  const Preset& preset() const { return preset_; }
  const AudioFormat& format() const { return reader_.format(); }
  const Metadata& metadata() const { return reader_.metadata(); }
  const ChannelLayout& layout() const { return layout_; }
  StripStream& stream() { return stream_; }
  sf_count_t frames_read() const { return reader_.position(); }
  // As AudioReader::frames().
  sf_count_t frames_stated() const { return reader_.frames(); }
  // The part of the input that was read, 0 .. 1; below 0 if its length isn't known before its end.
  double part_read() const;
  // A line for each band of the preset that was left out, and for what it should write otherwise.
  const std::vector<std::string>& remarks() const { return preset_.remarks; }
  // A line for the audio, and for the key, whose file holds less than it states.
  std::vector<std::string> cut_short() const;

  // The next frames of the input, the frames of the output that the strip has completed since, and
  // those of the input that these were made of. The output lags behind by less than a window and is
  // as long as the input in the end. Views, valid until the next call.
  struct Piece {
    std::span<const float> input, output, source;
  };

  // False when there is nothing more.
  bool next(Piece& piece);

  // Begins again, with the first frame and a strip at its beginning.
  void rewind();

 private:
  StripStream make_stream() const;

  std::string culprit_;  // the file that messages about an impossible setting begin with
  AudioReader reader_;
  Preset preset_;
  ChannelLayout layout_;
  Library library_;
  KeySource key_;
  StripStream stream_;
  std::vector<float> input_, output_;
  std::vector<float> sources_;  // of the output, and of what the strip hasn't completed yet
  bool ended_ = false;
};

}  // namespace channelstrip::host
