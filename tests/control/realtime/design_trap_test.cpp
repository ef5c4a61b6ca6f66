// Settings are judged and designed without heap, lock and exception.

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <optional>
#include <utility>

#include "control/design/possible.h"
#include "control/design/refusal_words.h"
#include "control/design/strip_coefficients.h"
#include "trap.h"

namespace channelstrip::test::design_trap_test {
namespace {

using namespace host;

constexpr double kRate = 96000;

StripSettings busy() {
  StripSettings settings;
  settings.pre = {{.type = BandType::kHighPass, .frequency = 30, .slope = 48}, {.gain = 6}};
  settings.post = {{.type = BandType::kLowShelf, .frequency = 80, .gain = -3, .shelf_slope = 0.9},
                   {.type = BandType::kPeak, .gain = 2, .design = BandDesign::kMatched}};
  settings.compressor = {.auto_makeup = true};
  settings.expander = {.hysteresis = 3};
  settings.detector = {DetectorMode::kAverage, 50};
  settings.key_filter = {.type = BandType::kBandPass};
  settings.link = {{"5.1", "L R C | LFE | Ls Rs"}};
  return settings;
}

TEST(Design, NeitherAllocatesNorLocksNorThrows) {
  const ChannelLayout layout = default_layout(*find_stem_format("5.1"));
  const StripSettings settings = busy();
  std::optional<Refusal> refusal;
  StripCoefficients strip;
  const Trapped counted = trapped([&] {
    refusal = refusal_of(settings, kRate, layout);
    strip = design_strip(settings, kRate, layout);
  });
  EXPECT_EQ(counted, Trapped{});
  EXPECT_FALSE(refusal);
  EXPECT_EQ(strip.eq.endBand[1], 7);
  EXPECT_EQ(strip.dynamics.linkGroup[3], 1);
}

TEST(Refusal, NeitherAllocatesNorLocksNorThrows) {
  const ChannelLayout layout = default_layout(*find_stem_format("5.1"));
  const std::pair<const char*, std::function<void(StripSettings&)>> wrong[] = {
      {"glide", [](StripSettings& s) { s.glide = std::nan(""); }},
      {"eq band 1", [](StripSettings& s) { s.pre[0].slope = 102; }},
      {"eq band 1", [](StripSettings& s) { s.pre[0].frequency = 0.1; }},
      {"eq band 3", [](StripSettings& s) { s.post[0].shelf_slope = 90; }},
      {"eq: 4 bands", [](StripSettings& s) { s.pre[0].slope = 96; }},
      {"compressor.knee", [](StripSettings& s) { s.compressor->knee = 0.01; }},
      {"expander.range", [](StripSettings& s) { s.expander->range = 3; }},
      {"detector.time", [](StripSettings& s) { s.detector.time = -1; }},
      {"key filter: slope",
       [](StripSettings& s) { s.key_filter = {.type = BandType::kLowPass, .slope = 24}; }},
      {"link: no format", [](StripSettings& s) { s.link["9.1"] = "L R"; }},
      {"link: the map", [](StripSettings& s) { s.link["5.1"] = "L R C | LFE | Ls Ls"; }},
      {"mix", [](StripSettings& s) { s.mix = 101; }},
  };
  for (const auto& [begins, set] : wrong) {
    StripSettings settings = busy();
    set(settings);
    std::optional<Refusal> refusal;
    const Trapped counted = trapped([&] { refusal = refusal_of(settings, kRate, layout); });
    EXPECT_EQ(counted, Trapped{}) << begins;
    ASSERT_TRUE(refusal) << begins;
    EXPECT_TRUE(words_of(*refusal).starts_with(begins)) << words_of(*refusal);
  }
}

}  // namespace
}  // namespace channelstrip::test::design_trap_test
