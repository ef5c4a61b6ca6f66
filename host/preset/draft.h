// A strip's settings while they are written, layer over layer, and where each of them stands.

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
};

// Writes the keys of `table` into the draft; of [[at]] tables all but the time, and of a preset's
// own all but those tables. Throws std::runtime_error: "FILE:LINE:COLUMN: key: what is wrong".
void write(const toml::table& table, const Layer& layer, Draft& draft);

// Ends a layer. What it gave a band of a type or slope that knows no such key is refused. What
// older layers gave is forgotten where a fresh type or slope knows it no more. Throws likewise,
// also for more sections than a strip has.
void settle(Draft& draft);

// The draft's settings, bands among them.
StripSettings settings_of(const Draft& draft);

}  // namespace channelstrip::host
