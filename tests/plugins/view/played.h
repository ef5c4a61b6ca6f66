// Models of strips through which sound has been played, so that meters and spectra are real.

#pragma once

#include <channelstrip/channelstrip.h>

#include <string>
#include <vector>

#include "../strips.h"
#include "plugins/view/model.h"

namespace channelstrip::view_test {

using plugin_test::Planar;
using plugin_test::Settings;

// What a window would show after the whole sound, read 40 times a second. The key may be empty.
view::Model played(const channelstrip_settings* settings, std::uint32_t format, double sample_rate,
                   const Planar& sound, const std::vector<float>& key);

// Settings of a preset that ships with the program, "voice".
Settings preset(const std::string& name);
// The settings in a file; throws std::runtime_error, in one line.
Settings settings_from(const std::string& path);

}  // namespace channelstrip::view_test
