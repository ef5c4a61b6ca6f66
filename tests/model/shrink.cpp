#include "shrink.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

#include "compare.h"
#include "neutral.h"
#include "scene_values.h"

namespace channelstrip::test {
namespace {

class Shrinker {
 public:
  Shrinker(Scene scene, const Fails& fails) : best_(std::move(scene)), fails_(fails) {}

  Scene run() {
    do {
      smaller_ = false;
      shorten_range();
      drop_unused_instances();
      for (std::size_t i = 0; i < best_.instances.size(); ++i) {
        shorten(i);
        drop_bands(i);
        neutralise_parts(i);
      }
      silence();
    } while (smaller_);
    return best_;
  }

 private:
  // Keeps the change if the scene still fails; returns whether it did. A change of nothing is
  // false.
  template <typename Change>
  bool attempt(Change change) {
    Scene candidate = best_;
    change(candidate);
    if (same_words(candidate, best_) || !fails_(candidate)) return false;
    best_ = std::move(candidate);
    return smaller_ = true;
  }

  // Tries the change on positions first to end - 1 together; if that isn't kept, on each half.
  template <typename Change>
  void attempt_halves(std::size_t first, std::size_t end, Change change) {
    if (first == end) return;
    const auto both = [&](Scene& scene) { change(scene, first, end); };
    if (attempt(both) || end - first == 1) return;
    const std::size_t middle = first + (end - first) / 2;
    attempt_halves(middle, end, change);
    attempt_halves(first, middle, change);
  }

  // The later half is tried first, so that the positions before it stay valid.
  void shorten_range() {
    attempt_halves(0, best_.range.size(), [](Scene& scene, std::size_t first, std::size_t end) {
      const auto begin = scene.range.begin();
      scene.range.erase(begin + static_cast<std::ptrdiff_t>(first),
                        begin + static_cast<std::ptrdiff_t>(end));
    });
  }

  void drop_unused_instances() {
    for (std::size_t i = best_.instances.size(); i-- > 0;) {
      attempt([&](Scene& scene) { scene.instances[i].settings_of = i; });
      attempt([&](Scene& scene) { scene.instances[i].memory_of = i; });
      const bool in_range = std::ranges::find(best_.range, i) != best_.range.end();
      const bool lends = std::ranges::any_of(best_.instances, [&](const Instance& it) {
        return &it != &best_.instances[i] && (it.settings_of == i || it.memory_of == i);
      });
      if (!in_range && !lends) attempt([&](Scene& scene) { drop_instance(scene, i); });
    }
  }

  static void drop_instance(Scene& scene, std::size_t index) {
    scene.instances.erase(scene.instances.begin() + static_cast<std::ptrdiff_t>(index));
    const auto close_up = [&](std::size_t& i) { i -= i > index ? 1 : 0; };
    for (std::size_t& i : scene.range) close_up(i);
    for (Instance& it : scene.instances) {
      close_up(it.settings_of);
      close_up(it.memory_of);
    }
  }

  // Removes samples from the end, then whole blocks from the front.
  void shorten(std::size_t i) {
    const auto set_count = [&](int32_t count) {
      return attempt([&](Scene& scene) { scene.instances[i].count = count; });
    };
    const auto drop_first_block = [&](Scene& scene) {
      Instance& it = scene.instances[i];
      it.count -= 16;
      for (std::size_t& at : it.inputs_at) at += 16;
      for (std::size_t& at : it.outputs_at) at += 16;
    };
    for (int32_t step = best_.instances[i].count - 1; step > 0; step /= 2) {
      while (best_.instances[i].count > step && set_count(best_.instances[i].count - step)) {
      }
    }
    while (best_.instances[i].count > 16 && attempt(drop_first_block)) {
    }
  }

  void drop_bands(std::size_t i) {
    for (std::size_t pass = 0; pass < 2; ++pass) {
      const auto set_range = [&](int32_t first, int32_t end) {
        return attempt([&](Scene& scene) {
          scene.instances[i].eq_targets.firstBand[pass] = first;
          scene.instances[i].eq_targets.endBand[pass] = end;
        });
      };
      set_range(0, 0);
      for (bool fewer = true; fewer;) {
        const EQ_SCoefs eq = best_.instances[i].eq_targets;
        const int32_t first = eq.firstBand[pass], end = eq.endBand[pass];
        fewer = first < end && (set_range(first + 1, end) || set_range(first, end - 1));
      }
    }
  }

  void neutralise_parts(std::size_t i) {
    const auto parts = parts_of_an_instance();
    attempt_halves(0, parts.size(), [&](Scene& scene, std::size_t first, std::size_t end) {
      neutralise(scene.instances[i], parts.subspan(first, end - first));
    });
  }

  void silence() {
    attempt_halves(0, best_.arena.size(), [](Scene& scene, std::size_t first, std::size_t end) {
      std::fill(scene.arena.data() + first, scene.arena.data() + end, 0.0F);
    });
  }

  Scene best_;
  const Fails& fails_;
  bool smaller_ = false;
};

}  // namespace

Scene shrunk(Scene scene, const Fails& fails) {
  return fails(scene) ? Shrinker(std::move(scene), fails).run() : scene;
}

std::string description(const Scene& scene) {
  Scene neutral = scene;
  for (Instance& it : neutral.instances) neutralise(it, parts_of_an_instance());
  std::ranges::fill(neutral.arena, 0.0F);
  const std::vector<Value> plain = values_of(neutral), values = values_of(scene);

  std::string text;
  for (std::size_t i : scene.range) text += fmt::format("runs instance {}\n", i);
  for (std::size_t i = 0; i < scene.instances.size(); ++i) {
    const Instance& it = scene.instances[i];
    text += fmt::format("instance {}: count {}, key {}, settings of {}, memory of {}\n", i,
                        it.count, it.key_input, it.settings_of, it.memory_of);
    text += fmt::format("  inputs at {}, outputs at {}\n", fmt::join(it.inputs_at, " "),
                        fmt::join(it.outputs_at, " "));
  }
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (values[i].bits == plain[i].bits) continue;
    text += fmt::format("  {}[{}] of {} = {:.9g}\n", values[i].field, values[i].index,
                        values[i].instance, values[i].number);
  }
  return text;
}

}  // namespace channelstrip::test
