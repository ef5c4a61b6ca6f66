#include <math.h>
#include <string.h>

#include "support.h"
#include "testing.h"

static channelstrip_meters read_of(channelstrip_strip* strip) {
  channelstrip_meters meters;
  uint32_t has_news = 77;
  memset(&meters, 0, sizeof meters);
  CHECK(channelstrip_strip_read_meters(strip, &meters, sizeof meters, &has_news) ==
        CHANNELSTRIP_OK);
  CHECK(has_news == 1);
  return meters;
}

static void process_constants(channelstrip_strip* strip, const float* levels, uint32_t channels,
                              uint32_t frames) {
  Stream* stream = noise(frames, 1);
  for (uint32_t c = 0; c < channels; ++c) {
    for (uint32_t f = 0; f < frames; ++f) stream->inputs[c][f] = levels[c];
  }
  CHECK(process(strip, stream) == CHANNELSTRIP_OK);
  free(stream);
}

TEST(MetersShowWhatHappenedSinceTheLastReading) {
  channelstrip_settings* settings = channelstrip_settings_new();
  set(settings, "gain_out", 20);
  channelstrip_strip* strip = strip_of("Stereo", settings);
  const float loud[] = {0.5f, 0.05f}, quiet[] = {0.01f, 0.02f};
  process_constants(strip, loud, 2, 320);
  process_constants(strip, quiet, 2, 160);
  CHECK(channelstrip_strip_reset(strip) == CHANNELSTRIP_OK);  // hands over what isn't yet
  channelstrip_meters meters = read_of(strip);
  CHECK(meters.frames == 480);
  CHECK(meters.input_peak[0] == 0.5f && meters.input_peak[1] == 0.05f);
  CHECK(fabsf(meters.output_peak[0] - 5) < 1e-4f && fabsf(meters.output_peak[1] - 0.5f) < 1e-5f);
  CHECK(meters.overs[0] == 320 && meters.overs[1] == 0);
  CHECK(meters.not_finite == 0);
  process_constants(strip, quiet, 2, 160);
  meters = read_of(strip);
  CHECK(meters.frames == 160 && meters.input_peak[0] == 0.01f && meters.overs[0] == 0);
  channelstrip_strip_free(strip);
  channelstrip_settings_free(settings);
}

TEST(MetersShowTheGainOfTheDynamics) {
  channelstrip_settings* settings = channelstrip_settings_new();
  set(settings, "compressor_on", 1);
  set(settings, "compressor_threshold", -20);
  set(settings, "compressor_ratio", 4);
  set(settings, "compressor_knee", 0);
  set(settings, "compressor_attack", 1);
  channelstrip_strip* strip = strip_of("Mono", settings);
  const float full[] = {1};
  process_constants(strip, full, 1, 4096);
  const channelstrip_meters meters = read_of(strip);
  CHECK(fabsf(meters.compressor_gain[0] + 15) < 0.01f);
  CHECK(meters.expander_gain[0] == 0);
  CHECK(fabsf(meters.compressor_reduction - (1 - 0.17783f)) < 1e-3f);
  CHECK(meters.expander_reduction == 0);
  CHECK(fabsf(meters.detector_level[0] - 1) < 0.02f);
  CHECK(meters.least_gain[0] < 0.2f && meters.greatest_gain[0] > meters.least_gain[0]);
  channelstrip_strip_free(strip);
  channelstrip_settings_free(settings);
}

TEST(SamplesThatAreNotFiniteCountAsSilence) {
  channelstrip_strip* strip = strip_of("Mono", NULL);
  Stream* stream = noise(160, 1);
  stream->inputs[0][3] = NAN;
  stream->inputs[0][70] = INFINITY;
  CHECK(process(strip, stream) == CHANNELSTRIP_OK);
  CHECK(stream->outputs[0][3] == 0 && stream->outputs[0][70] == 0);
  CHECK(are_near(stream->outputs[0] + 4, stream->inputs[0] + 4, 66));
  CHECK(read_of(strip).not_finite == 2);
  channelstrip_strip_free(strip);
  free(stream);
}

TEST(WithoutNewsMetersStayAsTheyAre) {
  channelstrip_strip* strip = strip_of("Mono", NULL);
  channelstrip_meters meters, before;
  const float level[] = {0.5f};
  uint32_t has_news = 77;
  memset(&meters, 0x55, sizeof meters);
  before = meters;
  CHECK(channelstrip_strip_read_meters(strip, &meters, sizeof meters, &has_news) ==
        CHANNELSTRIP_OK);
  CHECK(has_news == 0 && memcmp(&meters, &before, sizeof meters) == 0);
  process_constants(strip, level, 1, 32);
  CHECK(channelstrip_strip_read_meters(strip, &meters, sizeof meters.frames, NULL) ==
        CHANNELSTRIP_OK);
  CHECK(meters.frames == 32 && meters.not_finite == before.not_finite);
  has_news = 77;
  CHECK(channelstrip_strip_read_meters(strip, &meters, sizeof meters, &has_news) ==
        CHANNELSTRIP_OK);
  CHECK(has_news == 0);
  channelstrip_strip_free(strip);
}

TEST(AReadingThatIsRefusedLosesNothing) {
  channelstrip_strip* strip = strip_of("Mono", NULL);
  channelstrip_meters meters;
  const float level[] = {0.5f};
  uint32_t has_news = 77;
  process_constants(strip, level, 1, 32);
  CHECK(channelstrip_strip_read_meters(NULL, &meters, sizeof meters, &has_news) ==
        CHANNELSTRIP_INVALID);
  CHECK(channelstrip_strip_read_meters(strip, NULL, sizeof meters, &has_news) ==
        CHANNELSTRIP_INVALID);
  CHECK(channelstrip_strip_read_meters(strip, &meters, 0, &has_news) == CHANNELSTRIP_INVALID);
  CHECK(has_news == 77);
  CHECK(read_of(strip).frames == 32);
  channelstrip_strip_free(strip);
}
