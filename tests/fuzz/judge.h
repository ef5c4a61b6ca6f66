// One call of the library, judged.

#pragma once

#include <tests/model/random_scene.h>

#include <string>

#include "formats.h"

namespace channelstrip::test {

// Processes the scene's range by the library and leaves the scene as the library left it. Returns
// what is wrong with that, or "".
std::string judge_call(Scene& scene, const Format& format, Kind kind);

}  // namespace channelstrip::test
