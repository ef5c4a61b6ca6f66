// The equaliser's coefficients in lanes, for the length of a call: one per coefficient and channel,
// or one per coefficient where the channels of a single strip share them. They glide in place.

#pragma once

#include "../frame/context.h"
#include "../lanes/layout.h"
#include "../lanes/transpose.h"
#include "eq_moves.h"
#include "eq_pairs.h"

namespace channelstrip {

// Keeps the coefficients of the last History quads, as the pipeline runs the second pass of a quad
// up to History quads after its first.
template <typename Layout, int History>
class CoefLanes {
 public:
  using V = typename Layout::Channel;

  // Strips whose coefficients move may not stand in sixteen lanes: that would take 10 KB of stack.
  static constexpr bool kMayMove = kWidth<V> < 16;

  CHANNELSTRIP_INLINE explicit CoefLanes(const SChannelStrip_Alg_Context* const* strips) {
    if constexpr (kMayMove) {
      GlideChange<Lanes<4>> change;
      for (int s = 0; s < Layout::kStrips; ++s) add_next_step(change, *strips[s]);
      moves_ = moved_ = change.any();
      if (moves_) load_glide(strips);
    }
    if (!moves_) load_coefs(targets_, [&](int lane) { return dezip_of(strips, lane)->coefs; });
  }

  CHANNELSTRIP_INLINE bool move() const { return moves_; }

  // Glides by the step that precedes quad q.
  CHANNELSTRIP_INLINE void glide_before(int32_t q) {
    if (!kMayMove || !moves_) return;
    if (q % kWatched != kWatched - 1) {
      step<false>(q);
    } else if (!step<true>(q)) {
      last_step_ = q + kRows - 1;
    }
    if (q == last_step_) come_to_rest(q);
  }

  // Those of quad q, band by band.
  CHANNELSTRIP_INLINE const float* of_quad(int32_t q) const {
    return moves_ ? coefs_[static_cast<uint32_t>(q) % kRows] : targets_;
  }
  CHANNELSTRIP_INLINE static void load_band(V (&section)[5], const float* coefs, int32_t band) {
    for (int i = 0; i < 5; ++i) {
      const float* const coef = coefs + (5 * band + i) * kCoefLanes;
      section[i] = kCoefLanes == 1 ? broadcast<V>(*coef) : load<V>(coef);
    }
  }

  // The rows' memory, which nobody else uses while nothing moves: so many floats.
  static constexpr int kRoomAtRest = kInPairs<Layout> ? History * CHANNELSTRIP_EQ_COEFS : 0;
  CHANNELSTRIP_INLINE float* room_at_rest() { return coefs_[0]; }

  CHANNELSTRIP_INLINE void store(const SChannelStrip_Alg_Context* const* strips) const {
    if (kMayMove && moved_) store_glide(strips);
  }

 private:
  static constexpr int kBandCoefs = CHANNELSTRIP_EQ_COEFS;
  static constexpr int kCoefLanes = Layout::kStrips == 1 ? 1 : kWidth<V>;
  static constexpr int kCoefs = kBandCoefs * kCoefLanes;
  static constexpr int kRows = 1 + (kMayMove ? History - 1 : 0);
  static constexpr int kMoving = kMayMove ? kCoefs : 1;
  // Coefficients that glide side by side, and the rates of one coefficient of all lanes or, where
  // coefficients are shared, of one part.
  using Part = Lanes<(kCoefLanes == 4 ? 4 : kDoubles)>;
  static constexpr int kRates = kCoefLanes == 1 ? kWidth<Part> : kCoefLanes;

  // Every so many quads, a step finds out whether the glide has come to rest.
  static constexpr int kWatched = 32;

  // Returns whether the step changed anything, if that is watched.
  template <bool Watched>
  CHANNELSTRIP_INLINE bool step(int32_t q) {
    const float* const from = coefs_[static_cast<uint32_t>(q + kRows - 1) % kRows];
    float* const to = coefs_[static_cast<uint32_t>(q) % kRows];
    GlideChange<Part> change;
    for (int first = 0; first < kCoefs; first += kRates) {
      for (int lane = 0; lane < kRates; lane += kWidth<Part>) {
        const int i = first + lane;
        const auto coef = load<Part>(from + i);
        const auto smoothed = load<DoublesOf<Part>>(smoothed_ + i);
        Part new_coef = coef;
        DoublesOf<Part> new_smoothed = smoothed;
        glide(new_coef, new_smoothed, load<Part>(targets_ + i), load<Part>(rates_ + lane));
        channelstrip::store(to + i, new_coef);
        channelstrip::store(smoothed_ + i, new_smoothed);
        if constexpr (Watched) change.add(coef, new_coef, smoothed, new_smoothed);
      }
    }
    return !Watched || change.any();
  }

