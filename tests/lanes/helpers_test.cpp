// Operations on lanes against a plain loop over the lanes, for every kind of number.

#include <ChannelStrip/lanes/buffers.h>
#include <ChannelStrip/lanes/doubles.h>
#include <ChannelStrip/lanes/layout.h>
#include <ChannelStrip/lanes/transpose.h>
#include <gtest/gtest.h>
#include <tests/support/compare.h>

#include <array>
#include <cmath>
#include <limits>
#include <type_traits>
#include <vector>

namespace channelstrip::helpers_test {
namespace {

using test::bits;

template <size_t Width>
auto lanes(const std::array<float, Width>& x) {
  return load<Lanes<Width>>(x.data());
}
template <typename V>
auto plain(V x) {
  std::array<float, kWidth<V>> y;
  store(y.data(), x);
  return y;
}

// Calls check(width) with each width as a compile-time constant.
template <typename Check>
void for_every_width(Check check) {
  check(std::integral_constant<size_t, 4>{});
  check(std::integral_constant<size_t, 8>{});
  if constexpr (kLanes == 16) check(std::integral_constant<size_t, 16>{});
}

const std::vector<float>& numbers() {
  using Limits = std::numeric_limits<float>;
  static const std::vector<float> all = [] {
    std::vector<float> result;
    for (const float x :
         {0.0f, Limits::denorm_min(), 0x1.8p-130f, Limits::min(), 0x1.99999ap-4f, 1.0f,
          0x1.000002p0f, 0x1.8p1f, Limits::max(), Limits::infinity(), Limits::quiet_NaN()}) {
      result.insert(result.end(), {x, -x});
    }
    return result;
  }();
  return all;
}

// Calls check(a, b, c) until every triple of numbers has met in a lane.
template <typename Check>
void for_every_three(Check check) {
  const size_t count = numbers().size();
  for_every_width([&](auto width) {
    const auto from = [&](size_t first, size_t step) {
      std::array<float, width> x;
      for (size_t i = 0; i < x.size(); ++i) x[i] = numbers()[(first + i * step) % count];
      return x;
    };
    for (size_t i = 0; i < count * count * count; ++i) {
      check(from(i % count, 1), from(i / count % count, 3), from(i / count / count, 7));
    }
  });
}

// The bits of a NaN that arithmetic produces are not defined.
bool same_number(float a, float b) {
  return bits(a) == bits(b) || (std::isnan(a) && std::isnan(b));
}

TEST(Lanes, FusedRoundsLikeOneNumber) {
  for_every_three([](const auto& a, const auto& b, const auto& c) {
    const auto result = plain(fused(lanes(a), lanes(b), lanes(c)));
    for (size_t i = 0; i < a.size(); ++i) {
      ASSERT_TRUE(same_number(result[i], fused(a[i], b[i], c[i])))
          << a[i] << " * " << b[i] << " + " << c[i];
    }
  });
}

// Compared to the bit: a held zero keeps its sign, and a held NaN stays.
TEST(Lanes, MaximumAndMinimumTakeWhatIsStrictlyBeyond) {
  for_every_three([](const auto& held, const auto& value, const auto&) {
    const auto greater = plain(maximum(lanes(held), lanes(value)));
    const auto less = plain(minimum(lanes(held), lanes(value)));
    for (size_t i = 0; i < held.size(); ++i) {
      ASSERT_EQ(bits(greater[i]), bits(value[i] > held[i] ? value[i] : held[i]));
      ASSERT_EQ(bits(maximum(held[i], value[i])), bits(greater[i]));
      ASSERT_EQ(bits(less[i]), bits(value[i] < held[i] ? value[i] : held[i]));
    }
  });
}

TEST(Lanes, MasksChooseOneByOne) {
  for_every_three([](const auto& a, const auto& b, const auto& c) {
    const auto x = lanes(a), y = lanes(b), z = lanes(c);
    const auto of_two = plain(select(x < y, y, z));
    const auto of_masks = plain(select(select(x < y, y < z, x < z), x, y));
    for (size_t i = 0; i < a.size(); ++i) {
      ASSERT_EQ(bits(of_two[i]), bits(a[i] < b[i] ? b[i] : c[i]));
      ASSERT_EQ(bits(of_masks[i]), bits((a[i] < b[i] ? b[i] < c[i] : a[i] < c[i]) ? a[i] : b[i]));
    }
  });
}

TEST(Lanes, MagnitudeClearsTheSignAlone) {
  for_every_width([](auto width) {
    for (size_t first = 0; first + width <= numbers().size(); ++first) {
      const auto result = plain(magnitude(load<Lanes<width>>(&numbers()[first])));
      for (size_t i = 0; i < width; ++i) {
        ASSERT_EQ(bits(result[i]), bits(numbers()[first + i]) & 0x7FFFFFFF);
      }
    }
  });
}

TEST(Lanes, AnyBitIsSeenWhereverItIs) {
  for_every_width([](auto width) {
    using Ints = IntsOf<Lanes<width>>;
    EXPECT_FALSE(any_bit(Ints{}));
    for (int lane = 0; lane < kWidth<Ints>; ++lane) {
      for (int bit = 0; bit < 32; ++bit) {
        const Ints one =
            fill<Ints>([&](int i) { return i == lane ? static_cast<int32_t>(1u << bit) : 0; });
        EXPECT_TRUE(any_bit(one)) << lane << ' ' << bit;
      }
    }
  });
}

template <int To, int From>
void expect_picks() {
  constexpr size_t kIndices = To > From ? To : From;
  std::array<float, From> from;
  for (size_t i = 0; i < From; ++i) from[i] = numbers()[i + 3];
  for (size_t step = 0; step < From; ++step) {
    std::array<int32_t, kIndices> index;
    for (size_t i = 0; i < kIndices; ++i)
      index[i] = static_cast<int32_t>((i * step + i / 3) % From);
    std::array<float, To> to;
    store(to.data(), pick_lanes<Lanes<To>>(load<Lanes<From>>(from.data()), index.data()));
    for (size_t i = 0; i < To; ++i) {
      EXPECT_EQ(bits(to[i]), bits(from[static_cast<size_t>(index[i])])) << step << ' ' << i;
    }
  }
}

TEST(PickLanes, TakesAnyLaneToAnyOther) {
  expect_picks<4, 4>();
  expect_picks<4, 8>();
  expect_picks<8, 4>();
  expect_picks<8, 8>();
  if constexpr (kLanes == 16) {
    expect_picks<4, 16>();
    expect_picks<16, 4>();
    expect_picks<8, 16>();
    expect_picks<16, 8>();
    expect_picks<16, 16>();
  }
}

TEST(Halves, AreJoinedInTheirOrder) {
  for_every_width([](auto width) {
    if constexpr (width > 4) {
      const auto x = load<Lanes<width>>(numbers().data());
      EXPECT_EQ(plain(low_half(x)), plain(load<Lanes<width / 2>>(numbers().data())));
      EXPECT_EQ(plain(join(high_half(x), low_half(x))),
                plain(join(load<Lanes<width / 2>>(numbers().data() + width / 2),
                           load<Lanes<width / 2>>(numbers().data()))));
    }
  });
}

TEST(Transpose, MakesRowsColumnsInEveryBlockOfFour) {
  for_every_width([](auto width) {
    float rows[4][width], turned[4][width];
    for (size_t i = 0; i < 4 * width; ++i) rows[i / width][i % width] = static_cast<float>(i);
    Lanes<width> registers[4];
    for (int i = 0; i < 4; ++i) registers[i] = load<Lanes<width>>(rows[i]);
    transpose(registers);
    for (int i = 0; i < 4; ++i) store(turned[i], registers[i]);
    for (size_t i = 0; i < 4; ++i) {
      for (size_t lane = 0; lane < width; ++lane) {
        EXPECT_EQ(turned[i][lane], rows[lane % 4][lane / 4 * 4 + i]);
      }
    }
  });
}

// Buffers with any alignment; every third lane is not stored.
TEST(Lanes, QuadsGoFromBuffersToBuffers) {
  for_every_width([](auto width) {
    constexpr size_t kOffset = 8, kRoom = 17;
    std::vector<float> in(width * kRoom), out(width * kRoom, -7.0f), expected = out;
    const float* inputs[width];
    float* outputs[width];
    for (size_t i = 0; i < in.size(); ++i) in[i] = static_cast<float>(i);
    for (size_t lane = 0; lane < width; ++lane) {
      const size_t at = lane * kRoom + lane % 4;
      inputs[lane] = in.data() + at;
      outputs[lane] = lane % 3 == 2 ? nullptr : out.data() + at;
      if (lane % 3 != 2) std::copy_n(&in[at + kOffset], 4, &expected[at + kOffset]);
    }
    Lanes<width> quad[4];
    load_lanes(quad, inputs, kOffset);
    for (size_t k = 0; k < 4; ++k) {
      const auto row = plain(quad[k]);
      for (size_t lane = 0; lane < width; ++lane) EXPECT_EQ(row[lane], inputs[lane][kOffset + k]);
    }
    store_lanes(quad, outputs, kOffset);
    EXPECT_EQ(out, expected);
  });
}

// Record l holds 10 l, 10 l + 1, ...
template <size_t Width>
std::array<std::array<float, 6>, Width> records() {
  std::array<std::array<float, 6>, Width> result;
  for (size_t lane = 0; lane < Width; ++lane) {
    for (size_t i = 0; i < 6; ++i) result[lane][i] = static_cast<float>(10 * lane + i);
  }
  return result;
}

TEST(Lanes, ColumnsHoldOneNumberOfEveryRecord) {
  for_every_width([](auto width) {
    const auto from = records<width>();
    Lanes<width> columns[4];
    load_columns(columns, [&](int lane) { return from[static_cast<size_t>(lane)].data() + 1; });
    for (size_t i = 0; i < 4; ++i) {
      const auto column = plain(columns[i]);
      for (size_t lane = 0; lane < width; ++lane) ASSERT_EQ(column[lane], from[lane][i + 1]);
    }
  });
}

TEST(Lanes, ColumnsAreStoredInTheRecordsThatAreNotNull) {
  for_every_width([](auto width) {
    const auto from = records<width>();
    Lanes<width> columns[4];
    load_columns(columns, [&](int lane) { return from[static_cast<size_t>(lane)].data(); });
    std::array<std::array<float, 6>, width> to{};
    float* records[width];
    for (size_t lane = 0; lane < width; ++lane)
      records[lane] = lane == 2 ? nullptr : to[lane].data();
    store_columns(columns, records, 1);
    for (size_t lane = 0; lane < width; ++lane) {
      for (size_t i = 0; i < 6; ++i) {
        const bool stored = lane != 2 && i > 0 && i < 5;
        ASSERT_EQ(to[lane][i], stored ? from[lane][i - 1] : 0.0f) << lane << ' ' << i;
      }
    }
  });
}

TEST(Lanes, WidenedNumbersAreExactAndNarrowedOnesRounded) {
  for_every_three([](const auto& a, const auto& b, const auto&) {
    const auto sum = widened(lanes(a)) + widened(lanes(b)) * 0x1p-30;
    const auto result = plain(narrowed<Lanes<std::tuple_size_v<std::decay_t<decltype(a)>>>>(sum));
    for (size_t i = 0; i < a.size(); ++i) {
      const double expected = static_cast<double>(a[i]) + static_cast<double>(b[i]) * 0x1p-30;
      ASSERT_TRUE(same_number(result[i], static_cast<float>(expected))) << a[i] << ' ' << b[i];
    }
  });
}

}  // namespace
}  // namespace channelstrip::helpers_test
