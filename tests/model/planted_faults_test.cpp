// Tests of the sweep itself: what it lets pass, which faults it finds and how it reports them.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "run_scene.h"
#include "sweep.h"
#include "tests/support/strip.h"

namespace channelstrip::test::planted_faults_test {
namespace {

constexpr int64_t kQuads = 20'000;

Findings swept(const Processor& processor, Subject subject) {
  return sweep(format_named("LCR"), processor, subject, 1, kQuads);
}

// A strip that applies `wrong` to every instance's settings for the time of the call.
template <typename Wrong>
Processor faulty(Wrong wrong) {
  return [wrong](const Scene& scene) {
    Scene changed = scene;
    for (Instance& it : changed.instances) wrong(it);
    Scene after = by_model(format_named("LCR"), changed);
    for (std::size_t i = 0; i < scene.instances.size(); ++i) {
      after.instances[i].dyn_coefs = scene.instances[i].dyn_coefs;
      after.instances[i].eq_targets = scene.instances[i].eq_targets;
    }
    return after;
  };
}

float up(float x) {
  return std::nextafter(x, std::numeric_limits<float>::infinity());
}

TEST(SweepBound, AcceptsALegalOrderThatIsNoneOfTheThree) {
  const Processor other = [](const Scene& scene) {
    return by_model(format_named("LCR"), scene, model::SumOrder::kProductsSwapped);
  };
  for (Subject subject : {Subject::kEqualiser, Subject::kDynamics}) {
    const Findings found = swept(other, subject);
    EXPECT_EQ(found.first_failure, "");
    EXPECT_GT(found.deviation, 0.0);
    EXPECT_LE(found.deviation, 1.0);
  }
}

TEST(SweepBound, RejectsAGainThatIsTwoThousandthsOff) {
  const Processor processor = faulty([](Instance& it) { it.dyn_coefs.makeupGain *= 1.002F; });
  EXPECT_GT(swept(processor, Subject::kDynamics).differing_calls, 0);
}

// An edge moved by one float stands for a comparison that wrongly includes or excludes equality.
TEST(SweepOfEdges, FindsEveryEdgeThatStandsOneFloatOff) {
  float Dyn_SCoefsBlock::*const edges[] = {
      &Dyn_SCoefsBlock::compKneeLow,       &Dyn_SCoefsBlock::compKneeHigh,
      &Dyn_SCoefsBlock::expKneeLow,        &Dyn_SCoefsBlock::expKneeHigh,
      &Dyn_SCoefsBlock::gateOpenThreshold, &Dyn_SCoefsBlock::gateCloseThreshold};
  for (auto edge : edges) {
    const Processor processor =
        faulty([edge](Instance& it) { it.dyn_coefs.*edge = up(it.dyn_coefs.*edge); });
    EXPECT_GT(swept(processor, Subject::kEdges).differing_calls, 10);
  }
}

TEST(SweepReport, SaysHowToGetAFailureAgainAndWhatIsLeftOfIt) {
  const Processor processor = faulty([](Instance& it) { it.dyn_coefs.keyListen = 0; });
  const std::string report = swept(processor, Subject::kOrderFree).first_failure;
  EXPECT_EQ(report.find("LCR, order-free, seed "), 0U) << report;
  EXPECT_NE(report.find("What remained of the call:\nruns instance 0\ninstance 0: count 1, key 0"),
            std::string::npos)
      << report;
  EXPECT_NE(report.find("keyListen[0] of 0 = "), std::string::npos) << report;
  EXPECT_EQ(report.find("instance 1:"), std::string::npos) << report;
}

// A fault that depends on earlier calls can't be reproduced from one scene, so nothing is shrunk.
TEST(SweepReport, SaysWhenAFailureIsNotMetAgain) {
  int calls = 0;
  const Processor processor = [&calls](const Scene& scene) {
    Scene after = by_model(format_named("LCR"), scene);
    if (++calls == 5) after.arena[0] += 1.0F;
    return after;
  };
  const Findings found = swept(processor, Subject::kOrderFree);
  EXPECT_EQ(found.differing_calls, 1);
  EXPECT_NE(found.first_failure.find("Not met again"), std::string::npos);
}

}  // namespace
}  // namespace channelstrip::test::planted_faults_test
