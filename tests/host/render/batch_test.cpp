// Rendering several files in one run.

#include "host/render/batch.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "program.h"

namespace channelstrip::test::batch_test {
namespace {

namespace fs = std::filesystem;

class Batch : public Program {
 protected:
  Batch() {
    for (const char* name : {"takes", "more", "out"}) fs::create_directory(folder.file(name));
  }

  std::vector<std::string> outputs() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(out)) names.push_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
  }

  const std::string out = folder.file("out");
};

using Names = std::vector<std::string>;

TEST_F(Batch, OutputsKeepTheirNamesInAFolder) {
  const std::string a = tone("takes/a.wav"), b = tone("more/b.wav", 6);
  EXPECT_EQ(run({"render", a, b, out}).exit_status, 0);
  EXPECT_EQ(outputs(), (Names{"a.wav", "b.wav"}));
  EXPECT_EQ(read_audio(out + "/b.wav").channels, 6);
}

TEST_F(Batch, OneInputGoesIntoAFolderToo) {
  EXPECT_EQ(run({"render", input, out + "/"}).exit_status, 0);
  EXPECT_EQ(outputs(), Names{"in.wav"});
}

TEST_F(Batch, OutputTypeReplacesTheExtension) {
  const std::string a = tone("takes/a.b.wav");
  EXPECT_EQ(run({"render", input, a, out, "--output-type", "flac"}).exit_status, 0);
  EXPECT_EQ(outputs(), (Names{"a.b.flac", "in.flac"}));
  EXPECT_EQ(read_audio(out + "/in.flac").format, SF_FORMAT_FLAC | SF_FORMAT_PCM_16);
}

TEST_F(Batch, ManyJobsRenderWhatOneDoesAndReportInOrder) {
  Names files;
  for (int i = 0; i < 12; ++i) {
    files.push_back(tone("takes/" + std::to_string(i) + ".wav", 1 + i % 8,
                         static_cast<std::size_t>(20000 / (i + 1))));
  }
  const auto arguments = [&](const char* jobs) {
    Names all{"render"};
    all.insert(all.end(), files.begin(), files.end());
    all.insert(all.end(), {out, "-y", "--jobs", jobs, "--set", "compressor.makeup=3"});
    return all;
  };
  const auto bytes = [&] {
    Names all;
    for (const std::string& name : outputs()) all.push_back(contents(out + "/" + name));
    return all;
  };
  const std::string told = run(arguments("1")).output;
  const Names expected = bytes();
  ASSERT_EQ(expected.size(), 12u);
  std::size_t at = 0;
  for (const std::string& file : files) {
    const std::size_t found = told.find(file + " -> ");
    EXPECT_TRUE(found != told.npos && found >= at) << file;
    at = found;
  }
  for (const char* jobs : {"2", "5", "100"}) {
    EXPECT_EQ(run(arguments(jobs)).output, told);
    EXPECT_EQ(bytes(), expected);
  }
}

TEST_F(Batch, AFailureIsOneLineAndStopsNoOther) {
  const std::string text = folder.write("text.wav", "no audio at all");
  const std::string nine = tone("takes/nine.wav", 9), last = tone("takes/last.wav");
  const ChildResult result = run({"render", input, text, nine, last, out, "-q"});
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_EQ(result.output, "channelstrip: " + text + ": Format not recognised\n" +
                               "channelstrip: " + nine + ": no format has 9 channels\n");
  EXPECT_EQ(outputs(), (Names{"in.wav", "last.wav"}));
}

TEST_F(Batch, WhatFailsForEveryFileIsToldOnce) {
  const std::string none = folder.file("none.toml"), a = tone("takes/a.wav");
  expect_refusal({"render", input, a, out, "--preset", none}, none + ": No such file or directory");
  expect_refusal({"render", input, a, out, "--format", "9.1"},
                 "--format: \"9.1\" is none of Mono, Stereo, LCR, Quad, LCRS, 5.0, 5.1, 6.0, 6.1, "
                 "7.0, 7.1");
  EXPECT_EQ(outputs(), Names{});
}

TEST_F(Batch, RefusesTwoInputsForOneOutput) {
  const std::string a = tone("takes/a.wav"), b = tone("more/a.wav");
  expect_refusal({"render", a, b, out},
                 out + "/a.wav: would be written from " + a + " and from " + b);
  const std::string c = tone("more/a.aiff");
  expect_refusal({"render", a, c, out, "--output-type", "flac"},
                 out + "/a.flac: would be written from " + a + " and from " + c);
  EXPECT_EQ(outputs(), Names{});
}

TEST_F(Batch, RefusesTwoNamesOfOneOutput) {
  const std::string a = tone("takes/a.wav"), b = tone("takes/b.wav");
  folder.write("out/a.wav", "old");
  fs::create_symlink("a.wav", folder.file("out/b.wav"));
  expect_refusal({"render", a, b, out},
                 out + "/b.wav: would be written from " + a + " and from " + b);
  EXPECT_EQ(contents(out + "/a.wav"), "old");
}

TEST_F(Batch, RefusesToWriteOverAnInput) {
  const std::string a = tone("takes/a.wav"), b = tone("out/b.wav"), c = tone("more/c.wav");
  expect_refusal({"render", a, b, out}, out + "/b.wav: is the input itself");
  fs::create_hard_link(a, out + "/c.wav");
  expect_refusal({"render", a, c, out}, out + "/c.wav: is an input, " + a);
  const std::string key = tone("out/a.wav");
  expect_refusal({"render", a, out, "--key", key}, out + "/a.wav: is an input, " + key);
}

TEST_F(Batch, RefusesSeveralInputsWithoutAFolder) {
  const std::string a = tone("takes/a.wav"), nowhere = folder.file("none.wav");
  expect_refusal({"render", input, a, nowhere}, nowhere + ": is no folder, which 2 inputs need");
  expect_refusal({"render", input, a, "-"}, "-: is no folder, which 2 inputs need");
  expect_refusal({"render", "-", out}, "-: has no name that a file in " + out + " could take");
}

// A stack larger than the address space: no thread can be made.
TEST_F(Batch, IsRenderedByAsManyThreadsAsThereCanBe) {
  pthread_attr_t usual, too_large;
  pthread_getattr_default_np(&usual);
  pthread_attr_init(&too_large);
  pthread_attr_setstacksize(&too_large, std::size_t{1} << 47);
  ASSERT_EQ(pthread_setattr_default_np(&too_large), 0);
  host::Batch batch{.files = {}, .strip = {.library = CHANNELSTRIP_LIBRARY}, .jobs = 4};
  for (const char* name : {"a.wav", "b.wav", "c.wav"}) {
    batch.files.push_back({tone(name), out + "/" + name});
  }
  host::Progress progress(3, false);
  host::render_all(batch, progress,
                   [](const host::RenderResult& result) { EXPECT_EQ(result.error, ""); });
  pthread_setattr_default_np(&usual);
  EXPECT_EQ(outputs(), (Names{"a.wav", "b.wav", "c.wav"}));
}

}  // namespace
}  // namespace channelstrip::test::batch_test
