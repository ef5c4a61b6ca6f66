#include <channelstrip/channelstrip.h>
#include <stdio.h>

// A stereo strip that turns one channel down when the other is loud, in calls of any length.
int main(void) {
  const channelstrip_strip_options options = {.format = 1, .sample_rate = 48000};
  channelstrip_strip* strip = NULL;
  if (channelstrip_strip_new(&options, &strip)) return 1;

  // A control thread sets parameters at any time, by id; text may have units.
  uint32_t on = 0, threshold = 0;
  double decibels = 0;
  channelstrip_parameter_find("compressor_on", &on);
  channelstrip_parameter_find("compressor_threshold", &threshold);
  channelstrip_text_to_value(threshold, "-18 dB", &decibels);
  channelstrip_strip_set(strip, on, 1);
  channelstrip_strip_set(strip, threshold, decibels);

  // The audio thread processes what its interface asks for, here in place.
  float left[441] = {0.5f}, right[441] = {0.1f};
  for (int i = 1; i < 441; ++i) left[i] = -left[i - 1], right[i] = -right[i - 1];
  float* const buffers[] = {left, right};
  const channelstrip_block block = {
      .inputs = (const float* const*)buffers, .outputs = buffers, .frames = 441};
  for (int call = 0; call < 3; ++call) channelstrip_strip_process(strip, &block);

  channelstrip_meters meters;
  channelstrip_strip_read_meters(strip, &meters, sizeof meters, NULL);
  printf("the compressor takes %.1f dB\n", (double)-meters.compressor_gain[1]);
  channelstrip_strip_free(strip);
}
