// The built library against the plain-loop model, over all stem formats: equal copies of random
// scenes, several calls each, compared after every call.

#include <ChannelStrip/frame/entry_points.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <ostream>
#include <string>
#include <utility>

#include "compare.h"
#include "random_scene.h"
#include "scene.h"
#include "strip.h"

namespace channelstrip::test {
namespace {

using model::SumOrder;

struct Format {
  const char* name;
  int channels;
  int groups;
  uint32_t seed;

  friend void PrintTo(const Format& format, std::ostream* out) { *out << format.name; }
};

constexpr Format kFormats[] = {{"Mono", 1, 1, 1}, {"Stereo", 2, 1, 2}, {"LCR", 3, 2, 3},
                               {"Quad", 4, 2, 4}, {"LCRS", 4, 3, 5},   {"5_0", 5, 3, 6},
                               {"5_1", 6, 4, 7},  {"6_0", 6, 4, 8},    {"6_1", 7, 5, 9},
                               {"7_0", 7, 4, 10}, {"7_1", 8, 5, 11}};

constexpr int kTrials = 100;
constexpr int kCalls = 3;

class Sweep : public testing::TestWithParam<Format> {
 protected:
  void SetUp() override {
    library_ = dlopen(CHANNELSTRIP_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library_, nullptr) << dlerror();
    const std::string name = std::string("AlgEntry_16_Stem_") + GetParam().name;
    entry_ = reinterpret_cast<AlgEntry_16_Stem*>(dlsym(library_, name.c_str()));
    ASSERT_NE(entry_, nullptr) << name;
  }

  void TearDown() override {
    if (library_ != nullptr) dlclose(library_);
  }

  Scene by_library(Scene scene) const {
    const Contexts contexts(scene);
    const auto& range = contexts.range();
    entry_(range.data(), range.data() + range.size());
    return scene;
  }

  Scene by_model(Scene scene, SumOrder order) const {
    const Contexts contexts(scene);
    for (const SChannelStrip_Alg_Context* context : contexts.range()) {
      model::process<float>(*context, GetParam().channels, GetParam().groups, order);
    }
    return scene;
  }

  // Runs the calls of all trials; `difference` compares the scene before a call with the library's
  // after it, from which the next one goes on.
  template <typename Difference>
  void sweep(Kind kind, Difference difference) const {
    const Format& format = GetParam();
    Random random(format.seed);
    for (int trial = 0; trial < kTrials; ++trial) {
      Scene scene = random_scene(random, format.channels, format.groups, kind);
      for (int call = 0; call < kCalls; ++call) {
        if (call > 0) change_scene(random, scene, format.groups, kind);
        Scene after = by_library(scene);
        const std::string found = difference(scene, after);
        ASSERT_EQ(found, "") << "seed " << format.seed << ", trial " << trial << ", call " << call;
        scene = std::move(after);
      }
    }
  }

  std::array<Scene, 3> by_every_order(const Scene& scene) const {
    return {by_model(scene, SumOrder::kInputFirst), by_model(scene, SumOrder::kFeedbackFirst),
            by_model(scene, SumOrder::kProductsFirst)};
  }

  void sweep_within(Kind kind, double floor) const {
    sweep(kind, [&](const Scene& before, const Scene& after) {
      return first_excess(by_every_order(before), after, floor);
    });
  }

 private:
  void* library_ = nullptr;
  AlgEntry_16_Stem* entry_ = nullptr;
};

// Each word is that of one of the orders: where a product underflows, even these filters' zeros
// differ in sign.
TEST_P(Sweep, OrderFreeFiltersGiveTheModelsBits) {
  sweep(Kind::kOrderFree, [&](const Scene& before, const Scene& after) {
    return first_difference(by_every_order(before), after);
  });
}

// The floor: a section far below the sample rate integrates its roundings twice, over n = 112
// samples to sqrt(n^3 / 3) = 680 of them, each 2^-23 / sqrt(12) of the value in the mean.
TEST_P(Sweep, GeneralBandsStayWithinTheSpreadOfLegalOrders) {
  sweep_within(Kind::kEqualiser, 0x1p-15);
}

// The floor: a last bit may move a gain by a step of either staircase (1.06e-5), a level near a
// knee's edge by what cancels in its polynomial (terms of up to 1000 dB, 1.2e-4 dB or 1.4e-5).
TEST_P(Sweep, GeneralDynamicsStayWithinTheSpreadOfLegalOrders) {
  sweep_within(Kind::kDynamics, 1e-4);
}

INSTANTIATE_TEST_SUITE_P(Formats, Sweep, testing::ValuesIn(kFormats),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace channelstrip::test
