// The bands of a draft: [[eq]] tables, eq.N and [key_filter].

#pragma once

#include "draft.h"

namespace channelstrip::host {

// A preset's [[eq]] tables: new bands, in order.
void write_bands(const Entry& eq, const Layer& layer, Draft& draft);

// Keys of existing bands, eq.1 being the first. An assignment may also add one band at the end.
void write_numbered_bands(const Entry& eq, const Layer& layer, Draft& draft);

void write_key_filter(const Entry& key_filter, const Layer& layer, Draft& draft);

}  // namespace channelstrip::host
