// Plays bytes as a history of calls of the C interface.

#include <tests/fuzz/history.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <memory>

#include "caller.h"

namespace channelstrip::test {

void look_up(Bytes& bytes) {
  const AnyValue any = any_value(bytes);
  const std::string word = any_word(bytes);
  char text[40];
  std::ranges::fill(text, '#');
  const std::size_t size = bytes.byte() % 33;
  std::size_t length = 0;
  const channelstrip_status status =
      channelstrip_value_to_text(any.id, any.value, text, size, &length);
  const std::size_t written = status == CHANNELSTRIP_OK ? length + 1 : 0;
  demand(written <= size, "a text is longer than its room");
  demand(std::count(text + written, std::end(text), '#') ==
             static_cast<std::ptrdiff_t>(std::size(text) - written),
         "a text was written beyond its end");
  channelstrip_parameter p{};
  double value = 0, position = 0;
  if (status == CHANNELSTRIP_OK) {
    demand(channelstrip_text_to_value(any.id, text, &value) == CHANNELSTRIP_OK,
           "a value's text isn't understood");
  }
  if (channelstrip_text_to_value(any.id, word.c_str(), &value) == CHANNELSTRIP_OK) {
    demand(std::isfinite(value), "a text means what isn't finite");
  }
  if (channelstrip_value_to_position(any.id, any.value, &position) == CHANNELSTRIP_OK) {
    demand(position >= 0 && position <= 1, "a position isn't within 0 and 1");
  }
  if (channelstrip_position_to_value(any.id, any.value, &value) == CHANNELSTRIP_OK) {
    demand(std::isfinite(value), "a position means what isn't finite");
  }
  std::uint32_t found = 0;
  channelstrip_parameter_find(word.c_str(), &found);
  channelstrip_parameter_info(bytes.byte(), &p, bytes.byte() % (sizeof p + 1));
  channelstrip_format_find(word.c_str(), &found);
  channelstrip_format format{};
  channelstrip_format_info(any_format(bytes), &format, bytes.byte() % (sizeof format + 1));
  channelstrip_format_role(any_format(bytes), bytes.byte() % 3, bytes.byte());
  demand(channelstrip_status_text(bytes.byte()) != nullptr, "a status means nothing");
}

channelstrip_settings* Caller::some_settings(Bytes& bytes) {
  const std::uint8_t which = bytes.byte();
  if (which >= 248) return nullptr;
  Settings& settings = settings_[which % kSlots];
  if (!settings) settings.reset(channelstrip_settings_new());
  return settings.get();
}

// One without a strip gets a plain one.
Caller::Slot& Caller::some_slot(Bytes& bytes) {
  const std::uint8_t which = bytes.byte();
  Slot& slot = slots_[which % kSlots];
  if (!slot.strip && which < 248) {
    const std::uint32_t format = which / 4 % channelstrip_format_count();
    channelstrip_format info{};
    channelstrip_format_info(format, &info, sizeof info);
    slot.channels = info.channels;
    slot.owned = strip_of(format, nullptr);
    slot.strip = slot.owned.get();
  }
  return slot;
}

void Caller::step(Bytes& bytes) {
  constexpr void (Caller::*kCalls[])(Bytes&) = {&Caller::change_settings,
                                                &Caller::change_settings,
                                                &Caller::set_links,
                                                &Caller::read_text,
                                                &Caller::write_and_read_again,
                                                &Caller::copy_settings,
                                                &Caller::look_at_settings,
                                                &Caller::look_at_pictures,
                                                &Caller::make_strip,
                                                &Caller::process,
                                                &Caller::process,
                                                &Caller::process,
                                                &Caller::process_many,
                                                &Caller::set_strip,
                                                &Caller::set_strip,
                                                &Caller::reset_strip,
                                                &Caller::read_meters};
  const std::size_t which = bytes.byte() % (std::size(kCalls) + 1);
  if (which == std::size(kCalls)) return look_up(bytes);
  (this->*kCalls[which])(bytes);
}

std::string first_fault(std::span<const uint8_t> input) {
  Bytes bytes(input);
  Caller caller;
  try {
    while (!bytes.empty()) caller.step(bytes);
  } catch (const Fault& fault) {
    return fault.what();
  }
  return "";
}

}  // namespace channelstrip::test
