// The strips of one workload with a programme to process.

#pragma once

#include <ChannelStrip/frame/entry_points.h>
#include <control/design/strip_coefficients.h>
#include <control/library/stem_format.h>

#include <span>
#include <vector>

#include "scatter.h"
#include "workloads.h"

namespace channelstrip::bench {

class Console {
 public:
  // Equal arguments make equal consoles; each `layout` places the pieces elsewhere in memory.
  Console(const Workload& workload, unsigned layout);

  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  // How many calls process the whole programme, and how many frames of each strip that is.
  int calls() const { return calls_; }
  double frames() const { return static_cast<double>(calls_ * workload_.samples); }

  // The contexts of all strips, and that of the first.
  const SChannelStrip_Alg_Context* const* contexts() const { return contexts_.data(); }
  const SChannelStrip_Alg_Context* context() const { return contexts_.front(); }

  // Restores the programme, which processing in place replaces.
  void rewind();

  // Processes the samples of call `index`.
  void call(AlgEntry_16_Stem* entry, int index);

  // Processes the whole programme.
  void play(AlgEntry_16_Stem* entry) {
    for (int index = 0; index < calls_; ++index) call(entry, index);
  }

  // Compares all records and buffers, bit for bit.
  bool equals(const Console& other) const { return memory_.equals(other.memory_); }

 private:
  struct Strip {
    std::vector<std::span<float>> programme;  // per channel
    std::vector<const float*> inputs;
    std::vector<float*> outputs;
    float* meters;
    EQ_SCoefs* eq;
    Dyn_SCoefsBlock* dynamics;
    SChannelStrip_Alg_Context context;
  };

  void add_records(Strip& strip);

  const Workload workload_;
  const host::StemFormat& format_;
  const int calls_;
  host::StripCoefficients targets_[2];  // of even and odd calls
  Scatter memory_;
  std::vector<Strip> strips_;
  std::vector<const SChannelStrip_Alg_Context*> contexts_;
};

}  // namespace channelstrip::bench
