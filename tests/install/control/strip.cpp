// Half the level of a mono stream.
#include <channelstrip/channelstrip.hpp>
#include <cstdio>

int main() {
  channelstrip::Settings settings;
  settings.set(channelstrip::find_parameter("gain_out"), -6.0205999132796242);
  channelstrip::Strip strip({.format = channelstrip::find_format("Mono"),
                             .order = CHANNELSTRIP_ORDER_WAV,
                             .sample_rate = 48000,
                             .settings = settings.get()});
  const float in[4] = {0.8f, -0.4f};
  float out[4];
  const float* const inputs[] = {in};
  float* const outputs[] = {out};
  if (strip.process(inputs, outputs, 4) != CHANNELSTRIP_OK) return 1;
  std::printf("%.3f %.3f\n", static_cast<double>(out[0]), static_cast<double>(out[1]));
}
