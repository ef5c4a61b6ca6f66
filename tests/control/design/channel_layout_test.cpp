#include "control/design/channel_layout.h"

#include <fmt/ranges.h>
#include <gtest/gtest.h>

#include "tests/host/support/refusal.h"

namespace channelstrip::test::channel_layout_test {
namespace {

using namespace host;
using enum Speaker;

// "5.1: L R C LFE Ls Rs"
std::string text(const ChannelLayout& layout) {
  return fmt::format("{}: {}", layout.format->name, fmt::join(layout.labels, " "));
}

std::string chosen(const std::vector<Speaker>& speakers) {
  return text(choose_layout(static_cast<int>(speakers.size()), speakers));
}

std::string forced(const char* format, const std::vector<Speaker>& speakers) {
  return text(choose_layout(static_cast<int>(speakers.size()), speakers, find_stem_format(format)));
}

std::string unnamed(int channels) {
  return text(choose_layout(channels, {}));
}

void expect_defaults(ChannelOrder order, const std::vector<std::string>& expected) {
  std::vector<std::string> actual;
  for (const StemFormat& format : stem_formats()) {
    actual.push_back(text(default_layout(format, order)));
  }
  EXPECT_EQ(actual, expected);
}

TEST(DefaultLayout, IsInTheOrderOfTheWavMask) {
  expect_defaults(ChannelOrder::kWav, {"Mono: M", "Stereo: L R", "LCR: L R C", "Quad: L R Ls Rs",
                                       "LCRS: L R C S", "5.0: L R C Ls Rs", "5.1: L R C LFE Ls Rs",
                                       "6.0: L R C Cs Ls Rs", "6.1: L R C LFE Cs Ls Rs",
                                       "7.0: L R C Lb Rb Ls Rs", "7.1: L R C LFE Lb Rb Ls Rs"});
  EXPECT_EQ(text(default_layout(*find_stem_format("LCR"))), "LCR: L R C");
}

TEST(DefaultLayout, OfFilmGoesFromLeftToRight) {
  expect_defaults(ChannelOrder::kFilm, {"Mono: M", "Stereo: L R", "LCR: L C R", "Quad: L R Ls Rs",
                                        "LCRS: L C R S", "5.0: L C R Ls Rs", "5.1: L C R Ls Rs LFE",
                                        "6.0: L C R Ls Cs Rs", "6.1: L C R Ls Cs Rs LFE",
                                        "7.0: L C R Ls Rs Lb Rb", "7.1: L C R Ls Rs Lb Rb LFE"});
}

TEST(ChannelOrder, IsWrittenInLowerCase) {
  EXPECT_EQ(kChannelOrders[static_cast<int>(ChannelOrder::kWav)], "wav");
  EXPECT_EQ(kChannelOrders[static_cast<int>(ChannelOrder::kFilm)], "film");
}

TEST(ChosenLayout, WithoutSpeakersIsTheUsualOneOfTheCount) {
  EXPECT_EQ(unnamed(1), "Mono: M");
  EXPECT_EQ(unnamed(2), "Stereo: L R");
  EXPECT_EQ(unnamed(3), "LCR: L R C");
  EXPECT_EQ(unnamed(4), "Quad: L R Ls Rs");
  EXPECT_EQ(unnamed(5), "5.0: L R C Ls Rs");
  EXPECT_EQ(unnamed(6), "5.1: L R C LFE Ls Rs");
  EXPECT_EQ(unnamed(7), "6.1: L R C LFE Cs Ls Rs");
  EXPECT_EQ(unnamed(8), "7.1: L R C LFE Lb Rb Ls Rs");
}

TEST(ChosenLayout, KeepsTheOrderOfTheFile) {
  EXPECT_EQ(chosen({kFrontLeft, kFrontCenter, kFrontRight, kSideLeft, kSideRight, kLfe}),
            "5.1: L C R Ls Rs LFE");
}

TEST(ChosenLayout, BackPairAloneIsTheSurroundPair) {
  EXPECT_EQ(chosen({kFrontLeft, kFrontRight, kBackLeft, kBackRight}), "Quad: L R Ls Rs");
}

TEST(ChosenLayout, BackPairStandsBehindASidePair) {
  EXPECT_EQ(chosen({kFrontLeft, kFrontRight, kFrontCenter, kLfe, kBackLeft, kBackRight, kSideLeft,
                    kSideRight}),
            "7.1: L R C LFE Lb Rb Ls Rs");
}

TEST(ChosenLayout, FrontCentrePairIsOneGroup) {
  EXPECT_EQ(chosen({kFrontLeft, kFrontRight, kFrontCenter, kLfe, kBackLeft, kBackRight,
                    kFrontLeftOfCenter, kFrontRightOfCenter}),
            "7.1: L R C LFE Ls Rs Lc Rc");
}

TEST(ChosenLayout, FourChannelsOfThreeGroupsAreLcrs) {
  EXPECT_EQ(chosen({kFrontLeft, kFrontRight, kFrontCenter, kBackCenter}), "LCRS: L R C S");
  EXPECT_EQ(chosen({kFrontLeft, kFrontRight, kFrontCenter, kLfe}), "LCRS: L R C LFE");
}

TEST(ChosenLayout, LfeTellsSixAndSevenChannelsApart) {
  EXPECT_EQ(chosen({kFrontLeft, kFrontRight, kFrontCenter, kLfe, kBackLeft, kBackRight}),
            "5.1: L R C LFE Ls Rs");
  EXPECT_EQ(chosen({kFrontLeft, kFrontRight, kFrontCenter, kBackCenter, kSideLeft, kSideRight}),
            "6.0: L R C Cs Ls Rs");
  EXPECT_EQ(
      chosen({kFrontLeft, kFrontRight, kFrontCenter, kLfe, kBackCenter, kSideLeft, kSideRight}),
      "6.1: L R C LFE Cs Ls Rs");
  EXPECT_EQ(
      chosen({kFrontLeft, kFrontRight, kFrontCenter, kBackLeft, kBackRight, kSideLeft, kSideRight}),
      "7.0: L R C Lb Rb Ls Rs");
}

TEST(ChosenLayout, SpeakersThatMakeNoLayoutCountAsNotNamed) {
  // Unknown, repeated, half a pair, more groups than fit, another count.
  EXPECT_EQ(chosen({kOther, kOther, kOther, kOther}), "Quad: L R Ls Rs");
  EXPECT_EQ(chosen({kFrontLeft, kFrontRight, kFrontLeft}), "LCR: L R C");
  EXPECT_EQ(chosen({kFrontLeft, kFrontCenter}), "Stereo: L R");
  EXPECT_EQ(chosen({kFrontLeft, kFrontRight, kBackLeft, kSideRight}), "Quad: L R Ls Rs");
  EXPECT_EQ(chosen({kFrontLeft, kFrontRight, kBackLeft, kBackRight, kSideRight}),
            "5.0: L R C Ls Rs");
  EXPECT_EQ(chosen({kFrontLeft, kFrontRight, kFrontCenter, kLfe, kBackCenter}), "5.0: L R C Ls Rs");
  EXPECT_EQ(chosen({kFrontCenter, kLfe}), "Stereo: L R");
  EXPECT_EQ(text(choose_layout(3, {kFrontLeft, kFrontRight})), "LCR: L R C");
}

TEST(ChosenLayout, OneChannelIsMonoWhateverItFeeds) {
  EXPECT_EQ(chosen({kFrontCenter}), "Mono: M");
  EXPECT_EQ(chosen({kLfe}), "Mono: M");
}

TEST(ForcedLayout, KeepsSpeakersThatAgree) {
  EXPECT_EQ(forced("Quad", {kBackLeft, kBackRight, kFrontLeft, kFrontRight}), "Quad: Ls Rs L R");
}

TEST(ForcedLayout, WinsOverSpeakersThatMeanAnother) {
  EXPECT_EQ(forced("LCRS", {kFrontLeft, kFrontRight, kBackLeft, kBackRight}), "LCRS: L R C S");
  EXPECT_EQ(forced("Quad", {kFrontLeft, kFrontRight, kFrontCenter, kBackCenter}),
            "Quad: L R Ls Rs");
  EXPECT_EQ(forced("7.0", {kFrontLeft, kFrontRight, kFrontCenter, kLfe, kBackCenter, kSideLeft,
                           kSideRight}),
            "7.0: L R C Lb Rb Ls Rs");
}

TEST(ForcedLayout, FormatsOfOneProcessorShareTheirSpeakers) {
  EXPECT_EQ(forced("6.0", {kFrontLeft, kFrontRight, kFrontCenter, kLfe, kBackLeft, kBackRight}),
            "6.0: L R C LFE Ls Rs");
}

TEST(ForcedLayout, WithoutSpeakersIsTheDefault) {
  EXPECT_EQ(text(choose_layout(4, {}, find_stem_format("LCRS"))), "LCRS: L R C S");
}

TEST(StatedOrder, WinsOverTheOrderOfTheFile) {
  const auto stated = [](ChannelOrder order, const std::vector<Speaker>& speakers) {
    return text(choose_layout(static_cast<int>(speakers.size()), speakers, nullptr, order));
  };
  const std::vector wav{kFrontLeft, kFrontRight, kFrontCenter, kLfe, kBackLeft, kBackRight};
  const std::vector film{kFrontLeft, kFrontCenter, kFrontRight, kSideLeft, kSideRight, kLfe};
  EXPECT_EQ(stated(ChannelOrder::kFilm, wav), "5.1: L C R Ls Rs LFE");
  EXPECT_EQ(stated(ChannelOrder::kWav, film), "5.1: L R C LFE Ls Rs");
  EXPECT_EQ(stated(ChannelOrder::kFilm, film), "5.1: L C R Ls Rs LFE");
  EXPECT_EQ(stated(ChannelOrder::kWav, wav), "5.1: L R C LFE Ls Rs");
}

TEST(StatedOrder, LeavesTheSpeakersToTheFile) {
  const std::vector wide{kFrontLeft, kFrontRight, kFrontCenter,       kLfe,
                         kBackLeft,  kBackRight,  kFrontLeftOfCenter, kFrontRightOfCenter};
  EXPECT_EQ(text(choose_layout(8, wide, nullptr, ChannelOrder::kFilm)),
            "7.1: L Lc C Rc R Ls Rs LFE");
  EXPECT_EQ(text(choose_layout(8, wide, nullptr, ChannelOrder::kWav)),
            "7.1: L R C LFE Ls Rs Lc Rc");
  const std::vector lcrs{kFrontLeft, kFrontRight, kFrontCenter, kBackCenter};
  EXPECT_EQ(text(choose_layout(4, lcrs, nullptr, ChannelOrder::kFilm)), "LCRS: L C R S");
}

TEST(StatedOrder, IsThatOfTheFormatWhereNoSpeakersAreNamedOrTheyContradictIt) {
  const StemFormat* seven = find_stem_format("7.0");
  EXPECT_EQ(text(choose_layout(6, {}, nullptr, ChannelOrder::kFilm)), "5.1: L C R Ls Rs LFE");
  EXPECT_EQ(text(choose_layout(7, {}, seven, ChannelOrder::kFilm)), "7.0: L C R Ls Rs Lb Rb");
  EXPECT_EQ(
      text(choose_layout(
          7, {kFrontLeft, kFrontRight, kFrontCenter, kLfe, kBackCenter, kSideLeft, kSideRight},
          seven, ChannelOrder::kFilm)),
      "7.0: L C R Ls Rs Lb Rb");
}

TEST(ChosenLayout, RefusesCountsThatNoFormatHas) {
  EXPECT_EQ(refusal<std::invalid_argument>([] { choose_layout(0, {}); }),
            "no format has 0 channels");
  EXPECT_EQ(refusal<std::invalid_argument>([] { choose_layout(9, {}); }),
            "no format has 9 channels");
}

TEST(ForcedLayout, RefusesAnotherCount) {
  EXPECT_EQ(refusal<std::invalid_argument>([] { choose_layout(4, {}, find_stem_format("5.1")); }),
            "format 5.1 has 6 channels, the stream has 4");
}

}  // namespace
}  // namespace channelstrip::test::channel_layout_test
