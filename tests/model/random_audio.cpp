#include "random_scene.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>
#include <vector>

namespace channelstrip::test {
namespace {

constexpr std::size_t kBuffer = kMostSamples + 8;  // room to shift, and an end that stays untouched

enum class Layout {
  kSeparate,
  kInPlace,      // each output is its own input
  kCrossed,      // each output is another channel's input
  kShared,       // all outputs of an instance are one buffer
  kChained,      // an instance's inputs are the outputs of the one before
  kOverlapping,  // all buffers overlap at random distances
};

Layout random_layout(Random& random, Kind kind) {
  if (kind == Kind::kOrderFree && random.chance(0.4F)) {
    return random.pick({Layout::kCrossed, Layout::kShared, Layout::kChained, Layout::kOverlapping});
  }
  return random.pick({Layout::kSeparate, Layout::kInPlace});
}

// Fills with zeros of either sign, a constant whose level is exact in dB, noise or a sine.
void fill_run(Random& random, std::span<float> run, Kind kind) {
  const bool loud = kind != Kind::kOrderFree || random.chance(0.5F);
  const float level = loud ? random.real(0.05F, 4.0F) : std::exp2(random.real(-20.0F, 2.0F));
  const float step = random.real(0.003F, 3.0F);
  const float least = kind == Kind::kOrderFree ? 1e-40F : 0.0F;  // a denormal
  const float constant = random.pick({-0.0F, 0.0F, least, 0.5F, -1.0F, 2.0F});
  switch (random.integer(0, 2)) {
    case 0:
      std::fill(run.begin(), run.end(), constant);
      break;
    case 1:
      for (float& sample : run) sample = level * random.real(-1.0F, 1.0F);
      break;
    default:
      for (std::size_t i = 0; i < run.size(); ++i) {
        run[i] = level * std::sin(step * static_cast<float>(i));
      }
  }
}

}  // namespace

void place_buffers(Random& random, Scene& scene, int channels, Kind kind) {
  const Layout layout = random_layout(random, kind);
  // The greatest distance between the starts of overlapping buffers.
  const int span = random.pick({6, 40, 150});
  std::size_t next = 0;
  const auto place = [&] {
    const auto shift = static_cast<std::size_t>(random.integer(0, 3));
    next += kBuffer;
    return next - kBuffer + shift;
  };
  const std::vector<std::size_t>* previous = nullptr;
  for (Instance& it : scene.instances) {
    for (int c = 0; c < channels + kKeys; ++c) it.inputs_at.push_back(place());
    for (int c = 0; c < channels; ++c) it.outputs_at.push_back(place());
    auto& in = it.inputs_at;
    auto& out = it.outputs_at;
    switch (layout) {
      case Layout::kSeparate:
        break;
      case Layout::kInPlace:
        std::copy_n(in.begin(), channels, out.begin());
        break;
      case Layout::kCrossed:
        std::reverse_copy(in.begin(), in.begin() + channels, out.begin());
        break;
      case Layout::kShared:
        std::fill(out.begin(), out.end(), out.front());
        break;
      case Layout::kChained:
        if (previous != nullptr) std::copy(previous->begin(), previous->end(), in.begin());
        break;
      case Layout::kOverlapping:
        for (auto& at : in) at = static_cast<std::size_t>(random.integer(0, span));
        for (auto& at : out) at = static_cast<std::size_t>(random.integer(0, span));
        break;
    }
    previous = &out;
  }
  scene.arena.resize(next);
}

void fill_arena(Random& random, Scene& scene, Kind kind) {
  const std::span<float> arena(scene.arena);
  for (std::size_t at = 0; at < arena.size();) {
    const auto length = static_cast<std::size_t>(random.integer(1, 60));
    const auto run = arena.subspan(at, std::min(length, arena.size() - at));
    fill_run(random, run, kind);
    at += run.size();
  }
  // Rarely, numbers that no host should send.
  if (kind == Kind::kOrderFree && !arena.empty() && random.chance(0.05F)) {
    for (int i = 0; i < 5; ++i) {
      const auto at =
          static_cast<std::size_t>(random.integer(0, static_cast<int>(arena.size()) - 1));
      arena[at] = random.pick(
          {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()});
    }
  }
}

}  // namespace channelstrip::test
