// Presets: a strip's settings as a TOML file.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "../design/channel_layout.h"
#include "../design/settings.h"
#include "place.h"

namespace channelstrip::host {

struct Preset {
  std::string file;  // as messages name it
  std::string name;
  StripSettings settings;

  // Automation: all settings from `time` on.
  struct Change {
    double time;  // s from the beginning of the audio, 0 or more
    StripSettings settings;
  };
  std::vector<Change> changes = {};  // in order of time, all different

  // What only the audio can prove wrong, of the settings and of every change, and where it stands.
  struct Band {
    Place place;
    BandSettings settings;
  };
  std::vector<Band> bands = {};  // key filters among them
  struct Link {
    Place place;
    std::string format, map;
  };
  std::vector<Link> links = {};
};

// Both throw std::runtime_error, one line: "FILE:LINE:COLUMN: key: what is wrong".
Preset read_preset(const std::string& path);
Preset parse_preset(std::string_view text, const std::string& file);

// The preset at `path`, none: everything neutral, and over it `assignments` "compressor.ratio=4" in
// this order, which hold through the preset's changes unless these set the same key. Throws
// likewise, for an assignment "--set KEY=VALUE: what is wrong".
Preset load_preset(const std::optional<std::string>& path,
                   const std::vector<std::string>& assignments);

// Throws likewise when a band, also of a change, can't be had at the sample rate or the link map of
// the layout's format names other channels than the layout has.
void check_fits(const Preset& preset, double sample_rate, const ChannelLayout& layout);

}  // namespace channelstrip::host
