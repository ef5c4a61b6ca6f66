// How the program refuses to render.

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "program.h"

namespace channelstrip::test::refusal_test {
namespace {

namespace fs = std::filesystem;

TEST_F(Program, RefusesWrongUsage) {
  expect_refusal({}, "no subcommand; --help lists them");
  expect_refusal({"rendre", input},
                 "The following arguments were not expected: " + input + " rendre");
  expect_refusal({"render"}, "IN is required");
  expect_refusal({"render", input}, "OUT is required");
  expect_refusal({"render", input, output, "--preset"}, "--preset: 1 required PRESET missing");
  expect_refusal({"render", input, output, "--loud"},
                 "The following argument was not expected: --loud");
  expect_refusal({"render", input, output, "--jobs", "0"}, "--jobs: at least 1");
  expect_refusal({"render", input, output, "--jobs", "two"}, "Could not convert: --jobs = two");
  expect_refusal({"render", input, output, "--order", "atmos"}, "--order: atmos not in {wav,film}");
  expect_refusal({"render", input, output, "--listen", "me"}, "--listen: me not in {key}");
  expect_refusal({"render", input, "-", "--json"},
                 "--json: standard output takes the audio already");
}

TEST_F(Program, RefusesInputThatIsNoAudio) {
  const std::string missing = folder.file("none.wav");
  expect_refusal({"render", missing, output}, missing + ": No such file or directory");
  const std::string text = folder.write("text.wav", "not audio at all");
  expect_refusal({"render", text, output}, text + ": Format not recognised");
  const std::string empty = folder.write("empty.wav", "");
  EXPECT_EQ(run({"render", empty, output}).exit_status, 1);
}

TEST_F(Program, RefusesNineChannels) {
  const std::string nine = tone("nine.wav", 9);
  expect_refusal({"render", nine, output}, nine + ": no format has 9 channels");
}

TEST_F(Program, RefusesAFormatThatIsUnknownOrDoesNotFit) {
  expect_refusal({"render", input, output, "--format", "9.1"},
                 "--format: \"9.1\" is none of Mono, Stereo, LCR, Quad, LCRS, 5.0, 5.1, 6.0, 6.1, "
                 "7.0, 7.1");
  expect_refusal({"render", input, output, "--format", "5.1"},
                 input + ": format 5.1 has 6 channels, the stream has 1");
}

TEST_F(Program, RefusesAPresetThatIsMissingOrWrong) {
  const std::string missing = folder.file("none.toml");
  expect_refusal({"render", input, output, "--preset", missing},
                 missing + ": No such file or directory");
  const std::string wrong = folder.write("voice.toml", "[compressor]\ntreshold = -20\n");
  expect_refusal({"render", input, output, "--preset", wrong},
                 wrong + ":2:1: compressor.treshold: unknown key; did you mean \"threshold\"?");
}

TEST_F(Program, RefusesALibraryThatCannotBeUsed) {
  const std::string missing = folder.file("none.so");
  expect_refusal({"render", input, output, "--library", missing},
                 "can't load the library: " + missing +
                     ": cannot open shared object file: No such file or directory");
  expect_refusal({"render", input, output, "--library", "libm.so.6"},
                 "libm.so.6 has no AlgEntry_16_Stem_Mono");
  expect_refusal({"render", input, output, "--library", ""},
                 "can't load the library: its path is empty");
}

TEST_F(Program, RefusesAnOutputThatCannotBeReplaced) {
  expect_refusal({"render", input, input}, input + ": is the input itself");
  fs::create_hard_link(input, folder.file("same.wav"));
  expect_refusal({"render", input, folder.file("same.wav")},
                 folder.file("same.wav") + ": is the input itself");
  expect_refusal({"render", input, "/dev/null", "--output-type", "wav"},
                 "/dev/null: Not a regular file");
  expect_refusal({"render", input, ""}, "the output has no name");
  EXPECT_GT(fs::file_size(input), 10000u);
}

TEST_F(Program, RefusesAFolderItCannotWriteTo) {
  const std::string nowhere = folder.file("none/out.wav");
  expect_refusal({"render", input, nowhere}, nowhere + ": No such file or directory");
  fs::create_directory(folder.file("locked"));
  fs::permissions(folder.file("locked"), fs::perms{0555});
  const std::string locked = folder.file("locked/out.wav");
  expect_refusal({"render", input, locked}, locked + ": Permission denied");
  EXPECT_TRUE(fs::is_empty(folder.file("locked")));
}

TEST_F(Program, RefusesToReplaceAProtectedFile) {
  folder.write("out.wav", "precious");
  fs::permissions(output, fs::perms{0444});
  expect_refusal({"render", input, output, "-y"}, output + ": Permission denied");
  EXPECT_EQ(contents(output), "precious");
}

// The disk may be full in the header, among the samples, or in the last bytes, which are written
// when the file is closed.
TEST_F(Program, LeavesNothingWhenThereIsNoRoom) {
  for (const char* name : {"full.wav", "full.flac", "full.aiff", "full.caf"}) {
    const std::string full = folder.file(name);
    ASSERT_EQ(run({"render", input, full}).exit_status, 0);
    const auto size = fs::file_size(full);
    const std::string bytes = contents(full);
    fs::remove(full);
    for (const auto limit : {std::uintmax_t{0}, std::uintmax_t{20}, size / 2, size - 1}) {
      expect_refusal({"render", input, full}, full + ": File too large", limit);
    }
    ASSERT_EQ(run({"render", input, full}, size).exit_status, 0);
    EXPECT_EQ(contents(full), bytes);
  }
}

TEST_F(Program, LeavesTheOlderOutputWhenThereIsNoRoom) {
  folder.write("out.wav", "old");
  expect_refusal({"render", input, output, "-y"}, output + ": File too large", 5000);
  EXPECT_EQ(contents(output), "old");
}

TEST_F(Program, SaysItInOneLineWhateverTheFileIsCalled) {
  const std::string odd = folder.file("two\nlines.wav");
  expect_refusal({"render", odd, output},
                 folder.file("two?lines.wav") + ": No such file or directory");
}

}  // namespace
}  // namespace channelstrip::test::refusal_test
