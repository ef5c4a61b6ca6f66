#include <lv2/core/lv2.h>
#include <tests/control/fuzz/fault.h>

#include <cmath>

#include "players.h"

namespace channelstrip::test {

using namespace plugin_test;
namespace {

const Lv2Binary& lv2_binary() {
  static const Lv2Binary linked(lv2_descriptor);
  return linked;
}

}  // namespace

void Lv2Player::make(Bytes& bytes) {
  const std::uint8_t how = bytes.byte();
  const double rate = how < 32 ? any_number(bytes) : 48000;
  auto made = std::make_unique<Lv2Instance>(lv2_binary(), how % channelstrip_format_count(), rate,
                                            how % 2 ? Offers::kMap : Offers::kNothing);
  demand(made->is_there() == (rate >= 1000 && rate <= 1000000), "made against the rules");
  if (!made->is_there()) return;
  instance_ = std::move(made);
  if (how % 4 < 2) instance_->scatter_controls();
}

void Lv2Player::set(Bytes& bytes) {
  for (std::size_t i = bytes.byte() % 16; i > 0; --i) {
    const AnyValue any = any_value(bytes);
    const auto ports = lv2::port_parameters();
    const auto& port = ports[any.id % ports.size()];
    const std::uint8_t how = bytes.byte();
    const double value =
        how < 128 ? any.value : port.minimum + (port.maximum - port.minimum) * (how - 128) / 127;
    instance_->control(how == 0 ? "enabled" : port.symbol) = static_cast<float>(value);
  }
}

void Lv2Player::run(Bytes& bytes) {
  const std::uint8_t how = bytes.byte();
  const std::uint32_t frames = how % 4 == 0 ? how / 4 % 17 : how;
  buffers_.prepare(bytes, instance_->ports().channels());
  instance_->run(buffers_.inputs, buffers_.key, buffers_.outputs, frames);
  buffers_.check(frames);
  demand(instance_->latency() == 0, "there is a latency");
  for (std::uint32_t m = 0; m < instance_->ports().meter_count(); ++m) {
    const float level = instance_->meter(m);
    demand(level >= -120 && level <= 60, "a meter is beyond its limits");
  }
}

void Lv2Player::restore(Bytes& bytes) {
  Lv2State state, before, after;
  if (instance_->save(before) != LV2_STATE_SUCCESS) return;
  const std::string text = any_toml(bytes);
  const std::uint8_t how = bytes.byte();
  state.properties[Lv2Instance::urid(lv2::kLinksUri)] = {
      how % 2 ? text : text + '\0',
      Lv2Instance::urid(how < 8 ? "urn:other" : "http://lv2plug.in/ns/ext/atom#String"), 3};
  const bool was_restored = instance_->restore(state) == LV2_STATE_SUCCESS;
  demand(instance_->save(after) == LV2_STATE_SUCCESS, "an instance isn't saved");
  const auto text_of = [](const Lv2State& s) { return s.properties.begin()->second.value; };
  demand(was_restored || text_of(before) == text_of(after),
         "a refused state has changed something");
}

void Lv2Player::step(Bytes& bytes) {
  const std::uint8_t which = bytes.byte() % 8;
  if (!instance_ || which == 0) make(bytes);
  if (!instance_) return;
  switch (which) {
    case 1:
      return instance_->activate();
    case 2:
      return restore(bytes);
    case 3:
    case 4:
      return set(bytes);
    default:
      return run(bytes);
  }
}

}  // namespace channelstrip::test
