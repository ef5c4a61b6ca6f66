// Measures how much stack a call of an entry point takes: it runs on a stack filled with a known
// byte, and the deepest changed byte is the depth.

#pragma once

#include <ucontext.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <system_error>
#include <vector>

#include "every_mode.h"

namespace channelstrip::test {

class PaintedStack {
 public:
  // Bytes below the caller's frame, including the return address. Only the entry point is called,
  // and by its address: a first call through a linkage table would run the dynamic linker on this
  // stack.
  static std::size_t depth(const EveryMode& range, AlgEntry_16_Stem* entry) {
    call_ = {&range, entry, nullptr};
    std::vector<std::byte> stack(kSize, kPaint);
    ucontext_t here, there;
    if (getcontext(&there) != 0) throw std::system_error(errno, std::generic_category());
    there.uc_stack.ss_sp = stack.data();
    there.uc_stack.ss_size = stack.size();
    there.uc_link = &here;
    makecontext(&there, run, 0);
    if (swapcontext(&here, &there) != 0) throw std::system_error(errno, std::generic_category());

    const auto deepest =
        std::find_if(stack.begin(), stack.end(), [](std::byte b) { return b != kPaint; });
    return static_cast<std::size_t>(call_.frame - &*deepest);
  }

 private:
  static constexpr std::size_t kSize = 1 << 18;
  static constexpr std::byte kPaint{0xA5};

  struct Call {
    const EveryMode* range;
    AlgEntry_16_Stem* entry;
    const std::byte* frame;
  };

  static void run() {
    call_.frame = static_cast<const std::byte*>(__builtin_frame_address(0));
    call_.range->process(call_.entry);
  }

  static inline Call call_;
};

}  // namespace channelstrip::test
