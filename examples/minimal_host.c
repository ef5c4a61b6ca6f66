#include <ChannelStrip/dynamics/dyn_records.h>
#include <ChannelStrip/eq/eq_records.h>
#include <ChannelStrip/frame/entry_points.h>
#include <stdio.h>

// One mono block through one band of -6 dB and dynamics that leave it alone.
int main(void) {
  float in[16] = {0.8f, -0.4f}, out[16], meters[7] = {0};
  int32_t no_key = 0, samples = 16;
  EQ_SCoefs eq = {.targetCoefs = {0.5f}, .endBand = {1}};
  EQ_SDezipCoefs in_use = {.coefs = {0.5f}, .smoothedCoefs = {0.5}};
  EQ_SState memory = {0};
  Dyn_SCoefsBlock dyn = {.makeupGain = 1, .keyFilter = {1}, .inputMeterGain = 1};
  Dyn_SState state = {.curMakeupGain = 1};
  const float* const inputs[] = {in};
  float *const outputs[] = {out}, *const meter_array = meters;
  const SChannelStrip_Alg_Context strip = {inputs, outputs, &no_key, &samples, &dyn,
                                           &state, &eq,     &in_use, &memory,  &meter_array};
  const SChannelStrip_Alg_Context* const range[] = {&strip};
  AlgEntry_16_Stem_Mono(range, range + 1);
  printf("peak %.3f in, %.3f out\n", (double)meters[0], (double)meters[1]);
}
