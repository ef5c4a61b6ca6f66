// What a render leaves alone: files that exist, its inputs, what isn't audio.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "host/system/output_file.h"
#include "program.h"

namespace channelstrip::test::kept_files_test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kIsThere = ": exists already; --overwrite replaces it";

class KeptFile : public Program {
 protected:
  void expect_kept(const std::vector<std::string>& arguments, const std::string& file,
                   const std::string& what) {
    const std::string before = contents(file);
    expect_refusal(arguments, file + what);
    EXPECT_EQ(contents(file), before);
  }

  const std::string preset = folder.write("voice.toml", "[compressor]\nthreshold = -30\n");
};

TEST_F(KeptFile, IsAPresetInThePlaceOfTheOutput) {
  for (const std::string overwrite : {"--quiet", "--overwrite"}) {
    expect_kept({"render", input, preset, overwrite}, preset,
                ": its extension is no audio file's; --output-type chooses one");
  }
}

TEST_F(KeptFile, IsAnOlderOutputUnlessItIsToBeOverwritten) {
  folder.write("out.wav", "old");
  expect_kept({"render", input, output}, output, kIsThere);
  for (const char* overwrite : {"-y", "--overwrite"}) {
    folder.write("out.wav", "old");
    EXPECT_EQ(run({"render", input, output, overwrite}).exit_status, 0);
    EXPECT_EQ(read_audio(output).floats.size(), 5000u);
  }
}

TEST_F(KeptFile, IsTheLastInputWhenTheOutputWasForgotten) {
  const std::string other = tone("other.wav");
  expect_kept({"render", input, other}, other, kIsThere);
}

TEST_F(KeptFile, StopsNoOtherOutputOfItsFolder) {
  const std::string other = tone("other.wav");
  fs::create_directory(folder.file("to"));
  folder.write("to/in.wav", "old");
  const ChildResult result = run({"render", input, other, folder.file("to"), "--quiet"});
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_EQ(result.output, "channelstrip: " + folder.file("to/in.wav") + kIsThere + "\n");
  EXPECT_EQ(contents(folder.file("to/in.wav")), "old");
  EXPECT_EQ(read_audio(folder.file("to/other.wav")).floats.size(), 5000u);
}

TEST_F(KeptFile, IsAnInputByWhateverName) {
  const std::string key = tone("key.wav");
  const std::string wav_preset = folder.file("preset.wav");
  fs::copy(preset, wav_preset);
  fs::create_hard_link(key, folder.file("hard.wav"));
  fs::create_symlink("key.wav", folder.file("soft.wav"));
  const auto expect = [&](const std::string& out, const std::string& which) {
    expect_kept({"render", input, out, "-y", "--key", key, "--preset", wav_preset}, out, which);
  };
  expect(wav_preset, ": is an input, " + wav_preset);
  expect(key, ": is an input, " + key);
  expect(folder.file("hard.wav"), ": is an input, " + key);
  expect(folder.file("soft.wav"), ": is an input, " + key);
  expect(input, ": is the input itself");
}

TEST_F(KeptFile, IsKeptByEveryCommandThatWrites) {
  ASSERT_EQ(run({"render", input, output, "--preset", preset}).exit_status, 0);
  const std::string filters = folder.write("eq.txt", "Filter 1: ON PK Fc 100 Hz Gain 3 dB Q 1\n");
  const std::vector<std::vector<std::string>> commands{
      {"meters", input, "--preset", preset, "-o"},
      {"report", input, output, "--preset", preset, "-o"},
      {"curves", preset, "-o"},
      {"import", filters, "-o"}};
  for (std::vector<std::string> arguments : commands) {
    const std::string name = arguments.front() == "curves" ? "page.svg" : "page.txt";
    const std::string file = folder.write(name, "old");
    arguments.push_back(file);
    expect_kept(arguments, file, kIsThere);
    arguments.emplace_back("-y");
    EXPECT_EQ(run(arguments).exit_status, 0);
    EXPECT_GT(fs::file_size(file), 100u);
    if (arguments.front() == "curves" || arguments.front() == "import") continue;
    arguments[arguments.size() - 2] = preset;
    expect_kept(arguments, preset, ": is an input");
  }
}

TEST_F(KeptFile, AppearedWhileItsReplacementWasWritten) {
  {
    host::NamedOutput written(output, host::Existing::kKept);
    ASSERT_EQ(write(written.descriptor(), "new", 3), 3);
    folder.write("out.wav", "somebody else's");
    EXPECT_THROW(written.commit(), std::runtime_error);
  }
  EXPECT_EQ(contents(output), "somebody else's");
  EXPECT_EQ(folder.entries(), (std::vector<std::string>{"in.wav", "out.wav", "voice.toml"}));
}

class ReplacedFile : public Program {
 protected:
  struct stat status() const {
    struct stat status = {};
    stat(output.c_str(), &status);
    return status;
  }
};

TEST_F(ReplacedFile, KeepsItsPermissions) {
  for (const mode_t mode : {0600u, 0664u, 0666u}) {
    folder.write("out.wav", "old");
    chmod(output.c_str(), mode);
    run({"render", input, output, "-y"});
    EXPECT_EQ(status().st_mode & 07777, mode);
  }
}

// Root may give a file away, everybody else keeps it.
TEST_F(ReplacedFile, KeepsItsOwner) {
  folder.write("out.wav", "old");
  const uid_t owner = geteuid() == 0 ? 12345 : geteuid();
  ASSERT_EQ(chmod(output.c_str(), 0666), 0);  // for the program, who may be nobody in particular
  ASSERT_EQ(chown(output.c_str(), owner, getegid()), 0);
  EXPECT_EQ(run({"render", input, output, "-y"}).exit_status, 0);
  EXPECT_EQ(status().st_uid, owner);
  EXPECT_EQ(read_audio(output).floats.size(), 5000u);
}

TEST_F(ReplacedFile, IsFoundBehindALink) {
  folder.write("real.wav", "old");
  fs::create_symlink("real.wav", output);
  EXPECT_EQ(run({"render", input, output, "-y"}).exit_status, 0);
  EXPECT_TRUE(fs::is_symlink(output));
  EXPECT_EQ(read_audio(folder.file("real.wav")).floats.size(), 5000u);
}

TEST_F(ReplacedFile, IsMadeBehindALinkThatLeadsNowhereYet) {
  fs::create_directory(folder.file("away"));
  fs::create_symlink("away/second.wav", folder.file("first.wav"));
  fs::create_symlink(folder.file("first.wav"), output);
  fs::create_symlink("real.wav", folder.file("away/second.wav"));
  EXPECT_EQ(run({"render", input, output}).exit_status, 0);
  EXPECT_TRUE(fs::is_symlink(output));
  EXPECT_EQ(read_audio(folder.file("away/real.wav")).floats.size(), 5000u);
}

}  // namespace
}  // namespace channelstrip::test::kept_files_test
