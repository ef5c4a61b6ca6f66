// The entry points in a library that is built for one processor.

#define CHANNELSTRIP_ENTRY(stem) AlgEntry_16_Stem_##stem

#include "entry_definitions.h"

extern "C" {
CHANNELSTRIP_EACH_STEM(CHANNELSTRIP_DEFINE_ENTRY)
}
