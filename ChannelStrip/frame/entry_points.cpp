#include "entry_points.h"

#include "channel_strip.h"

using channelstrip::ChannelStrip_AlgorithmProcessFunction;

extern "C" {

void AlgEntry_16_Stem_Mono(const SChannelStrip_Alg_Context* const* begin, const void* end) {
  ChannelStrip_AlgorithmProcessFunction<1, 1>(begin, end);
}

void AlgEntry_16_Stem_Stereo(const SChannelStrip_Alg_Context* const* begin, const void* end) {
  ChannelStrip_AlgorithmProcessFunction<2, 1>(begin, end);
}

void AlgEntry_16_Stem_LCR(const SChannelStrip_Alg_Context* const* begin, const void* end) {
  ChannelStrip_AlgorithmProcessFunction<3, 2>(begin, end);
}

void AlgEntry_16_Stem_Quad(const SChannelStrip_Alg_Context* const* begin, const void* end) {
  ChannelStrip_AlgorithmProcessFunction<4, 2>(begin, end);
}

void AlgEntry_16_Stem_LCRS(const SChannelStrip_Alg_Context* const* begin, const void* end) {
  ChannelStrip_AlgorithmProcessFunction<4, 3>(begin, end);
}

void AlgEntry_16_Stem_5_0(const SChannelStrip_Alg_Context* const* begin, const void* end) {
  ChannelStrip_AlgorithmProcessFunction<5, 3>(begin, end);
}

void AlgEntry_16_Stem_5_1(const SChannelStrip_Alg_Context* const* begin, const void* end) {
  ChannelStrip_AlgorithmProcessFunction<6, 4>(begin, end);
}

void AlgEntry_16_Stem_6_0(const SChannelStrip_Alg_Context* const* begin, const void* end) {
  ChannelStrip_AlgorithmProcessFunction<6, 4>(begin, end);
}

void AlgEntry_16_Stem_6_1(const SChannelStrip_Alg_Context* const* begin, const void* end) {
  ChannelStrip_AlgorithmProcessFunction<7, 5>(begin, end);
}

void AlgEntry_16_Stem_7_0(const SChannelStrip_Alg_Context* const* begin, const void* end) {
  ChannelStrip_AlgorithmProcessFunction<7, 4>(begin, end);
}

void AlgEntry_16_Stem_7_1(const SChannelStrip_Alg_Context* const* begin, const void* end) {
  ChannelStrip_AlgorithmProcessFunction<8, 5>(begin, end);
}

}  // extern "C"
