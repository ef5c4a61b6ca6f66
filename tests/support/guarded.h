// Memory that ends or begins at a page without access: a stray read or write faults.

#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <span>
#include <system_error>
#include <type_traits>

namespace channelstrip::test {

enum class Guard { kBefore, kBehind };
enum class Access { kReadOnly, kReadWrite };

template <typename T>
class Guarded {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  Guarded(std::span<const T> values, Guard guard, Access access)
      : page_(static_cast<size_t>(sysconf(_SC_PAGESIZE))),
        inner_((values.size_bytes() + page_ - 1) / page_ * page_) {
    void* const base =
        mmap(nullptr, inner_ + 2 * page_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (base == MAP_FAILED) throw std::system_error(errno, std::generic_category());
    base_ = static_cast<std::byte*>(base);
    protect(PROT_READ | PROT_WRITE);
    const size_t slack = guard == Guard::kBehind ? inner_ - values.size_bytes() : 0;
    values_ = {reinterpret_cast<T*>(base_ + page_ + slack), values.size()};
    std::ranges::copy(values, values_.begin());
    if (access == Access::kReadOnly) protect(PROT_READ);
  }
  ~Guarded() { munmap(base_, inner_ + 2 * page_); }

  Guarded(const Guarded&) = delete;
  Guarded& operator=(const Guarded&) = delete;

  T* data() const { return values_.data(); }
  std::span<const T> values() const { return values_; }

 private:
  void protect(int access) {
    if (mprotect(base_ + page_, inner_, access) != 0) {
      throw std::system_error(errno, std::generic_category());
    }
  }

  size_t page_, inner_;
  std::byte* base_ = nullptr;
  std::span<T> values_;
};

}  // namespace channelstrip::test
