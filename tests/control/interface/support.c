#include "support.h"

#include <math.h>
#include <stdio.h>
#include <string.h>

#include "testing.h"

// A test whose means fail says so and ends.
static void require(int is_met, const char* what) {
  if (is_met) return;
  fprintf(stderr, "%s fails\n", what);
  exit(1);
}

uint32_t id_of(const char* symbol) {
  uint32_t id = NO_ID;
  require(channelstrip_parameter_find(symbol, &id) == CHANNELSTRIP_OK, symbol);
  return id;
}

uint32_t format_of(const char* name) {
  uint32_t format = 0;
  require(channelstrip_format_find(name, &format) == CHANNELSTRIP_OK, name);
  return format;
}

void set(channelstrip_settings* settings, const char* symbol, double value) {
  require(channelstrip_settings_set(settings, id_of(symbol), value) == CHANNELSTRIP_OK, symbol);
  require(get(settings, symbol) == value, symbol);
}

double get(const channelstrip_settings* settings, const char* symbol) {
  double value = 0;
  require(channelstrip_settings_get(settings, id_of(symbol), &value) == CHANNELSTRIP_OK, symbol);
  return value;
}

int are_same(const channelstrip_settings* a, const channelstrip_settings* b) {
  char map_a[64], map_b[64];
  for (uint32_t i = 0; i < channelstrip_parameter_count(); ++i) {
    channelstrip_parameter info;
    double of_a = 0, of_b = 0;
    channelstrip_parameter_info(i, &info, sizeof info);
    channelstrip_settings_get(a, info.id, &of_a);
    channelstrip_settings_get(b, info.id, &of_b);
    if (memcmp(&of_a, &of_b, sizeof of_a) != 0) return 0;
  }
  for (uint32_t f = 0; f < channelstrip_format_count(); ++f) {
    channelstrip_settings_get_links(a, f, map_a, sizeof map_a, NULL);
    channelstrip_settings_get_links(b, f, map_b, sizeof map_b, NULL);
    if (strcmp(map_a, map_b) != 0) return 0;
  }
  return 1;
}

channelstrip_settings* busy_settings(void) {
  channelstrip_settings* settings = channelstrip_settings_new();
  require(settings != NULL, "memory");
  set(settings, "eq1_on", 1);
  set(settings, "eq1_frequency", 300);
  set(settings, "eq1_gain", 5);
  set(settings, "eq2_on", 1);
  set(settings, "eq2_frequency", 6000);
  set(settings, "eq2_gain", -4);
  set(settings, "eq2_position", 1);
  set(settings, "compressor_on", 1);
  set(settings, "compressor_threshold", -30);
  set(settings, "compressor_ratio", 4);
  set(settings, "expander_on", 1);
  set(settings, "expander_gate", 1);
  set(settings, "expander_threshold", -25);
  set(settings, "mix", 80);
  set(settings, "gain_in", 3);
  return settings;
}

channelstrip_strip* strip_of(const char* format, const channelstrip_settings* settings) {
  const channelstrip_strip_options options = {
      .format = format_of(format), .sample_rate = 48000, .settings = settings};
  channelstrip_strip* strip = NULL;
  require(channelstrip_strip_new(&options, &strip) == CHANNELSTRIP_OK, format);
  return strip;
}

uint32_t next_random(uint32_t* state) {
  *state = (uint32_t)((uint64_t)*state * 48271u % 2147483647u);
  return *state;
}

Stream* noise(uint32_t frames, uint32_t seed) {
  Stream* stream = calloc(1, sizeof *stream);
  require(stream != NULL && frames <= kMostFrames, "memory");
  stream->frames = frames;
  uint32_t state = seed;
  for (uint32_t f = 0; f < frames; ++f) {
    const float level = f / 512 % 2 ? 0.9f : 0.05f;  // bursts
    for (uint32_t c = 0; c <= kChannels; ++c) {
      const float sample = level * ((float)next_random(&state) / 1073741824.0f - 1);
      *(c < kChannels ? &stream->inputs[c][f] : &stream->key[f]) = sample;
      if (c < kChannels) stream->outputs[c][f] = 77;  // nobody's sample
    }
  }
  return stream;
}

int are_near(const float* a, const float* b, uint32_t count) {
  for (uint32_t i = 0; i < count; ++i) {
    if (!(fabsf(a[i] - b[i]) <= 3e-6f * fabsf(b[i]))) return 0;
  }
  return 1;
}

int have_same_outputs(const Stream* a, const Stream* b, uint32_t channels) {
  for (uint32_t c = 0; c < channels; ++c) {
    if (memcmp(a->outputs[c], b->outputs[c], a->frames * sizeof(float)) != 0) return 0;
  }
  return a->frames == b->frames;
}

void cut(Buffers* buffers, Stream* stream, uint32_t first, uint32_t frames) {
  for (uint32_t c = 0; c < kChannels; ++c) {
    buffers->inputs[c] = stream->inputs[c] + first;
    buffers->outputs[c] = stream->outputs[c] + first;
  }
  buffers->block = (channelstrip_block){.inputs = buffers->inputs,
                                        .key = stream->key + first,
                                        .outputs = buffers->outputs,
                                        .frames = frames};
}

channelstrip_status process(channelstrip_strip* strip, Stream* stream) {
  Buffers buffers;
  cut(&buffers, stream, 0, stream->frames);
  return channelstrip_strip_process(strip, &buffers.block);
}
