// Folders as inputs and outputs, and what is told of many files.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "program.h"

namespace channelstrip::test::folder_test {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class Folder : public Program {
 protected:
  Folder() {
    fs::create_directories(takes + "/day 2/night");
    for (const char* name : {"b.wav", "a.wav", "day 2/c.wav", "day 2/night/d.wav"}) {
      tone(std::string("takes/") + name);
    }
    folder.write("takes/notes.txt", "no audio, and none by its name");
    folder.write("takes/._a.wav", "what some systems leave beside a file");
  }

  // All files below the folder of outputs.
  Names outputs() const {
    Names names;
    for (const auto& entry : fs::recursive_directory_iterator(out)) {
      if (entry.is_regular_file()) names.push_back(entry.path().lexically_relative(out).string());
    }
    std::ranges::sort(names);
    return names;
  }

  const std::string takes = folder.file("takes");
  const std::string out = folder.file("new/out");
};

TEST_F(Folder, StandsForTheAudioFilesInIt) {
  const ChildResult result = run({"render", takes, out});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_EQ(outputs(), (Names{"a.wav", "b.wav"}));
  const auto line = [&](const std::string& name) {
    return takes + "/" + name + " -> " + out + "/" + name +
           ": peak -6.0 -> -6.0 dBFS, reduction 0.0 dB\n";
  };
  EXPECT_EQ(result.output,
            line("a.wav") + line("b.wav") + "2 of 2 files rendered, 0.208 s of audio\n");
}

TEST_F(Folder, IsMadeAgainWithItsFolders) {
  EXPECT_EQ(run({"render", takes, out, "--recursive", "--output-type", "flac"}).exit_status, 0);
  EXPECT_EQ(outputs(), (Names{"a.flac", "b.flac", "day 2/c.flac", "day 2/night/d.flac"}));
}

TEST_F(Folder, MayHoldTheOutputs) {
  const std::string inside = takes + "/out/";
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(run({"render", takes, inside, "-r", "-y"}).exit_status, 0);
    EXPECT_FALSE(fs::exists(inside + "out"));
    EXPECT_TRUE(fs::exists(inside + "day 2/night/d.wav"));
  }
}

TEST_F(Folder, IsMadeForSeveralInputs) {
  EXPECT_EQ(run({"render", takes + "/a.wav", input, out}).exit_status, 0);
  EXPECT_EQ(outputs(), (Names{"a.wav", "in.wav"}));
  const std::string other = folder.file("other/");
  EXPECT_EQ(run({"render", input, other}).exit_status, 0);
  EXPECT_TRUE(fs::exists(other + "in.wav"));
}

TEST_F(Folder, IsRefusedWithoutAudio) {
  fs::create_directories(folder.file("empty/deep"));
  tone("empty/deep/a.wav");
  const std::string empty = folder.file("empty");
  expect_refusal({"render", empty, out},
                 empty + ": holds no audio files; --recursive looks in its folders, too");
  fs::remove(empty + "/deep/a.wav");
  expect_refusal({"render", empty, out, "-r"}, empty + ": holds no audio files");
  expect_refusal({"render", takes, output}, output + ": is no folder, which 2 inputs need");
}

TEST_F(Folder, TellsWhatFailedAndWhatToHeed) {
  folder.write("takes/c.wav", "no audio at all");
  const ChildResult result = run({"render", takes, out, "--set", "compressor.makeup=20"});
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_NE(result.output.find("\n  warning: "), std::string::npos);
  EXPECT_TRUE(result.output.ends_with(
      "c.wav: Format not recognised\n"
      "2 of 3 files rendered, 0.208 s of audio; 1 failed; 2 with warnings\n"))
      << result.output;
}

}  // namespace
}  // namespace channelstrip::test::folder_test
