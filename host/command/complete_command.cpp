#include "commands.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "command_line.h"
#include "completion.h"

namespace channelstrip::host {

void add_complete_command(CLI::App& program) {
  CLI::App* command = program.add_subcommand("complete", "Tell a shell what may follow");
  command->group("");  // not in --help: shells call it, people don't
  const auto words = std::make_shared<std::vector<std::string>>();
  command->add_option("WORDS", *words, "The words before the cursor");
  command->callback([&program, words] { print_output(completions(program, *words)); });
}

}  // namespace channelstrip::host
