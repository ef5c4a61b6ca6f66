// Memory with its pieces at random places. Where addresses are equal modulo a page, a processor may
// take a load to depend on a store that it doesn't overlap; random places neither provoke nor avoid
// that, nor do they align pieces to cache lines.

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <random>
#include <span>
#include <type_traits>
#include <vector>

namespace channelstrip::bench {

class Scatter {
 public:
  // `bytes` is at least what all pieces take together. Equal seeds and sizes scatter alike.
  Scatter(std::size_t bytes, unsigned seed)
      : pages_(3 * bytes / kPage + 1), used_(pages_.size() * kPage), generator_(seed) {}

  // `count` zeros, valid as long as this object. Large pieces must be asked for first: the search
  // for a gap ends only when it finds one.
  template <typename T>
  std::span<T> pieces(std::size_t count) {
    static_assert(std::is_trivially_copyable_v<T>);
    const std::size_t size = count * sizeof(T);
    std::size_t at;
    do {
      at = generator_() % ((used_.size() - size) / alignof(T) + 1) * alignof(T);
    } while (std::any_of(used(at), used(at + size), [](bool taken) { return taken; }));
    std::fill(used(at), used(at + size), true);
    return {new (reinterpret_cast<std::byte*>(pages_.data()) + at) T[count](), count};
  }

  // Compares pieces and gaps, bit for bit.
  bool equals(const Scatter& other) const {
    return pages_.size() == other.pages_.size() &&
           std::memcmp(pages_.data(), other.pages_.data(), used_.size()) == 0;
  }

 private:
  static constexpr std::size_t kPage = 4096;
  struct alignas(kPage) Page {
    std::byte bytes[kPage] = {};
  };

  std::vector<bool>::iterator used(std::size_t at) {
    return used_.begin() + static_cast<std::ptrdiff_t>(at);
  }

  std::vector<Page> pages_;
  std::vector<bool> used_;
  std::mt19937 generator_;
};

}  // namespace channelstrip::bench
