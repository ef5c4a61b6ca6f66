// What a mistyped word was meant to be.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace channelstrip::host {

// Insertions, deletions, replacements and exchanges of neighbours that lead from one to the other
// (optimal string alignment); letter case is ignored.
int edit_distance(std::string_view a, std::string_view b);

// The words of `known` at the least distance from `word`, if that is at most a third of the longer
// word's letters; otherwise those that begin with `word`.
std::vector<std::string_view> nearest(std::string_view word,
                                      const std::vector<std::string_view>& known);

// `; did you mean "a" or "b"?` for the nearest, or `; ` and the `otherwise` if nothing is near.
std::string suggestion(std::string_view word, const std::vector<std::string_view>& known,
                       std::string_view otherwise);

// "a, b or c", each word between two `quote`.
std::string alternatives(const std::vector<std::string_view>& words, std::string_view quote = "");

}  // namespace channelstrip::host
