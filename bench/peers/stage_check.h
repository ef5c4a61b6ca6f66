// Checks that every stage has an effect on the programme: timing a plugin that does nothing would
// say nothing.

#pragma once

#include "processor.h"

namespace channelstrip::bench {

// Processes the programme twice, so that everything has settled, and looks at the second time.
// Throws std::runtime_error, one line, when a stage doesn't change what it should.
void check_stages(Processor& processor, int channels, int samples_per_call);

}  // namespace channelstrip::bench
