#include "control/strip/sharing.h"

#include <gtest/gtest.h>

#include <array>

namespace channelstrip::test::sharing_test {
namespace {

using namespace host;

// Three channels' buffers, a key and three outputs.
struct Call {
  std::array<float, 7> samples = {};
  std::array<const float*, 3> inputs{&samples[0], &samples[1], &samples[2]};
  const float* key = &samples[3];
  std::array<float*, 3> outputs{&samples[4], &samples[5], &samples[6]};

  Sharing sharing(BufferSharing& of) const { return of.of(inputs.data(), key, outputs.data()); }
  Sharing sharing() const {
    BufferSharing fresh(3);
    return sharing(fresh);
  }
};

TEST(Sharing, IsNothingForBuffersOfTheirOwn) {
  Call call;
  EXPECT_EQ(call.sharing(), Sharing::kNothing);
  call.key = nullptr;
  EXPECT_EQ(call.sharing(), Sharing::kNothing);
  call.inputs[1] = call.inputs[0];  // one source for two channels
  EXPECT_EQ(call.sharing(), Sharing::kNothing);
}

TEST(Sharing, IsOfInputsInPlace) {
  Call call;
  call.outputs = {&call.samples[0], &call.samples[1], &call.samples[2]};
  EXPECT_EQ(call.sharing(), Sharing::kInputs);
  call.outputs = {&call.samples[4], &call.samples[1], &call.samples[6]};
  EXPECT_EQ(call.sharing(), Sharing::kInputs);
}

TEST(Sharing, IsCrossedWhereAnOutputIsReadElsewhere) {
  for (std::size_t c = 0; c < 3; ++c) {
    for (std::size_t read = 0; read < 4; ++read) {
      if (read == c) continue;
      Call call;
      call.outputs[c] = &call.samples[read];
      EXPECT_EQ(call.sharing(), Sharing::kCrossed) << c << " is " << read;
    }
  }
  Call call;
  call.outputs[2] = &call.samples[2];
  call.inputs[0] = &call.samples[2];
  EXPECT_EQ(call.sharing(), Sharing::kCrossed);
}

TEST(Sharing, IsFoundAnewForAnyOtherBuffer) {
  BufferSharing sharing(3);
  Call call;
  EXPECT_EQ(call.sharing(sharing), Sharing::kNothing);
  EXPECT_EQ(call.sharing(sharing), Sharing::kNothing);
  call.key = &call.samples[6];
  EXPECT_EQ(call.sharing(sharing), Sharing::kCrossed);
  call.key = nullptr;
  EXPECT_EQ(call.sharing(sharing), Sharing::kNothing);
  call.inputs[2] = &call.samples[6];
  EXPECT_EQ(call.sharing(sharing), Sharing::kInputs);
  call.outputs[1] = &call.samples[0];
  EXPECT_EQ(call.sharing(sharing), Sharing::kCrossed);
  call.outputs[1] = &call.samples[1];
  EXPECT_EQ(call.sharing(sharing), Sharing::kInputs);
}

}  // namespace
}  // namespace channelstrip::test::sharing_test
