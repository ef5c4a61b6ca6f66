#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>

#include "control/strip/denormals.h"
#include "lv2_host.h"

namespace channelstrip::plugin_test::lv2_test {
namespace {

const Lv2Binary& binary() {
  static const Lv2Binary loaded(CHANNELSTRIP_LV2);
  return loaded;
}

void set_busy(Lv2Instance& plugin) {
  for (const auto& [symbol, value] : kBusy) plugin.control(symbol) = static_cast<float>(value);
}

TEST(Lv2Binary, HasAPluginForEveryFormat) {
  ASSERT_EQ(channelstrip_format_count(), 11u);
  for (std::uint32_t format = 0; format < 11; ++format) {
    EXPECT_EQ(binary().descriptor(format)->URI, lv2::uri_of(format));
  }
  EXPECT_EQ(binary().descriptor(11), nullptr);
  EXPECT_EQ(binary().descriptor(0xffffffff), nullptr);
}

TEST(Lv2Binary, IsLoadedAndUnloadedAgain) {
  for (int i = 0; i < 100; ++i) {
    const Lv2Binary again(CHANNELSTRIP_LV2);
    Lv2Instance plugin(again, 1, kRate);
    plugin.activate();
    plugin.play(noise(2, 100), {}, [] { return 50; });
  }
}

TEST(Lv2Plugin, PlaysWhatAStripPlaysHoweverItIsCut) {
  unsigned seed = 1;
  for (std::uint32_t format = 0; format < channelstrip_format_count(); ++format) {
    for (const bool keyed : {false, true}) {
      channelstrip_format info;
      channelstrip_format_info(format, &info, sizeof info);
      const Planar input = noise(info.channels, 9001);
      const std::vector<float> key = keyed ? noise(1, 9001)[0] : std::vector<float>();
      Settings settings = busy_settings();
      channelstrip_settings_set(settings.get(), id_of("key_enable"), keyed);
      const Planar output = expected(format, settings.get(), input, key);
      for (const bool in_place : {false, true}) {
        Lv2Instance plugin(binary(), format, kRate);
        set_busy(plugin);
        plugin.control("key_enable") = keyed;
        plugin.activate();
        std::minstd_rand random(++seed);
        EXPECT_EQ(plugin.play(
                      input, key, [&] { return random() % 2049; }, in_place),
                  output)
            << info.name << (keyed ? ", keyed" : "") << (in_place ? ", in place" : "");
      }
    }
  }
}

TEST(Lv2Plugin, PlaysTheSameInCallsOfAnySize) {
  const Planar input = noise(2, 20000);
  const Planar output = expected(format_of("Stereo"), busy_settings().get(), input, {});
  for (const std::size_t frames : {1u, 15u, 16u, 17u, 64u, 82u, 227u, 1024u, 4096u, 16384u}) {
    Lv2Instance plugin(binary(), format_of("Stereo"), kRate);
    set_busy(plugin);
    plugin.activate();
    EXPECT_EQ(plugin.play(input, {}, [frames] { return frames; }), output) << frames;
  }
}

TEST(Lv2Plugin, PlaysAtAnySampleRateAStripHas) {
  for (const double rate : {1000.0, 8000.0, 22050.0, 44100.0, 96000.0, 192000.0, 768000.0}) {
    Lv2Instance plugin(binary(), 1, rate);
    set_busy(plugin);
    plugin.activate();
    EXPECT_TRUE(are_finite(plugin.play(noise(2, 4800), {}, [] { return 480; }))) << rate;
  }
}

TEST(Lv2Plugin, TakesDenormalsSilenceAndSamplesThatAreNoNumbers) {
  Lv2Instance plugin(binary(), 1, kRate);
  set_busy(plugin);
  plugin.activate();
  const auto cut = [] { return 480; };
  const auto word = host::FlushDenormals::control_word() & host::FlushDenormals::kFlush;
  Planar input = noise(2, 4800);
  for (float& x : input[0]) x *= 1e-40f;
  EXPECT_TRUE(are_finite(plugin.play(input, {}, cut)));
  input[1][100] = std::nanf("");
  input[0][200] = std::numeric_limits<float>::infinity();
  EXPECT_TRUE(are_finite(plugin.play(input, {}, cut)));
  EXPECT_EQ(plugin.play(Planar(2, std::vector<float>(96000)), {}, cut)[0].back(), 0);
  EXPECT_EQ(host::FlushDenormals::control_word() & host::FlushDenormals::kFlush, word);
}

// Hosts may connect and set controls between activation and the first call, too.
TEST(Lv2Plugin, BeginsOnWhatItsControlsAreInTheFirstCall) {
  const Planar input = noise(1, 4800);
  Lv2Instance plugin(binary(), 0, kRate);
  plugin.activate();
  plugin.run({nullptr}, nullptr, {nullptr}, 0);
  set_busy(plugin);
  plugin.run({nullptr}, nullptr, {nullptr}, 0);
  EXPECT_EQ(plugin.play(input, {}, [] { return 64; }),
            expected(0, busy_settings().get(), input, {}));
}

TEST(Lv2Plugin, BeginsAnewWhenActivatedAgain) {
  const Planar input = noise(2, 4800);
  Lv2Instance plugin(binary(), 1, kRate);
  set_busy(plugin);
  plugin.activate();
  const auto cut = [] { return 100; };
  const Planar first = plugin.play(input, {}, cut);
  EXPECT_NE(plugin.play(input, {}, cut), first);
  plugin.activate();
  plugin.activate();  // without a call in between
  EXPECT_EQ(plugin.play(input, {}, cut), first);
}

TEST(Lv2Plugin, GlidesToAControlThatChanges) {
  const Planar input = noise(2, 9600);
  const channelstrip_event change{4800, id_of("eq4_gain"), 8.25};
  for (const bool scattered : {false, true}) {
    Lv2Instance plugin(binary(), 1, kRate);
    if (scattered) plugin.scatter_controls();
    set_busy(plugin);
    plugin.activate();
    int calls = 0;
    const Planar output = plugin.play(input, {}, [&] {
      if (++calls == 49) plugin.control("eq4_gain") = 8.25f;
      return 100;
    });
    EXPECT_EQ(output, expected(1, busy_settings().get(), input, {}, {change}));
  }
}

TEST(Lv2Plugin, PassesItsInputWhileItIsNotEnabled) {
  const Planar input = noise(2, 48000);
  Lv2Instance plugin(binary(), 1, kRate);
  set_busy(plugin);
  plugin.control("enabled") = 0;
  plugin.activate();
  EXPECT_EQ(plugin.play(input, {}, [] { return 480; }), input);
  plugin.control("enabled") = 1;
  const Planar after = plugin.play(input, {}, [] { return 480; });
  EXPECT_NE(after, input);
  EXPECT_NEAR(after[0][0], input[0][0], 0.01);  // glides
}

TEST(Lv2Plugin, IgnoresControlsThatAreNoNumbers) {
  const Planar input = noise(1, 4800);
  Lv2Instance plugin(binary(), 0, kRate);
  set_busy(plugin);
  plugin.activate();
  int calls = 0;
  const Planar output = plugin.play(input, {}, [&] {
    plugin.control("eq4_gain") = ++calls % 2 ? std::nanf("") : -4.2f;
    plugin.control("compressor_ratio") = calls % 2 ? std::numeric_limits<float>::infinity() : 3.0f;
    return 37;
  });
  EXPECT_EQ(output, expected(0, busy_settings().get(), input, {}));
}

TEST(Lv2Plugin, TakesAnyValueOfAnyControl) {
  std::minstd_rand random(3);
  Lv2Instance plugin(binary(), format_of("5.1"), kRate);
  plugin.activate();
  const Planar input = noise(6, 64);
  for (int i = 0; i < 300; ++i) {
    for (const channelstrip_parameter& p : lv2::port_parameters()) {
      if (random() % 8 == 0)
        plugin.control(p.symbol) =
            std::ldexp(static_cast<float>(random()) - 1e9f, -static_cast<int>(random() % 60));
    }
    for (const auto& channel : plugin.play(input, {}, [] { return 64; })) {
      for (const float x : channel) ASSERT_TRUE(std::isfinite(x));
    }
  }
}

TEST(Lv2Plugin, ShowsPeaksReductionsAndNoLatency) {
  Planar input(2, std::vector<float>(1024));
  input[0][7] = 0.5f;
  Lv2Instance plugin(binary(), 1, kRate);
  plugin.activate();
  const auto cut = [] { return 1024; };
  plugin.play(input, {}, cut);
  const lv2::Ports& ports = plugin.ports();
  EXPECT_NEAR(plugin.meter(ports.input_peak(0)), -6.02, 0.01);
  EXPECT_EQ(plugin.meter(ports.input_peak(1)), -120);
  EXPECT_NEAR(plugin.meter(ports.output_peak(0)), -6.02, 0.01);
  EXPECT_EQ(plugin.meter(ports.compressor_reduction()), 0);
  EXPECT_EQ(plugin.meter(ports.expander_reduction()), 0);
  EXPECT_EQ(plugin.latency(), 0);

  set_busy(plugin);
  for (int i = 0; i < 50; ++i) plugin.play(noise(2, 1024), {}, cut);
  EXPECT_GT(plugin.meter(ports.compressor_reduction()), 6);
  EXPECT_LT(plugin.meter(ports.compressor_reduction()), 30);
}

TEST(Lv2Plugin, RefusesSampleRatesThatNoStripHas) {
  for (const double rate :
       {0.0, -48000.0, 999.0, 1000001.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
    EXPECT_FALSE(Lv2Instance(binary(), 0, rate).is_there()) << rate;
  }
  for (const double rate : {1000.0, 8000.0, 768000.0}) {
    EXPECT_TRUE(Lv2Instance(binary(), 0, rate).is_there()) << rate;
  }
}

Lv2State links_of(const std::string& toml) {
  Lv2State state;
  state.properties[Lv2Instance::urid(lv2::kLinksUri)] = {
      toml + '\0', Lv2Instance::urid("http://lv2plug.in/ns/ext/atom#String"), 3};
  return state;
}

constexpr const char* kApart = "[link]\n\"5.1\" = \"L R | C LFE | Ls Rs\"\nStereo = \"L | R\"\n";

TEST(Lv2State, HoldsTheLinkMapsOfAllFormats) {
  Lv2Instance plugin(binary(), format_of("5.1"), kRate);
  EXPECT_EQ(plugin.restore(links_of(kApart)), LV2_STATE_SUCCESS);
  Lv2State saved, again;
  EXPECT_EQ(plugin.save(saved), LV2_STATE_SUCCESS);
  Lv2Instance other(binary(), format_of("Stereo"), kRate);
  EXPECT_EQ(other.restore(saved), LV2_STATE_SUCCESS);
  EXPECT_EQ(other.save(again), LV2_STATE_SUCCESS);
  const std::uint32_t key = Lv2Instance::urid(lv2::kLinksUri);
  EXPECT_EQ(saved.properties.at(key).value, again.properties.at(key).value);
  EXPECT_NE(saved.properties.at(key).value.find("L R | C LFE | Ls Rs"), std::string::npos);
}

TEST(Lv2State, IsHeard) {
  Planar input = noise(2, 4800);
  for (float& x : input[1]) x *= 0.01f;
  Settings settings = busy_settings();
  const std::uint32_t stereo = format_of("Stereo");
  const Planar linked = expected(stereo, settings.get(), input, {});
  channelstrip_settings_set_links(settings.get(), stereo, "L | R");
  const Planar apart = expected(stereo, settings.get(), input, {});
  EXPECT_NE(apart, linked);
  const auto cut = [] { return 480; };

  Lv2Instance plugin(binary(), stereo, kRate);
  set_busy(plugin);
  EXPECT_EQ(plugin.restore(links_of(kApart)), LV2_STATE_SUCCESS);
  plugin.activate();
  EXPECT_EQ(plugin.play(input, {}, cut), apart);
  EXPECT_EQ(plugin.restore({}), LV2_STATE_SUCCESS);  // none
  plugin.activate();
  EXPECT_EQ(plugin.play(input, {}, cut), linked);
  plugin.activate();
  EXPECT_EQ(plugin.restore(links_of(kApart)), LV2_STATE_SUCCESS);
  EXPECT_EQ(plugin.play(input, {}, cut), apart);  // before the first call, without a glide
}

TEST(Lv2State, GlidesWhileThePluginRuns) {
  const Planar input = noise(2, 96000);
  Lv2Instance plugin(binary(), 1, kRate);
  set_busy(plugin);
  plugin.activate();
  const auto cut = [] { return 480; };
  plugin.play(input, {}, cut);
  plugin.control("eq4_gain") = 2;
  EXPECT_EQ(plugin.restore(links_of(kApart)), LV2_STATE_SUCCESS);
  const Planar changed = plugin.play(input, {}, cut);
  Lv2Instance fresh(binary(), 1, kRate);
  set_busy(fresh);
  fresh.control("eq4_gain") = 2;
  EXPECT_EQ(fresh.restore(links_of(kApart)), LV2_STATE_SUCCESS);
  fresh.activate();
  const Planar settled = fresh.play(input, {}, cut);
  for (std::size_t i = 90000; i < 96000; ++i) EXPECT_NEAR(changed[0][i], settled[0][i], 1e-4);
}

TEST(Lv2State, RefusesWhatItCannotRead) {
  Lv2Instance plugin(binary(), 1, kRate);
  EXPECT_EQ(plugin.restore(links_of(kApart)), LV2_STATE_SUCCESS);
  Lv2State before, after;
  plugin.save(before);
  EXPECT_NE(plugin.restore(links_of("[link\n")), LV2_STATE_SUCCESS);
  Lv2State number = links_of(kApart);
  number.properties.begin()->second.type = Lv2Instance::urid("urn:number");
  EXPECT_EQ(plugin.restore(number), LV2_STATE_ERR_BAD_TYPE);
  plugin.save(after);
  EXPECT_EQ(before.properties.begin()->second.value, after.properties.begin()->second.value);

  Lv2Instance alone(binary(), 1, kRate, Offers::kNothing);
  alone.activate();
  EXPECT_EQ(alone.save(after), LV2_STATE_ERR_NO_FEATURE);
  EXPECT_EQ(alone.restore(before), LV2_STATE_ERR_NO_FEATURE);
}

TEST(Lv2Plugin, RunsInManyInstances) {
  const Planar input = noise(2, 4800);
  const Planar output = expected(1, busy_settings().get(), input, {});
  std::vector<std::unique_ptr<Lv2Instance>> plugins;
  for (int i = 0; i < 200; ++i) {
    plugins.push_back(std::make_unique<Lv2Instance>(binary(), 1, kRate));
    set_busy(*plugins.back());
    plugins.back()->activate();
  }
  for (const auto& plugin : plugins) {
    EXPECT_EQ(plugin->play(input, {}, [] { return 512; }), output);
  }
}

}  // namespace
}  // namespace channelstrip::plugin_test::lv2_test
