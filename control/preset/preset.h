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

  // What can't be checked without the sample rate and the channels, in the settings and in every
  // change, and where it was written.
  struct Band {
    Place place;
    BandSettings settings;
    bool key_filter = false;
  };
  std::vector<Band> bands = {};
  struct Link {
    Place place;
    std::string format, map;
  };
  std::vector<Link> links = {};

  // A line for each thing that is read, but should be written otherwise.
  std::vector<std::string> remarks = {};
};

// Both throw std::runtime_error, one line: "FILE:LINE:COLUMN: key: what is wrong".
Preset read_preset(const std::string& path);
Preset parse_preset(std::string_view text, const std::string& file);

// The preset at `path`, or neutral settings without one. The `assignments`, "compressor.ratio=4",
// are written over it in this order and hold through the preset's changes unless these set the same
// key. Throws likewise, for an assignment "--set KEY=VALUE: what is wrong".
Preset load_preset(const std::optional<std::string>& path,
                   const std::vector<std::string>& assignments);

// Throws likewise if a band, also of a change, is impossible at the sample rate, or if the link map
// of the layout's format names other channels than the layout has.
void check_fits(const Preset& preset, double sample_rate, const ChannelLayout& layout);

}  // namespace channelstrip::host
