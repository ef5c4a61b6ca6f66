#include "record_layout.h"

// Every entry point is a plain function of a range.
typedef void EntryPoint(const SChannelStrip_Alg_Context* const* begin, const void* end);
extern EntryPoint* const c_entry_points[11];
EntryPoint* const c_entry_points[11] = {
    AlgEntry_16_Stem_Mono, AlgEntry_16_Stem_Stereo, AlgEntry_16_Stem_LCR, AlgEntry_16_Stem_Quad,
    AlgEntry_16_Stem_LCRS, AlgEntry_16_Stem_5_0,    AlgEntry_16_Stem_5_1, AlgEntry_16_Stem_6_0,
    AlgEntry_16_Stem_6_1,  AlgEntry_16_Stem_7_0,    AlgEntry_16_Stem_7_1};
