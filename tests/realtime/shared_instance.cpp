// What a host must not do: process one instance in two calls at once. The thread sanitizer has to
// report it, which shows that it sees into the library.

#include <tests/support/busy_strip.h>

#include <thread>

int main() {
  using namespace channelstrip;
  test::BusyStrip strip("Mono");
  const SChannelStrip_Alg_Context* const contexts[] = {strip.context()};
  AlgEntry_16_Stem* const entry = test::entry_point(strip.format);
  const auto call = [&] { entry(contexts, contexts + 1); };
  const std::jthread one(call), other(call);
}
