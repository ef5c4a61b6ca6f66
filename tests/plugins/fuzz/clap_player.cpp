#include <tests/control/fuzz/fault.h>

#include <cmath>
#include <cstring>
#include <iterator>

#include "players.h"
#include "plugins/clap/parameters.h"

namespace channelstrip::test {

using namespace plugin_test;
namespace {

const ClapBinary& clap_binary() {
  static const ClapBinary linked(clap_entry);
  return linked;
}

void choose(Bytes& bytes, std::uint32_t frames, ClapEvents& events) {
  const std::uint8_t count = bytes.byte();
  const std::size_t repeats = count == 255 ? 40 : 1;  // more than a call of the control side takes
  for (std::size_t i = 0; i < count % 32u; ++i) {
    const AnyValue any = any_value(bytes);
    const std::uint8_t how = bytes.byte();
    const std::uint32_t frame = how == 0 ? bytes.word() : how * frames / 256;
    for (std::size_t r = 0; r < repeats; ++r) events.set(frame, any.id, any.value);
    if (how == 1) events.all().back().header.space_id = 7;
    if (how == 2) events.all().back().header.type = bytes.byte();
    if (how == 3) events.all().back().param_id = clap::kFirstMeterId + bytes.byte() % 5;
  }
}

}  // namespace

void ClapPlayer::change_format(Bytes& bytes) {
  const std::uint32_t format = any_format(bytes);
  const bool may = !is_active_ && format < channelstrip_format_count();
  demand(instance_->select(format) == may, "a format was selected against the rules");
  if (may) format_ = format;
}

void ClapPlayer::switch_on_or_off(Bytes& bytes) {
  if (is_active_) {
    instance_->deactivate();
    is_active_ = false;
    return;
  }
  constexpr double kRates[] = {1000, 8000, 44100, 48000, 192000, 768000, 1000000};
  const std::uint8_t how = bytes.byte();
  const double rate = how < 32 ? any_number(bytes) : kRates[how % std::size(kRates)];
  is_active_ = instance_->activate(rate);
  demand(is_active_ == (rate >= 1000 && rate <= 1000000), "activated against the rules");
}

void ClapPlayer::process(Bytes& bytes) {
  const std::uint8_t how = bytes.byte();
  const std::uint32_t frames = how % 4 == 0 ? how / 4 % 17 : how;
  const std::uint32_t channels = how == 255 ? 1 + bytes.byte() % 8 : channels_of(format_);
  buffers_.prepare(bytes, channels);
  ClapEvents events;
  choose(bytes, frames, events);
  const auto status =
      instance_->process(buffers_.inputs, buffers_.key, buffers_.outputs, frames, events.list());
  const bool may = is_active_ && channels == channels_of(format_);
  demand((status != CLAP_PROCESS_ERROR) == may, "a call's status is wrong");
  if (may) {
    buffers_.check(frames);
  } else {
    buffers_.outputs.clear();
    buffers_.check(0);
  }
}

void ClapPlayer::flush(Bytes& bytes) {
  ClapEvents events;
  choose(bytes, 0, events);
  instance_->flush(events);
}

// A state, a changed one, or any text.
void ClapPlayer::load(Bytes& bytes) {
  const auto before = instance_->save();
  demand(before.has_value(), "an instance isn't saved");
  const std::uint8_t how = bytes.byte();
  std::string state = how % 2 ? *before : any_toml(bytes);
  if (how % 4 == 3) state.insert(bytes.word() % state.size(), any_word(bytes));
  const bool was_loaded = instance_->load(state, 1 + bytes.byte());
  const auto after = instance_->save(1 + bytes.byte());
  demand(after.has_value(), "an instance isn't saved in parts");
  demand(was_loaded || after == before, "a state that wasn't loaded has changed something");
  demand(how % 4 != 1 || (was_loaded && after == before), "a state isn't what it was");
  demand(instance_->load(*after) && instance_->save() == after, "a state isn't stable");
}

void ClapPlayer::look(Bytes& bytes) {
  const AnyValue any = any_value(bytes);
  double value = 0;
  if (instance_->params().get_value(instance_->plugin(), any.id, &value)) {
    demand(std::isfinite(value), "a value isn't finite");
  }
  char text[40];
  std::memset(text, '#', sizeof text);
  const std::uint32_t size = bytes.byte() % 33;
  if (instance_->params().value_to_text(instance_->plugin(), any.id, any.value, text, size)) {
    demand(std::memchr(text, 0, size) != nullptr, "a text doesn't end");
  }
  demand(text[size] == '#', "a text was written beyond its end");
  const std::string word = any_word(bytes);
  if (instance_->params().text_to_value(instance_->plugin(), any.id, word.c_str(), &value)) {
    demand(std::isfinite(value), "a text means what isn't finite");
  }
}

void ClapPlayer::step(Bytes& bytes) {
  if (!instance_) instance_ = std::make_unique<ClapInstance>(clap_binary());
  switch (bytes.byte() % 10) {
    case 0:
      return change_format(bytes);
    case 1:
      return switch_on_or_off(bytes);
    case 2:
      return flush(bytes);
    case 3:
      return load(bytes);
    case 4:
      return look(bytes);
    case 5:
      if (is_active_) instance_->plugin()->reset(instance_->plugin());
      return;
    default:
      return process(bytes);
  }
}

}  // namespace channelstrip::test
