// What shells are told may follow on a command line, and bash's completion itself.

#include <gtest/gtest.h>

#include <cstdio>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "../support/command.h"

namespace channelstrip::test::completion_test {
namespace {

using Words = std::vector<std::string>;

Words lines_of(const std::string& text) {
  Words lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// Candidates without what they mean; an empty one stands for files.
Words after(Words words) {
  words.insert(words.begin(), {"complete", "--"});
  const ChildResult result = run(words);
  EXPECT_EQ(result.exit_status, 0) << result.output;
  Words candidates;
  for (const std::string& line : lines_of(result.printed)) {
    candidates.push_back(line.substr(0, line.find('\t')));
  }
  return candidates;
}

bool holds(const Words& words, const std::string& word) {
  return std::ranges::find(words, word) != words.end();
}

Words options_in(const std::string& help) {
  static const std::regex option("\n  (?:-., )?(--[a-z-]+)");
  Words names;
  for (std::sregex_iterator at(help.begin(), help.end(), option), end; at != end; ++at) {
    names.push_back((*at)[1]);
  }
  return names;
}

TEST(Completion, KnowsEveryCommandAndOptionOfTheHelp) {
  const std::string help = run({"--help"}).printed;
  const Words commands = after({""});
  EXPECT_EQ(commands.size(), 7u);
  for (const std::string& option : options_in(help)) EXPECT_TRUE(holds(after({"-"}), option));
  for (const std::string& command : commands) {
    EXPECT_NE(help.find("\n  " + command + " "), std::string::npos) << command;
    const Words candidates = after({command, "--"});
    const Words options = options_in(run({command, "--help"}).printed);
    EXPECT_FALSE(options.empty());
    for (const std::string& option : options) EXPECT_TRUE(holds(candidates, option)) << option;
  }
}

TEST(Completion, NamesTheWordsThatAnOptionTakesAndNothingElse) {
  EXPECT_EQ(after({"render", "--dither", ""}), (Words{"none", "tpdf"}));
  EXPECT_EQ(after({"render", "--dither="}), (Words{"--dither=none", "--dither=tpdf"}));
  EXPECT_EQ(after({"render", "--bits", ""}), (Words{"16", "24", "32", "32f", "64f"}));
  EXPECT_TRUE(holds(after({"render", "--output-type", ""}), "flac"));
  EXPECT_TRUE(holds(after({"report", "--format", ""}), "7.1"));
  EXPECT_TRUE(holds(after({"info", ""}), "LCRS"));
}

TEST(Completion, OffersPresetsAndFilesWhereAPresetMayStand) {
  for (const Words& words : {Words{"render", "--preset", ""}, Words{"curves", ""}}) {
    EXPECT_TRUE(holds(after(words), "voice"));
    EXPECT_EQ(after(words).back(), "");
  }
  EXPECT_TRUE(holds(after({"render", "--preset=v"}), "--preset=voice"));
}

TEST(Completion, LeavesAllElseToFiles) {
  const Words files{""};
  EXPECT_EQ(after({"render", ""}), files);
  EXPECT_EQ(after({"render", "--dither", "none", "--strict", "in.wav", "more.wav", ""}), files);
  EXPECT_EQ(after({"render", "--key", ""}), files);
  EXPECT_EQ(after({"render", "--", "--"}), files);
  EXPECT_EQ(after({"import", "", ""}), files);
}

TEST(Completion, HasNothingToSayAfterWhatIsNoCommand) {
  EXPECT_EQ(after({"nothing", ""}), Words{});
  EXPECT_EQ(after({"render", "--nothing="}), Words{});
  EXPECT_EQ(after({"presets", ""}), Words{});
}

TEST(Completion, IsNotInTheHelp) {
  EXPECT_EQ(run({"--help"}).printed.find("complete "), std::string::npos);
}

class BashCompletion : public Command {
 protected:
  // As bash calls it for these words, in a folder of its own. Words are quoted as one types them.
  Words replies(const Words& words) const {
    std::string script = "cd '" + folder.file("") +
                         "'; source '" CHANNELSTRIP_SOURCE_DIR
                         "/host/command/completions/channelstrip.bash'; COMP_WORDS=(channelstrip";
    for (const std::string& word : words) script += " '" + word + "'";
    script += "); COMP_CWORD=" + std::to_string(words.size()) +
              "; _channelstrip " CHANNELSTRIP_PROGRAM "; printf '%s\\n' \"${COMPREPLY[@]}\"";
    const std::string path = folder.write("script", script);
    FILE* pipe = popen(("bash --norc --noprofile '" + path + "'").c_str(), "r");
    std::string output;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) output += static_cast<char>(c);
    EXPECT_EQ(pclose(pipe), 0);
    return lines_of(output);
  }
};

TEST_F(BashCompletion, EndsCommandsOptionsAndTheirWords) {
  EXPECT_EQ(replies({"rep"}), Words{"report"});
  EXPECT_EQ(replies({"render", "--dith"}), Words{"--dither"});
  EXPECT_EQ(replies({"render", "--dither", "t"}), Words{"tpdf"});
  EXPECT_EQ(replies({"render", "in.wav", "--preset", "tele"}), Words{"telephone"});
}

// bash breaks words at signs of equality.
TEST_F(BashCompletion, EndsTheWordBehindASignOfEquality) {
  EXPECT_EQ(replies({"render", "--dither", "=", "t"}), Words{"tpdf"});
  EXPECT_EQ(replies({"render", "--dither", "="}), (Words{"none", "tpdf"}));
}

TEST_F(BashCompletion, NamesFilesBesidePresets) {
  folder.write("voi ce: mine.toml", "");
  EXPECT_EQ(replies({"render", "--preset", "voi"}), (Words{"voice", "voi ce: mine.toml"}));
}

// With no reply of its own, bash completes names of files.
TEST_F(BashCompletion, LeavesOtherFilesToBash) {
  folder.write("in put.wav", "");
  EXPECT_EQ(replies({"render", "in"}), Words{""});
}

}  // namespace
}  // namespace channelstrip::test::completion_test
