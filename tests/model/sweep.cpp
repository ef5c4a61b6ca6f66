#include "sweep.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

#include "compare.h"
#include "random_scene.h"
#include "run_scene.h"
#include "shrink.h"

namespace channelstrip::test {
namespace {

using model::SumOrder;

constexpr int kCalls = 3;
constexpr const char* kSubjectNames[] = {"order-free", "edges", "equaliser", "dynamics"};

Kind kind_of(Subject subject) {
  switch (subject) {
    case Subject::kEqualiser:
      return Kind::kEqualiser;
    case Subject::kDynamics:
      return Kind::kDynamics;
    case Subject::kOrderFree:
    case Subject::kEdges:
      break;
  }
  return Kind::kOrderFree;
}

// The relative error that is allowed whatever the spread. A section at a frequency far below the
// sample rate integrates its roundings twice: over n = 112 samples they add up to sqrt(n^3 / 3) =
// 680 roundings of 2^-23 / sqrt(12) of the value each (rms). In the dynamics a last bit may move a
// gain by one step of either conversion (1.06e-5), and near a knee edge the terms of the
// polynomial, up to 1000 dB, cancel (1.2e-4 dB, or 1.4e-5 of the gain).
double floor_of(Subject subject) {
  return subject == Subject::kEqualiser ? 0x1p-15 : 1e-4;
}

class Trials {
 public:
  Trials(const host::StemFormat& format, const Processor& processor, Subject subject)
      : format_(format), processor_(processor), subject_(subject), kind_(kind_of(subject)) {}

  void run(uint32_t seed) {
    Random random(seed);
    Scene scene = random_scene(random, format_.channels, format_.groups, kind_);
    for (int call = 0; call < kCalls; ++call) {
      if (call > 0) change_scene(random, scene, format_.groups, kind_);
      if (subject_ == Subject::kEdges) stand_on_edges(random, scene);
      Scene after = processor_(scene);
      found_.quads += quads_of(scene);
      const Deviation seen = judge(scene, after, &found_.edges);
      found_.deviation = std::max(found_.deviation, seen.largest);
      if (bounded()) {
        found_.error.keep_maximum(precision_error(after, by_model<double>(format_, scene)));
      }
      if (!seen.first_excess.empty()) {
        note_failure(
            fmt::format("{}, {}, seed {}, call {}: {}", format_.name,
                        kSubjectNames[static_cast<int>(subject_)], seed, call, seen.first_excess),
            scene);
      }
      scene = std::move(after);
    }
  }

  const Findings& findings() const { return found_; }

 private:
  bool bounded() const { return subject_ == Subject::kEqualiser || subject_ == Subject::kDynamics; }

  static int64_t quads_of(const Scene& scene) {
    int64_t quads = 0;
    for (std::size_t i : scene.range) {
      quads += 4 * std::max(0, (scene.instances[i].count + 15) / 16);
    }
    return quads;
  }

  // Runs the other orders only if the first one's bits differ. Even order-free filters need them:
  // where a product underflows, the orders' zeros differ in sign.
  Deviation judge(const Scene& before, const Scene& after, model::LevelWatch* watch) const {
    Scene first = by_model(format_, before, SumOrder::kInputFirst, watch);
    if (same_words(first, after)) return {};
    const std::array legal{std::move(first), by_model(format_, before, SumOrder::kFeedbackFirst),
                           by_model(format_, before, SumOrder::kProductsFirst)};
    if (bounded()) return deviation(legal, after, floor_of(subject_));
    return {first_difference(legal, after), 0.0};
  }

  void note_failure(const std::string& what, const Scene& scene) {
    if (++found_.differing_calls > 1) return;
    const Fails fails = [this](const Scene& candidate) {
      return !judge(candidate, processor_(candidate), nullptr).first_excess.empty();
    };
    const bool again = fails(scene);
    const Scene small = again ? shrunk(scene, fails) : scene;
    found_.first_failure =
        what + (again ? "\nWhat remained of the call:\n" : "\nNot met again in a fresh run of:\n") +
        description(small);
    if (again) {
      found_.first_failure += judge(small, processor_(small), nullptr).first_excess;
    }
  }

  const host::StemFormat& format_;
  const Processor& processor_;
  Subject subject_;
  Kind kind_;
  Findings found_;
};

}  // namespace

Findings sweep(const host::StemFormat& format, const Processor& processor, Subject subject,
               uint32_t first_seed, int64_t quads) {
  Trials trials(format, processor, subject);
  for (uint32_t seed = first_seed; trials.findings().quads < quads; ++seed) trials.run(seed);
  return trials.findings();
}

}  // namespace channelstrip::test
