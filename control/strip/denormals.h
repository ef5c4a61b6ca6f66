// Denormal numbers treated as zeros within a scope.
//
// Filters whose output decays into denormals run slower, on some processors twofold and on others
// hundredfold. The library doesn't change the thread's control word, so the host has to set it
// around every call.

#pragma once

#include <cstdint>

#if defined(__SSE__)
#include <xmmintrin.h>
#endif

namespace channelstrip::host {

class FlushDenormals {
 public:
  // Writing the control word takes its time, so that a thread that flushes already is left alone.
  FlushDenormals() : saved_(control_word()) {
    if ((saved_ & kFlush) != kFlush) set_control_word(saved_ | kFlush);
  }
  ~FlushDenormals() {
    if ((saved_ & kFlush) != kFlush) set_control_word(saved_);
  }

  FlushDenormals(const FlushDenormals&) = delete;
  FlushDenormals& operator=(const FlushDenormals&) = delete;

#if defined(__SSE__)
  using Word = std::uint32_t;
  // MXCSR: bit 15 flushes results, bit 6 takes denormal operands as zeros.
  static constexpr Word kFlush = 0x8040;
  static Word control_word() {
    return _mm_getcsr();
  }
#elif defined(__aarch64__)
  using Word = std::uint64_t;
  // FPCR: FZ, bit 24, does both.
  static constexpr Word kFlush = Word{1} << 24;
  static Word control_word() {
    Word word;
    asm volatile("mrs %0, fpcr" : "=r"(word));
    return word;
  }
#else
  using Word = std::uint32_t;
  static constexpr Word kFlush = 0;
  static Word control_word() {
    return 0;
  }
#endif

 private:
#if defined(__SSE__)
  static void set_control_word(Word word) {
    _mm_setcsr(word);
  }
#elif defined(__aarch64__)
  static void set_control_word(Word word) {
    asm volatile("msr fpcr, %0" : : "r"(word));
  }
#else
  static void set_control_word(Word) {}
#endif

  const Word saved_;
};

}  // namespace channelstrip::host
