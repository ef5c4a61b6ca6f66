// Random scenes for the relations that results must keep.

#pragma once

#include <host/design/stem_format.h>
#include <tests/model/random_scene.h>
#include <tests/model/scene.h>

#include <array>
#include <cstddef>
#include <string>

namespace channelstrip::test {

inline constexpr std::size_t kStride = 128;  // samples from one buffer to the next

// A random scene of one instance at least.
Scene some_scene(Random& random, const host::StemFormat& format, Kind kind);

// One whose instances share nothing, every buffer apart. No key is a main input; the
// entries of inputs_at from N on are free for one.
Scene independent_scene(Random& random, const host::StemFormat& format, Kind kind);

Scene by_library(const host::StemFormat& format, Scene scene);

// The model's, once for each legal order of a filter's sums.
std::array<Scene, 3> by_each_order(const host::StemFormat& format, const Scene& scene);

// The first word that differs between two results; "" if there is none. Any NaN is any other's
// equal.
std::string difference(const Scene& expected, const Scene& actual);

// The same between the library's result and the model's, for scenes whose filters leave the order
// of their sums no say.
std::string difference_from_model(const host::StemFormat& format, const Scene& scene);

}  // namespace channelstrip::test
