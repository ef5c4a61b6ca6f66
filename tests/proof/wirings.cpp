#include "wirings.h"

#include <algorithm>
#include <vector>

namespace channelstrip::test {
namespace {

using Buffers = std::vector<std::size_t>;

// Makes the main inputs, in another order, the outputs.
template <typename Source>
void outputs_are_inputs(Scene& scene, std::size_t channels, Source source) {
  for (Instance& it : scene.instances) {
    for (std::size_t c = 0; c < channels; ++c) it.outputs_at[c] = it.inputs_at[source(c)];
  }
}

void detect_from(Instance& it, std::size_t channels, std::size_t buffer) {
  it.dyn_coefs.keyEnable = 1;
  it.key_input = static_cast<int32_t>(channels);
  it.inputs_at[channels] = buffer;
}

// The picked channel differs from instance to instance.
template <typename Pick>
void key_is(Scene& scene, std::size_t channels, Pick pick) {
  for (std::size_t i = 0; i < scene.instances.size(); ++i) {
    Instance& it = scene.instances[i];
    detect_from(it, channels, pick(it)[i % channels]);
  }
}

}  // namespace

void in_place(Scene& scene, std::size_t channels) {
  outputs_are_inputs(scene, channels, [](std::size_t c) { return c; });
}

void neighbours_swapped(Scene& scene, std::size_t channels) {
  outputs_are_inputs(scene, channels, [=](std::size_t c) { return std::min(c ^ 1, channels - 1); });
}

void rotated_up(Scene& scene, std::size_t channels) {
  outputs_are_inputs(scene, channels, [=](std::size_t c) { return (c + 1) % channels; });
}

void rotated_down(Scene& scene, std::size_t channels) {
  outputs_are_inputs(scene, channels, [=](std::size_t c) { return (c + channels - 1) % channels; });
}

void reversed(Scene& scene, std::size_t channels) {
  outputs_are_inputs(scene, channels, [=](std::size_t c) { return channels - 1 - c; });
}

void one_input_behind_all(Scene& scene, std::size_t channels) {
  for (Instance& it : scene.instances) std::fill_n(it.inputs_at.begin(), channels, it.inputs_at[0]);
}

void one_input_behind_all_and_written_first(Scene& scene, std::size_t channels) {
  one_input_behind_all(scene, channels);
  for (Instance& it : scene.instances) it.outputs_at[0] = it.inputs_at[0];
}

void one_output_behind_all(Scene& scene, std::size_t) {
  for (Instance& it : scene.instances) std::ranges::fill(it.outputs_at, it.outputs_at[0]);
}

void one_output_behind_pairs(Scene& scene, std::size_t channels) {
  for (Instance& it : scene.instances) {
    for (std::size_t c = 1; c < channels; c += 2) it.outputs_at[c] = it.outputs_at[c - 1];
  }
}

void input_of_every_channel_is_the_last_output(Scene& scene, std::size_t channels) {
  for (Instance& it : scene.instances) {
    std::fill_n(it.inputs_at.begin(), channels, it.outputs_at.back());
  }
}

void key_is_a_main_input(Scene& scene, std::size_t channels) {
  key_is(scene, channels, [](Instance& it) -> Buffers& { return it.inputs_at; });
}

void key_is_a_main_input_in_place(Scene& scene, std::size_t channels) {
  in_place(scene, channels);
  key_is_a_main_input(scene, channels);
}

void key_is_an_output(Scene& scene, std::size_t channels) {
  key_is(scene, channels, [](Instance& it) -> Buffers& { return it.outputs_at; });
}

void chained(Scene& scene, std::size_t channels) {
  for (std::size_t i = 1; i < scene.instances.size(); ++i) {
    std::copy_n(scene.instances[i - 1].outputs_at.begin(), channels,
                scene.instances[i].inputs_at.begin());
  }
}

void chained_backwards(Scene& scene, std::size_t channels) {
  for (std::size_t i = 1; i < scene.instances.size(); ++i) {
    std::copy_n(scene.instances[i].outputs_at.begin(), channels,
                scene.instances[i - 1].inputs_at.begin());
  }
}

void key_is_an_output_of_the_instance_before(Scene& scene, std::size_t channels) {
  for (std::size_t i = 1; i < scene.instances.size(); ++i) {
    detect_from(scene.instances[i], channels, scene.instances[i - 1].outputs_at[i % channels]);
  }
}

void all_instances_in_place_on_one_set(Scene& scene, std::size_t channels) {
  const Buffers set = scene.instances[0].inputs_at;
  for (Instance& it : scene.instances) std::copy_n(set.begin(), channels, it.inputs_at.begin());
  in_place(scene, channels);
}

void each_instance_twice_in_a_row(Scene& scene, std::size_t) {
  scene.range.clear();
  for (std::size_t i = 0; i < scene.instances.size(); ++i)
    scene.range.insert(scene.range.end(), 2, i);
}

void each_instance_again_at_the_end(Scene& scene, std::size_t) {
  scene.range.clear();
  for (std::size_t i = 0; i < 2 * scene.instances.size(); ++i) {
    scene.range.push_back(i % scene.instances.size());
  }
}

}  // namespace channelstrip::test
