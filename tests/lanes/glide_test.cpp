// The EQ coefficients of instances side by side: each instance glides, or rests, by itself.

#include <bit>
#include <cmath>

#include "beside.h"

namespace channelstrip::test::glide_test {
namespace {

class GlidesBeside : public BesideEachOther {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, GlidesBeside, every_format(), format_name);

constexpr std::size_t kCoefs = CHANNELSTRIP_EQ_COEFS;

void rest_all(Rack& rack) {
  for (std::size_t i = 0; i < rack.size(); ++i) rack.rest(i);
}

float& rate(Rack& rack, std::size_t i) {
  return rack.dyn_state[i * rack.channels].dezipRate;
}

// x moved by `floats` representable steps away from zero, or towards it if negative.
float moved(float x, int floats) {
  return std::bit_cast<float>(std::bit_cast<uint32_t>(x) + static_cast<uint32_t>(floats));
}

// Puts the coefficients in use that many floats from their targets.
void stand_off(Rack& rack, std::size_t i, int floats) {
  rack.rest(i);
  for (std::size_t k = 0; k < kCoefs; ++k) {
    rack.dezip[i].coefs[k] = moved(rack.eq[i].targetCoefs[k], floats);
    rack.dezip[i].smoothedCoefs[k] = static_cast<double>(rack.dezip[i].coefs[k]);
  }
}

TEST_P(GlidesBeside, MayAllBeOver) {
  for (const float common : {0.0f, 0.1f, 1.0f}) {
    expect_the_models([=](Rack& rack) {
      rest_all(rack);
      for (std::size_t i = 0; i < rack.size(); ++i) rate(rack, i) = common;
    });
  }
}

TEST_P(GlidesBeside, MayGoOnWhileNeighboursRest) {
  expect_the_models_with_one([](Rack& rack, std::size_t i) {
    const EQ_SDezipCoefs gliding = rack.dezip[i];
    rest_all(rack);
    rack.dezip[i] = gliding;
    rate(rack, i) = 0.1f;
  });
}

TEST_P(GlidesBeside, MayRestWhileNeighboursGoOn) {
  expect_the_models_with_one([](Rack& rack, std::size_t i) {
    for (std::size_t k = 0; k < rack.size(); ++k) rate(rack, k) = 0.05f;
    rack.rest(i);
  });
}

TEST_P(GlidesBeside, MayHaveAnyRates) {
  for (const float odd : {0.0f, 1.0f, 2.0f, -1.0f, 0x1p-40f, NAN, INFINITY}) {
    expect_the_models_with_one([=](Rack& rack, std::size_t i) { rate(rack, i) = odd; });
    expect_the_models_with_one([=](Rack& rack, std::size_t i) {
      rest_all(rack);
      rate(rack, i) = odd;
    });
    expect_the_models([=](Rack& rack) {
      for (std::size_t i = 0; i < rack.size(); ++i) rate(rack, i) = odd;
    });
  }
}

// A distance of 64 floats that halves with every quad: the glide ends after seven quads.
TEST_P(GlidesBeside, MayComeToRestWithinACall) {
  const auto wire = [](Rack& rack, std::size_t i) {
    rest_all(rack);
    stand_off(rack, i, 64);
    rate(rack, i) = 0.5f;
  };
  Rack rack(GetParam(), 2, 37, 1);
  wire(rack, 1);
  rack.process();
  for (std::size_t k = 0; k < kCoefs; ++k) {
    EXPECT_EQ(rack.dezip[1].coefs[k], rack.eq[1].targetCoefs[k]) << k;
  }
  expect_the_models_with_one(wire);
}

// The glides end after 1 to 33 quads of 100.
TEST_P(GlidesBeside, MayComeToRestAtAnyQuadOfALongCall) {
  for (int bit = 0; bit < 23; ++bit) {
    const auto wire = [=](Rack& rack) {
      rest_all(rack);
      for (std::size_t i = 0; i < rack.size(); ++i) {
        stand_off(rack, i, 1 << bit >> i % 2);
        rate(rack, i) = 0.4f;
      }
    };
    EXPECT_EQ(difference_from_model(GetParam(), enough_instances(GetParam()), 400, 1, wire), "")
        << bit;
  }
}

// A twentieth of the last bit per quad: the running value alone moves, and the coefficient follows
// after ten quads; in a call of one block, not at all.
TEST_P(GlidesBeside, MayMoveInTheRunningValuesAlone) {
  const auto wire = [](Rack& rack, std::size_t i) {
    rest_all(rack);
    stand_off(rack, i, -1);
    rate(rack, i) = 0.05f;
  };
  Rack rack(GetParam(), 2, 16, 1);
  wire(rack, 1);
  const EQ_SDezipCoefs before = rack.dezip[1];
  rack.process();
  for (std::size_t k = 0; k < kCoefs; ++k) {
    EXPECT_EQ(rack.dezip[1].coefs[k], before.coefs[k]) << k;
    EXPECT_NE(rack.dezip[1].smoothedCoefs[k], before.smoothedCoefs[k]) << k;
  }
  expect_the_models_with_one(wire);
}

// Only one of the forty coefficients is off its target, running value and all.
TEST_P(GlidesBeside, MayMoveASingleCoefficient) {
  for (const std::size_t k : {0u, 7u, 20u, 39u}) {
    for (const double off : {1e-6, 0.1}) {
      expect_the_models_with_one([=](Rack& rack, std::size_t i) {
        rest_all(rack);
        rate(rack, i) = 0.1f;
        rack.dezip[i].smoothedCoefs[k] += off;
        rack.dezip[i].coefs[k] = static_cast<float>(rack.dezip[i].smoothedCoefs[k]);
      });
    }
  }
}

// The first glide step sets them again from the running values, even with a rate of 0.
TEST_P(GlidesBeside, MayHaveCoefficientsThatWereWrittenAlone) {
  for (const float of_one : {0.0f, 0.1f, 1.0f}) {
    expect_the_models_with_one([=](Rack& rack, std::size_t i) {
      rest_all(rack);
      rate(rack, i) = of_one;
      for (float& coef : rack.dezip[i].coefs) coef *= 0.5f;
    });
  }
}

// With a rate of 0, the first step sets coefficients that were written alone, and nothing moves on.
TEST_P(GlidesBeside, MayComeToRestBesideTheirTargets) {
  const auto wire = [](Rack& rack) {
    rest_all(rack);
    for (std::size_t i = 0; i < rack.size(); ++i) {
      rate(rack, i) = 0.0f;
      for (float& target : rack.eq[i].targetCoefs) target *= 0.9f;
      for (float& coef : rack.dezip[i].coefs) coef *= 0.5f;
    }
  };
  EXPECT_EQ(difference_from_model(GetParam(), enough_instances(GetParam()), 400, 1, wire), "");
}

TEST_P(GlidesBeside, MayHaveZerosOfEitherSign) {
  for (const float of_one : {0.0f, 0.1f}) {
    expect_the_models_with_one([=](Rack& rack, std::size_t i) {
      rest_all(rack);
      rate(rack, i) = of_one;
      for (std::size_t k = 0; k < 8; ++k) {
        const auto zero = [=](int bit) { return (k >> bit & 1) != 0 ? -0.0f : 0.0f; };
        rack.dezip[i].coefs[5 * k + 2] = zero(0);
        rack.dezip[i].smoothedCoefs[5 * k + 2] = static_cast<double>(zero(1));
        rack.eq[i].targetCoefs[5 * k + 2] = zero(2);
      }
    });
  }
}

}  // namespace
}  // namespace channelstrip::test::glide_test
