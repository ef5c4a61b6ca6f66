// Options that take one of a few words.

#pragma once

#include <string>
#include <vector>

namespace CLI {
class Option;
class Validator;
}  // namespace CLI

namespace channelstrip::host {

// Names the words for --help and for completion. What takes the value refuses others.
CLI::Validator one_of(const std::vector<std::string>& words);

// The words that an option takes, by one_of() or CLI::IsMember; none if it takes anything.
std::vector<std::string> choices(const CLI::Option& option);

}  // namespace channelstrip::host
