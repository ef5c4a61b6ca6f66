#include "nearest.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

namespace channelstrip::host {
namespace {

std::string lowercase(std::string_view word) {
  std::string result(word);
  std::ranges::transform(result, result.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return result;
}

}  // namespace

int edit_distance(std::string_view a, std::string_view b) {
  const std::string from = lowercase(a);
  const std::string to = lowercase(b);
  // Distances from the first i letters of one to the first j of the other: this row and two above.
  std::array<std::vector<int>, 3> rows;
  rows.fill(std::vector<int>(to.size() + 1));
  auto& [row, above, second_above] = rows;
  for (std::size_t i = 0; i <= from.size(); ++i) {
    for (std::size_t j = 0; j <= to.size(); ++j) {
      if (i == 0 || j == 0) {
        row[j] = static_cast<int>(i + j);
        continue;
      }
      const int change = from[i - 1] == to[j - 1] ? 0 : 1;
      row[j] = std::min({above[j] + 1, row[j - 1] + 1, above[j - 1] + change});
      const bool exchanged = i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1];
      if (exchanged) row[j] = std::min(row[j], second_above[j - 2] + 1);
    }
    std::swap(above, second_above);
    std::swap(row, above);
  }
  return above.back();
}

std::vector<std::string_view> nearest(std::string_view word,
                                      const std::vector<std::string_view>& known) {
  std::vector<std::string_view> result;
  int least = 0;
  for (const std::string_view candidate : known) {
    const int distance = edit_distance(word, candidate);
    if (distance > static_cast<int>(std::max(word.size(), candidate.size()) / 3)) continue;
    if (!result.empty() && distance > least) continue;
    if (distance < least) result.clear();
    least = distance;
    result.push_back(candidate);
  }
  if (!result.empty() || word.empty()) return result;
  std::ranges::copy_if(known, std::back_inserter(result), [&](std::string_view candidate) {
    return candidate.starts_with(lowercase(word));
  });
  return result;
}

std::string suggestion(std::string_view word, const std::vector<std::string_view>& known,
                       std::string_view otherwise) {
  const auto near = nearest(word, known);
  return near.empty() ? fmt::format("; {}", otherwise)
                      : fmt::format("; did you mean {}?", alternatives(near, "\""));
}

std::string alternatives(const std::vector<std::string_view>& words, std::string_view quote) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    text += i == 0 ? "" : i + 1 == words.size() ? " or " : ", ";
    text += fmt::format("{0}{1}{0}", quote, words[i]);
  }
  return text;
}

}  // namespace channelstrip::host
