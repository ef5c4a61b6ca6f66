// A vector of a few elements at most, inside the object that holds it: it never allocates, and
// copying the object copies it.

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <stdexcept>

namespace channelstrip::host {

template <class Element, std::size_t Capacity>
class FixedVector {
 public:
  using value_type = Element;

  constexpr FixedVector() = default;
  constexpr FixedVector(std::initializer_list<Element> elements) {
    for (const Element& element : elements) push_back(element);
  }

  // Both throw std::length_error where there is no room.
  constexpr void push_back(const Element& element) {
    if (size_ == Capacity) throw std::length_error("a fixed vector is full");
    elements_[size_++] = element;
  }
  constexpr void assign(std::size_t count, const Element& element) {
    clear();
    while (size_ < count) push_back(element);
  }
  constexpr void clear() { size_ = 0; }

  constexpr std::size_t size() const { return size_; }
  constexpr bool empty() const { return size_ == 0; }
  static constexpr std::size_t capacity() { return Capacity; }

  constexpr Element* data() { return elements_.data(); }
  constexpr const Element* data() const { return elements_.data(); }
  constexpr Element* begin() { return data(); }
  constexpr Element* end() { return data() + size_; }
  constexpr const Element* begin() const { return data(); }
  constexpr const Element* end() const { return data() + size_; }
  constexpr Element& operator[](std::size_t i) { return elements_[i]; }
  constexpr const Element& operator[](std::size_t i) const { return elements_[i]; }
  // Throw std::out_of_range.
  constexpr Element& at(std::size_t i) { return i < size_ ? elements_[i] : elements_.at(Capacity); }
  constexpr const Element& at(std::size_t i) const {
    return i < size_ ? elements_[i] : elements_.at(Capacity);
  }
  constexpr Element& front() { return elements_[0]; }
  constexpr const Element& front() const { return elements_[0]; }
  constexpr Element& back() { return elements_[size_ - 1]; }
  constexpr const Element& back() const { return elements_[size_ - 1]; }

  constexpr bool operator==(const FixedVector& other) const {
    return std::equal(begin(), end(), other.begin(), other.end());
  }

 private:
  std::size_t size_ = 0;
  std::array<Element, Capacity> elements_ = {};
};

}  // namespace channelstrip::host
