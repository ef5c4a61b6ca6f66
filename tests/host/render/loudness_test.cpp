// --loudness and --true-peak.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "../support/streams.h"
#include "control/design/dynamics.h"
#include "host/loudness/loudness.h"
#include "host/render/render.h"
#include "host/system/interrupt.h"
#include "program.h"

namespace channelstrip::test::loudness_test {
namespace {

using Arguments = std::vector<std::string>;

struct Measured {
  double loudness, true_peak;  // LUFS, dBTP
};

Measured measured(const std::string& file) {
  const TestAudio audio = read_audio(file);
  const host::ChannelLayout layout = host::choose_layout(audio.channels, {});
  host::LoudnessMeter meter(audio.sample_rate, layout);
  meter.add(audio.floats);
  const host::Loudness loudness = meter.loudness();
  return {loudness.integrated.value_or(-100),
          host::linear_to_db(std::ranges::max(loudness.true_peak))};
}

class LoudnessOfARender : public Program {
 protected:
  // Alternately loud and quiet, so that the gate has something to leave out.
  std::string programme(const std::string& name, int channels = 2, int format = SF_FORMAT_FLOAT,
                        float level = 0.1f) const {
    std::vector<float> samples = noise(static_cast<std::size_t>(channels) * 96000, level);
    for (std::size_t i = 0; i < samples.size(); ++i) {
      if (i / (samples.size() / 8) % 4 == 3) samples[i] *= 0.01f;
    }
    return write_audio(folder.file(name),
                       {.format = SF_FORMAT_WAV | format, .channels = channels, .floats = samples});
  }

  ChildResult render(Arguments arguments, int exit_status = 0) const {
    arguments.insert(arguments.begin(), {"render", "-y"});
    const ChildResult result = run(arguments);
    EXPECT_EQ(result.exit_status, exit_status) << result.output;
    return result;
  }

  // The gain that the program says it took, in dB.
  double gain_of(Arguments arguments) const {
    arguments.insert(arguments.end(), {"-q", "--json"});
    const auto files = nlohmann::json::parse(render(arguments).printed)["files"];
    return files.at(0).at("loudness").at("gain").get<double>();
  }

