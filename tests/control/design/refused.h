// What is said of settings that are refused.

#pragma once

#include <optional>
#include <string>

#include "control/design/possible.h"
#include "control/design/refusal_words.h"

namespace channelstrip::test {

// Empty if nothing is refused.
inline std::string words(const std::optional<host::Refusal>& refusal) {
  return refusal ? words_of(*refusal) : "";
}

}  // namespace channelstrip::test
