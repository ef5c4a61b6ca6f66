#include "golden.h"

#include "instance.h"

namespace channelstrip::golden {

namespace {

constexpr int kMostInstances = 17;
constexpr int kRanges[] = {1, 2, 3, kMostInstances};
constexpr int32_t kCounts[] = {16, 64, 20, 128, 7, 96};

Instance instances[kMostInstances];

}  // namespace

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

void write_hash(char* to, uint64_t hash) {
  for (int digit = 0; digit < 16; ++digit) {
    to[digit] = "0123456789abcdef"[hash >> (60 - 4 * digit) & 15];
  }
  to[16] = 0;
}

}  // namespace channelstrip::golden
