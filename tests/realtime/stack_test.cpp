#include <tests/support/every_format.h>

#include "painted_stack.h"

namespace channelstrip::test::stack_test {
namespace {

class Stack : public EveryFormat {};

// 16 KiB for code as it is used; unoptimised code keeps every lane of every step there.
TEST_P(Stack, NoCallTakesMoreThanItsLimit) {
  const EveryMode range(GetParam());
  const size_t depth = PaintedStack::depth(range, entry_point(GetParam()));
  EXPECT_GT(depth, 0u);
  EXPECT_LE(depth, size_t{CHANNELSTRIP_STACK_LIMIT});
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
}  // namespace channelstrip::test::stack_test
