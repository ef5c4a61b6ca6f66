// The strips that process one stream: several if its link map has more groups than one strip holds.

#pragma once

#include <ChannelStrip/frame/entry_points.h>

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "../design/strip_split.h"
#include "instance.h"
#include "library.h"

namespace channelstrip::host {

class StripSet {
 public:
  // Starts as an Instance does. `maps` are the link maps of all coefficients that will be set,
  // these first ones included. Throws std::invalid_argument if no split into strips fits them all.
  StripSet(const Library& library, const StemFormat& format, const StripCoefficients& coefficients,
           std::span<const LinkMap> maps);

  // Sets new targets, as an Instance does.
  void set_coefficients(const StripCoefficients& coefficients);

  // Processes N input into N output buffers of `samples` samples, rounded up to whole blocks of 16.
  // With `keyed` there is one more input after the N, the key of every strip.
  void process(const float* const* inputs, float* const* outputs, int samples, bool keyed);

  // The readings of all strips as one, since the last reset. The views are into this object.
  const MeterReading& read_meters();
  void reset_meters();

 private:
  struct Strip {
    SplitStrip split;
    AlgEntry_16_Stem* entry_point;
    std::unique_ptr<Instance> instance;
    std::vector<const float*> inputs;
    std::vector<float*> outputs;
  };

  std::vector<Strip> strips_;
  std::vector<const SChannelStrip_Alg_Context*> contexts_;  // one per strip
  std::vector<float> input_peak_, output_peak_, channel_gain_;
  MeterReading reading_;
};

}  // namespace channelstrip::host
