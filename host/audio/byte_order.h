// Unsigned integers as the bytes of a file.

#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace channelstrip::host {

// As wide as `bytes` is long, up to 8.
inline std::uint64_t read_integer(std::string_view bytes, std::endian order) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const char byte = bytes[order == std::endian::big ? i : bytes.size() - 1 - i];
    value = value << 8 | static_cast<unsigned char>(byte);
  }
  return value;
}

// Fills `bytes` with the low bits of `value`.
inline void write_integer(std::uint64_t value, std::endian order, std::span<char> bytes) {
  for (std::size_t i = 0; i < bytes.size(); ++i, value >>= 8) {
    bytes[order == std::endian::big ? bytes.size() - 1 - i : i] = static_cast<char>(value & 0xFF);
  }
}

}  // namespace channelstrip::host
