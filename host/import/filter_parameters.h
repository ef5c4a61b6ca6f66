// The parameters that follow the type in a filter's line.

#pragma once

#include <optional>
#include <span>
#include <string>

namespace channelstrip::host {

struct FilterParameters {
  std::optional<double> slope = {};      // dB per octave
  std::optional<double> frequency = {};  // Hz
  std::optional<double> gain = {};       // dB
  std::optional<double> q = {};
  std::optional<double> bandwidth = {};  // octaves
};

// Reads "12 DB FC 63.2 HZ GAIN -5.0 DB Q 4.00", the words in capitals. Every parameter may be
// missing, none may be given twice. Throws std::invalid_argument.
FilterParameters read_filter_parameters(std::span<const std::string> words);

}  // namespace channelstrip::host
