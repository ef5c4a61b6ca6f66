// channelstrip report as users and scripts meet it.

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "../support/audio.h"
#include "../support/command.h"
#include "../support/rendered.h"
#include "../support/streams.h"

namespace channelstrip::test::report_program_test {
namespace {

constexpr const char* kPreset =
    "name = \"Tight\"\n"
    "[compressor]\nthreshold = -20\nratio = 4\nknee = 0\nattack = 5\nmakeup = 3\n"
    "[detector]\ntime = 1000\n";

class ReportProgram : public Command {
 protected:
  std::string write(const std::string& name, const std::vector<float>& floats, int type,
                    int channels = 1, int sample_rate = 48000) const {
    return write_audio(folder.file(name), {.format = SF_FORMAT_WAV | type,
                                           .channels = channels,
                                           .sample_rate = sample_rate,
                                           .floats = floats});
  }

  std::string tone(const std::string& name, int type = SF_FORMAT_FLOAT) const {
    return write(name, sine(0.5, 1000, 48000, 96000), type);
  }

  // The page of a rendering, given the settings that it was rendered with, or none.
  std::string page_of(const std::string& input, bool same_settings = true) const {
    const std::string preset = folder.write("tight.toml", kPreset);
    render(input, output, preset);
    std::vector<std::string> arguments{"report", input, output, "-y", "-o", page};
    if (same_settings) arguments.insert(arguments.end(), {"--preset", preset});
    const ChildResult result = run(arguments);
    EXPECT_EQ(result.exit_status, same_settings ? 0 : 4) << result.output;
    EXPECT_EQ(result.output, "");
    return contents(page);
  }

  void expect_refusal(const std::string& input, const std::string& rendered, const std::string& to,
                      const std::string& what) const {
    Command::expect_refusal({"report", input, rendered, "-o", to}, what);
  }

