#include "completion.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>
#include <vector>

#include "choice.h"
#include "shipped_presets.h"

namespace channelstrip::host {
namespace {

constexpr std::string_view kFiles = "\n";

// The first clause of what it means.
std::string candidate(const std::string& word, const std::string& meaning) {
  const std::string clause = meaning.substr(0, std::min(meaning.find('\n'), meaning.find(';')));
  return word + (clause.empty() ? "" : "\t" + clause) + '\n';
}

std::string commands(const CLI::App& program) {
  std::string lines;
  for (const CLI::App* command : program.get_subcommands({})) {
    if (command->get_group().empty()) continue;
    lines += candidate(command->get_name(), command->get_description());
  }
  return lines;
}

std::string options(const CLI::App& command) {
  std::string lines;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      lines += candidate("--" + name, option->get_description());
    }
    for (const std::string& name : option->get_snames()) {
      lines += candidate("-" + name, option->get_description());
    }
  }
  return lines;
}

std::string values(const CLI::Option& option, const std::string& before = "") {
  const std::vector<std::string> words = choices(option);
  std::string lines;
  for (const std::string& word : words) lines += candidate(before + word, "");
  if (!words.empty()) return lines;
  if (option.get_type_name() == "PRESET") {
    for (const ShippedPreset& preset : shipped_presets()) {
      lines += candidate(before + preset.name, preset.purpose);
    }
  }
  return lines.append(kFiles);
}

// Those that take a value after their name; null for others.
const CLI::Option* taker(const CLI::App& command, const std::string& name) {
  const CLI::Option* option = command.get_option_no_throw(name);
  return option && option->get_type_size() != 0 ? option : nullptr;
}

// The argument that follows `count` others. The last one takes all that follow.
const CLI::Option* argument(const CLI::App& command, std::size_t count) {
  const auto arguments =
      command.get_options([](const CLI::Option* option) { return option->get_positional(); });
  return arguments.empty() ? nullptr : arguments[std::min(count, arguments.size() - 1)];
}

}  // namespace

std::string completions(const CLI::App& program, std::span<const std::string> words) {
  if (words.empty()) return commands(program);
  const std::string& last = words.back();
  const CLI::App* command = &program;
  const CLI::Option* waiting = nullptr;  // for its value
  bool options_may_follow = true;
  std::size_t arguments = 0;
  for (const std::string& word : words.first(words.size() - 1)) {
    if (waiting) {
      waiting = nullptr;
    } else if (options_may_follow && word == "--") {
      options_may_follow = false;
    } else if (options_may_follow && word.size() > 1 && word.starts_with('-')) {
      waiting = taker(*command, word);
    } else if (command == &program) {
      const auto named = program.get_subcommands(
          [&](const CLI::App* subcommand) { return subcommand->get_name() == word; });
      if (named.empty()) return {};
      command = named.front();
    } else {
      ++arguments;
    }
  }
  if (waiting) return values(*waiting);
  if (options_may_follow && last.starts_with('-')) {
    const std::size_t sign = last.find('=');
    if (sign == last.npos) return options(*command);
    const CLI::Option* option = taker(*command, last.substr(0, sign));
    return option ? values(*option, last.substr(0, sign + 1)) : std::string();
  }
  if (command == &program) return commands(program);
  const CLI::Option* const next = argument(*command, arguments);
  return next ? values(*next) : std::string();
}

}  // namespace channelstrip::host
