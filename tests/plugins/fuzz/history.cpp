// Plays bytes as a history of what hosts do with plugins.

#include <tests/control/fuzz/fault.h>
#include <tests/fuzz/history.h>

#include "players.h"

namespace channelstrip::test {

void CallBuffers::prepare(Bytes& bytes, std::uint32_t channels) {
  inputs.clear();
  outputs.clear();
  const std::uint8_t how = bytes.byte();
  for (std::uint32_t c = 0; c < channels; ++c) {
    inputs.push_back(buffers_.at(c));
    outputs.push_back(buffers_.at(how % 4 == 0 ? c : StripBuffers::kFirstOutput + c));
    if (how % 8 < 4) fill(bytes, buffers_.all(c));
  }
  key = how % 16 < 8 ? buffers_.at(StripBuffers::kKey) : nullptr;
  if (how % 32 < 8) fill(bytes, buffers_.all(StripBuffers::kKey));
  buffers_.remember();
}

void CallBuffers::check(std::uint32_t frames) const {
  demand(buffers_.differ_only_in(outputs, frames), "something else was written");
  for (const float* output : outputs)
    demand(test::are_finite(output, frames), "an output isn't finite");
}

std::string first_fault(std::span<const uint8_t> input) {
  Bytes bytes(input);
  ClapPlayer clap;
  Lv2Player lv2;
  try {
    while (!bytes.empty()) bytes.byte() % 2 ? clap.step(bytes) : lv2.step(bytes);
  } catch (const Fault& fault) {
    return fault.what();
  }
  return "";
}

}  // namespace channelstrip::test
