// What this program, its library and its formats are.

#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "control/library/library.h"
#include "control/library/stem_format.h"

namespace channelstrip::host {

struct FormatInformation {
  StemFormat format;
  // The channels' labels by the name of the order.
  std::vector<std::pair<std::string_view, std::vector<std::string>>> orders;
  std::vector<std::uint32_t> wav_masks;  // of the order "wav"
  // Link maps by the name of the style, as presets write them, the channels in the order "wav".
  std::vector<std::pair<std::string_view, std::string>> links;
};

struct Information {
  std::string version;             // the program's
  std::string library_file;        // links resolved
  std::string library_soname;      // carries the major version
  std::string library_level;       // chosen on loading, as "x86-64-v3"; empty: the file holds one
  std::string library_version;     // from the file's name; empty: it has none
  std::string libsndfile_version;  // "1.2.0"
  std::vector<FormatInformation> formats;
};

// About these formats. Throws std::runtime_error if the library lacks one of their entry points.
Information information(const Library& library, std::span<const StemFormat> formats);

std::string human_text(const Information& information);  // a table of the formats
std::string human_text(const FormatInformation& format);
std::string json_text(const Information& information);  // everything

}  // namespace channelstrip::host
