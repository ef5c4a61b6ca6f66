#include <tests/support/every_format.h>

#include "painted_stack.h"

namespace channelstrip::test {
namespace {

class Stack : public EveryFormat {};

TEST_P(Stack, NoCallTakesMoreThan16KiB) {
  const EveryMode range(GetParam());
  const size_t depth = PaintedStack::depth(range, entry_point(GetParam()));
  EXPECT_GT(depth, 0u);
  EXPECT_LE(depth, 16u << 10);
}

// A callee of known depth: what it writes is found, no less and hardly more.
TEST(PaintedStack, SeesTheDeepestByteOfACall) {
  const auto deep = +[](const SChannelStrip_Alg_Context* const*, const void*) {
    char bytes[20000];
    bytes[0] = 1;
    asm volatile("" : : "r"(bytes) : "memory");  // the write is seen
  };
  const size_t depth = PaintedStack::depth(EveryMode(format_named("Mono")), deep);
  EXPECT_GE(depth, 20000u);
  EXPECT_LE(depth, 20000u + 512);
}

INSTANTIATE_TEST_SUITE_P(Formats, Stack, every_format(), format_name);

}  // namespace
}  // namespace channelstrip::test
