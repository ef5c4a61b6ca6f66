// A small host for LV2 plugins: a binary, and instances whose ports are all connected.

#pragma once

#include <lv2/core/lv2.h>
#include <lv2/state/state.h>
#include <lv2/urid/urid.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "plugins/lv2/inline_display.h"
#include "plugins/lv2/ports.h"
#include "strips.h"

namespace channelstrip::plugin_test {

// What is in the bundle's binary, loaded while this lives, or in one that is there.
class Lv2Binary {
 public:
  explicit Lv2Binary(const char* path);
  explicit Lv2Binary(LV2_Descriptor_Function find) : find_(find) {}
  Lv2Binary(const Lv2Binary&) = delete;
  Lv2Binary& operator=(const Lv2Binary&) = delete;
  ~Lv2Binary();

  // Null beyond the last.
  const LV2_Descriptor* descriptor(std::uint32_t index) const { return find_(index); }
  // The bundle, with a slash at its end.
  const std::string& folder() const { return folder_; }

 private:
  void* handle_ = nullptr;
  LV2_Descriptor_Function find_;
  std::string folder_ = "/nowhere/channelstrip.lv2/";
};

// What a plugin has stored, by its key.
struct Lv2State {
  struct Property {
    std::string value;
    std::uint32_t type, flags;
  };
  std::map<std::uint32_t, Property> properties;
};

// The features that a host offers.
enum class Offers { kNothing, kMap, kMapAndDisplay };

class Lv2Instance {
 public:
  Lv2Instance(const Lv2Binary& binary, std::uint32_t format, double sample_rate,
              Offers offers = Offers::kMap);
  Lv2Instance(const Lv2Instance&) = delete;
  Lv2Instance& operator=(const Lv2Instance&) = delete;
  ~Lv2Instance();

  // Whether the plugin took the sample rate; nothing else may be called if not.
  bool is_there() const { return handle_ != nullptr; }
  LV2_Handle handle() const { return handle_; }
  const lv2::Ports& ports() const { return ports_; }

  // Has the controls' values in memory in the order of their ports, or apart from each other.
  void scatter_controls();

  // A control port's value, by the parameter's symbol or "enabled".
  float& control(const std::string& symbol);
  float meter(std::uint32_t meter) const {
    return controls_[stride_ * (ports_.first_meter() + meter)];
  }
  float latency() const { return controls_[stride_ * ports_.latency()]; }

  void activate() { descriptor_->activate(handle_); }
  // The next `frames` of a stream: all channels, and a key unless it is null.
  void run(const std::vector<const float*>& inputs, const float* key,
           const std::vector<float*>& outputs, std::uint32_t frames);
  // The same buffers again, as far as the host has to say.
  void run_again(std::uint32_t frames) const { descriptor_->run(handle_, frames); }
  // A whole stream, in calls of as many frames as `cut` says.
  template <class Cut>
  Planar play(const Planar& input, const std::vector<float>& key, Cut cut, bool in_place = false);

  LV2_State_Status save(Lv2State& state) const;
  LV2_State_Status restore(const Lv2State& state);
  static std::uint32_t urid(const char* uri);

  // What the plugin draws at most so large; null if it can't.
  const lv2::ImageSurface* render(std::uint32_t width, std::uint32_t height);
  int drawings_asked() const { return drawings_asked_; }

 private:
  const LV2_State_Interface& state_interface() const;

  const LV2_Descriptor* descriptor_;
  lv2::Ports ports_;
  LV2_Handle handle_;
  int drawings_asked_ = 0;
  lv2::InlineDisplay display_{
      this, [](void* self) { ++static_cast<Lv2Instance*>(self)->drawings_asked_; }};
  void connect_controls();

  std::size_t stride_ = 1;       // from one port's value to the next
  std::vector<float> controls_;  // by port; of audio ports unused
};

template <class Cut>
Planar Lv2Instance::play(const Planar& input, const std::vector<float>& key, Cut cut,
                         bool in_place) {
  const std::size_t frames = input[0].size();
  Planar output = in_place ? input : Planar(input.size(), std::vector<float>(frames));
  for (std::size_t at = 0; at < frames;) {
    const std::size_t length = std::min<std::size_t>(cut(), frames - at);
    std::vector<const float*> inputs;
    std::vector<float*> outputs;
    for (std::size_t c = 0; c < input.size(); ++c) {
      outputs.push_back(output[c].data() + at);
      inputs.push_back(in_place ? outputs.back() : input[c].data() + at);
    }
    run(inputs, key.empty() ? nullptr : key.data() + at, outputs,
        static_cast<std::uint32_t>(length));
    at += length;
  }
  return output;
}

}  // namespace channelstrip::plugin_test
