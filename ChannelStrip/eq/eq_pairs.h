// Both passes side by side, each on a quad of its own, in registers of twice their width: in the
// low half the n-th band before the dynamics, in the high half the n-th band after it. A band
// without a partner is left to its pass.

#pragma once

#include "../lanes/layout.h"
#include "../lanes/section.h"
#include "eq_records.h"

namespace channelstrip {

// Whether both passes can run in one register: those of one strip that fill half of one at most.
template <typename Layout>
constexpr bool kInPairs =
    Layout::kStrips == 1 && Layout::kChannels > 2 && 2 * kWidth<typename Layout::Channel> <= kLanes;

// The bands that a pass runs.
struct EqRange {
  int32_t first, end;

  CHANNELSTRIP_INLINE int32_t size() const { return first < end ? end - first : 0; }
  CHANNELSTRIP_INLINE bool has(int32_t band) const { return band >= first && band < end; }
};

template <typename V, bool Exist>
class EqPairs {
 public:
  using Both = Lanes<2 * kWidth<V>>;
  // So many floats hold the coefficients of all pairs that there can be.
  static constexpr int kCoefs = CHANNELSTRIP_EQ_COEFS / 2 * kWidth<Both>;

  CHANNELSTRIP_INLINE explicit EqPairs(const EqRange (&passes)[2])
      : size_(passes[0].size() < passes[1].size() ? passes[0].size() : passes[1].size()) {
    for (int32_t& place : place_) place = CHANNELSTRIP_EQ_BANDS - 1;
    for (int pass = 0; pass < 2; ++pass) {
      for (int32_t n = 0; n < passes[pass].size(); ++n) {
        place_[passes[pass].first + n] = n < size_ ? 2 * n + pass : size_ + n;
      }
    }
  }

  CHANNELSTRIP_INLINE int32_t size() const { return size_; }

  // Where the memory of a band stands: first that of the pairs, side by side, then that of bands
  // without a partner. Bands that no pass runs share the last place.
  CHANNELSTRIP_INLINE int32_t place(int32_t band) const { return place_[band]; }

  // Coefficient i of the pairs, from those of the bands that run over either quad.
  CHANNELSTRIP_INLINE static Both coef(const EqRange (&passes)[2], const float* before,
                                       const float* after, int32_t i) {
    return join(broadcast<V>(before[5 * passes[0].first + i]),
                broadcast<V>(after[5 * passes[1].first + i]));
  }

  // Runs all pairs over a quad before the dynamics and one after it, in place; coef(i) are the
  // pairs' coefficients.
  template <typename Coef>
  CHANNELSTRIP_INLINE void run(Coef coef, V* z1, V* z2, V (&before)[4], V (&after)[4]) const {
    const int32_t size = size_;
    Both samples[4];
    for (int k = 0; k < 4; ++k) samples[k] = join(before[k], after[k]);
    for (int32_t i = 0; i < size; ++i) {
      Both section[5], memory1 = load<Both>(z1 + 2 * i), memory2 = load<Both>(z2 + 2 * i);
      for (int k = 0; k < 5; ++k) section[k] = coef(5 * i + k);
      run_section<4>(section, memory1, memory2, samples);
      store(z1 + 2 * i, memory1);
      store(z2 + 2 * i, memory2);
    }
    for (int k = 0; k < 4; ++k) {
      before[k] = low_half(samples[k]);
      after[k] = high_half(samples[k]);
    }
  }

 private:
  int32_t size_, place_[CHANNELSTRIP_EQ_BANDS];
};

// Of strips whose passes don't fit into one register.
template <typename V>
class EqPairs<V, false> {
 public:
  CHANNELSTRIP_INLINE explicit EqPairs(const EqRange (&)[2]) {}
  CHANNELSTRIP_INLINE int32_t place(int32_t band) const { return band; }
};

}  // namespace channelstrip
