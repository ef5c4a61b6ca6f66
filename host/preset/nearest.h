// What a mistyped word was meant to be.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace channelstrip::host {

// Insertions, deletions, replacements and exchanges of neighbours that lead from one to the other
// (optimal string alignment); letter case is ignored.
int edit_distance(std::string_view a, std::string_view b);

// Those of `known` that are nearest to `word`, all of the same distance: at most a third of the
// longer one's letters. If none is, those that `word` begins.
std::vector<std::string_view> nearest(std::string_view word,
                                      const std::vector<std::string_view>& known);

// `; did you mean "a" or "b"?` for the nearest, or `; ` and the `otherwise` if nothing is near.
std::string suggestion(std::string_view word, const std::vector<std::string_view>& known,
                       std::string_view otherwise);

// "a, b or c", each between `quote`.
std::string alternatives(const std::vector<std::string_view>& words, std::string_view quote = "");

}  // namespace channelstrip::host
