// What several of these tests need: ids, settings and strips that work, signals, streams.

#ifndef CHANNELSTRIP_SUPPORT_H
#define CHANNELSTRIP_SUPPORT_H

#include <channelstrip/channelstrip.h>
#include <stdlib.h>

enum { kMostFrames = 4096, kChannels = CHANNELSTRIP_MOST_CHANNELS };

// The id of no parameter.
#define NO_ID 99999u

uint32_t id_of(const char* symbol);
uint32_t format_of(const char* name);

// Sets a value that is legal as it is.
void set(channelstrip_settings* settings, const char* symbol, double value);
double get(const channelstrip_settings* settings, const char* symbol);
int are_same(const channelstrip_settings* a, const channelstrip_settings* b);

// Bands on both sides of the dynamics, all of them at work.
channelstrip_settings* busy_settings(void);

// Of 48000 Hz; null settings: the initial ones.
channelstrip_strip* strip_of(const char* format, const channelstrip_settings* settings);

// A stream of up to eight channels and a key, the same in every run.
typedef struct Stream {
  uint32_t frames;
  float inputs[kChannels][kMostFrames];
  float key[kMostFrames];
  float outputs[kChannels][kMostFrames];
} Stream;
Stream* noise(uint32_t frames, uint32_t seed);
// Whether they differ by a rounding of 0 dB at most, which no ear hears.
int are_near(const float* a, const float* b, uint32_t count);
int have_same_outputs(const Stream* a, const Stream* b, uint32_t channels);

// The buffers of a call, all channels from one frame on.
typedef struct Buffers {
  const float* inputs[kChannels];
  float* outputs[kChannels];
  channelstrip_block block;
} Buffers;
void cut(Buffers* buffers, Stream* stream, uint32_t first, uint32_t frames);

// The whole stream in one call.
channelstrip_status process(channelstrip_strip* strip, Stream* stream);

// From 0 to 2^31 - 1, the same in every run.
uint32_t next_random(uint32_t* state);

#endif
