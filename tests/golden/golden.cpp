#include "golden.h"

#include "instance.h"

namespace channelstrip::golden {

namespace {

constexpr int kMostInstances = 17;
constexpr int kRanges[] = {1, 2, 3, kMostInstances};
constexpr int32_t kCounts[] = {16, 64, 20, 128, 7, 96};

Instance instances[kMostInstances];

struct Hashes {
  uint64_t audio, state, meters;
};

Hashes run(int format, int scene, AlgEntry_16_Stem* entry) {
  Hash audio, state, meters;
  for (const int size : kRanges) {
    Numbers numbers(static_cast<uint64_t>((100 * format + scene) * 100 + size));
    const SChannelStrip_Alg_Context* range[kMostInstances];
    for (int i = 0; i < size; ++i) {
      instances[i].begin(kFormats[format], kScenes[scene], numbers);
      range[i] = instances[i].context();
    }
    for (const int32_t count : kCounts) {
      for (int i = 0; i < size; ++i) instances[i].prepare(numbers, count, instances[0]);
      entry(range, range + size);
      for (int i = 0; i < size; ++i) {
        instances[i].add_audio(audio);
        instances[i].add_state(state);
        instances[i].add_meters(meters);
      }
    }
  }
  return {audio.value(), state.value(), meters.value()};
}

char* add_text(char* to, const char* text) {
  while (*text) *to++ = *text++;
  return to;
}

char* add_hash(char* to, uint64_t hash) {
  *to++ = ' ';
  for (int bit = 60; bit >= 0; bit -= 4) *to++ = "0123456789abcdef"[hash >> bit & 15];
  return to;
}

}  // namespace

void write_line(char (&line)[kLongestLine], int format, int scene, AlgEntry_16_Stem* entry) {
  const Hashes hashes = run(format, scene, entry);
  char* to = add_text(line, kFormats[format].name);
  *to++ = ' ';
  to = add_text(to, kScenes[scene].name);
  to = add_hash(add_hash(add_hash(to, hashes.audio), hashes.state), hashes.meters);
  *to = 0;
}

}  // namespace channelstrip::golden
