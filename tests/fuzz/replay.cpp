// Plays files and random histories through the same function as the fuzzer.
//
//   fuzz_replay RANDOM_HISTORIES FILE...

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

#include "history.h"

namespace {

using History = std::vector<uint8_t>;

int played = 0, faults = 0;

// A report names the history by `name` and `number`.
void play(const History& history, const char* name, unsigned number) {
  ++played;
  const std::string fault = channelstrip::test::first_fault(history);
  if (fault.empty()) return;
  ++faults;
  std::printf("%s %u: %s\n", name, number, fault.c_str());
}

// Uses C's file functions: every sanitizer intercepts them.
bool read(const char* path, History& history) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path, "rb"), std::fclose);
  if (!file) return false;
  history.resize(4096);
  history.resize(std::fread(history.data(), 1, history.size(), file.get()));
  return true;
}

History draw(unsigned seed) {
  std::mt19937 engine(seed);
  History history(4 + 10 * (engine() % 40));
  for (uint8_t& byte : history) byte = static_cast<uint8_t>(engine());
  return history;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fputs("usage: fuzz_replay RANDOM_HISTORIES FILE...\n", stderr);
    return 2;
  }
  for (int i = 2; i < argc; ++i) {
    History history;
    if (!read(argv[i], history)) {
      std::perror(argv[i]);
      return 2;
    }
    play(history, argv[i], 0);
  }
  const auto drawn = static_cast<unsigned>(std::strtoul(argv[1], nullptr, 10));
  for (unsigned seed = 0; seed < drawn; ++seed) play(draw(seed), "seed", seed);
  std::printf("%d histories, %d faults\n", played, faults);
  return faults > 0 || played == 0 ? 1 : 0;
}
