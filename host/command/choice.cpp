#include "choice.h"

#include <CLI/CLI.hpp>

namespace channelstrip::host {

CLI::Validator one_of(const std::vector<std::string>& words) {
  return {[](std::string&) { return std::string(); }, CLI::detail::generate_set(words)};
}

// CLI11 gives the words as a part of the type's name, "TYPE:{wav,film}".
std::vector<std::string> choices(const CLI::Option& option) {
  const std::string name = option.get_type_name();
  const std::size_t begin = name.find(":{");
  if (begin == name.npos || !name.ends_with('}')) return {};
  return CLI::detail::split(name.substr(begin + 2, name.size() - begin - 3), ',');
}

}  // namespace channelstrip::host
