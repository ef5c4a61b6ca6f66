// Single changes to an instance's records and meters. Records get finite numbers.

#pragma once

#include <tests/model/scene.h>

#include "step.h"

namespace channelstrip::test {

// Any field, to any value: for scenes whose results are fixed to the bit. Filters keep the
// coefficients and memories that are 0.
void edit_freely(Instance& it, const Step& step);

// Only what leaves general filters stable and the dynamics continuous in the audio.
void edit_steadily(Instance& it, const Step& step);

}  // namespace channelstrip::test
