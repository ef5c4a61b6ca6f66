// What becomes of an engine's records when its coefficients change.

#include <algorithm>
#include <array>
#include <span>

#include "../design/dynamics_coefficients.h"
#include "engine.h"
#include "link_change.h"

namespace channelstrip::host {

void Engine::set_coefficients(const StripCoefficients& coefficients) {
  const LinkMap map = links_of(coefficients.dynamics);
  if (map != links_) {
    std::array<Dyn_SState, kMostChannels> dynamics = {};
    std::array<EQ_SState, kMostChannels> eq = {};
    for (std::size_t c = 0; c < channels_; ++c) {
      dynamics[c] = state_.dynamics[place_[c]];
      eq[c] = state_.eq[place_[c]];
    }
    hand_over_gains(std::span(dynamics).first(channels_), links_, map);
    split(map);
    for (std::size_t c = 0; c < channels_; ++c) {
      state_.dynamics[place_[c]] = dynamics[c];
      state_.eq[place_[c]] = eq[c];
    }
    // Those of all parts are the same.
    state_.glides.fill(EQ_SDezipCoefs{state_.glides.front()});
  }
  write_coefficients(coefficients);
}

void Engine::rearrange(const StripCoefficients& coefficients) {
  const State before = state_;
  const EQ_SCoefs was = eq_coefficients_;
  set_coefficients(coefficients);
  for (std::size_t c = 0; c < channels_; ++c) {
    Dyn_SState& state = state_.dynamics[c];
    state.curMakeupGain = coefficients.dynamics.makeupGain;
    state.curCompRange = coefficients.dynamics.compRange;
    state.curExpRange = coefficients.dynamics.expRange;
  }

  const std::array<EQ_SState, kMostChannels> memory = state_.eq;
  const EQ_SDezipCoefs glide = before.glides.front();
  EQ_SDezipCoefs& next = state_.glides.front();
  std::array<bool, CHANNELSTRIP_EQ_BANDS> is_taken = {};
  for (int k = 0; k < CHANNELSTRIP_EQ_BANDS; ++k) {
    const float* wanted = eq_coefficients_.targetCoefs + 5 * k;
    const auto is_it = [&](int old) {
      const bool is_post = k >= eq_coefficients_.firstBand[1];
      return !is_taken[static_cast<std::size_t>(old)] && old < was.endBand[1] &&
             (old >= was.firstBand[1]) == is_post &&
             std::equal(wanted, wanted + 5, was.targetCoefs + 5 * old);
    };
    int old = 0;
    while (old < CHANNELSTRIP_EQ_BANDS && !is_it(old)) ++old;
    const bool found = old < CHANNELSTRIP_EQ_BANDS;
    if (found) is_taken[static_cast<std::size_t>(old)] = true;
    for (std::size_t c = 0; c < channels_; ++c) {
      state_.eq[c].z1[k] = found ? memory[c].z1[old] : 0;
      state_.eq[c].z2[k] = found ? memory[c].z2[old] : 0;
    }
    for (int i = 0; i < 5; ++i) {
      next.coefs[5 * k + i] = found ? glide.coefs[5 * old + i] : wanted[i];
      next.smoothedCoefs[5 * k + i] =
          found ? glide.smoothedCoefs[5 * old + i] : static_cast<double>(wanted[i]);
    }
  }
  state_.glides.fill(EQ_SDezipCoefs{next});
}

}  // namespace channelstrip::host
