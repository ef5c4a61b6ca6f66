// A strip's settings while layers are written over each other, and where each setting was written.

#pragma once

#include <toml++/toml.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "band_keys.h"
#include "layer.h"
#include "place.h"

namespace channelstrip::host {

struct Origin {
  Place place;
  bool fresh = true;  // written by the layer that is not settled yet
};

struct BandDraft {
  EqBand band = {};
  Origin origin = {};                               // of the table
  std::map<std::string_view, Origin> origins = {};  // of every key written
};

struct Draft {
  std::string name;
  StripSettings settings;     // all but the bands
  std::vector<BandDraft> eq;  // in the order of the preset's [[eq]] tables
  std::optional<BandDraft> key_filter;
  std::map<std::string, Origin> links;  // by format name
  std::vector<std::string> remarks;     // on what is read, but should be written otherwise
};

// Writes the keys of `table` into the draft, except for the time of an [[at]] table and, at the top
// of a preset, the [[at]] tables. Throws std::runtime_error: "FILE:LINE:COLUMN: key: what is
// wrong".
void write(const toml::table& table, const Layer& layer, Draft& draft);

// Ends a layer. A key that means nothing to the type or slope of its band is refused if this layer
// wrote it, and forgotten if an older layer did. Throws likewise, also for more sections than a
// strip has.
void settle(Draft& draft);

// Removes a compressor, an expander or a gate that is switched off.
void leave_out_what_is_off(StripSettings& settings);

// The draft's settings, bands among them, but for what is switched off.
StripSettings settings_of(const Draft& draft);

}  // namespace channelstrip::host
