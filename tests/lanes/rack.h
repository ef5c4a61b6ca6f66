// Instances of one stem format as an entry point gets them, whose pointers tests can change.

#pragma once

#include <ChannelStrip/dynamics/dyn_records.h>
#include <ChannelStrip/eq/eq_records.h>
#include <ChannelStrip/frame/context.h>
#include <control/library/stem_format.h>
#include <tests/model/scene.h>
#include <tests/model/section.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace channelstrip::test {

// Every instance has settings, state and audio of its own, but all have the same count and band
// ranges, as instances that share a register must have. Filters are of any kind.
//
// All pieces of memory of one kind lie in one array without gaps: each ends where the next one
// begins, so a pointer moved by one element makes two of them overlap.
class Rack {
 public:
  static constexpr std::size_t kKeys = 2;  // inputs that only the key may select

  Rack(const host::StemFormat& format, std::size_t instances, int32_t count, unsigned seed);
  Rack(const Rack&) = delete;
  Rack& operator=(const Rack&) = delete;

  // Processes all instances: in one call of the library, or one after the other by the model.
  void process();
  void process_by_model(model::SumOrder order);

  // Sets the instance's coefficients in use to their targets.
  void rest(std::size_t instance);

  std::size_t size() const { return contexts.size(); }
  std::size_t inputs_of_each() const { return channels + kKeys; }
  float* input(std::size_t instance, std::size_t channel) const;
  float* output(std::size_t instance, std::size_t channel) const;
  void in_place(std::size_t instance, std::size_t channel);
  void detect_from(std::size_t instance, const float* key);

  // A dynamics readout of the instance.
  float& readout(std::size_t instance, std::size_t index);
  std::size_t samples() const { return samples_; }

  const host::StemFormat& format;
  const std::size_t channels;

  std::vector<float> audio, meters;
  std::vector<Dyn_SCoefsBlock> dyn;
  std::vector<EQ_SCoefs> eq;
  std::vector<EQ_SDezipCoefs> dezip;
  std::vector<Dyn_SState> dyn_state;  // of every instance, N channels each
  std::vector<EQ_SState> eq_state;    // likewise
  std::vector<int32_t> counts, keys;
  std::vector<std::vector<const float*>> inputs;
  std::vector<std::vector<float*>> outputs;
  std::vector<float*> meter_pointers;
  std::vector<SChannelStrip_Alg_Context> contexts;

 private:
  void add(const Instance& values, std::size_t index);
  void wire(std::size_t index);

  std::size_t samples_;  // of each buffer
};

// Names the first word in which two racks differ; "" if there is none. All NaNs count as equal.
std::string difference(const Rack& a, const Rack& b);

// A number of instances that fills the widest register twice and leaves some over.
std::size_t enough_instances(const host::StemFormat& format);

}  // namespace channelstrip::test
