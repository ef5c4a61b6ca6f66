// Both passes side by side, each on a quad of its own, in registers of twice their width: in the
// low half the n-th band before the dynamics, in the high half the n-th band after it.

#pragma once

#include "../lanes/moves.h"
#include "../lanes/section.h"
#include "eq_records.h"

namespace channelstrip {

// The bands that a pass runs.
struct EqRange {
  int32_t first, end;

  CHANNELSTRIP_INLINE bool has(int32_t band) const { return band >= first && band < end; }
};

template <typename V, bool Exist>
class EqPairs {
 public:
  // How many pairs there are. A band without a partner is left to its pass.
  CHANNELSTRIP_INLINE int32_t size() const { return size_; }

  // Takes over all bands that have a partner, with their memory. `coefs` are those of the eight
  // bands, at rest.
  CHANNELSTRIP_INLINE void take(const EqRange (&passes)[2], const float* coefs, const V* z1,
                                const V* z2) {
    const int32_t before = passes[0].end - passes[0].first, after = passes[1].end - passes[1].first;
    const int32_t fewer = before < after ? before : after;
    for (size_ = 0; size_ < fewer; ++size_) {
      const int32_t low = passes[0].first + size_, high = passes[1].first + size_;
      for (int i = 0; i < 5; ++i) {
        coefs_[size_][i] =
            join(broadcast<V>(coefs[5 * low + i]), broadcast<V>(coefs[5 * high + i]));
      }
      z1_[size_] = join(z1[low], z1[high]);
      z2_[size_] = join(z2[low], z2[high]);
    }
  }

  // Gives the memory back, after which there are no pairs.
  CHANNELSTRIP_INLINE void give_back(const EqRange (&passes)[2], V* z1, V* z2) {
    for (; size_ > 0; --size_) {
      const int32_t last = size_ - 1, low = passes[0].first + last, high = passes[1].first + last;
      z1[low] = low_half(z1_[last]);
      z1[high] = high_half(z1_[last]);
      z2[low] = low_half(z2_[last]);
      z2[high] = high_half(z2_[last]);
    }
  }

  // Runs all pairs over a quad before the dynamics and one after it, in place.
  CHANNELSTRIP_INLINE void run(V (&before)[4], V (&after)[4]) {
    Both samples[4];
    for (int k = 0; k < 4; ++k) samples[k] = join(before[k], after[k]);
    for (int32_t i = 0; i < size_; ++i) run_section<4>(coefs_[i], z1_[i], z2_[i], samples);
    for (int k = 0; k < 4; ++k) {
      before[k] = low_half(samples[k]);
      after[k] = high_half(samples[k]);
    }
  }

 private:
  using Both = Lanes<2 * kWidth<V>>;
  static constexpr int kMost = CHANNELSTRIP_EQ_BANDS / 2;

  int32_t size_ = 0;
  Both coefs_[kMost][5], z1_[kMost], z2_[kMost];
};

// Of strips whose passes don't fit into one register.
template <typename V>
class EqPairs<V, false> {};

}  // namespace channelstrip
