// Presets: a strip's settings as a TOML file.

#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "design/channel_layout.h"
#include "design/settings.h"

namespace channelstrip::host {

struct Preset {
  std::string file;  // as messages name it
  std::string name;
  StripSettings settings;

  // Lines of what only the audio can prove wrong.
  struct Band {
    std::string key;
    BandSettings settings;
    int line;
  };
  std::vector<Band> bands;                // the key filter among them
  std::map<std::string, int> link_lines;  // by format name
};

// Both throw std::runtime_error, one line: "FILE:LINE: key: what is wrong".
Preset read_preset(const std::string& path);
Preset parse_preset(std::string_view text, const std::string& file);

// Throws likewise when a band can't be had at the sample rate or the link map of the layout's
// format names other channels than the layout has.
void check_fits(const Preset& preset, double sample_rate, const ChannelLayout& layout);

}  // namespace channelstrip::host
