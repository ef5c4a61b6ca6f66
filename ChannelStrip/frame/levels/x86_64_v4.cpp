// The entry points for x86-64-v4. The namespace is the level's own: the linker keeps one of several
// inline functions of the same name, which might be made of instructions that the processor doesn't
// know.

#define channelstrip channelstrip_x86_64_v4
#define CHANNELSTRIP_ENTRY(stem) AlgEntry_16_Stem_##stem##_x86_64_v4

#include "../entry_definitions.h"

extern "C" {
CHANNELSTRIP_EACH_STEM(CHANNELSTRIP_DEFINE_ENTRY)
}
