// The library's results, and the model's, against those that were published.

#include <gtest/gtest.h>
#include <tests/model/strip.h>
#include <tests/support/strip.h>

#include <fstream>
#include <string>
#include <utility>

#include "golden.h"

namespace channelstrip::golden_test {
namespace {

using namespace golden;

std::vector<std::string> published() {
  std::ifstream file(CHANNELSTRIP_SOURCE_DIR "/tests/golden/hashes.txt");
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

// What an entry point does, by the model.
template <int Format>
void by_model(const SChannelStrip_Alg_Context* const* begin, const void* end) {
  for (; begin != end; ++begin) {
    model::process<float>(**begin, kFormats[Format].channels, kFormats[Format].groups,
                          model::SumOrder::kInputFirst);
  }
}
template <int... Formats>
AlgEntry_16_Stem* model_of(int format, std::integer_sequence<int, Formats...>) {
  static constexpr AlgEntry_16_Stem* kEntries[] = {by_model<Formats>...};
  return kEntries[format];
}

class Golden : public testing::TestWithParam<int> {
 protected:
  static void expect_published(AlgEntry_16_Stem* entry) {
    const std::vector<std::string> lines = published();
    ASSERT_EQ(lines.size(), static_cast<size_t>(kFormatCount * kSceneCount));
    for (int scene = 0; scene < kSceneCount; ++scene) {
      char line[kLongestLine];
      write_line(line, GetParam(), scene, entry);
      EXPECT_EQ(line, lines[static_cast<size_t>(GetParam() * kSceneCount + scene)]);
    }
  }
};

TEST_P(Golden, ResultsAreThePublishedOnes) {
  expect_published(test::entry_point(test::format_named(kFormats[GetParam()].name)));
}

TEST_P(Golden, ResultsAreTheModels) {
  expect_published(model_of(GetParam(), std::make_integer_sequence<int, kFormatCount>{}));
}

std::string name_of(const testing::TestParamInfo<int>& format) {
  std::string name = kFormats[format.param].name;
  std::replace(name.begin(), name.end(), '.', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Formats, Golden, testing::Range(0, kFormatCount), name_of);

}  // namespace
}  // namespace channelstrip::golden_test
