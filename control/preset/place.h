// Where a setting was written, with which messages begin.

#pragma once

#include <fmt/format.h>

#include <stdexcept>
#include <string>
#include <string_view>

namespace channelstrip::host {

struct Place {
  std::string where;  // "FILE:LINE:COLUMN" or "--set KEY=VALUE"
  std::string key;    // dotted path; empty where `where` names it
};

inline std::string message(const Place& place, std::string_view what) {
  return place.key.empty() ? fmt::format("{}: {}", place.where, what)
                           : fmt::format("{}: {}: {}", place.where, place.key, what);
}

// Throws std::runtime_error, one line.
[[noreturn]] inline void fail(const Place& place, std::string_view what) {
  throw std::runtime_error(message(place, what));
}

// Calls `call` and puts the place before the message of what it refuses.
template <class Call>
auto placing(const Place& place, Call call) {
  try {
    return call();
  } catch (const std::invalid_argument& refusal) {
    fail(place, refusal.what());
  }
}

}  // namespace channelstrip::host
