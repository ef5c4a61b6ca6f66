// A range of instances of one format, ready for a call, that together cover every mode.

#pragma once

#include <tests/support/busy_strip.h>

#include <deque>
#include <limits>
#include <vector>

namespace channelstrip::test {

class EveryMode {
 public:
  // 40 samples: two whole blocks and a partial one.
  explicit EveryMode(const host::StemFormat& format) {
    for (unsigned seed = 0; seed < 4; ++seed) strips_.emplace_back(format.name, 40, seed);

    Strip& keyed = strips_[1];
    keyed.dyn.detectorMode = 1;
    keyed.dyn.keyEnable = 1;
    keyed.key_index = keyed.channels;

    Strip& listening = strips_[2];
    listening.dyn.keyListen = 1;
    listening.dyn.bypass = 1;

    // As many sections as a host can ask for, on audio that no filter recovers from.
    Strip& harsh = strips_[3];
    harsh.eq.firstBand[1] = 0;
    harsh.eq.endBand[0] = CHANNELSTRIP_EQ_BANDS;
    harsh.in[0][5] = std::numeric_limits<float>::quiet_NaN();

    for (Strip& strip : strips_) contexts_.push_back(strip.context());
  }

  // Does nothing but the call.
  void process(AlgEntry_16_Stem* entry) const {
    entry(contexts_.data(), contexts_.data() + contexts_.size());
  }

  const std::deque<BusyStrip>& strips() const { return strips_; }

 private:
  std::deque<BusyStrip> strips_;
  std::vector<const SChannelStrip_Alg_Context*> contexts_;
};

}  // namespace channelstrip::test
