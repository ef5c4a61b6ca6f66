// The format of a rendered file.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "audio_format.h"

namespace channelstrip::host {

// What the user chose; the rest follows from the input and the output's name.
struct OutputChoice {
  std::optional<int> container = {};    // SF_FORMAT_WAV ..., container_from_name
  std::optional<int> sample_type = {};  // SF_FORMAT_PCM_16 ..., sample_type_from_bits
};

// "16", "24" and "32" are integers, "32f" and "64f" floating point. Throws std::runtime_error for
// all else.
int sample_type_from_bits(std::string_view bits);

// All that it takes.
std::vector<std::string> bits_names();

// Rate, channels, map and, unless chosen, sample type of `input`, in the container that is chosen,
// or that the extension of `path` names, or else the input's. RF64 stays RF64 in a file named .wav.
// To a lossy container goes its own coding, and from one, where that can't be, 24 bits. Throws
// std::runtime_error when the container can't hold the samples.
AudioFormat output_format(const AudioFormat& input, const std::string& path,
                          const OutputChoice& choice = {});

}  // namespace channelstrip::host
