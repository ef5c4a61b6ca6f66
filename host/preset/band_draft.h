// The bands of a draft: [[eq]] tables, eq.N and [key_filter].

#pragma once

#include "draft.h"

namespace channelstrip::host {

// A preset's [[eq]] tables: new bands, in order.
void write_bands(const Entry& eq, const Layer& layer, Draft& draft);

// eq.N by number from 1; an assignment may add one to those there are.
void write_numbered_bands(const Entry& eq, const Layer& layer, Draft& draft);

void write_key_filter(const Entry& key_filter, const Layer& layer, Draft& draft);

}  // namespace channelstrip::host
