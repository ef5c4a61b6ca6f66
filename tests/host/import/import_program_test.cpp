// `channelstrip import` as users and scripts meet it.

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "../support/command.h"
#include "../support/streams.h"

namespace channelstrip::test::import_program_test {
namespace {

class Import : public Command {
 protected:
  const std::string preset = folder.file("room.toml");
};

TEST_F(Import, WritesAPresetThatNamesItsSources) {
  const std::string list =
      folder.write("Küche.txt",
                   "Preamp: -6 dB\r\nFilter 1: ON PK Fc 1000 Hz Gain -3 dB Q 1.41\r\n"
                   "Filter 2: OFF PK Fc 90 Hz Gain -3 dB Q 2\r\n");
  const ChildResult result = run({"import", list, "-o", preset});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(contents(preset),
            "# From Küche.txt, a filter list of Equalizer APO.\n"
            "\n"
            "name = \"Küche\"\n"
            "\n"
            "# Line 2: Filter 1: ON PK Fc 1000 Hz Gain -3 dB Q 1.41\n"
            "[[eq]]\n"
            "type = \"peak\"\n"
            "frequency = 1000\n"
            "q = 1.41\n"
            "gain = -3\n"
            "\n"
            "# Line 1: Preamp: -6 dB\n"
            "# A preamp stands before the filters, makeup between pre and post bands. With the "
            "ratio 1\n"
            "# nothing depends on level, so the order makes no difference.\n"
            "[compressor]\n"
            "ratio = 1\n"
            "makeup = -6\n"
            "\n"
            "# Switched off:\n"
            "# Line 3: Filter 2: OFF PK Fc 90 Hz Gain -3 dB Q 2\n");
}

TEST_F(Import, ReadsStandardInput) {
  Pipe pipe;
  pipe.writing.write("Filter 1: ON PK Fc 1000 Hz Gain -3 dB Q 1.41\n");
  pipe.writing.close();
  const ChildResult result = Child({"import", "-"}, {.standard_input = pipe.reading}).result();
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_TRUE(result.printed.starts_with("# From standard input, a filter list of "));
  EXPECT_NE(result.printed.find("frequency = 1000\n"), std::string::npos);
}

TEST_F(Import, ASignalEndsItsWaitForTheList) {
  Pipe silent;
  const NamedPipe held(folder.file("held.txt"));
  for (const std::string& list : {std::string("-"), held.path()}) {
    Child child({"import", list, "-o", preset}, {.standard_input = silent.reading});
    wait_until([&] { return child.catches(SIGTERM); });
    child.send(SIGTERM);
    const ChildResult result = child.result();
    EXPECT_EQ(result.signal, SIGTERM);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(folder.entries(), std::vector<std::string>{"held.txt"});
  }
}

TEST_F(Import, StatusThreeSaysThatSomethingWasLeftOut) {
  const std::string list =
      folder.write("a.txt", "Filter: ON LP Fc 100 Hz\nGraphicEQ: 25 0\nCopy: L=R\n");
  const ChildResult result = run({"import", list, "-o", preset});
  EXPECT_EQ(result.exit_status, 3);
  EXPECT_EQ(result.output,
            "channelstrip: " + list + ":2: left out: a curve of many points isn't a band\n" +
                "channelstrip: " + list + ":3: left out: a strip doesn't mix channels\n");
  EXPECT_NE(contents(preset).find("\n# Left out:\n"
                                  "# Line 2: GraphicEQ: 25 0\n"
                                  "#   a curve of many points isn't a band\n"
                                  "# Line 3: Copy: L=R\n"
                                  "#   a strip doesn't mix channels\n"),
            std::string::npos);
}

TEST_F(Import, RefusesAFileWithoutFilters) {
  const std::string list = folder.write("a.txt", "# nothing\n");
  expect_refusal({"import", list, "-o", preset}, list + ": no filter for a preset");
  const std::string missing = folder.file("none.txt");
  expect_refusal({"import", missing}, missing + ": No such file or directory");
  expect_refusal({"import", folder.file(".")}, folder.file(".") + ": Is a directory");
  expect_refusal({"import"}, "FILE is required");
}

TEST_F(Import, RefusesToReplaceTheListOrWhatIsNoFile) {
  const std::string list = folder.write("a.txt", "Filter: ON LP Fc 100 Hz\n");
  expect_refusal({"import", list, "-o", list}, list + ": is an input");
  EXPECT_EQ(contents(list), "Filter: ON LP Fc 100 Hz\n");
  const std::string nowhere = folder.file("none/p.toml");
  expect_refusal({"import", list, "-o", nowhere}, nowhere + ": No such file or directory");
  expect_refusal({"import", list, "-o", folder.file(".")}, folder.file(".") + ": Is a directory");
}

TEST_F(Import, LeavesTheOlderPresetWhenThereIsNoRoom) {
  const std::string list = folder.write("a.txt", "Filter: ON LP Fc 100 Hz\n");
  folder.write("room.toml", "old");
  const ChildResult result = run({"import", list, "-y", "-o", preset}, 10);
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_EQ(result.output, "channelstrip: " + preset + ": File too large\n");
  EXPECT_EQ(contents(preset), "old");
  EXPECT_EQ(folder.entries(), (std::vector<std::string>{"a.txt", "room.toml"}));
}

}  // namespace
}  // namespace channelstrip::test::import_program_test
