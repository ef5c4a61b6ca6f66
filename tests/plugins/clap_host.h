// A small host for CLAP plugins, which checks on which threads it is called back.

#pragma once

#include <clap/entry.h>
#include <clap/events.h>
#include <clap/ext/audio-ports.h>
#include <clap/ext/params.h>
#include <clap/ext/state.h>
#include <clap/ext/timer-support.h>
#include <clap/plugin-factory.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "strips.h"

namespace channelstrip::plugin_test {

// A binary, loaded and initialised while this lives, or the entry of one that is there.
class ClapBinary {
 public:
  explicit ClapBinary(const char* path);
  explicit ClapBinary(const clap_plugin_entry_t& entry);
  ClapBinary(const ClapBinary&) = delete;
  ClapBinary& operator=(const ClapBinary&) = delete;
  ~ClapBinary();

  const clap_plugin_entry_t& entry() const { return *entry_; }
  const clap_plugin_factory_t& factory() const;

 private:
  void* handle_ = nullptr;
  const clap_plugin_entry_t* entry_;
};

// Parameter changes of one call, in any order and with any content.
class ClapEvents {
 public:
  void set(std::uint32_t frame, clap_id id, double value, void* cookie = nullptr);
  void add(const clap_event_param_value_t& event) { events_.push_back(event); }
  std::vector<clap_event_param_value_t>& all() { return events_; }
  const clap_input_events_t* list() const { return &list_; }

  ClapEvents() = default;
  ClapEvents(const ClapEvents&) = delete;
  ClapEvents& operator=(const ClapEvents&) = delete;

 private:
  std::vector<clap_event_param_value_t> events_;
  clap_input_events_t list_{
      .ctx = this,
      .size =
          [](const clap_input_events_t* list) {
            return static_cast<std::uint32_t>(static_cast<ClapEvents*>(list->ctx)->events_.size());
          },
      .get = [](const clap_input_events_t* list,
                std::uint32_t index) -> const clap_event_header_t* {
        return &static_cast<ClapEvents*>(list->ctx)->events_.at(index).header;
      }};
};

// What a host passes for one call. A null channel is passed on as such; all must outlive it.
class ClapCall {
 public:
  ClapCall(const std::vector<const float*>& inputs, const float* key,
           const std::vector<float*>& outputs, std::uint32_t frames,
           const clap_input_events_t* events, const clap_output_events_t* shown);
  ClapCall(const ClapCall&) = delete;
  ClapCall& operator=(const ClapCall&) = delete;

  const clap_process_t& get() const { return call_; }

 private:
  float* key_;
  clap_audio_buffer_t inputs_[2], output_;
  clap_process_t call_;
};

class ClapInstance {
 public:
  explicit ClapInstance(const ClapBinary& binary);
  ClapInstance(const ClapInstance&) = delete;
  ClapInstance& operator=(const ClapInstance&) = delete;
  ~ClapInstance();

  const clap_plugin_t* plugin() const { return plugin_; }
  template <class Extension>
  const Extension& extension(const char* id) const {
    const auto* found = static_cast<const Extension*>(plugin_->get_extension(plugin_, id));
    if (!found) throw std::runtime_error(std::string("no ") + id);
    return *found;
  }

  bool select(std::uint32_t format);
  bool activate(double rate = kRate);  // and starts processing
  void deactivate();
  void restart() {
    deactivate();
    activate();
  }

  const clap_plugin_params_t& params() const;
  double value(const std::string& symbol) const;
  // Before processing or beside it, as the rules for flush() allow.
  void set(const std::string& symbol, double value);
  void set_busy();
  void flush(const ClapEvents& events) const;
  // As a host does that was asked to; what comes out is added to `shown` and `gestures`.
  void flush();
  // What a timer of the plugin's calls, if it has one.
  void tick() const;
  bool has_timer() const { return has_timer_; }

  // In parts of `chunk` bytes at most; empty if the plugin fails.
  std::optional<std::string> save(std::size_t chunk = 1 << 20) const;
  bool load(const std::string& state, std::size_t chunk = 1 << 20) const;

  clap_process_status process(const ClapCall& call) const {
    return plugin_->process(plugin_, &call.get());
  }
  clap_process_status process(const std::vector<const float*>& inputs, const float* key,
                              const std::vector<float*>& outputs, std::uint32_t frames,
                              const clap_input_events_t* events = nullptr);
  // A whole stream, in calls of as many frames as `cut` says. Events' frames are the stream's.
  template <class Cut>
  Planar play(const Planar& input, const std::vector<float>& key, Cut cut, bool in_place = false,
              const std::vector<channelstrip_event>& changes = {});

  // What has come out: events of the last call, and how often values were to be read again.
  std::vector<clap_event_param_value_t> shown;
  int rescans = 0, flushes_asked = 0;
  std::vector<clap_event_param_gesture_t> gestures;  // since the instance was made
  bool was_called_wrongly = false;                   // a callback of the main thread from another

 private:
  const void* host_extension(std::string_view id) const;
  bool push(const clap_event_header_t* event);

  clap_host_t host_;
  const clap_plugin_t* plugin_;
  std::thread::id main_thread_ = std::this_thread::get_id();
  bool is_active_ = false, has_timer_ = false;
};

template <class Cut>
Planar ClapInstance::play(const Planar& input, const std::vector<float>& key, Cut cut,
                          bool in_place, const std::vector<channelstrip_event>& changes) {
  const std::size_t frames = input[0].size();
  Planar output = in_place ? input : Planar(input.size(), std::vector<float>(frames));
  auto change = changes.begin();
  for (std::size_t at = 0; at < frames;) {
    const std::size_t length = std::min<std::size_t>(cut(), frames - at);
    std::vector<const float*> inputs;
    std::vector<float*> outputs;
    for (std::size_t c = 0; c < input.size(); ++c) {
      outputs.push_back(output[c].data() + at);
      inputs.push_back(in_place ? outputs.back() : input[c].data() + at);
    }
    ClapEvents events;
    for (; change != changes.end() && change->frame < at + length; ++change) {
      events.set(static_cast<std::uint32_t>(change->frame - at), change->id, change->value);
    }
    const auto status = process(inputs, key.empty() ? nullptr : key.data() + at, outputs,
                                static_cast<std::uint32_t>(length), events.list());
    if (status == CLAP_PROCESS_ERROR) throw std::runtime_error("process failed");
    at += length;
  }
  return output;
}

}  // namespace channelstrip::plugin_test
