// The modes in the thread's floating-point control word: rounding and the treatment of denormals.
// The sticky status flags are left out.

#pragma once

#include <cstdint>

#if defined(__SSE__)
#include <xmmintrin.h>
#endif

namespace channelstrip::test {

#if defined(__SSE__)

// MXCSR. The flags are bits 0 to 5.
inline uint64_t control_word() {
  return _mm_getcsr() & 0xFFC0U;
}
inline void set_control_word(uint64_t word) {
  _mm_setcsr(static_cast<unsigned>(word));
}
inline constexpr uint64_t kRoundingBits = 0x6000;
inline constexpr uint64_t kRoundings[] = {0x0000, 0x2000, 0x4000, 0x6000};
// Bit 15: denormal results are flushed to zero. Bit 6: denormal operands count as zeros.
inline constexpr uint64_t kDenormalBits = 0x8040;
inline constexpr uint64_t kDenormalModes[] = {0x0000, 0x0040, 0x8000, 0x8040};

#elif defined(__aarch64__)

inline uint64_t control_word() {
  uint64_t word;
  asm volatile("mrs %0, fpcr" : "=r"(word));
  return word;
}
inline void set_control_word(uint64_t word) {
  asm volatile("msr fpcr, %0" : : "r"(word));
}
inline constexpr uint64_t kRoundingBits = 0xC00000;
inline constexpr uint64_t kRoundings[] = {0x000000, 0x400000, 0x800000, 0xC00000};
// Bit 24, for operands and results alike.
inline constexpr uint64_t kDenormalBits = 0x1000000;
inline constexpr uint64_t kDenormalModes[] = {0, kDenormalBits};

#endif

// Sets a rounding and a denormal mode for its scope.
class InModes {
 public:
  InModes(uint64_t rounding, uint64_t denormals)
      : saved_(control_word()),
        word_((saved_ & ~(kRoundingBits | kDenormalBits)) | rounding | denormals) {
    set_control_word(word_);
  }
  ~InModes() { set_control_word(saved_); }
  InModes(const InModes&) = delete;
  InModes& operator=(const InModes&) = delete;

  uint64_t word() const { return word_; }

 private:
  const uint64_t saved_, word_;
};

}  // namespace channelstrip::test
