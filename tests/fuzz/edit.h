// Single changes to a scene and to its instances' records. Records get finite numbers.

#pragma once

#include <tests/model/random_scene.h>

#include "formats.h"
#include "step.h"

namespace channelstrip::test {

// Makes the change that a step names, if it leaves the scene one of `kind`. Audio gets any numbers.
void edit(Scene& scene, const Format& format, Kind kind, const Step& step);

// Changes any field of an instance's records and meters to any value, for scenes whose results are
// fixed to the bit. Filter coefficients and memories that are 0 stay 0.
void edit_freely(Instance& it, const Step& step);

// Makes only changes that leave general filters stable and the dynamics continuous in the audio.
void edit_steadily(Instance& it, const Step& step);

}  // namespace channelstrip::test
