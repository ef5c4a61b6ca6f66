// Random scenes, and the library's and the model's results for them.

#pragma once

#include <control/library/stem_format.h>
#include <tests/model/random_scene.h>
#include <tests/model/scene.h>

#include <array>
#include <cstddef>
#include <string>

namespace channelstrip::test {

inline constexpr std::size_t kStride = 128;  // samples from one buffer to the next

// A random scene with at least one instance.
Scene some_scene(Random& random, const host::StemFormat& format, Kind kind);

// A random scene whose instances share nothing and whose buffers all lie apart. The key is never a
// main input: it is one of the entries of inputs_at from N on.
Scene independent_scene(Random& random, const host::StemFormat& format, Kind kind);

Scene by_library(const host::StemFormat& format, Scene scene);

// The model's results, one for each legal order of a filter's sums.
std::array<Scene, 3> by_each_order(const host::StemFormat& format, const Scene& scene);

// Describes the first word that differs between two results; "" if there is none. All NaNs count as
// equal.
std::string difference(const Scene& expected, const Scene& actual);

// The same for the library's result and the model's, for scenes of kind kOrderFree.
std::string difference_from_model(const host::StemFormat& format, const Scene& scene);

}  // namespace channelstrip::test
