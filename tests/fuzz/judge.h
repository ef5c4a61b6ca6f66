// Checks one call of the library.

#pragma once

#include <tests/model/random_scene.h>

#include <string>

#include "formats.h"

namespace channelstrip::test {

// Calls the library on the scene's range, which changes the scene. Returns what is wrong with the
// result, or "".
std::string judge_call(Scene& scene, const Format& format, Kind kind);

}  // namespace channelstrip::test
