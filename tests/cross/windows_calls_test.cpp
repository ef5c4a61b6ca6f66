// What Windows' calling convention asks of the entry points: registers that belong to the caller
// come back as they were, and the stack may lie at any multiple of 16 bytes.

#include <gtest/gtest.h>
#include <tests/support/busy_strip.h>
#include <tests/support/compare.h>
#include <tests/support/every_format.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace channelstrip::test::windows_calls_test {
namespace {

// The registers that a callee must keep.
struct Registers {
  uint64_t rbx, rbp, rdi, rsi, r12, r13, r14, r15;
  uint64_t xmm6_to_15[10][2];
};
struct Call {
  Registers before, after;
  uint64_t above_64;  // where the stack lies, in bytes above a multiple of 64
};
static_assert(offsetof(Registers, xmm6_to_15) == 64 && sizeof(Registers) == 224);

}  // namespace

extern "C" {
// Calls `entry` with the registers and on the stack that `call` asks for. Both are written below.
void channelstrip_call_on(AlgEntry_16_Stem* entry, const SChannelStrip_Alg_Context* const* begin,
                          const void* end, Call* call);
AlgEntry_16_Stem channelstrip_clear_xmm9_and_rsi;
}

asm(R"(
.macro each_general do, at, of
  \do %rbx, \at(\of); \do %rbp, \at+8(\of); \do %rdi, \at+16(\of); \do %rsi, \at+24(\of)
  \do %r12, \at+32(\of); \do %r13, \at+40(\of); \do %r14, \at+48(\of); \do %r15, \at+56(\of)
.endm
.macro each_wide do, at, of
  \do %xmm6, \at(\of); \do %xmm7, \at+16(\of); \do %xmm8, \at+32(\of); \do %xmm9, \at+48(\of)
  \do %xmm10, \at+64(\of); \do %xmm11, \at+80(\of); \do %xmm12, \at+96(\of)
  \do %xmm13, \at+112(\of); \do %xmm14, \at+128(\of); \do %xmm15, \at+144(\of)
.endm
.macro put register, place:vararg
  mov \register, \place
.endm
.macro take register, place:vararg
  mov \place, \register
.endm
.macro put_wide register, place:vararg
  movups \register, \place
.endm
.macro take_wide register, place:vararg
  movups \place, \register
.endm

.globl channelstrip_call_on
channelstrip_call_on:
  sub $240, %rsp
  each_general put, 0, %rsp
  each_wide put_wide, 64, %rsp
  mov %rsp, %r10
  sub $64, %rsp
  and $-64, %rsp
  sub $64, %rsp
  add 448(%r9), %rsp
  mov %r10, 32(%rsp)
  mov %r9, 40(%rsp)
  mov %rcx, %rax
  mov %rdx, %rcx
  mov %r8, %rdx
  each_general take, 0, %r9
  each_wide take_wide, 64, %r9
  call *%rax
  mov 40(%rsp), %r9
  each_general put, 224, %r9
  each_wide put_wide, 288, %r9
  mov 32(%rsp), %rsp
  each_general take, 0, %rsp
  each_wide take_wide, 64, %rsp
  add $240, %rsp
  ret

.globl channelstrip_clear_xmm9_and_rsi
channelstrip_clear_xmm9_and_rsi:
  xorps %xmm9, %xmm9
  xor %esi, %esi
  ret
)");

namespace {

Call call_of(uint64_t above_64) {
  Call call{};
  auto* const bytes = reinterpret_cast<unsigned char*>(&call.before);
  for (std::size_t i = 0; i < sizeof call.before; ++i) bytes[i] = static_cast<unsigned char>(i + 1);
  call.above_64 = above_64;
  return call;
}
bool kept(const Call& call) {
  return std::memcmp(&call.before, &call.after, sizeof call.before) == 0;
}

class Calls : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Calls, every_format(), format_name);

// A block, a call that fills a pipeline, and enough strips for every lane.
TEST_P(Calls, KeepTheCallersRegistersWhereverTheStackLies) {
  for (const int samples : {16, 256}) {
    for (const uint64_t above_64 : {0, 16, 32, 48}) {
      std::vector<std::unique_ptr<BusyStrip>> strips, references;
      std::vector<const SChannelStrip_Alg_Context*> contexts;
      for (unsigned seed = 0; seed < 17; ++seed) {
        strips.push_back(std::make_unique<BusyStrip>(format(), samples, seed));
        contexts.push_back(strips.back()->context());
        references.push_back(std::make_unique<BusyStrip>(format(), samples, seed));
        references.back()->process();
      }
      // All alone, then the rest side by side.
      Call alone = call_of(above_64), together = call_of(above_64);
      AlgEntry_16_Stem* const entry = entry_point(GetParam());
      channelstrip_call_on(entry, contexts.data(), contexts.data() + 1, &alone);
      channelstrip_call_on(entry, contexts.data() + 1, contexts.data() + 17, &together);
      EXPECT_TRUE(kept(alone) && kept(together)) << samples << " samples, " << above_64;
      for (std::size_t i = 0; i < strips.size(); ++i) {
        EXPECT_EQ(differences(*strips[i], *references[i]), "")
            << samples << " samples, " << above_64;
      }
    }
  }
}

TEST(CallsCheck, SeesARegisterThatIsNotKept) {
  Call call = call_of(0);
  channelstrip_call_on(channelstrip_clear_xmm9_and_rsi, nullptr, nullptr, &call);
  EXPECT_EQ(call.after.rsi, 0U);
  EXPECT_EQ(call.after.xmm6_to_15[3][0], 0U);
  call.after.rsi = call.before.rsi;
  EXPECT_FALSE(kept(call));
  std::memset(call.before.xmm6_to_15[3], 0, 16);
  EXPECT_TRUE(kept(call));
}

}  // namespace
}  // namespace channelstrip::test::windows_calls_test
