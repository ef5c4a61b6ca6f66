#include "link_change.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <tuple>

namespace channelstrip::host {
namespace {

// The lowest channel that is in the same group as `channel`.
std::size_t leader_of(std::size_t channel, const LinkMap& map) {
  return static_cast<std::size_t>(std::ranges::find(map, map[channel]) - map.begin());
}

float gain_of(const Dyn_SState& state) {
  return state.compGain + state.expGain;
}

}  // namespace

void hand_over_gains(std::span<Dyn_SState> states, const LinkMap& from, const LinkMap& to) {
  if (from == to) return;
  std::array<Dyn_SState, std::tuple_size_v<LinkMap>> before{};
  std::ranges::copy(states, before.begin());
  for (std::size_t leader = 0; leader < states.size(); ++leader) {
    if (leader_of(leader, to) != leader) continue;
    const Dyn_SState* least = &before[leader_of(leader, from)];
    for (std::size_t channel = leader; channel < states.size(); ++channel) {
      const Dyn_SState& other = before[leader_of(channel, from)];
      if (to[channel] == to[leader] && gain_of(other) < gain_of(*least)) least = &other;
    }
    Dyn_SState taken = *least;
    taken.keyZ1 = before[leader].keyZ1;
    taken.keyZ2 = before[leader].keyZ2;
    taken.dezipRate = before[leader].dezipRate;
    states[leader] = taken;
  }
}

}  // namespace channelstrip::host
