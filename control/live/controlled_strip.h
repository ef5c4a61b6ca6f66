// A strip with parameters: an audio thread processes, a control thread sets, another reads meters.

#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <span>

#include "../parameters/values.h"
#include "../strip/live_strip.h"
#include "mailbox.h"

namespace channelstrip::host {

class ControlledStrip {
 public:
  // Of one parameter, by its index.
  struct Event {
    std::size_t frame;  // of the call
    std::size_t parameter;
    double value;  // one that nearest_value() gives
  };

  // The buffers of one call, as LiveStrip::process() takes them.
  struct Call {
    const float* const* inputs;
    const float* key;
    float* const* outputs;
    std::size_t frames;
    std::span<const Event> events;  // in order of frames, none beyond the last frame
  };

  // The layout must outlive this object. Starts without a glide.
  ControlledStrip(const EntryPoints& entry_points, const ChannelLayout& layout, double sample_rate,
                  const Values& values);

  // The audio thread's. An event takes effect at the first block of 16 that begins at its frame or
  // after it.
  void process(const Call& call);
  // Of one format and as many frames, without events; in one call of the library where they allow.
  static void process_many(std::span<ControlledStrip* const> strips, std::span<const Call> calls);
  void reset();

  // The control thread's, at any time. What was set last holds, whoever set it.
  void set(std::size_t parameter, double value);
  void set(const Values& values);
  // As the audio thread had them at the end of its last call, with what was set since.
  const Values& values();

  // The meter thread's, at any time: what happened since its last reading, false if nothing did.
  bool read_meters(LiveMeters& meters);

  std::size_t channels() const { return channels_; }
  AlgEntry_16_Stem* entry_point() const { return strip_.entry_point(); }

 private:
  // Of some values, from one of the threads to the other.
  struct Changes {
    std::bitset<kParameterCount> which;
    bool links = false;
    Values values;
    std::uint64_t number = 0;  // of the control thread's last change that is in it or before it

    void apply_to(Values& target) const;
    static void append(Changes& older, const Changes& later);
  };

  void send(Changes& change);
  void take_changes();
  void take(const Event& event);
  void hand_over();
  void report();
  void hand_over_meters();

  std::size_t channels_;
  double sample_rate_;

  // The control thread's.
  Values controlled_;
  std::uint64_t number_ = 0;                              // of its last change
  std::array<std::uint64_t, kParameterCount> sent_ = {};  // the number of each one's last change

  // The audio thread's. What each call looks at, the end of a mailbox and the beginning of what
  // follows it, lies side by side: many strips in one call don't fit into the first cache.
  Mailbox<Changes> changed_;  // to the control thread
  Values values_;
  Mailbox<Changes> wanted_;  // from the control thread
  bool is_changed_ = false;  // values_ since the strip got them
  Changes heard_;            // since the last report, from events and the control thread
  Mailbox<LiveMeters> meters_;
  LiveStrip strip_;
};

}  // namespace channelstrip::host
