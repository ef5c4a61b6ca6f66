// What the program says of inputs that are cut short.

#include <gtest/gtest.h>

#include <string>

#include "program.h"

namespace channelstrip::test::cut_input_test {
namespace {

class CutInput : public Program {
 protected:
  // Half of 5000 samples.
  const std::string cut = folder.write("cut.wav", contents(input).substr(0, 44 + 5000));
  const std::string message =
      "channelstrip: " + cut + ": is cut short, its last 0.052 s of 0.104 s are missing\n";
};

TEST_F(CutInput, IsRenderedAndToldByMessageAndStatus) {
  const ChildResult result = run({"render", cut, output, "--quiet"});
  EXPECT_EQ(result.exit_status, 3);
  EXPECT_EQ(result.output, message);
  EXPECT_EQ(read_audio(output).floats.size(), 2500u);
}

TEST_F(CutInput, IsToldInJson) {
  const ChildResult result = run({"render", cut, output, "--quiet", "--json"});
  EXPECT_NE(result.printed.find("is cut short, its last 0.052 s"), std::string::npos);
}

TEST_F(CutInput, MayBeTheKey) {
  const ChildResult result = run({"render", input, output, "--quiet", "--key", cut});
  EXPECT_EQ(result.exit_status, 3);
  EXPECT_EQ(result.output, message);
}

TEST_F(CutInput, IsToldByMetersAndReport) {
  const ChildResult meters = run({"meters", cut, "-o", folder.file("rows.csv")});
  EXPECT_EQ(meters.exit_status, 3);
  EXPECT_EQ(meters.output, message);
  run({"render", cut, output, "--quiet"});
  const ChildResult report = run({"report", cut, output, "-o", folder.file("page.html")});
  EXPECT_EQ(report.exit_status, 3);
  EXPECT_EQ(report.output, message);
}

}  // namespace
}  // namespace channelstrip::test::cut_input_test
