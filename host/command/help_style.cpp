#include "help_style.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "choice.h"

namespace channelstrip::host {
namespace {

constexpr std::size_t kWidth = 80;
constexpr std::size_t kColumn = 26;  // where an option's description begins

constexpr std::string_view kExitStatus =
    "  0  done\n"
    "  1  an error, told in one line on standard error; no file was written\n";

// Wraps the words of a paragraph at kWidth; `column` columns of the first line are already taken.
std::string filled(const std::string& paragraph, std::size_t indent, std::size_t column) {
  std::string result;
  std::istringstream words(paragraph);
  for (std::string word; words >> word; column += word.size()) {
    if (!result.empty() && column + 1 + word.size() > kWidth) {
      result += '\n' + std::string(indent, ' ');
      column = indent;
    } else if (!result.empty()) {
      result += ' ';
      ++column;
    }
    result += word;
  }
  return result;
}

// Wraps every paragraph and ends every line. Paragraphs end at empty lines and at lines that begin
// with a blank, which stay as they are.
std::string filled_paragraphs(const std::string& text, std::size_t indent = 0) {
  std::string result, paragraph;
  const auto end_paragraph = [&] {
    if (!paragraph.empty()) {
      result += std::string(indent, ' ') + filled(paragraph, indent, indent) + '\n';
    }
    paragraph.clear();
  };
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() && line.front() != ' ') {
      paragraph += line + ' ';
      continue;
    }
    end_paragraph();
    if (!line.empty() || !result.ends_with("\n\n")) result += line + '\n';
  }
  end_paragraph();
  return result.substr(0, result.find_last_not_of('\n') + 1) + '\n';
}

std::string entry(const std::string& name, const std::string& meaning) {
  std::string text = "  " + name;
  if (text.size() + 2 > kColumn) text += '\n' + std::string(kColumn, ' ');
  if (text.size() < kColumn) text.resize(kColumn, ' ');
  return text + filled(meaning, kColumn, kColumn) + '\n';
}

// "NAME", or the words of a choice, "wav|film".
std::string value_name(const CLI::Option& option) {
  const std::vector<std::string> words = choices(option);
  return words.empty() ? option.get_type_name() : fmt::format("{}", fmt::join(words, "|"));
}

// Makes the first line of a description a paragraph of its own.
std::string description(const CLI::App& app) {
  std::string text = app.get_description();
  if (const auto end = text.find('\n'); end != text.npos) text.insert(end, 1, '\n');
  return filled_paragraphs(text);
}

struct Footer {
  std::string description, exit_status, examples;
};

// What follows `heading` in a line that begins with it; null if the line doesn't.
const char* behind(const std::string& line, std::string_view heading) {
  return line.starts_with(heading) ? line.c_str() + heading.size() : nullptr;
}

Footer sections(const std::string& text) {
  Footer footer;
  std::string* section = &footer.description;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (const char* status = behind(line, "Exit status:")) {
      section = &footer.exit_status;
      line = status;
      if (line.empty()) continue;
      line.erase(0, 1);  // the blank after the colon
    } else if (behind(line, "Examples:") || behind(line, "Example:")) {
      section = &footer.examples;
      continue;
    } else if (section == &footer.examples && behind(line, "  channelstrip")) {
      line.insert(2, "$ ");
    }
    *section += line + '\n';
  }
  return footer;
}

class HelpStyle : public CLI::Formatter {
 public:
  HelpStyle() { label("Positionals", "Arguments"); }

  std::string make_help(const CLI::App* app, std::string name,
                        CLI::AppFormatMode mode) const override {
    if (mode == CLI::AppFormatMode::Sub) return make_expanded(app);
    const Footer footer = sections(app->get_footer());
    std::string text = make_usage(app, name) + '\n' + description(*app);
    if (!footer.description.empty()) text += '\n' + filled_paragraphs(footer.description);
    text += make_positionals(app) + make_groups(app, mode) + make_subcommands(app, mode);
    text += "\nExit status:\n";
    text += footer.exit_status.empty() ? kExitStatus : filled_paragraphs(footer.exit_status, 2);
    if (!footer.examples.empty()) text += "\nExamples:\n" + filled_paragraphs(footer.examples);
    return text;
  }

  std::string make_option(const CLI::Option* option, bool is_positional) const override {
    std::string name = option->get_name(is_positional, !is_positional);
    if (const auto comma = name.find(",-"); comma != name.npos) name.insert(comma + 1, " ");
    const bool takes_value = option->get_type_size() != 0;
    if (!is_positional && takes_value) name += ' ' + value_name(*option);
    std::string meaning = option->get_description();
    if (takes_value && !option->get_default_str().empty()) {
      meaning += fmt::format(" (default: {})", option->get_default_str());
    }
    if (!is_positional && option->get_required()) meaning += " (required)";
    return entry(name, meaning);
  }

  std::string make_subcommand(const CLI::App* command) const override {
    const std::string description = command->get_description();
    return entry(command->get_name(), description.substr(0, description.find('\n')));
  }
};

}  // namespace

void set_help_style(CLI::App& program) {
  program.formatter(std::make_shared<HelpStyle>());
  program.get_help_ptr()->description("Print this help and exit");
}

}  // namespace channelstrip::host
