// The entry point for libFuzzer.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>

#include "history.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const std::string fault = channelstrip::test::first_fault(std::span(bytes, size));
  if (!fault.empty()) {
    std::fprintf(stderr, "%s\n", fault.c_str());
    std::abort();
  }
  return 0;
}
