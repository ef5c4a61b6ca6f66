// A fixture for the program's commands, with a folder of its own.

#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "child.h"
#include "temporary_folder.h"

namespace channelstrip::test {

class Command : public testing::Test {
 protected:
  // Every command fails in the same way: status 1, one line that starts with the program's name,
  // nothing on standard output, and no file more or less.
  void expect_refusal(const std::vector<std::string>& arguments, const std::string& what,
                      std::optional<unsigned long> file_size_limit = std::nullopt) const {
    const std::vector<std::string> before = folder.entries();
    const ChildResult result = run(arguments, file_size_limit);
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.output, "channelstrip: " + what + "\n");
    EXPECT_EQ(result.printed, "");
    EXPECT_EQ(folder.entries(), before);
  }

  const TemporaryFolder folder;
};

}  // namespace channelstrip::test