  CHANNELSTRIP_INLINE void come_to_rest(int32_t q) {
    const float* const from = coefs_[static_cast<uint32_t>(q) % kRows];
    for (int i = 0; i < kMoving; ++i) targets_[i] = from[i];
    moves_ = false;
  }

  CHANNELSTRIP_INLINE static EQ_SDezipCoefs* dezip_of(
      const SChannelStrip_Alg_Context* const* strips, int lane) {
    return strips[Layout::strip_of_channel_lane(lane)]->eqDezipCoefs;
  }

  // One number per coefficient and lane, from an array per lane.
  template <typename From>
  CHANNELSTRIP_INLINE static void load_coefs(float* to, From from) {
    for (int i = 0; i < kBandCoefs; i += 4) {
      if constexpr (kCoefLanes == 1) {
        channelstrip::store(to + i, load<Lanes<4>>(from(0) + i));
      } else {
        V columns[4];
        load_columns(columns, [&](int lane) { return from(lane) + i; });
        for (int k = 0; k < 4; ++k) channelstrip::store(to + (i + k) * kCoefLanes, columns[k]);
      }
    }
  }

  CHANNELSTRIP_INLINE void load_glide(const SChannelStrip_Alg_Context* const* strips) {
    const auto strip = [&](int lane) -> const SChannelStrip_Alg_Context& {
      return *strips[Layout::strip_of_channel_lane(lane)];
    };
    load_coefs(coefs_[kRows - 1], [&](int lane) { return strip(lane).eqDezipCoefs->coefs; });
    load_coefs(targets_, [&](int lane) { return strip(lane).eqTargetCoefs->targetCoefs; });
    for (int lane = 0; lane < kRates; ++lane) rates_[lane] = strip(lane).dynState[0].dezipRate;
    for_each_block([&](int coef, int lane) {
      Doubles block[kBlockLanes];
      for (int k = 0; k < kBlockLanes; ++k) {
        block[k] = load<Doubles>(dezip_of(strips, lane + k)->smoothedCoefs + coef);
      }
      if constexpr (kBlockLanes == 4) transpose(block);
      for (int k = 0; k < kBlockLanes; ++k) {
        channelstrip::store(smoothed_ + (coef + k) * kCoefLanes + lane, block[k]);
      }
    });
  }

  CHANNELSTRIP_INLINE void store_glide(const SChannelStrip_Alg_Context* const* strips) const {
    for_each_block([&](int coef, int lane) {
      Doubles block[kBlockLanes];
      for (int k = 0; k < kBlockLanes; ++k) {
        block[k] = load<Doubles>(smoothed_ + (coef + k) * kCoefLanes + lane);
      }
      if constexpr (kBlockLanes == 4) transpose(block);
      for (int k = 0; k < kBlockLanes; ++k) {
        channelstrip::store(dezip_of(strips, lane + k)->smoothedCoefs + coef, block[k]);
      }
    });
    for (int s = 0; s < Layout::kStrips; ++s) eq_resynchronise(strips[s]->eqDezipCoefs);
  }

  // Four coefficients of four lanes, or where coefficients are shared of one.
  static constexpr int kBlockLanes = kCoefLanes == 1 ? 1 : 4;
  template <typename Work>
  CHANNELSTRIP_INLINE static void for_each_block(Work work) {
    for (int coef = 0; coef < kBandCoefs; coef += 4) {
      for (int lane = 0; lane < kCoefLanes; lane += kBlockLanes) work(coef, lane);
    }
  }

  bool moves_ = false;
  bool moved_ = false;                       // in this call
  int32_t last_step_ = INT32_MAX;            // after which every row holds the coefficients at rest
  alignas(64) float coefs_[kRows][kMoving];  // row q % kRows is quad q's
  alignas(64) float targets_[kCoefs];        // while nothing moves, the coefficients themselves
  alignas(64) double smoothed_[kMoving];
  alignas(64) float rates_[kRates];
};

}  // namespace channelstrip
