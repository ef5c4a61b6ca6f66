// A program that uses the C interface, in any order and with anything.

#pragma once

#include <channelstrip/channelstrip.h>
#include <tests/control/realtime/strips.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "buffers.h"
#include "choices.h"
#include "fault.h"

namespace channelstrip::test {

class Caller {
 public:
  // Does what the next bytes say. Throws a Fault if it isn't as the header says.
  void step(Bytes& bytes);

 private:
  static constexpr std::size_t kSlots = 3;

  struct Slot {
    LiveStripPointer owned;
    channelstrip_strip* strip = nullptr;  // owned, in `memory`, or none
    std::vector<std::uint64_t> memory;
    std::uint32_t channels = 0;
    StripBuffers buffers;
    std::array<const float*, StripBuffers::kChannels> in = {};
    std::array<float*, StripBuffers::kChannels> out = {};
  };

  // One slot's; now and then null.
  channelstrip_settings* some_settings(Bytes& bytes);
  Slot& some_slot(Bytes& bytes);

  void change_settings(Bytes& bytes);
  void set_links(Bytes& bytes);
  void read_text(Bytes& bytes);
  void write_and_read_again(Bytes& bytes);
  void copy_settings(Bytes& bytes);
  void look_at_settings(Bytes& bytes);
  void look_at_pictures(Bytes& bytes);

  void make_strip(Bytes& bytes);
  void process(Bytes& bytes);
  void process_many(Bytes& bytes);
  void set_strip(Bytes& bytes);
  void reset_strip(Bytes& bytes);
  void read_meters(Bytes& bytes);

  void check(Slot& slot, const channelstrip_block& block, channelstrip_status status);
  channelstrip_block prepare(Bytes& bytes, Slot& slot, std::uint32_t frames);

  std::array<Settings, kSlots> settings_;
  std::array<Slot, kSlots> slots_;
  std::vector<channelstrip_event> events_;
};

// As channelstrip_settings_write() says; "" of null.
std::string text_of(const channelstrip_settings* settings);
// The same of a strip's.
std::string text_of(channelstrip_strip* strip);

// Calls of functions that only look something up.
void look_up(Bytes& bytes);

}  // namespace channelstrip::test
