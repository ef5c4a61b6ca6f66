// What a refusal holds. strip_refusal_test.cpp has the words of whole strips.

#include "control/design/possible.h"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <utility>
#include <variant>

#include "bands.h"
#include "control/design/link_map.h"
#include "control/design/strip_coefficients.h"
#include "records.h"
#include "refused.h"
#include "tests/host/support/refusal.h"

namespace channelstrip::test::possible_test {
namespace {

using namespace host;
using Where = Refusal::Where;

template <class Reason>
Reason why(const std::optional<Refusal>& refusal) {
  return std::get<Reason>(refusal.value().why);
}

TEST(Refusal, HoldsTheSettingItsValueAndTheRule) {
  CompressorSettings settings{.knee = 0.05};
  const auto refusal = refusal_of(settings);
  settings = {};
  const auto broken = why<BrokenRule>(refusal);
  EXPECT_EQ(broken.setting, "knee");
  EXPECT_EQ(broken.value, 0.05);
  EXPECT_EQ(broken.unit, "dB");
  EXPECT_EQ(broken.rule, Rule::kZeroOrWithin);
  EXPECT_EQ(broken.low, 0.1);
  EXPECT_EQ(broken.high, 200);
}

TEST(Refusal, HoldsWhatARuleDependsOn) {
  const auto rate = why<BrokenRule>(refusal_of(BandSettings{.frequency = 30000}, 48000));
  EXPECT_EQ(rate.rule, Rule::kBelowHalfTheRate);
  EXPECT_EQ(rate.given, 48000);
  const BandSettings shelf{.type = BandType::kLowShelf, .gain = 6, .shelf_slope = 20};
  const auto slope = why<BrokenRule>(refusal_of(shelf, 48000));
  EXPECT_EQ(slope.rule, Rule::kShelfSlope);
  EXPECT_NEAR(slope.high, 17.6, 0.1);
  EXPECT_EQ(slope.given, 6);
}

TEST(Refusal, HoldsTheBandThatSinglePrecisionLosesAndItsSection) {
  const BandSettings band{.type = BandType::kHighPass, .frequency = 0.5};
  const auto unstable = why<UnstableBand>(refusal_of(band, 96000));
  EXPECT_EQ(unstable.band, band);
  EXPECT_EQ(unstable.sample_rate, 96000);
  EXPECT_FALSE(is_stable(unstable.section));
}

TEST(Refusal, TellsWhereInTheStripItsSettingStands) {
  const auto where = [](auto set) {
    StripSettings settings;
    settings.pre = {{}, {}};
    settings.post = {{}};
    settings.compressor.emplace();
    settings.expander.emplace();
    settings.key_filter.emplace();
    set(settings);
    const ChannelLayout stereo = layout_of("Stereo");
    const auto refusal = refusal_of(settings, kRate, stereo);
    return std::pair(refusal.value().where, refusal->band);
  };
  const auto at = [](Where place, std::size_t band = 0) { return std::pair(place, band); };
  EXPECT_EQ(where([](auto& s) { s.pre[1].q = 0; }), at(Where::kInBand, 2));
  EXPECT_EQ(where([](auto& s) { s.post[0].q = 0; }), at(Where::kInBand, 3));
  EXPECT_EQ(where([](auto& s) { s.post.assign(8, {}); }), at(Where::kInBands));
  EXPECT_EQ(where([](auto& s) { s.compressor->ratio = 0; }), at(Where::kInCompressor));
  EXPECT_EQ(where([](auto& s) { s.expander->hold = -1; }), at(Where::kInExpander));
  EXPECT_EQ(where([](auto& s) { s.detector.time = -1; }), at(Where::kInDetector));
  EXPECT_EQ(where([](auto& s) { s.key_filter->q = 0; }), at(Where::kInKeyFilter));
  EXPECT_EQ(where([](auto& s) { s.link["Stereo"] = "L"; }), at(Where::kInLinks));
  EXPECT_EQ(where([](auto& s) { s.mix = -1; }), at(Where::kInStrip));
}

TEST(Refusal, CountsSections) {
  StripSettings settings;
  settings.pre.assign(4, {});
  settings.post.assign(5, {});
  const auto bands = why<TooManySections>(refusal_of(settings, kRate, layout_of("Mono")));
  EXPECT_EQ(bands.bands, 9u);
  EXPECT_EQ(bands.sections, 9u);
  settings = {};
  settings.key_filter = {.type = BandType::kLowPass, .slope = 30};
  const auto steep = why<SteepKeyFilter>(refusal_of(settings, kRate, layout_of("Mono")));
  EXPECT_EQ(steep.slope, 30);
  EXPECT_EQ(steep.sections, 3);
}

TEST(Refusal, OfALinkMapPointsIntoItsTextAndLayout) {
  using Kind = LinkFault::Kind;
  const ChannelLayout stereo = layout_of("Stereo");
  const auto fault = [&](std::string_view text) {
    return why<LinkFault>(read_link_map(text, stereo).refusal);
  };
  const std::string_view text = "L X";
  const LinkFault unknown = fault(text);
  EXPECT_EQ(unknown.kind, Kind::kUnknownLabel);
  EXPECT_EQ(unknown.text.data(), text.data() + 2);
  EXPECT_EQ(unknown.layout, &stereo);
  EXPECT_EQ(fault("L R | L").kind, Kind::kTwice);
  EXPECT_EQ(fault("L R |").kind, Kind::kEmptyGroup);
  EXPECT_EQ(fault("L").kind, Kind::kMissing);
  EXPECT_EQ(fault("L").text.data(), stereo.labels[1].data());
  StripSettings settings;
  settings.link = {{"5.3", "L R"}};
  EXPECT_EQ(why<LinkFault>(refusal_of(settings, kRate, stereo)).kind, Kind::kUnknownFormat);
}

TEST(Refusal, IsTheFirstOfSeveral) {
  StripSettings settings;
  settings.mix = -1;
  settings.detector.time = -1;
  const ChannelLayout mono = layout_of("Mono");
  EXPECT_EQ(words(refusal_of(settings, kRate, mono)), "detector.time -1 ms is not 0 to 10000 ms");
  settings.post = {{.q = 0, .gain = 300}};
  EXPECT_EQ(words(refusal_of(settings, kRate, mono)),
            "eq band 1: gain 300 dB is not -200 to 200 dB");
  settings.glide = -1;
  EXPECT_EQ(words(refusal_of(settings, kRate, mono)), "glide -1 ms is not 0 to 10000 ms");
}

TEST(RequirePossible, ThrowsTheWords) {
  const auto refused = [](const StripSettings& settings) {
    return refusal<std::invalid_argument>(
        [&] { require_possible(settings, kRate, layout_of("Stereo")); });
  };
  StripSettings settings;
  EXPECT_EQ(refused(settings), "");
  settings.mix = 101;
  EXPECT_EQ(refused(settings), "mix 101 % is not 0 to 100 %");
  settings.link = {{"Stereo", "L X"}};
  EXPECT_EQ(refused(settings), "link: the map names X, the channels are L R");
}

}  // namespace
}  // namespace channelstrip::test::possible_test
