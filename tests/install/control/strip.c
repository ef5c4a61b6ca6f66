// Half the level of a mono stream.
#include <channelstrip/channelstrip.h>
#include <stdio.h>

int main(void) {
  uint32_t gain = 0;
  channelstrip_settings* settings = channelstrip_settings_new();
  if (channelstrip_parameter_find("gain_out", &gain) ||
      channelstrip_settings_set(settings, gain, -6.0205999132796242)) {
    return 1;
  }
  const channelstrip_strip_options options = {.sample_rate = 48000, .settings = settings};
  channelstrip_strip* strip = NULL;
  if (channelstrip_strip_new(&options, &strip)) return 1;
  channelstrip_settings_free(settings);

  const float in[4] = {0.8f, -0.4f};
  float out[4];
  const float* const inputs[] = {in};
  float* const outputs[] = {out};
  const channelstrip_block block = {.inputs = inputs, .outputs = outputs, .frames = 4};
  if (channelstrip_strip_process(strip, &block)) return 1;
  channelstrip_strip_free(strip);
  printf("%.3f %.3f\n", (double)out[0], (double)out[1]);
  return 0;
}
