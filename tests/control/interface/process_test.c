#include <math.h>
#include <string.h>

#include "support.h"
#include "testing.h"

TEST(OneCallIsTheSameAsRaggedCalls) {
  channelstrip_settings* settings = busy_settings();
  set(settings, "key_enable", 1);
  for (uint32_t f = 0; f < channelstrip_format_count(); ++f) {
    channelstrip_format info;
    channelstrip_format_info(f, &info, sizeof info);
    channelstrip_strip *whole = strip_of(info.name, settings),
                       *cut_up = strip_of(info.name, settings);
    Stream *a = noise(4001, f + 1), *b = noise(4001, f + 1);
    channelstrip_meters of_a, of_b;
    memset(&of_a, 0, sizeof of_a);
    memset(&of_b, 0, sizeof of_b);
    CHECK(process(whole, a) == CHANNELSTRIP_OK);
    uint32_t random = f + 5;
    for (uint32_t at = 0; at < b->frames;) {
      uint32_t frames = next_random(&random) % 100;
      if (frames > b->frames - at) frames = b->frames - at;
      Buffers buffers;
      cut(&buffers, b, at, frames);
      CHECK(channelstrip_strip_process(cut_up, &buffers.block) == CHANNELSTRIP_OK);
      at += frames;
    }
    CHECK(have_same_outputs(a, b, info.channels));
    CHECK(memcmp(a->outputs[0], a->inputs[0], 4001 * sizeof(float)) != 0);
    CHECK(channelstrip_strip_reset(whole) == CHANNELSTRIP_OK);  // both hand over what isn't yet
    CHECK(channelstrip_strip_reset(cut_up) == CHANNELSTRIP_OK);
    CHECK(channelstrip_strip_read_meters(whole, &of_a, sizeof of_a, NULL) == CHANNELSTRIP_OK);
    CHECK(channelstrip_strip_read_meters(cut_up, &of_b, sizeof of_b, NULL) == CHANNELSTRIP_OK);
    CHECK(of_a.frames == of_b.frames && of_a.frames >= 4000);
    for (uint32_t c = 0; c < info.channels; ++c) {
      CHECK(of_a.input_peak[c] == of_b.input_peak[c] && of_a.output_peak[c] == of_b.output_peak[c]);
      CHECK(of_a.least_gain[c] == of_b.least_gain[c]);
      CHECK(of_a.compressor_gain[c] == of_b.compressor_gain[c]);
    }
    channelstrip_strip_free(whole);
    channelstrip_strip_free(cut_up);
    free(a);
    free(b);
  }
  channelstrip_settings_free(settings);
}

TEST(OutputsMayBeTheInputs) {
  channelstrip_settings* settings = busy_settings();
  channelstrip_strip *apart = strip_of("5.1", settings), *in_place = strip_of("5.1", settings);
  Stream *a = noise(2000, 9), *b = noise(2000, 9);
  CHECK(process(apart, a) == CHANNELSTRIP_OK);
  Buffers buffers;
  cut(&buffers, b, 0, 2000);
  for (int c = 0; c < 6; ++c) buffers.outputs[c] = b->inputs[c];
  CHECK(channelstrip_strip_process(in_place, &buffers.block) == CHANNELSTRIP_OK);
  for (int c = 0; c < 6; ++c) {
    CHECK(memcmp(a->outputs[c], b->inputs[c], 2000 * sizeof(float)) == 0);
  }
  channelstrip_strip_free(apart);
  channelstrip_strip_free(in_place);
  channelstrip_settings_free(settings);
  free(a);
  free(b);
}

TEST(BypassedOutputsAreTheInputs) {
  channelstrip_settings* settings = busy_settings();
  set(settings, "bypass", 1);
  channelstrip_strip* strip = strip_of("Stereo", settings);
  Stream* stream = noise(3000, 2);
  CHECK(process(strip, stream) == CHANNELSTRIP_OK);
  for (int c = 0; c < 2; ++c) {
    CHECK(memcmp(stream->outputs[c], stream->inputs[c], 3000 * sizeof(float)) == 0);
  }
  channelstrip_strip_free(strip);
  channelstrip_settings_free(settings);
  free(stream);
}

