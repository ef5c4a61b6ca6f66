// What was measured, as a table and as JSON.

#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace channelstrip::bench {

struct Case {
  int channels;
  int samples_per_call;
};
inline constexpr std::array<Case, 4> kCases{{{1, 64}, {1, 512}, {2, 64}, {2, 512}}};

// As find_stem_format knows it.
std::string_view format_name(int channels);

// ChannelStrip or a peer. Maps are by channel count.
struct Subject {
  std::string name;
  std::string package = {};
  int bands = 0;
  std::string notes = {};
  std::array<std::optional<double>, kCases.size()> nanoseconds = {};  // per frame
  std::map<int, std::string> plugins = {};                            // names, in their order
  std::map<int, std::string> unmeasured = {};                         // why
  double latency = 0;                                                 // samples
  int threads = 0;                                                    // that the plugins start
};

// The first subject is ChannelStrip.
std::string as_table(const std::vector<Subject>& subjects);
std::string as_json(const std::vector<Subject>& subjects);

}  // namespace channelstrip::bench