  const std::string output = folder.file("out.wav"), page = folder.file("page.html");
};

void expect_in(const std::string& page, const std::string& text) {
  EXPECT_NE(page.find(text), std::string::npos) << text;
}

TEST_F(ReportProgram, SaysThatTheFileIsWhatTheSettingsGive) {
  expect_in(page_of(tone("in.wav")),
            "<p class=\"verdict good\"><b>This file is what these settings give.</b> "
            "Rendered again, every sample is the same.</p>");
}

TEST_F(ReportProgram, AllowsForRoundingToTheFilesBits) {
  const std::string html = page_of(tone("in.wav", SF_FORMAT_PCM_16));
  expect_in(html, "<b>This file is what these settings give.</b>");
  expect_in(html, "No sample is off by more than rounding to 16-bit makes it.");
}

TEST_F(ReportProgram, SaysThatOtherSettingsGiveAnotherFile) {
  const std::string html = page_of(tone("in.wav"), false);
  expect_in(html, "<p class=\"verdict bad\"><b>This file isn&#39;t what these settings give.</b>");
}

// The input is a mono sine of 1 kHz at -6.02 dBFS, whose loudness is 3.01 LU less. The output
// settles at -13.5 dBFS.
TEST_F(ReportProgram, ShowsLevelsAndReduction) {
  const std::string html = page_of(tone("in.wav"));
  expect_in(html, "<dt>Integrated loudness</dt><dd>−9.0 → −16.5 <small>LUFS</small></dd>");
  expect_in(html, "<dt>Deepest gain reduction</dt><dd>10.5 <small>dB</small></dd>");
  expect_in(html, "<dt>Samples at full scale</dt><dd>0 → 0");
  expect_in(html, "<tr><th scope=\"row\">M</th><td>−6.0 → ");
  expect_in(html, "Rendered from in.wav with the preset Tight, 2.000 s");
}

TEST_F(ReportProgram, CountsSamplesAtFullScale) {
  std::vector<float> samples = sine(0.5, 1000, 48000, 48000);
  samples[100] = samples[200] = 1;
  samples[300] = -1;
  expect_in(page_of(write("in.wav", samples, SF_FORMAT_PCM_24)),
            "<dt>Samples at full scale</dt><dd>3 → ");
}

TEST_F(ReportProgram, TimeHasItsUnit) {
  expect_in(page_of(tone("in.wav")), ">Time (s)</text>");
  const std::vector<float> minute = sine(0.5, 100, 1000, 60000);
  expect_in(page_of(write("long.wav", minute, SF_FORMAT_FLOAT, 1, 1000)), ">Time (min:s)</text>");
}

TEST_F(ReportProgram, TellsWhatChangesAndWhen) {
  const std::string input = tone("in.wav");
  const std::string preset = folder.write(
      "ride.toml", std::string(kPreset) + "[[at]]\ntime = 1.5\ncompressor.threshold = -30\n");
  render(input, output, preset);
  ASSERT_EQ(run({"report", input, output, "--preset", preset, "-o", page}).output, "");
  const std::string html = contents(page);
  const std::size_t change = html.find("<h3>From 1.500 s on</h3>");
  ASSERT_NE(change, std::string::npos);
  const std::string row = "<tr><th scope=\"row\">threshold</th><td>";
  EXPECT_LT(html.find(row + "-20 dB</td>"), change);
  EXPECT_EQ(html.find(row, change), html.find(row + "-30 dB</td>"));
  EXPECT_EQ(html.find(">ratio<", change), std::string::npos);
  expect_in(html, ">settings change</text>");
}

// The channels are one group at first and split later: the group's row shows the deepest reduction
// of any of its channels.
TEST_F(ReportProgram, GroupsThatAreSplitShowTheirDeepestReduction) {
  std::vector<float> surrounds(48000 * 6);
  for (std::size_t i = 0; i < surrounds.size(); i += 6) surrounds[i + 5] = i % 4 == 0 ? 1 : -1;
  const std::string input = write("in.wav", surrounds, SF_FORMAT_FLOAT, 6);
  const std::string preset = folder.write("split.toml",
                                          "[compressor]\nthreshold = -20\nratio = inf\nknee = 0\n"
                                          "[detector]\ntime = 1000\n[link]\nstyle = \"all\"\n"
                                          "[[at]]\ntime = 0\nlink.style = \"pairs\"\n");
  render(input, output, preset);
  ASSERT_EQ(run({"report", input, output, "--preset", preset, "-o", page}).output, "");
  expect_in(contents(page), "<tr><th scope=\"row\">L R C LFE Ls Rs</th><td>20.0</td>");
}

TEST_F(ReportProgram, IsTheSamePageEachTime) {
  const std::string input = tone("in.wav");
  const std::string first = page_of(input);
  EXPECT_EQ(page_of(input), first);
}

TEST_F(ReportProgram, NeedsNothingButItself) {
  const std::string html = page_of(tone("in.wav"));
  for (const char* outside : {"http://", "https://", "<script", "<link", "<img", "url(", "src="}) {
    const std::string namespace_of_svg = "http://www.w3.org/2000/svg";
    for (std::size_t at = 0; (at = html.find(outside, at)) != std::string::npos; ++at) {
      EXPECT_EQ(html.substr(at, namespace_of_svg.size()), namespace_of_svg) << outside;
    }
  }
}

TEST_F(ReportProgram, NamesAreText) {
  expect_in(page_of(tone("a<b>&c.wav")), "Rendered from a&lt;b&gt;&amp;c.wav");
}

TEST_F(ReportProgram, EmptyFileHasAReport) {
  const std::string html = page_of(write("in.wav", {}, SF_FORMAT_FLOAT, 6));
  expect_in(html, "<dd>– → – <small>LUFS</small></dd>");
  expect_in(html, "<dd>−∞ → −∞ <small>dBTP</small></dd>");
}

TEST_F(ReportProgram, RefusesAFileOfAnotherShape) {
  const std::string input = tone("in.wav");
  const std::string stereo =
      write("stereo.wav", sine(0.5, 1000, 48000, 100, 2), SF_FORMAT_FLOAT, 2);
  expect_refusal(input, stereo, page,
                 stereo + ": 2 channels at 48000 Hz, no render of " + input +
                     " with its 1 channel at 48000 Hz");
  const std::string slow =
      write("slow.wav", sine(0.5, 1000, 44100, 100), SF_FORMAT_FLOAT, 1, 44100);
  expect_refusal(
      input, slow, page,
      slow + ": 1 channel at 44100 Hz, no render of " + input + " with its 1 channel at 48000 Hz");
}

TEST_F(ReportProgram, RefusesAFileOfAnotherLength) {
  const std::string input = tone("in.wav");
  const std::string brief = write("brief.wav", sine(0.5, 1000, 48000, 95999), SF_FORMAT_FLOAT);
  expect_refusal(input, brief, page, brief + ": shorter than " + input + ", no render of it");
  expect_refusal(brief, input, page, input + ": longer than " + brief + ", no render of it");
}

TEST_F(ReportProgram, RefusesWhatCannotBeReadOrWritten) {
  const std::string input = tone("in.wav"), missing = folder.file("none.wav");
  expect_refusal(missing, input, page, missing + ": No such file or directory");
  expect_refusal(input, missing, page, missing + ": No such file or directory");
  const std::string nowhere = folder.file("none/page.html");
  expect_refusal(input, input, nowhere, nowhere + ": No such file or directory");
  const ChildResult result = run({"report", input, input});
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_EQ(result.output, "channelstrip: --output is required\n");
}

TEST_F(ReportProgram, RefusesToReplaceWhatItReads) {
  const std::string input = tone("in.wav"), copy = tone("copy.wav");
  expect_refusal(input, copy, input, input + ": is an input");
  expect_refusal(input, copy, copy, copy + ": is an input");
}

TEST_F(ReportProgram, RefusesARateAtWhichLoudnessCannotBeMeasured) {
  const std::string slow = write("slow.wav", sine(0.5, 1, 10, 100), SF_FORMAT_FLOAT, 1, 10);
  expect_refusal(slow, slow, page, slow + ": no loudness can be measured at 10 Hz");
}

TEST_F(ReportProgram, ShowsItsProgressOnATerminalAndErasesIt) {
  const std::string input = tone("in.wav");
  ASSERT_EQ(run({"render", input, output}).exit_status, 0);
  const NamedPipe held(folder.file("held.wav"));
  Terminal terminal;
  Child child({"report", held.path(), output, "-o", page},
              {.standard_error = terminal.program_side()});
  terminal.program_side().close();
  {
    const OpenFile writer(held.opened());
    std::this_thread::sleep_for(std::chrono::milliseconds(101));  // until a line is due
    writer.write(contents(input));
  }
  const std::string shown = terminal.all_shown();
  EXPECT_EQ(child.result().exit_status, 0);
  EXPECT_NE(shown.find(" x realtime  " + held.path()), std::string::npos) << shown;
  EXPECT_TRUE(shown.ends_with("\r\x1b[K")) << shown;
}

TEST_F(ReportProgram, LeavesNoPageWhenItIsInterrupted) {
  const std::string input = tone("in.wav");
  const NamedPipe held(folder.file("held.wav"));
  Child child({"report", held.path(), input, "-o", page});
  const OpenFile writer(held.opened());
  const std::vector<std::string> before = folder.entries();
  wait_until([&] { return child.catches(SIGINT); });
  child.send(SIGINT);
  EXPECT_EQ(child.result().signal, SIGINT);
  EXPECT_EQ(folder.entries(), before);
}

}  // namespace
}  // namespace channelstrip::test::report_program_test
