// The C++ header: what it frees, throws and hands over.

#include <gtest/gtest.h>
#include <channelstrip/channelstrip.hpp>

#include <array>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace channelstrip::test::cpp_test {
namespace {

using channelstrip::Settings;
using channelstrip::Strip;

static_assert(std::is_nothrow_move_constructible_v<Settings> &&
              !std::is_copy_constructible_v<Settings>);
static_assert(std::is_nothrow_move_constructible_v<Strip> && !std::is_copy_constructible_v<Strip>);
static_assert(noexcept(std::declval<Strip&>().process(std::declval<channelstrip_block>())));
static_assert(noexcept(std::declval<Strip&>().set(1, 1.0)));
static_assert(noexcept(std::declval<Strip&>().reset()));

channelstrip_strip_options stereo(const Settings* settings = nullptr) {
  return {.format = find_format("Stereo"),
          .order = CHANNELSTRIP_ORDER_WAV,
          .sample_rate = 48000,
          .settings = settings ? settings->get() : nullptr};
}

template <class Call>
Status thrown_by(Call call) {
  try {
    call();
  } catch (const Error& error) {
    EXPECT_STREQ(error.what(), channelstrip_status_text(error.status()));
    return error.status();
  }
  return CHANNELSTRIP_OK;
}

struct Signal {
  std::array<std::array<float, 64>, 2> in{}, out{};
  std::array<const float*, 2> inputs{in[0].data(), in[1].data()};
  std::array<float*, 2> outputs{out[0].data(), out[1].data()};
};

TEST(ControlInCpp, NamesFormatsAndParameters) {
  EXPECT_EQ(version(), channelstrip_version());
  EXPECT_STREQ(format_info(find_format("5.1")).name, "5.1");
  EXPECT_EQ(role_of(find_format("5.1"), CHANNELSTRIP_ORDER_WAV, 3), "LFE");
  EXPECT_EQ(role_of(99, CHANNELSTRIP_ORDER_WAV, 0), "");
  EXPECT_EQ(parameter_info(0).id, find_parameter("gain_in"));
  const std::uint32_t ratio = find_parameter("compressor_ratio");
  EXPECT_EQ(value_to_text(ratio, 4), "4:1");
  EXPECT_EQ(text_to_value(ratio, "inf"), 1000);
  EXPECT_EQ(position_to_value(ratio, value_to_position(ratio, 1000)), 1000);
}

TEST(ControlInCpp, ThrowsTheStatus) {
  EXPECT_EQ(thrown_by([] { format_info(99); }), CHANNELSTRIP_UNKNOWN);
  EXPECT_EQ(thrown_by([] { find_parameter("loudness"); }), CHANNELSTRIP_UNKNOWN);
  EXPECT_EQ(thrown_by([] { value_to_text(1, 0.0 / 0.0); }), CHANNELSTRIP_INVALID);
  EXPECT_EQ(thrown_by([] { Settings().read("mix = "); }), CHANNELSTRIP_SYNTAX);
  EXPECT_EQ(thrown_by([] { Settings().set_links(1, "L"); }), CHANNELSTRIP_INVALID);
  EXPECT_EQ(thrown_by([] { Strip({.format = 0, .order = 0, .sample_rate = 1, .settings = {}}); }),
            CHANNELSTRIP_INVALID);
}

TEST(ControlInCpp, SettingsAreWrittenWhateverTheirLength) {
  Settings settings, read;
  EXPECT_EQ(settings.write(), "");
  for (std::uint32_t i = 0; i < channelstrip_parameter_count(); ++i) {
    const channelstrip_parameter p = parameter_info(i);
    settings.set(p.id, p.maximum);
    read.read(settings.write());  // lengths of all kinds
    EXPECT_EQ(read.write(), settings.write());
    EXPECT_EQ(read.value(p.id), p.maximum);
  }
  settings.set_links(find_format("Stereo"), "R | L");
  EXPECT_EQ(settings.links(find_format("Stereo")), "L | R");
  read.assign(settings);
  EXPECT_EQ(read.links(find_format("Stereo")), "L | R");
}

TEST(ControlInCpp, ReportsReachTheCallerAndSoDoTheirExceptions) {
  Settings settings;
  std::vector<std::string> reports;
  settings.read("mix = 20\na = 1\nb = 2\n",
                [&](std::uint32_t line, std::uint32_t, std::string_view what) {
                  reports.push_back(std::to_string(line) + " " + std::string(what));
                });
  EXPECT_EQ(reports, (std::vector<std::string>{"2 unknown key a", "3 unknown key b"}));
  EXPECT_EQ(settings.value(find_parameter("mix")), 20);
  int calls = 0;
  const auto read = [&] {
    settings.read("a = 1\nb = 2\n", [&](auto...) {
      ++calls;
      throw std::out_of_range("enough");
    });
  };
  EXPECT_THROW(read(), std::out_of_range);
  EXPECT_EQ(calls, 1);
}

TEST(ControlInCpp, PicturesTakeSpansOfOneLength) {
  Settings settings;
  settings.set(find_parameter("eq1_on"), 1);
  settings.set(find_parameter("eq1_gain"), 6);
  settings.set(find_parameter("compressor_on"), 1);
  const std::array frequencies{1000.0, 0.0}, levels{0.0, -60.0};
  std::array decibels{0.0, 0.0}, gains{0.0, 0.0};
  settings.response(48000, CHANNELSTRIP_EQ_ALL, frequencies, decibels);
  EXPECT_NEAR(decibels[0], 6, 1e-3);
  settings.static_gains(true, levels, gains, {});
  EXPECT_NEAR(gains[0], -10, 1e-4);  // 2:1 above -20 dB
  const auto short_of = [](std::span<double> all) { return all.first(1); };
  EXPECT_EQ(thrown_by([&] { settings.response(48000, 0, frequencies, short_of(decibels)); }),
            CHANNELSTRIP_INVALID);
  EXPECT_EQ(thrown_by([&] { settings.static_gains(true, levels, {}, short_of(gains)); }),
            CHANNELSTRIP_INVALID);
  settings.set(find_parameter("eq2_on"), 1);
  settings.set(find_parameter("eq2_frequency"), 30000);
  EXPECT_EQ(settings.adjustments(48000).size(), 1u);
}

TEST(ControlInCpp, AStripProcessesSetsAndMeters) {
  Settings settings;
  Strip first(stereo(&settings));
  const channelstrip_strip* const same = first.get();
  Strip strip = std::move(first);
  EXPECT_EQ(strip.get(), same);
  Signal signal;
  signal.in[0].fill(0.5f);
  EXPECT_EQ(strip.process(signal.inputs.data(), signal.outputs.data(), 64), CHANNELSTRIP_OK);
  EXPECT_NEAR(signal.out[0][63], 0.5f, 1e-5f);
  channelstrip_meters meters;
  EXPECT_TRUE(strip.read_meters(meters));
  EXPECT_EQ(meters.frames, 64u);
  EXPECT_FALSE(strip.read_meters(meters));

  const std::array<channelstrip_event, 1> events{{{0, find_parameter("bypass"), 1}}};
  EXPECT_EQ(strip.process(signal.inputs.data(), signal.outputs.data(), 64, nullptr, events),
            CHANNELSTRIP_OK);
  EXPECT_EQ(strip.set(find_parameter("mix"), 25), CHANNELSTRIP_OK);
  EXPECT_EQ(strip.set(12345, 25), CHANNELSTRIP_UNKNOWN);
  EXPECT_EQ(strip.read_settings(settings), CHANNELSTRIP_OK);
  EXPECT_EQ(settings.value(find_parameter("mix")), 25);
  EXPECT_EQ(settings.value(find_parameter("bypass")), 1);
  EXPECT_EQ(strip.set(Settings()), CHANNELSTRIP_OK);
  EXPECT_EQ(strip.reset(), CHANNELSTRIP_OK);
  EXPECT_EQ(strip.process({}), CHANNELSTRIP_OK);  // no frames
}

TEST(ControlInCpp, ManyStripsTakeABlockEach) {
  Strip a(stereo()), b(stereo());
  Signal of_a, of_b;
  of_b.in[1].fill(0.25f);
  const std::array strips{a.get(), b.get()};
  const std::array<channelstrip_block, 2> blocks{
      {{of_a.inputs.data(), nullptr, of_a.outputs.data(), 64, 0, nullptr},
       {of_b.inputs.data(), nullptr, of_b.outputs.data(), 64, 0, nullptr}}};
  EXPECT_EQ(Strip::process_many(strips, blocks), CHANNELSTRIP_OK);
  EXPECT_NEAR(of_b.out[1][63], 0.25f, 1e-5f);
  EXPECT_EQ(Strip::process_many(strips, std::span(blocks).first(1)), CHANNELSTRIP_INVALID);
}

}  // namespace
}  // namespace channelstrip::test::cpp_test
