#include "assignment.h"

#include <optional>
#include <utility>

namespace channelstrip::host {
namespace {

constexpr std::pair<std::string_view, std::string_view> kShort[] = {{"comp.", "compressor."},
                                                                    {"exp.", "expander."}};

std::string in_full(std::string_view key) {
  for (const auto& [alias, name] : kShort) {
    if (key.starts_with(alias)) return fmt::format("{}{}", name, key.substr(alias.size()));
  }
  return std::string(key);
}

std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result + '"';
}

std::optional<toml::table> parsed(const std::string& key, std::string_view value) {
  try {
    return toml::parse(fmt::format("{} = {}", key, value));
  } catch (const toml::parse_error&) {
    return std::nullopt;
  }
}

}  // namespace

void assign(const std::string& assignment, Draft& draft) {
  const Layer layer{Layer::Kind::kAssignment, "--set " + assignment};
  const Place place{layer.origin, ""};
  const auto equals = assignment.find('=');
  if (equals == assignment.npos) fail(place, "must be KEY=VALUE");
  if (assignment.find('\n') != assignment.npos) fail(place, "must be one line");

  const std::string key = in_full(assignment.substr(0, equals));
  const std::string value = assignment.substr(equals + 1);
  // Characters that begin a table, an array or a comment would change what the line means.
  const bool is_key = key.find_first_of("[]{}#") == key.npos && parsed(key, "0");
  if (!is_key) fail(place, fmt::format("\"{}\" is no key", key));
  auto table = parsed(key, value);
  if (!table) table = parsed(key, quoted(value));
  if (!table) fail(place, "the value is no text");
  write(*table, layer, draft);
}

}  // namespace channelstrip::host
