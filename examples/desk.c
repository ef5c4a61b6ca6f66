// A mixing desk: 64 mono strips in one call, each with its own settings.
#include <channelstrip/channelstrip.h>
#include <math.h>
#include <stdio.h>

enum { STRIPS = 64, FRAMES = 128, CALLS = 100 };

int main(void) {
  static float inputs[STRIPS][FRAMES], outputs[STRIPS][FRAMES];
  channelstrip_settings* const settings = channelstrip_settings_new();
  const char preset[] =
      "[[eq]]\ntype = \"high_pass\"\nfrequency = 80\n[compressor]\nthreshold = -20\n";
  if (channelstrip_settings_read(settings, preset, sizeof preset - 1, NULL, NULL)) return 1;
  uint32_t threshold = 0;
  channelstrip_parameter_find("compressor_threshold", &threshold);

  channelstrip_strip* strips[STRIPS];
  channelstrip_block blocks[STRIPS];
  const float* ins[STRIPS];
  float* outs[STRIPS];
  for (int i = 0; i < STRIPS; ++i) {
    channelstrip_settings_set(settings, threshold, -10 - i % 20);
    const channelstrip_strip_options options = {.sample_rate = 48000, .settings = settings};
    if (channelstrip_strip_new(&options, &strips[i])) return 1;
    ins[i] = inputs[i];
    outs[i] = outputs[i];
    blocks[i] = (channelstrip_block){.inputs = &ins[i], .outputs = &outs[i], .frames = FRAMES};
  }
  for (int call = 0; call < CALLS; ++call) {
    for (int i = 0; i < STRIPS; ++i) {
      for (int f = 0; f < FRAMES; ++f) {
        inputs[i][f] = 0.8f * sinf(0.01f * (float)((i + 5) * (call * FRAMES + f)));
      }
    }
    channelstrip_strip_process_many(strips, blocks, STRIPS);
  }
  for (int i = 0; i < STRIPS; i += 21) {
    channelstrip_meters meters;
    channelstrip_strip_read_meters(strips[i], &meters, sizeof meters, NULL);
    printf("strip %2d: peak %.2f in, %.2f out\n", i, (double)meters.input_peak[0],
           (double)meters.output_peak[0]);
  }
  for (int i = 0; i < STRIPS; ++i) channelstrip_strip_free(strips[i]);
  channelstrip_settings_free(settings);
}