  const std::string plain = folder.file("plain.wav");
};

TEST_F(LoudnessOfARender, IsTheTargetWithinATenth) {
  for (const int channels : {1, 2, 6, 8}) {
    const std::string file = programme("programme.wav", channels);
    for (const char* bits : {"16", "24", "32f"}) {
      for (const double target : {-30.0, -18.5}) {
        render({file, output, "--bits", bits, "--loudness", std::to_string(target)});
        EXPECT_NEAR(measured(output).loudness, target, 0.1) << channels << " " << bits;
      }
    }
  }
}

TEST_F(LoudnessOfARender, IsThatOfWhatIsWrittenBehindStripMixAndGains) {
  const std::string file = programme("programme.wav");
  render({file, output, "--loudness", "-20", "--true-peak", "0", "--set", "compressor.ratio=4",
          "--set", "compressor.makeup=9", "--mix", "70", "--gain-in", "3", "--gain-out", "-12"});
  EXPECT_NEAR(measured(output).loudness, -20, 0.1);
}

TEST_F(LoudnessOfARender, GivesWayToTheTruePeak) {
  const std::string file = programme("programme.wav");
  for (const char* bits : {"16", "24", "32f"}) {
    for (const auto& [arguments, ceiling] :
         {std::pair{Arguments{"--loudness", "-3"}, -1.0},
          {Arguments{"--loudness", "-23", "--true-peak", "-24.7"}, -24.7},
          {Arguments{"--loudness", "0", "--true-peak", "0"}, 0.0}}) {
      Arguments all{file, output, "--bits", bits};
      all.insert(all.end(), arguments.begin(), arguments.end());
      const std::string told = render(all).output;
      EXPECT_LE(measured(output).true_peak, ceiling + 0.01) << bits;
      EXPECT_GT(measured(output).true_peak, ceiling - 0.05) << bits;
      EXPECT_EQ(told.find("clipped"), told.npos);
    }
  }
}

TEST_F(LoudnessOfARender, IsOneGainBehindEverythingElse) {
  const std::string file = programme("programme.wav");
  const std::string key = programme("key.wav", 1, SF_FORMAT_FLOAT, 0.5f);
  const Arguments settings{
      "--key", key, "--set", "compressor.ratio=8", "--set", "compressor.threshold=-40"};
  Arguments normalised{file, output, "--loudness", "-33"}, unchanged{file, plain};
  normalised.insert(normalised.end(), settings.begin(), settings.end());
  unchanged.insert(unchanged.end(), settings.begin(), settings.end());
  const auto gain = static_cast<float>(host::db_to_linear(gain_of(normalised)));
  render(unchanged);
  std::vector<float> expected = read_audio(plain).floats;
  for (float& x : expected) x *= gain;
  EXPECT_EQ(read_audio(output).floats, expected);
}

TEST_F(LoudnessOfARender, IsReachedInBypassToo) {
  const std::string file = programme("programme.wav");
  render({file, output, "--loudness", "-27", "--set", "bypass=true", "--gain-out", "20"});
  EXPECT_NEAR(measured(output).loudness, -27, 0.1);
}

TEST_F(LoudnessOfARender, IsToldInOneLine) {
  const std::string file = write_audio(folder.file("tone.wav"),
                                       {.channels = 2, .floats = sine(0.1, 997, 48000, 96000, 2)});
  const std::string reached = render({file, output, "--loudness", "-16"}).output;
  EXPECT_NE(reached.find("expander 0.0 dB\nloudness -16.0 LUFS, true peak -16.0 dBTP, gain +4.0"),
            std::string::npos)
      << reached;
  EXPECT_NE(reached.find("-20.0         -16.0         0.0\n"), std::string::npos) << reached;
  const std::string held = render({file, output, "--loudness", "-16", "--true-peak", "-18"}).output;
  EXPECT_NE(held.find("\nloudness -18.0 LUFS instead of -16: true peak held at -18.0 dBTP, gain "),
            std::string::npos)
      << held;
}

TEST_F(LoudnessOfARender, LeavesTheLevelWhereThereIsNone) {
  const std::string silent =
      write_audio(folder.file("silent.wav"), {.floats = std::vector<float>(48000)});
  for (const std::string& file : {silent, input}) {
    const std::string told = render({file, output, "--loudness", "-16"}).output;
    EXPECT_NE(told.find("\nno loudness, all silence or shorter than 0.4 s: the level stays"),
              std::string::npos)
        << told;
    EXPECT_EQ(read_audio(output).integers, read_audio(file).integers);
  }
}

TEST_F(LoudnessOfARender, LeavesEverySampleOfAFileThatHasIt) {
  const std::string file = programme("programme.wav", 2, SF_FORMAT_PCM_16);
  const std::string once = folder.file("once.wav"), twice = folder.file("twice.wav");
  render({file, once, "--loudness", "-20"});
  ASSERT_EQ(gain_of({once, twice, "--loudness", "-20"}), 0);
  EXPECT_EQ(read_audio(twice).integers, read_audio(once).integers);
}

TEST_F(LoudnessOfARender, IsReachedThroughAPipe) {
  const std::string file = programme("programme.wav");
  render({file, output, "--loudness", "-25"});
  Pipe in, out;
  Child child({"render", "-", "-", "-q", "--loudness", "-25"},
              {.standard_input = in.reading, .standard_output = out.writing});
  in.reading.close();
  out.writing.close();
  in.writing.write(contents(file));
  in.writing.close();
  EXPECT_TRUE(out.reading.read_all() == contents(output));
  EXPECT_EQ(child.result().exit_status, 0);
}

TEST_F(LoudnessOfARender, IsEachFilesOwn) {
  const std::string quiet = programme("quiet.wav", 2, SF_FORMAT_FLOAT, 0.003f);
  const std::string loud = programme("loud.wav", 2, SF_FORMAT_FLOAT, 0.5f);
  const std::string out = folder.file("out");
  const std::string told = render({quiet, loud, out, "--jobs", "2", "--loudness", "-25"}).output;
  EXPECT_NEAR(measured(out + "/quiet.wav").loudness, -25, 0.1);
  EXPECT_NEAR(measured(out + "/loud.wav").loudness, -25, 0.1);
  const auto first = told.find("dB\n  loudness -25.0 LUFS, true peak ");
  ASSERT_NE(first, told.npos) << told;
  EXPECT_NE(told.find("dB\n  loudness -25.0 LUFS, true peak ", first + 1), told.npos) << told;
}

TEST_F(LoudnessOfARender, IsToldInJson) {
  const std::string file = programme("programme.wav");
  const auto json = nlohmann::json::parse(
      render({file, output, "-q", "--json", "--loudness", "-25"}).printed)["files"][0]["loudness"];
  const Measured judged = measured(output);
  EXPECT_EQ(json["target"], -25);
  EXPECT_NEAR(json["integrated"].get<double>(), judged.loudness, 1e-3);
  EXPECT_NEAR(json["true_peak"].get<double>(), judged.true_peak, 1e-3);
}

TEST_F(LoudnessOfARender, CanBeReportedOnWithItsGain) {
  const std::string file = programme("programme.wav"), page = folder.file("page.html");
  const double gain = gain_of({file, output, "--loudness", "-25"});
  EXPECT_EQ(
      run({"report", file, output, "-o", page, "--gain-out", std::to_string(gain)}).exit_status, 0);
  EXPECT_EQ(run({"report", file, output, "-o", page, "-y"}).exit_status, 4);
}

TEST_F(LoudnessOfARender, OfAnInputCutShortIsThatOfWhatThereIs) {
  const std::string whole = contents(programme("programme.wav"));
  const std::string cut = folder.write("cut.wav", whole.substr(0, whole.size() / 2));
  render({cut, output, "--loudness", "-25", "-q"}, 3);
  EXPECT_NEAR(measured(output).loudness, -25, 0.1);
}

// What the first pass would find is told only where there is something to write to.
TEST_F(LoudnessOfARender, IsMeasuredOnlyForAnOutputThatMayBeWritten) {
  std::vector<float> samples = noise(48000, 0.1f);
  samples.back() = std::numeric_limits<float>::quiet_NaN();
  const std::string bad = write_audio(folder.file("bad.wav"), {.floats = samples});
  const std::string kept = tone("kept.wav");
  expect_refusal({"render", bad, kept, "--loudness", "-16"},
                 kept + ": exists already; --overwrite replaces it");
  expect_refusal({"render", bad, output, "--loudness", "-16"},
                 bad + ": the sample at 1.000 s isn't a finite number");
}

TEST_F(LoudnessOfARender, RefusesWhatMakesNoSense) {
  expect_refusal({"render", input, output, "--true-peak", "-1"}, "--true-peak requires --loudness");
  expect_refusal({"render", input, output, "--loudness", "0.1"},
                 "--loudness: 0.1 isn't -70 to 0 LUFS");
  expect_refusal({"render", input, output, "--loudness", "nan"},
                 "--loudness: nan isn't -70 to 0 LUFS");
  expect_refusal({"render", input, output, "--loudness", "-16", "--true-peak", "3"},
                 "--true-peak: 3 isn't -60 to 0 dBTP");
}

class TwoPasses : public LoudnessOfARender {
 protected:
  host::RenderOptions options(const std::string& file) const {
    return {.input = file,
            .output = output,
            .strip = {.library = CHANNELSTRIP_LIBRARY},
            .loudness = host::LoudnessTarget{-20}};
  }
};

TEST_F(TwoPasses, ProgressOnceFromStartToEnd) {
  host::RenderOptions two = options(programme("programme.wav"));
  double total = 0, last = 0;
  bool rises = true;
  two.on_progress = [&](double seconds, double part) {
    total += seconds;
    rises = rises && part >= last;
    last = part;
  };
  host::render(two);
  EXPECT_NEAR(total, 2, 1e-9);
  EXPECT_TRUE(rises);
  EXPECT_EQ(last, 1);
}

// Ends the process with status 1 if a signal that comes after that part of the work is obeyed.
void render_and_interrupt(host::RenderOptions options, double part) {
  std::signal(SIGINT, SIG_DFL);  // background jobs of a shell begin with it ignored
  host::catch_interrupts();
  options.on_progress = [part](double, double done) {
    if (done > part) std::raise(SIGINT);
  };
  try {
    host::render(options);
  } catch (const host::Interrupted&) {
    std::_Exit(1);
  }
  std::_Exit(0);
}

TEST_F(TwoPasses, EndByASignalInEither) {
  const host::RenderOptions two = options(programme("programme.wav"));
  for (const double part : {0.1, 0.6}) {
    EXPECT_EXIT(render_and_interrupt(two, part), testing::ExitedWithCode(1), "");
    EXPECT_FALSE(std::filesystem::exists(output));
  }
}

}  // namespace
}  // namespace channelstrip::test::loudness_test
