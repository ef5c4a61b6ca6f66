// How functions that throw say what failed, and how they take texts.

#ifndef CHANNELSTRIP_ERROR_HPP
#define CHANNELSTRIP_ERROR_HPP

#include <channelstrip/channelstrip.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>

namespace channelstrip {

using Status = channelstrip_status;

class Error : public std::runtime_error {
 public:
  explicit Error(Status status)
      : std::runtime_error(channelstrip_status_text(status)), status_(status) {}
  Status status() const noexcept { return status_; }

 private:
  Status status_;
};

namespace detail {

inline void check(Status status) {
  if (status != CHANNELSTRIP_OK) throw Error(status);
}

// What doesn't fit is a count that the library refuses.
inline std::uint32_t count_of(std::size_t size) noexcept {
  return static_cast<std::uint32_t>(
      std::min<std::size_t>(size, std::numeric_limits<std::uint32_t>::max()));
}

// `call` is a function that writes text: (text, size, length) to a status.
template <class Call>
std::string text_of(Call call) {
  std::string text(64, '\0');
  std::size_t length = 0;
  Status status = call(text.data(), text.size() + 1, &length);
  if (status == CHANNELSTRIP_OK || status == CHANNELSTRIP_TOO_SMALL) text.resize(length);
  if (status == CHANNELSTRIP_TOO_SMALL) status = call(text.data(), text.size() + 1, &length);
  check(status);
  return text;
}

}  // namespace detail

}  // namespace channelstrip

#endif