TEST(TheKeyMovesTheGainWhereItIsEnabled) {
  channelstrip_settings* settings = channelstrip_settings_new();
  set(settings, "compressor_on", 1);
  set(settings, "compressor_threshold", -40);
  set(settings, "compressor_ratio", 1000);
  float quiet[2048], loud[2048], output[2][2048];
  for (int i = 0; i < 2048; ++i) {
    quiet[i] = 1e-3f;
    loud[i] = 1;
  }
  for (int keyed = 0; keyed < 2; ++keyed) {
    set(settings, "key_enable", keyed);
    channelstrip_strip* strip = strip_of("Mono", settings);
    const float* inputs[] = {quiet};
    float* outputs[] = {output[keyed]};
    const channelstrip_block block = {
        .inputs = inputs, .key = loud, .outputs = outputs, .frames = 2048};
    CHECK(channelstrip_strip_process(strip, &block) == CHANNELSTRIP_OK);
    channelstrip_strip_free(strip);
  }
  CHECK(are_near(&output[0][2047], &quiet[2047], 1));
  CHECK(output[1][2047] < 1e-4f);
  channelstrip_settings_free(settings);
}

TEST(ACallThatCannotBeIsRefusedWhole) {
  channelstrip_strip *strip = strip_of("Stereo", NULL), *other = strip_of("Stereo", NULL);
  Stream *stream = noise(100, 4), *before = noise(100, 4);
  Buffers buffers;
  cut(&buffers, stream, 0, 100);
  channelstrip_block good = buffers.block, bad = good;
  CHECK(channelstrip_strip_process(NULL, &good) == CHANNELSTRIP_INVALID);
  CHECK(channelstrip_strip_process(strip, NULL) == CHANNELSTRIP_INVALID);
  bad.inputs = NULL;
  CHECK(channelstrip_strip_process(strip, &bad) == CHANNELSTRIP_INVALID);
  bad = good;
  bad.outputs = NULL;
  CHECK(channelstrip_strip_process(strip, &bad) == CHANNELSTRIP_INVALID);
  buffers.inputs[1] = NULL;
  CHECK(channelstrip_strip_process(strip, &good) == CHANNELSTRIP_INVALID);
  buffers.inputs[1] = stream->inputs[1];
  buffers.outputs[0] = NULL;
  CHECK(channelstrip_strip_process(strip, &good) == CHANNELSTRIP_INVALID);
  CHECK(memcmp(stream, before, sizeof *stream) == 0);
  const channelstrip_block none = {.frames = 0};
  CHECK(channelstrip_strip_process(strip, &none) == CHANNELSTRIP_OK);
  uint32_t has_news = 1;
  channelstrip_meters meters;
  channelstrip_strip_process(other, &none);
  CHECK(process(strip, stream) == CHANNELSTRIP_OK);
  CHECK(process(other, before) == CHANNELSTRIP_OK);
  CHECK(have_same_outputs(stream, before, 2));
  CHECK(channelstrip_strip_read_meters(strip, &meters, sizeof meters, &has_news) ==
        CHANNELSTRIP_OK);
  CHECK(has_news == 1 && meters.frames == 96);
  channelstrip_strip_free(strip);
  channelstrip_strip_free(other);
  free(stream);
  free(before);
}

TEST(AResetForgetsTheAudioAlone) {
  channelstrip_settings *settings = busy_settings(), *kept = channelstrip_settings_new();
  channelstrip_strip *used = strip_of("Quad", settings), *fresh = strip_of("Quad", settings);
  Stream *a = noise(1003, 8), *b = noise(1003, 8), *c = noise(1003, 8);
  CHECK(process(used, a) == CHANNELSTRIP_OK);
  CHECK(channelstrip_strip_reset(used) == CHANNELSTRIP_OK);
  CHECK(process(used, b) == CHANNELSTRIP_OK);
  CHECK(process(fresh, c) == CHANNELSTRIP_OK);
  CHECK(have_same_outputs(b, c, 4));
  channelstrip_strip_get_settings(used, kept);
  CHECK(are_same(kept, settings));
  channelstrip_meters meters;
  CHECK(channelstrip_strip_read_meters(used, &meters, sizeof meters, NULL) == CHANNELSTRIP_OK);
  CHECK(meters.frames >= 1984);
  CHECK(channelstrip_strip_reset(NULL) == CHANNELSTRIP_INVALID);
  channelstrip_strip_free(used);
  channelstrip_strip_free(fresh);
  channelstrip_settings_free(settings);
  channelstrip_settings_free(kept);
  free(a);
  free(b);
  free(c);
}
