// One LV2 plugin, instantiated, its controls set and every port connected.

#pragma once

#include <lilv/lilv.h>
#include <lv2/atom/atom.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "lv2_features.h"

namespace channelstrip::bench {

// A deleter that calls a function of lilv's.
template <auto kFree>
struct FreeWith {
  void operator()(auto* object) const { kFree(object); }
};
using LilvWorldOwner = std::unique_ptr<LilvWorld, FreeWith<lilv_world_free>>;
using LilvNodeOwner = std::unique_ptr<LilvNode, FreeWith<lilv_node_free>>;

// Every plugin that is installed.
LilvWorldOwner load_lv2_world();

struct PluginSettings {
  std::string uri;
  std::map<std::string, float> controls;  // by port symbol; the others keep their defaults
};

class Lv2Plugin {
 public:
  // Throws std::runtime_error, one line, when the plugin isn't installed, doesn't have that
  // many channels, asks for more than Lv2Features offers or has no such control or range.
  Lv2Plugin(LilvWorld* world, const PluginSettings& settings, double sample_rate, int channels,
            int samples_per_call);

  const std::string& name() const { return name_; }

  void connect_input(int channel, const float* samples);
  const float* output(int channel) const { return outputs_[index(channel)].data(); }

  void run();

  // Samples, after a run.
  double latency() const { return latency_ == nullptr ? 0 : static_cast<double>(*latency_); }

 private:
  struct AtomPort {
    std::uint32_t port;
    bool is_input;
    std::vector<std::uint64_t> buffer;  // atoms are aligned to 8 bytes
  };

  struct End {
    void operator()(LilvInstance* instance) const;
  };

  static std::size_t index(int channel) { return static_cast<std::size_t>(channel); }
  void set_controls(LilvWorld* world, const LilvPlugin* plugin,
                    const std::map<std::string, float>& values);
  void find_ports(LilvWorld* world, const LilvPlugin* plugin);
  void connect_ports();

  std::string name_;
  std::uint32_t samples_per_call_;
  std::unique_ptr<Lv2Features> features_;
  // The first audio inputs carry the channels; any further one is a side chain.
  std::vector<std::uint32_t> input_ports_, output_ports_;
  std::vector<std::vector<float>> outputs_;
  std::vector<float> silence_;
  std::vector<float> controls_;  // by port index
  std::vector<AtomPort> atoms_;
  LV2_URID sequence_type_ = urid(LV2_ATOM__Sequence);
  LV2_URID chunk_type_ = urid(LV2_ATOM__Chunk);
  const float* latency_ = nullptr;
  std::unique_ptr<LilvInstance, End> instance_;  // ends before the buffers that it is connected to
};

}  // namespace channelstrip::bench
