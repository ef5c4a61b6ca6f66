// A plugin's ports in Turtle, in the order in which they are added.

#pragma once

#include <channelstrip/channelstrip.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace channelstrip::lv2 {

// A port's numbers.
std::string range(double least, double greatest, double initial);

// Letters in lower case, without spaces: "EQ 3" is "eq3".
std::string group_symbol(std::string_view group);

class PortList {
 public:
  explicit PortList(bool has_groups) : has_groups_(has_groups) {}

  // The lines, each a predicate with its objects.
  void add(std::string_view type, std::string_view symbol, std::string_view name,
           const std::vector<std::string>& lines);
  // A control for a parameter, if there are groups in that of its part of the strip.
  void add_parameter(const channelstrip_parameter& p, const std::string& uri);
  // A level in dB.
  void add_meter(const std::string& symbol, const std::string& name, double least, double greatest);

  const std::string& text() const { return text_; }

 private:
  bool has_groups_;
  std::uint32_t index_ = 0;
  std::string text_;
};

}  // namespace channelstrip::lv2
