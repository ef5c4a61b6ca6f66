// All that a report says of one of its two files.

#pragma once

#include <span>
#include <vector>

#include "../audio/audio_format.h"
#include "../loudness/loudness.h"
#include "envelope.h"
#include "part.h"
#include "spectrum.h"

namespace channelstrip::host {

class SignalAnalysis {
 public:
  // Throws std::invalid_argument for a sample rate at which loudness can't be measured.
  SignalAnalysis(const AudioFormat& format, const ChannelLayout& layout,
                 const std::vector<Part>& parts);

  // A whole number of interleaved frames.
  void add(std::span<const float> frames);

  struct Channel {
    float peak = 0;               // highest sample, linear
    long long at_full_scale = 0;  // samples on the highest or lowest value of their type, or beyond
  };
  const std::vector<Channel>& channels() const { return channels_; }
  const std::vector<Envelope>& envelopes() const { return envelopes_; }  // per part
  Loudness loudness() const { return loudness_.loudness(); }

  // The levels of the mean of the channels' power.
  std::vector<BandLevel> levels(const Part& part) const;

 private:
  float full_scale_;
  std::vector<std::vector<float>> buffers_;  // per channel, of the frames that are added
  std::vector<Channel> channels_;
  std::vector<Envelope> envelopes_;
  std::vector<WelchSpectrum> spectra_;  // per channel
  LoudnessMeter loudness_;
};

}  // namespace channelstrip::host
