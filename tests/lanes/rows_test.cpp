// Rows stored without gaps: each keeps its own lanes, and a map reaches every lane in use once.

#include <ChannelStrip/lanes/rows.h>
#include <gtest/gtest.h>

#include <array>

namespace channelstrip::rows_test {
namespace {

template <int Width, int Stride, int Widest>
class Quad {
 public:
  static constexpr int kStride = Stride, kNumbers = 4 * Stride;
  using Numbers = std::array<float, kNumbers>;

  // Unused lanes hold -1e9, which must never show in a result.
  static Rows<Lanes<Width>, Stride, Widest> rows(const Numbers& numbers) {
    Rows<Lanes<Width>, Stride, Widest> result;
    for (int k = 0; k < 4; ++k) {
      float row[Width];
      for (int i = 0; i < Width; ++i) {
        row[i] = i < Stride ? numbers[static_cast<size_t>(k * Stride + i)] : -1e9f;
      }
      result.set_row(k, load<Lanes<Width>>(row));
    }
    return result;
  }

  static Rows<Lanes<Width>, Stride, Widest, 8> two() { return {}; }

  static Numbers numbers(const Rows<Lanes<Width>, Stride, Widest>& rows) {
    Numbers result;
    for (int k = 0; k < 4; ++k) {
      float row[Width];
      store(row, rows.row(k));
      std::copy_n(row, Stride, result.begin() + k * Stride);
    }
    return result;
  }

  static Numbers counting_from(float first) {
    Numbers numbers;
    for (float& number : numbers) number = first++;
    return numbers;
  }
};

// Calls check with every stride from 1 to Stride, mapped in registers of up to Widest lanes.
template <int Width, int Widest, int Stride = Width, typename Check>
void for_every_stride(Check check) {
  check(Quad<Width, Stride, Widest>{});
  if constexpr (Stride > 1) for_every_stride<Width, Widest, Stride - 1>(check);
}
template <typename Check>
void for_every_shape(Check check) {
  for_every_stride<4, 4>(check);
  for_every_stride<8, 4>(check);
  for_every_stride<8, 8>(check);
  for_every_stride<8, kLanes>(check);
  for_every_stride<kLanes, kLanes>(check);
}

TEST(Rows, KeepTheirLanes) {
  for_every_shape([](auto quad) {
    const auto numbers = quad.counting_from(1);
    EXPECT_EQ(quad.numbers(quad.rows(numbers)), numbers);
  });
}

TEST(Rows, MapWorksOnEveryNumberOfItsSource) {
  for_every_shape([](auto quad) {
    const auto a = quad.counting_from(1);
    const auto x = quad.rows(a);
    auto y = quad.rows(quad.counting_from(1000));
    auto expected = a;
    for (size_t i = 0; i < a.size(); ++i) expected[i] = 3 - 2 * a[i];
    y.map([](auto, auto p) { return 3.0f - 2.0f * p; }, x);
    EXPECT_EQ(quad.numbers(y), expected);
  });
}

TEST(Rows, OfTwoQuadsAreMappedFromOneQuadEach) {
  for_every_shape([](auto quad) {
    const auto a = quad.counting_from(1);
    const auto x = quad.rows(a);
    auto both = quad.two();
    both.template map<0, 4>([](auto, auto p) { return p + 100.0f; }, x);
    both.template map<4, 4>([](auto, auto p) { return p + 200.0f; }, x);
    both.map([](auto, auto p) { return -p; }, both);
    for (int k = 0; k < 8; ++k) {
      for (int i = 0; i < quad.kStride; ++i) {
        const float number = a[static_cast<size_t>(k % 4 * quad.kStride + i)];
        EXPECT_EQ(both.row(k)[i], -(number + (k < 4 ? 100.0f : 200.0f)));
      }
    }
  });
}

TEST(Rows, MapWorksInPlace) {
  for_every_shape([](auto quad) {
    const auto a = quad.counting_from(1);
    auto x = quad.rows(a);
    auto expected = a;
    for (size_t i = 0; i < a.size(); ++i) expected[i] = 2 * a[i];
    x.map([](auto, auto p) { return p + p; }, x);
    EXPECT_EQ(quad.numbers(x), expected);
  });
}

template <int Count>
constexpr int count_of(Used<Count>) {
  return Count;
}

TEST(Rows, MapTellsHowManyLanesMatter) {
  for_every_shape([](auto quad) {
    auto x = quad.rows(quad.counting_from(1));
    int used = 0;
    x.map(
        [&](auto count, auto p) {
          used += count_of(count);
          return p;
        },
        x);
    EXPECT_EQ(used, quad.kNumbers);
  });
}

}  // namespace
}  // namespace channelstrip::rows_test
