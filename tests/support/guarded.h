// Memory that ends or begins at a page without access: a stray read or write faults.

#pragma once

#include <algorithm>
#include <span>
#include <type_traits>

#include "pages.h"

namespace channelstrip::test {

enum class Guard { kBefore, kBehind };

template <typename T>
class Guarded {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  Guarded(std::span<const T> values, Guard guard, Access access)
      : page_(page_size()),
        inner_((values.size_bytes() + page_ - 1) / page_ * page_),
        base_(reserve_pages(inner_ + 2 * page_)) {
    if (inner_ > 0) allow(base_ + page_, inner_, Access::kReadWrite);
    const size_t slack = guard == Guard::kBehind ? inner_ - values.size_bytes() : 0;
    values_ = {reinterpret_cast<T*>(base_ + page_ + slack), values.size()};
    std::ranges::copy(values, values_.begin());
    if (inner_ > 0) allow(base_ + page_, inner_, access);
  }
  ~Guarded() { release_pages(base_, inner_ + 2 * page_); }

  Guarded(const Guarded&) = delete;
  Guarded& operator=(const Guarded&) = delete;

  T* data() const { return values_.data(); }
  std::span<const T> values() const { return values_; }

 private:
  size_t page_, inner_;
  std::byte* base_;
  std::span<T> values_;
};

}  // namespace channelstrip::test
