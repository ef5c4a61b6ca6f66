// One strip in the hands of three threads: one processes, one sets, one reads meters.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "mono_strip.h"

namespace channelstrip::test::control_thread_test {
namespace {

// Every reading holds what was in the frames that it counts: no peak, no sample is lost or doubled.
TEST(StripThreads, ReadingsHoldEverythingThatWasProcessed) {
  Mono strip;
  struct Impulse {
    std::size_t frame;
    float input, output;
  };
  std::vector<Impulse> impulses;
  std::vector<channelstrip_meters> readings;
  std::size_t frames = 0;
  float height = 0;
  std::minstd_rand audio_random(1), control_random(2), meter_random(3);
  const std::uint32_t ratio = parameter_of("compressor_ratio");
  std::vector<float> samples;
  const auto process = [&] {
    samples.assign(1 + audio_random() % 70, 0.0f);
    const std::size_t at = audio_random() % samples.size();
    // Distinct, some above full scale; now and then what isn't finite.
    height = height > 2 ? 0.001f : height + 0.0007f;
    samples[at] = audio_random() % 50 == 0 ? std::numeric_limits<float>::infinity() : height;
    Impulse& impulse = impulses.emplace_back(Impulse{frames + at, samples[at], 0});
    frames += samples.size();
    strip.process(samples);
    impulse.output = samples[at];
  };
  const auto read = [&] {
    channelstrip_meters meters{};
    std::uint32_t has_news = 0;
    succeed(channelstrip_strip_read_meters(strip.get(), &meters, sizeof meters, &has_news));
    if (has_news) readings.push_back(meters);
  };
  run_together(5000, {process,
                      [&] {
                        read();
                        pause_at_times(meter_random);
                      },
                      [&] {  // changes nothing that is heard
                        strip.set(ratio, 1 + static_cast<double>(control_random() % 10));
                        pause_at_times(control_random);
                      }});
  read();
  succeed(channelstrip_strip_reset(strip.get()));  // hands over the rest
  read();

  EXPECT_GT(readings.size(), 100u);
  std::size_t end = 0;
  auto impulse = impulses.begin();
  std::size_t merged = 0;
  for (const channelstrip_meters& meters : readings) {
    ASSERT_EQ(meters.frames % 16, 0u);
    ASSERT_GT(meters.frames, 0u);
    end += meters.frames;
    float input = 0, output = 0;
    std::uint64_t overs = 0, not_finite = 0, count = 0;
    for (; impulse != impulses.end() && impulse->frame < end; ++impulse, ++count) {
      output = std::max(output, impulse->output);
      overs += impulse->output > 1 ? 1 : 0;
      if (std::isfinite(impulse->input)) {
        input = std::max(input, impulse->input);
      } else {
        ++not_finite;
      }
    }
    ASSERT_EQ(meters.input_peak[0], input) << "up to frame " << end;
    ASSERT_EQ(meters.output_peak[0], output) << "up to frame " << end;
    ASSERT_EQ(meters.overs[0], overs) << "up to frame " << end;
    ASSERT_EQ(meters.not_finite, not_finite) << "up to frame " << end;
    merged += count > 3 ? 1 : 0;
  }
  EXPECT_EQ(end, frames / 16 * 16);
  EXPECT_GT(merged, 10u);  // readings of several calls
}

// Each gain makes up for the other: were one of them heard alone, it would be 12 dB off.
TEST(StripThreads, SettingsThatAreSetTogetherAreHeardTogether) {
  const Settings one = settings_from("glide = 0\ngain_in = 6\ngain_out = -6");
  const Settings other = settings_from("glide = 0\ngain_in = -6\ngain_out = 6");
  const Settings plain = settings_from("glide = 0\n[compressor]\non = false\nratio = 7");
  Mono strip(one.get());
  std::minstd_rand audio_random(4), control_random(5);
  std::vector<float> samples;
  float worst = 0;
  int changes = 0;
  run_together(5000, {[&] {
                        samples.assign(1 + audio_random() % 70, 0.5f);
                        strip.process(samples);
                        for (const float x : samples) {
                          worst = std::max(worst, std::abs(x - 0.5f));
                        }
                      },
                      [&] {
                        strip.set(++changes % 3 == 0 ? one : changes % 3 == 1 ? other : plain);
                        pause_at_times(control_random);
                      }});
  EXPECT_LT(worst, 1e-5f);
}

// An audio thread's events of one call are seen together, and none later than one that follows.
TEST(StripThreads, EventsOfACallAreReadTogether) {
  Mono strip;
  const std::uint32_t first = parameter_of("eq1_gain"), second = parameter_of("expander_hold");
  std::minstd_rand control_random(6);
  double sent = 0, seen = 0;
  int halves = 0, backwards = 0, changes = 0;
  std::vector<float> samples(16);
  run_together(5000, {[&] {
                        sent = std::min(sent + 1.0 / 1024, 40.0);
                        strip.process(samples, {{0, first, sent}, {0, second, sent}});
                      },
                      [&] {
                        const Settings settings = strip.settings();
                        const double value = value_of(settings, first);
                        if (value > 0 && value != value_of(settings, second)) ++halves;
                        if (value < seen) ++backwards;
                        if (value > seen) ++changes;
                        seen = value;
                        pause_at_times(control_random);
                      }});
  EXPECT_EQ(halves, 0);
  EXPECT_EQ(backwards, 0);
  EXPECT_GT(changes, 10);
  EXPECT_EQ(value_of(strip.settings(), first), sent);
}

std::vector<float> played(Mono& strip) {
  std::vector<float> samples;
  std::minstd_rand random(9);
  for (int i = 0; i < 2000; ++i) {
    samples.push_back(static_cast<float>(static_cast<int>(random() % 2001) - 1000) / 1000);
  }
  strip.process(samples);
  return samples;
}

// Whoever set it: what the strip does in the end is what it says.
TEST(StripThreads, WhatWasSetLastHoldsAndIsTold) {
  Mono strip;
  const Settings two[] = {settings_from("gain_in = 1\n[[eq]]\nfrequency = 50\ngain = 6"),
                          settings_from("mix = 80\n[compressor]\n[link]\nstyle = \"all\"")};
  struct Random {
    std::minstd_rand next;
    channelstrip_event event() {
      channelstrip_parameter p{};
      succeed(channelstrip_parameter_info(
          static_cast<std::uint32_t>(next()) % channelstrip_parameter_count(), &p, sizeof p));
      const double share = static_cast<double>(next() % 1001) / 1000;
      return {0, p.id, p.minimum + share * (p.maximum - p.minimum)};
    }
  };
  Random audio{std::minstd_rand(7)}, control{std::minstd_rand(8)};
  std::vector<float> samples;
  run_together(3000, {[&] {
                        samples.assign(audio.next() % 40, 0.1f);
                        strip.process(samples, {audio.event(), audio.event()});
                      },
                      [&] {
                        const channelstrip_event event = control.event();
                        strip.set(event.id, event.value);
                        if (control.next() % 20 == 0) strip.set(two[control.next() % 2]);
                        strip.settings();
                        pause_at_times(control.next);
                      },
                      [&] {
                        channelstrip_meters meters{};
                        succeed(channelstrip_strip_read_meters(strip.get(), &meters, sizeof meters,
                                                               nullptr));
                      }});
  const auto settle = [&](Mono& it) {
    succeed(channelstrip_strip_reset(it.get()));
    std::vector<float> silence(60000);  // in which searches end
    it.process(silence);
    succeed(channelstrip_strip_reset(it.get()));
  };
  // Neither gains nor switches keep the rest from being heard.
  for (const char* symbol : {"bypass", "key_listen"}) strip.set(parameter_of(symbol), 0);
  strip.set(parameter_of("mix"), 100);
  settle(strip);
  const Settings told = strip.settings();
  Mono fresh(told.get());
  settle(fresh);
  EXPECT_EQ(played(strip), played(fresh)) << text_of(told);

  // The control thread alone, at the end.
  strip.set(two[0]);
  strip.set(parameter_of("gain_in"), -3);
  EXPECT_EQ(value_of(strip.settings(), parameter_of("gain_in")), -3);
  settle(strip);
  const Settings expected = settings_from("gain_in = -3\n[[eq]]\nfrequency = 50\ngain = 6");
  EXPECT_EQ(text_of(strip.settings()), text_of(expected));
  Mono last(expected.get());
  EXPECT_EQ(played(strip), played(last));
}

}  // namespace
}  // namespace channelstrip::test::control_thread_test
