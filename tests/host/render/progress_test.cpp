// The progress line of a render.

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "../support/streams.h"
#include "program.h"

namespace channelstrip::test::progress_test {
namespace {

// Rendering from a named pipe, which delays the work until a progress line is due.
class Progress : public Program {
 protected:
  std::vector<std::string> arguments(const std::vector<std::string>& options = {}) const {
    std::vector<std::string> all{"render", held.path(), output, "-y"};
    all.insert(all.end(), options.begin(), options.end());
    return all;
  }

  // Calls `meanwhile` once the program waits for input.
  void feed(const std::function<void()>& meanwhile = [] {}) const {
    using namespace std::chrono_literals;
    const OpenFile writer(held.opened());
    meanwhile();
    std::this_thread::sleep_for(101ms);
    writer.write(contents(input));
  }

  // What remains on the terminal after all erasures.
  static std::string left_of(std::string shown) {
    const std::string erase = "\r\x1b[K";
    for (auto at = shown.find(erase); at != shown.npos; at = shown.find(erase)) {
      const auto line = shown.rfind('\n', at) + 1;
      shown.erase(line, at + erase.size() - line);
    }
    return shown;
  }

  const NamedPipe held{folder.file("held.wav")};
};

TEST_F(Progress, IsOneLineOfATerminalAndErasedBeforeTheSummary) {
  Child unseen(arguments());
  feed();
  const std::string summary = unseen.result().output;
  EXPECT_TRUE(summary.starts_with(held.path() + " -> " + output + "\nMono,"));

  constexpr unsigned short kColumns = 33;
  Terminal terminal(kColumns);
  Child child(arguments(), {.standard_error = terminal.program_side()});
  terminal.program_side().close();
  feed();
  const std::string shown = terminal.all_shown();
  EXPECT_EQ(child.result().exit_status, 0);
  const std::string line = shown.substr(1, shown.find("\x1b[K") - 1);
  EXPECT_EQ(shown.at(0), '\r');
  EXPECT_NE(line.find(" x realtime  ..."), line.npos);
  EXPECT_LT(line.size(), kColumns);
  EXPECT_EQ(left_of(shown), summary);
}

TEST_F(Progress, IsNotShownWhenQuietIsWanted) {
  Terminal terminal;
  Child child(arguments({"--quiet"}), {.standard_error = terminal.program_side()});
  terminal.program_side().close();
  feed();
  EXPECT_EQ(terminal.all_shown(), "");
  EXPECT_EQ(child.result().exit_status, 0);
}

TEST_F(Progress, MayLoseItsTerminal) {
  Terminal terminal;
  Child child(arguments(), {.standard_error = terminal.program_side()});
  terminal.program_side().close();
  feed([&] { terminal.disappear(); });
  EXPECT_EQ(child.result().exit_status, 0);
  EXPECT_EQ(read_audio(output).floats.size(), 5000u);
}

}  // namespace
}  // namespace channelstrip::test::progress_test
