// What a CLAP plugin plays, whatever its host does.

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <memory>
#include <random>
#include <thread>

#include "clap_host.h"
#include "control/strip/denormals.h"

namespace channelstrip::plugin_test::clap_process_test {
namespace {

const ClapBinary& binary() {
  static const ClapBinary loaded(CHANNELSTRIP_CLAP);
  return loaded;
}

const auto kCalls = [] { return 480; };

TEST(ClapPlugin, PlaysWhatAStripPlaysHoweverItIsCut) {
  for (std::uint32_t format = 0; format < channelstrip_format_count(); ++format) {
    for (const bool keyed : {false, true}) {
      const Planar input = noise(channels_of(format), 9001);
      const std::vector<float> key = keyed ? noise(1, 9001)[0] : std::vector<float>();
      Settings settings = busy_settings();
      channelstrip_settings_set(settings.get(), id_of("key_enable"), keyed);
      const Planar output = expected(format, settings.get(), input, key);
      for (const bool in_place : {false, true}) {
        ClapInstance instance(binary());
        ASSERT_TRUE(instance.select(format));
        instance.set_busy();
        instance.set("key_enable", keyed);
        instance.activate();
        std::minstd_rand random(format + 1);
        const auto cut = [&] { return random() % 2049; };
        EXPECT_EQ(instance.play(input, key, cut, in_place), output)
            << format << (keyed ? ", keyed" : "") << (in_place ? ", in place" : "");
      }
    }
  }
}

TEST(ClapPlugin, PlaysTheSameInCallsOfAnySize) {
  const Planar input = noise(2, 20000);
  const Planar output = expected(format_of("Stereo"), busy_settings().get(), input, {});
  for (const std::size_t frames : {1u, 15u, 16u, 17u, 64u, 82u, 227u, 1024u, 4096u, 16384u}) {
    ClapInstance instance(binary());
    instance.set_busy();
    instance.activate();
    EXPECT_EQ(instance.play(input, {}, [frames] { return frames; }), output) << frames;
  }
}

// Sample-accurate: at the block of 16 that an event's frame is in or before, as a strip has them.
TEST(ClapPlugin, ChangesWhereItsEventsAre) {
  const std::uint32_t stereo = format_of("Stereo");
  const Planar input = noise(2, 9600);
  std::mt19937 drawn(4);
  const auto random = [&drawn](std::uint32_t end) {
    return static_cast<std::uint32_t>(drawn()) % end;
  };
  std::vector<channelstrip_event> changes;
  for (std::uint32_t frame = 1; frame < 9600; frame += random(300)) {
    const bool is_gain = random(2) != 0;
    const double value = random(200) / 10.0 - 10;
    changes.push_back({frame, id_of(is_gain ? "eq4_gain" : "compressor_threshold"), value});
  }
  const Planar output = expected(stereo, busy_settings().get(), input, {}, changes);
  for (const std::size_t frames : {1u, 100u, 1000u, 9600u}) {
    ClapInstance instance(binary());
    instance.set_busy();
    instance.activate();
    EXPECT_EQ(instance.play(
                  input, {}, [frames] { return frames; }, false, changes),
              output)
        << frames;
  }
}

TEST(ClapPlugin, TakesAnyNumberOfEventsInOneCall) {
  const Planar input = noise(2, 4800);
  std::vector<channelstrip_event> changes;
  const clap_id gain = id_of("eq4_gain");
  for (std::uint32_t i = 0; i < 5000; ++i) changes.push_back({i / 2 + 100, gain, 0.001 * i});
  const auto play = [&](std::size_t frames) {
    ClapInstance instance(binary());
    instance.set_busy();
    instance.activate();
    return instance.play(
        input, {}, [frames] { return frames; }, false, changes);
  };
  EXPECT_EQ(play(4800), play(100));
}

TEST(ClapPlugin, StartsOnEventsBeforeItsFirstFrame) {
  const Planar input = noise(2, 4800);
  Settings settings(channelstrip_settings_new());
  channelstrip_settings_set(settings.get(), id_of("eq4_on"), 1);
  channelstrip_settings_set(settings.get(), id_of("eq4_gain"), 12);
  const Planar output = expected(format_of("Stereo"), settings.get(), input, {});
  const std::vector<channelstrip_event> changes{{0, id_of("eq4_on"), 1},
                                                {0, id_of("eq4_gain"), 12}};
  ClapInstance by_events(binary()), by_flush(binary());
  by_events.activate();
  EXPECT_EQ(by_events.play(input, {}, kCalls, false, changes), output);
  by_flush.activate();
  by_flush.set("eq4_on", 1);
  by_flush.set("eq4_gain", 12);
  EXPECT_EQ(by_flush.play(input, {}, kCalls), output);
}

TEST(ClapPlugin, TakesEventsOutOfOrderAndBeyondTheCall) {
  ClapInstance instance(binary());
  instance.activate();
  Planar audio = noise(2, 64);
  ClapEvents events;
  for (const std::uint32_t frame : {60u, 3u, 1000u, 0xffffffffu, 0u}) {
    events.set(frame, id_of("eq4_gain"), 1 + frame % 10);
  }
  const std::vector<float*> channels{audio[0].data(), audio[1].data()};
  EXPECT_NE(instance.process({channels[0], channels[1]}, nullptr, channels, 64, events.list()),
            CLAP_PROCESS_ERROR);
  EXPECT_EQ(instance.value("eq4_gain"), 1);  // the last in the list
  EXPECT_TRUE(are_finite(audio));
}

TEST(ClapPlugin, LeavesOutEventsThatItCannotUseAndNothingElse) {
  const Planar input = noise(2, 480);
  ClapInstance plain(binary()), disturbed(binary());
  plain.activate();
  disturbed.activate();
  const std::vector<channelstrip_event> legal{{10, id_of("eq4_on"), 1}, {30, id_of("eq4_gain"), 9}};
  std::vector<channelstrip_event> all = legal;
  all.insert(all.begin() + 1, {20, id_of("eq4_gain"), std::nan("")});
  all.insert(all.begin() + 1, {20, 999999, 1});
  EXPECT_EQ(disturbed.play(input, {}, kCalls, false, all),
            plain.play(input, {}, kCalls, false, legal));
}

TEST(ClapPlugin, BeginsAnewAfterAResetAndWhenActivatedAgain) {
  const Planar input = noise(2, 4800);
  ClapInstance instance(binary());
  instance.set_busy();
  instance.activate();
  const Planar first = instance.play(input, {}, kCalls);
  EXPECT_NE(instance.play(input, {}, kCalls), first);
  instance.plugin()->reset(instance.plugin());
  EXPECT_EQ(instance.play(input, {}, kCalls), first);
  instance.restart();
  EXPECT_EQ(instance.play(input, {}, kCalls), first);
  instance.restart();  // without processing
  instance.restart();
  EXPECT_EQ(instance.play(input, {}, kCalls), first);
  EXPECT_EQ(instance.value("compressor_threshold"), -31.7);
}

TEST(ClapPlugin, KeepsWhatEventsHaveSetWhenItIsDeactivated) {
  ClapInstance instance(binary());
  instance.activate();
  instance.play(noise(2, 480), {}, kCalls, false, {{100, id_of("eq3_gain"), 4.5}});
  instance.deactivate();
  EXPECT_EQ(instance.value("eq3_gain"), 4.5);
}

TEST(ClapPlugin, PassesItsInputWhileBypassed) {
  const Planar input = noise(2, 48000);
  ClapInstance instance(binary());
  instance.set_busy();
  instance.set("bypass", 1);
  instance.activate();
  EXPECT_EQ(instance.play(input, {}, kCalls), input);
}

TEST(ClapPlugin, PlaysAtAnySampleRateAStripHas) {
  for (const double rate : {1000.0, 8000.0, 22050.0, 44100.0, 96000.0, 192000.0, 768000.0}) {
    ClapInstance instance(binary());
    instance.set_busy();
    ASSERT_TRUE(instance.activate(rate)) << rate;
    EXPECT_TRUE(are_finite(instance.play(noise(2, 4800), {}, kCalls))) << rate;
  }
}

TEST(ClapPlugin, TakesDenormalsSilenceAndSamplesThatAreNoNumbers) {
  ClapInstance instance(binary());
  instance.set_busy();
  instance.activate();
  const auto word = host::FlushDenormals::control_word();
  Planar input = noise(2, 4800);
  for (float& x : input[0]) x *= 1e-40f;
  EXPECT_TRUE(are_finite(instance.play(input, {}, kCalls)));
  input[1][100] = std::nanf("");
  input[0][200] = HUGE_VALF;
  EXPECT_TRUE(are_finite(instance.play(input, {}, kCalls)));
  const Planar silence(2, std::vector<float>(96000));
  const Planar tail = instance.play(silence, {}, kCalls);
  EXPECT_EQ(tail[0].back(), 0);
  EXPECT_EQ(host::FlushDenormals::control_word() & host::FlushDenormals::kFlush,
            word & host::FlushDenormals::kFlush);
}

// What a host must not do is an error, and nothing is written.
TEST(ClapPlugin, RefusesCallsWithoutItsBuffers) {
  ClapInstance instance(binary());
  Planar audio = noise(3, 64);
  const Planar before = audio;
  float *const a = audio[0].data(), *const b = audio[1].data(), *const c = audio[2].data();
  EXPECT_EQ(instance.process({a, b}, nullptr, {a, b}, 64), CLAP_PROCESS_ERROR);  // inactive
  instance.set_busy();
  instance.activate();
  EXPECT_EQ(instance.process({a}, nullptr, {a, b}, 64), CLAP_PROCESS_ERROR);
  EXPECT_EQ(instance.process({a, b}, nullptr, {a, b, c}, 64), CLAP_PROCESS_ERROR);
  EXPECT_EQ(instance.process({a, nullptr}, nullptr, {a, b}, 64), CLAP_PROCESS_ERROR);
  EXPECT_EQ(instance.process({a, b}, nullptr, {nullptr, b}, 64), CLAP_PROCESS_ERROR);
  EXPECT_EQ(audio, before);
  clap_process_t none{};
  EXPECT_EQ(instance.plugin()->process(instance.plugin(), &none), CLAP_PROCESS_ERROR);
  EXPECT_NE(instance.process({a, b}, nullptr, {a, b}, 64), CLAP_PROCESS_ERROR);
}

TEST(ClapPlugin, TakesAnyValueOfAnyParameter) {
  std::minstd_rand random(3);
  ClapInstance instance(binary());
  ASSERT_TRUE(instance.select(format_of("5.1")));
  instance.activate();
  const Planar input = noise(6, 64);
  for (int i = 0; i < 300; ++i) {
    std::vector<channelstrip_event> changes;
    for (std::uint32_t p = 0; p < channelstrip_parameter_count(); ++p) {
      if (random() % 8) continue;
      channelstrip_parameter info{};
      channelstrip_parameter_info(p, &info, sizeof info);
      const double value =
          std::ldexp(static_cast<double>(random()) - 1e9, -static_cast<int>(random() % 60));
      changes.push_back({static_cast<std::uint32_t>(changes.size() / 2), info.id, value});
    }
    ASSERT_TRUE(are_finite(instance.play(
        input, {}, [] { return 64; }, false, changes)));
  }
}

TEST(ClapPlugin, RunsInManyInstances) {
  const Planar input = noise(2, 4800);
  const Planar output = expected(format_of("Stereo"), busy_settings().get(), input, {});
  std::vector<std::unique_ptr<ClapInstance>> instances;
  for (int i = 0; i < 200; ++i) {
    instances.push_back(std::make_unique<ClapInstance>(binary()));
    instances.back()->set_busy();
    instances.back()->activate();
  }
  for (const auto& instance : instances) {
    EXPECT_EQ(instance->play(input, {}, [] { return 512; }), output);
  }
}

TEST(ClapThreads, MainMayReadSaveAndLoadWhileAudioProcesses) {
  ClapInstance instance(binary());
  instance.set_busy();
  instance.activate();
  const std::string state = *instance.save();
  std::atomic<bool> is_over = false;
  bool is_finite = true;
  std::thread audio([&] {
    const std::vector<channelstrip_event> changes{{77, id_of("eq4_gain"), 3}};
    for (int i = 0; i < 300; ++i) {
      is_finite = is_finite && are_finite(instance.play(noise(2, 480), {}, kCalls, false, changes));
    }
    is_over = true;
  });
  while (!is_over) {
    EXPECT_TRUE(instance.load(state));
    EXPECT_TRUE(instance.save());
    const double gain = instance.value("eq4_gain");
    EXPECT_TRUE(gain == 3 || gain == -4.2) << gain;
  }
  audio.join();
  EXPECT_TRUE(is_finite);
  EXPECT_FALSE(instance.was_called_wrongly);
}

}  // namespace
}  // namespace channelstrip::plugin_test::clap_process_test
