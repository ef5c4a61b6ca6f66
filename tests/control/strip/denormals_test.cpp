#include "control/strip/denormals.h"

#include <gtest/gtest.h>

#include <vector>

#include "control/library/library.h"
#include "control/strip/strip_stream.h"

namespace channelstrip::test::denormals_test {
namespace {

using namespace host;

constexpr float kDenormal = 1e-40f;

TEST(FlushDenormals, HoldsForItsScopeAlone) {
  const auto before = FlushDenormals::control_word();
  {
    const FlushDenormals flush;
    EXPECT_EQ(FlushDenormals::control_word(), before | FlushDenormals::kFlush);
    { const FlushDenormals again; }
    EXPECT_EQ(FlushDenormals::control_word(), before | FlushDenormals::kFlush);
  }
  EXPECT_EQ(FlushDenormals::control_word(), before);
}

TEST(FlushDenormals, TakesOperandsAndResultsAsZeros) {
  const volatile float denormal = kDenormal;
  const volatile float small = 1e-30f;
  const volatile float big = 1e30f;
  EXPECT_GT(denormal * big, 0.0f);
  EXPECT_GT(small * 1e-10f, 0.0f);
  const FlushDenormals flush;
  EXPECT_EQ(denormal * big, 0.0f);
  EXPECT_EQ(small * 1e-10f, 0.0f);
}

TEST(StripStream, FlushesDenormalsAndRestoresTheControlWord) {
  const Library library(CHANNELSTRIP_LIBRARY);
  const StemFormat& mono = *find_stem_format("Mono");
  StripSettings settings;
  settings.pre = {{.type = BandType::kLowShelf, .frequency = 100, .gain = 12}};
  StripStream stream(library, default_layout(mono), 48000, settings);
  const auto before = FlushDenormals::control_word();
  std::vector<float> output;
  stream.process(std::vector<float>(StripStream::kWindow, kDenormal), output);
  EXPECT_EQ(FlushDenormals::control_word(), before);
  EXPECT_EQ(output, std::vector<float>(StripStream::kWindow, 0.0f));
}

}  // namespace
}  // namespace channelstrip::test::denormals_test
