// A strip with parameters.

#include "control/live/controlled_strip.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "tests/control/strip/live.h"

namespace channelstrip::test::controlled_strip_test {
namespace {

using namespace host;

const ChannelLayout& mono() {
  static const ChannelLayout layout = default_layout(*find_stem_format("Mono"));
  return layout;
}

std::size_t parameter(std::string_view symbol) {
  return *index_of(symbol);
}

std::vector<float> play(ControlledStrip& strip, const std::vector<float>& input,
                        std::size_t frames_per_call,
                        const std::vector<ControlledStrip::Event>& events = {}) {
  std::vector<float> output(input.size());
  for (std::size_t at = 0; at < input.size(); at += frames_per_call) {
    const std::size_t frames = std::min(frames_per_call, input.size() - at);
    std::vector<ControlledStrip::Event> now;
    for (ControlledStrip::Event event : events) {
      if (event.frame < at || event.frame >= at + frames) continue;
      event.frame -= at;
      now.push_back(event);
    }
    const float* const inputs[] = {input.data() + at};
    float* const outputs[] = {output.data() + at};
    strip.process({inputs, nullptr, outputs, frames, now});
  }
  return output;
}

TEST(ControlledStrip, HearsEventsAtTheirBlockHoweverItIsCut) {
  std::minstd_rand random(5);
  std::vector<ControlledStrip::Event> events;
  for (std::size_t frame = 10; frame < 9000; frame += 1 + random() % 300) {
    const std::size_t index = random() % kParameterCount;
    const double position = static_cast<double>(random() % 1001) / 1000;
    events.push_back({frame, index, value_at(parameters()[index], position)});
  }
  const std::vector<float> input = bursts(10007, 1);
  ControlledStrip whole(entry_points(), mono(), kLiveRate, Values());
  const std::vector<float> expected = play(whole, input, input.size(), events);
  for (const std::size_t frames : {1u, 5u, 16u, 64u, 1000u}) {
    ControlledStrip cut(entry_points(), mono(), kLiveRate, Values());
    EXPECT_EQ(play(cut, input, frames, events), expected) << frames;
    EXPECT_EQ(cut.values(), whole.values()) << frames;
  }
}

TEST(ControlledStrip, HearsWhatTheControlThreadSetsFromTheNextCallOn) {
  const std::vector<float> input = bursts(4096, 1);
  ControlledStrip by_event(entry_points(), mono(), kLiveRate, Values());
  ControlledStrip by_control(entry_points(), mono(), kLiveRate, Values());
  by_control.set(parameter("gain_out"), 3);
  by_control.set(parameter("gain_out"), -6);
  by_control.set(parameter("compressor_on"), 1);
  EXPECT_EQ(play(by_control, input, 64),
            play(by_event, input, 64,
                 {{0, parameter("gain_out"), -6}, {0, parameter("compressor_on"), 1}}));
}

TEST(ControlledStrip, TellsTheControlThreadWhatEventsHaveSet) {
  ControlledStrip strip(entry_points(), mono(), kLiveRate, Values());
  play(strip, std::vector<float>(64), 64, {{3, parameter("mix"), 40}});
  EXPECT_EQ(strip.values().of[parameter("mix")], 40);
  strip.set(parameter("mix"), 70);
  EXPECT_EQ(strip.values().of[parameter("mix")], 70);
}

TEST(ControlledStrip, TellsWhatWasSetLastWhicheverThreadSetIt) {
  ControlledStrip strip(entry_points(), mono(), kLiveRate, Values());
  const std::size_t mix = parameter("mix"), gain = parameter("gain_in");
  const std::vector<float> block(64);
  play(strip, block, 64, {{3, mix, 40}, {4, gain, 6}});
  strip.set(mix, 70);  // after the event, and before anybody has read it
  EXPECT_EQ(strip.values().of[mix], 70);
  EXPECT_EQ(strip.values().of[gain], 6);
  play(strip, block, 64, {{0, gain, 7}});
  EXPECT_EQ(strip.values().of[mix], 70);
  EXPECT_EQ(strip.values().of[gain], 7);
  play(strip, block, 64, {{0, mix, 10}});
  strip.set(mix, 20);
  play(strip, block, 64, {{0, gain, 8}});  // takes 20
  EXPECT_EQ(strip.values().of[mix], 20);
  strip.set(mix, 30);
  play(strip, block, 64, {{0, mix, 50}});  // takes 30 before the event
  EXPECT_EQ(strip.values().of[mix], 50);
}

TEST(ControlledStrip, HearsALinkMapWithWhatIsSetBeforeAndAfterIt) {
  const ChannelLayout stereo = default_layout(*find_stem_format("Stereo"));
  Values apart;
  apart.of[parameter("compressor_on")] = 1;
  apart.links["Stereo"] = "L | R";
  const Planar input = planar_bursts(2, 4096);
  const auto play_stereo = [&](ControlledStrip& strip) {
    Planar output = input;
    float* const buffers[] = {output[0].data(), output[1].data()};
    const float* const inputs[] = {output[0].data(), output[1].data()};
    strip.process({inputs, nullptr, buffers, 4096, {}});
    return output;
  };
  ControlledStrip fresh(entry_points(), stereo, kLiveRate, apart);
  ControlledStrip changed(entry_points(), stereo, kLiveRate, Values());
  changed.set(parameter("mix"), 50);
  changed.set(apart);
  changed.set(parameter("mix"), 100);
  changed.reset();
  const Planar expected = play_stereo(fresh);
  EXPECT_EQ(play_stereo(changed), expected);
  Values linked = apart;
  linked.links = {};
  ControlledStrip together(entry_points(), stereo, kLiveRate, linked);
  EXPECT_NE(play_stereo(together), expected);
}

TEST(ControlledStrip, HasNoNewsOfMetersBeforeAWholeBlock) {
  ControlledStrip strip(entry_points(), mono(), kLiveRate, Values());
  LiveMeters meters;
  play(strip, std::vector<float>(10, 0.5f), 10);
  EXPECT_FALSE(strip.read_meters(meters));
  play(strip, std::vector<float>(10, 0.25f), 10);
  ASSERT_TRUE(strip.read_meters(meters));
  EXPECT_EQ(meters.samples, 16u);
  EXPECT_EQ(meters.input_peak[0], 0.5f);
  play(strip, std::vector<float>(11), 11);
  EXPECT_FALSE(strip.read_meters(meters));
}

TEST(ControlledStrip, StartsOnItsSettings) {
  Values values;
  values.of[parameter("eq1_on")] = 1;
  values.of[parameter("eq1_type")] = 4;
  values.of[parameter("eq1_frequency")] = 30;
  values.of[parameter("compressor_on")] = 1;
  values.of[parameter("gain_in")] = 6;
  const std::vector<float> input = bursts(4096, 1);
  ControlledStrip strip(entry_points(), mono(), kLiveRate, values);
  LiveStrip whole(entry_points(), mono(), kLiveRate, settings_of(values, kLiveRate));
  std::vector<float> expected(input.size());
  const float* const inputs[] = {input.data()};
  float* const outputs[] = {expected.data()};
  whole.process(inputs, nullptr, outputs, input.size());
  EXPECT_EQ(play(strip, input, 1000), expected);
}

TEST(ControlledStrip, IsTheSameAmongManyAsAlone) {
  constexpr std::size_t kStrips = 70;
  std::vector<std::unique_ptr<ControlledStrip>> many, alone;
  std::vector<ControlledStrip*> pointers;
  for (std::size_t i = 0; i < kStrips; ++i) {
    Values values;
    values.of[parameter("eq1_on")] = 1;
    values.of[parameter("eq1_gain")] = static_cast<double>(i % 20);
    values.of[parameter("compressor_on")] = i % 2 ? 1 : 0;
    values.of[parameter("bypass")] = i % 7 == 6 ? 1 : 0;
    many.push_back(std::make_unique<ControlledStrip>(entry_points(), mono(), kLiveRate, values));
    alone.push_back(std::make_unique<ControlledStrip>(entry_points(), mono(), kLiveRate, values));
    pointers.push_back(many.back().get());
  }
  for (const std::size_t frames : {64u, 320u, 40u, 24u, 512u}) {
    std::vector<std::vector<float>> inputs, outputs, expected;
    std::vector<const float*> in(kStrips);
    std::vector<float*> out(kStrips), out_alone(kStrips);
    for (std::size_t i = 0; i < kStrips; ++i) inputs.push_back(noise(frames, 0.5f));
    outputs.assign(kStrips, std::vector<float>(frames));
    expected = outputs;
    std::vector<ControlledStrip::Call> calls;
    for (std::size_t i = 0; i < kStrips; ++i) {
      in[i] = inputs[i].data();
      out[i] = outputs[i].data();
      out_alone[i] = expected[i].data();
      calls.push_back({&in[i], nullptr, &out[i], frames, {}});
    }
    ControlledStrip::process_many(pointers, calls);
    for (std::size_t i = 0; i < kStrips; ++i) {
      alone[i]->process({&in[i], nullptr, &out_alone[i], frames, {}});
      EXPECT_EQ(outputs[i], expected[i]) << frames << " frames, strip " << i;
      LiveMeters a, b;
      EXPECT_EQ(many[i]->read_meters(a), alone[i]->read_meters(b));
      EXPECT_EQ(a.output_peak, b.output_peak);
      EXPECT_EQ(a.samples, b.samples);
    }
    many[3]->set(parameter("eq1_frequency"), 40);
    alone[3]->set(parameter("eq1_frequency"), 40);
  }
}

}  // namespace
}  // namespace channelstrip::test::controlled_strip_test
