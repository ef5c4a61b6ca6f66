// What a TOML value means to a key.

#pragma once

#include <toml++/toml.h>

#include <string>

#include "key.h"

namespace channelstrip::host {

// All throw std::invalid_argument with what is wrong with the value.
double number_of(const toml::node& node);
double number_of(const toml::node& node, const Range& range);
// `retired` stands for the last word.
double word_of(const toml::node& node, std::span<const std::string_view> words,
               std::string_view retired = {});
double switch_of(const toml::node& node);
const std::string& text_of(const toml::node& node);

template <class Settings>
double value_of(const toml::node& node, const Key<Settings>& key) {
  switch (key.access.kind) {
    case Kind::kWord:
      return word_of(node, key.words, key.retired);
    case Kind::kSwitch:
      return switch_of(node);
    case Kind::kNumber:
      break;
  }
  return number_of(node, key.range);
}

}  // namespace channelstrip::host
