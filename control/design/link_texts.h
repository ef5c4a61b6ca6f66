// The link maps that settings have for formats, as short texts inside the settings.

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <stdexcept>
#include <string_view>

#include "fixed_vector.h"

namespace channelstrip::host {

// Text of up to `Capacity` characters. Throws std::length_error for longer ones.
template <std::size_t Capacity>
class FixedText {
 public:
  constexpr FixedText() = default;
  constexpr FixedText(std::string_view text) : size_(text.size()) {
    if (size_ > Capacity) throw std::length_error("the text is too long");
    std::ranges::copy(text, characters_.begin());
  }
  constexpr FixedText(const char* text) : FixedText(std::string_view(text)) {}

  constexpr std::string_view view() const { return {characters_.data(), size_}; }
  constexpr operator std::string_view() const { return view(); }
  constexpr bool operator==(const FixedText& other) const { return view() == other.view(); }

 private:
  std::array<char, Capacity> characters_ = {};
  std::size_t size_ = 0;
};

struct LinkText {
  FixedText<8> format;  // the name
  FixedText<48> map;    // "L R C | LFE | Ls Rs"; the longest has 36 characters

  bool operator==(const LinkText&) const = default;
};

// By the formats' names, in their order.
class LinkTexts : public FixedVector<LinkText, 11> {
 public:
  using FixedVector::FixedVector;

  const FixedText<48>* find(std::string_view format) const {
    const auto* found = std::ranges::find(begin(), end(), format, &name_of);
    return found == end() ? nullptr : &found->map;
  }
  std::string_view at(std::string_view format) const {
    if (const auto* map = find(format)) return *map;
    throw std::out_of_range("no link map for this format");
  }
  FixedText<48>& operator[](std::string_view format) {
    if (!find(format)) {
      push_back({format, {}});
      std::ranges::sort(*this, {}, &name_of);
    }
    return std::ranges::find(begin(), end(), format, &name_of)->map;
  }

 private:
  static std::string_view name_of(const LinkText& text) { return text.format; }
};

}  // namespace channelstrip::host
