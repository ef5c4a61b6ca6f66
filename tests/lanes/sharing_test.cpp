// What instances side by side may share: the result is as if they had been processed one by one.

#include "beside.h"

namespace channelstrip::test::sharing_test {
namespace {

class Sharing : public BesideEachOther {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Sharing, every_format(), format_name);

TEST_P(Sharing, OfCoefficients) {
  expect_the_models_with_one([](Rack& rack, std::size_t i) {
    rack.contexts[i].dynCoefs = rack.contexts[i - 1].dynCoefs;
    rack.contexts[i].eqTargetCoefs = rack.contexts[i - 1].eqTargetCoefs;
  });
}

TEST_P(Sharing, OfCoefficientsInUse) {
  expect_the_models_with_one([](Rack& rack, std::size_t i) {
    rack.contexts[i].eqDezipCoefs = rack.contexts[i - 1].eqDezipCoefs;
  });
}

TEST_P(Sharing, OfFilterMemory) {
  expect_the_models_with_one(
      [](Rack& rack, std::size_t i) { rack.contexts[i].eqState = rack.contexts[i - 1].eqState; });
}

TEST_P(Sharing, OfDynamicsState) {
  expect_the_models_with_one(
      [](Rack& rack, std::size_t i) { rack.contexts[i].dynState = rack.contexts[i - 1].dynState; });
}

TEST_P(Sharing, OfMeters) {
  expect_the_models_with_one([](Rack& rack, std::size_t i) {
    rack.contexts[i].meterOutputs = rack.contexts[i - 1].meterOutputs;
  });
}

TEST_P(Sharing, OfOneElementOfARecordArray) {
  for (const int step : {-1, 1}) {
    expect_the_models_with_one(
        [=](Rack& rack, std::size_t i) { rack.contexts[i].eqState += step; });
    expect_the_models_with_one(
        [=](Rack& rack, std::size_t i) { rack.contexts[i].dynState += step; });
    expect_the_models_with_one([=](Rack& rack, std::size_t i) { rack.meter_pointers[i] += step; });
  }
}

TEST_P(Sharing, OfCountAndKeyIndexAndPointers) {
  expect_the_models_with_one([](Rack& rack, std::size_t i) {
    rack.contexts[i].sampleCount = rack.contexts[i - 1].sampleCount;
    rack.contexts[i].keyInputIndex = rack.contexts[i - 1].keyInputIndex;
    rack.contexts[i].inputs = rack.contexts[i - 1].inputs;
  });
  expect_the_models_with_one(
      [](Rack& rack, std::size_t i) { rack.contexts[i].outputs = rack.contexts[i - 1].outputs; });
}

TEST_P(Sharing, OfTheWholeInstance) {
  expect_the_models_with_one(
      [](Rack& rack, std::size_t i) { rack.contexts[i] = rack.contexts[i - 1]; });
}

// Moves each buffer in turn by one sample onto the one before it, and onto the one after it.
TEST_P(Sharing, OfASingleSample) {
  const std::size_t instances = enough_instances(GetParam()), all_inputs = channels() + Rack::kKeys;
  for (std::size_t buffer = 0; buffer < all_inputs + channels(); ++buffer) {
    for (const int step : {-1, 1}) {
      const auto wire = [=](Rack& rack) {
        for (std::size_t i = 1; i + 1 < rack.size(); ++i) {
          if (buffer < all_inputs) {
            rack.inputs[i][buffer] += step;
            rack.keys[i] = rack.format.channels + static_cast<int32_t>(i % Rack::kKeys);
            rack.dyn[i].keyEnable = 1;
          } else {
            rack.outputs[i][buffer - all_inputs] += step;
          }
        }
      };
      EXPECT_EQ(difference_from_model(GetParam(), instances, 32, 1, wire), "")
          << "buffer " << buffer << ", step " << step;
    }
  }
}

// The input's last sample is the first of the next instance's output, or its first sample is the
// last of the previous instance's.
TEST_P(Sharing, OfASingleSampleOfAnInputWithAnOutput) {
  for (std::size_t c = 0; c < channels(); ++c) {
    expect_the_models_with_one([=](Rack& rack, std::size_t i) {
      rack.inputs[i][c] = rack.output(i + 1, c) - (rack.samples() - 1);
    });
    expect_the_models_with_one([=](Rack& rack, std::size_t i) {
      rack.inputs[i][c] = rack.output(i - 1, c) + (rack.samples() - 1);
    });
  }
}

TEST_P(Sharing, OfAnOutputAsKey) {
  for (const std::size_t from : {0u, 1u, 2u}) {
    expect_the_models_with_one([=](Rack& rack, std::size_t i) {
      rack.detect_from(i, rack.output(i + from - 1, i % rack.channels));
    });
  }
}

TEST_P(Sharing, OfAnInputAsKey) {
  for (const std::size_t from : {0u, 1u, 2u}) {
    const auto wire = [=](Rack& rack, std::size_t i) {
      rack.detect_from(i, rack.input(i + from - 1, i % rack.channels));
    };
    expect_the_models_with_one(wire);
    expect_the_models_with_one([=](Rack& rack, std::size_t i) {
      wire(rack, i);
      rack.in_place(i + from - 1, i % rack.channels);
    });
  }
}

TEST_P(Sharing, OfInputsByOutputsInPlace) {
  for (const std::size_t every : {1u, 2u, 3u}) {
    expect_the_models([=](Rack& rack) {
      for (std::size_t i = 0; i < rack.size(); i += every) {
        for (std::size_t c = 0; c < rack.channels; ++c) rack.in_place(i, c);
      }
    });
  }
}

TEST_P(Sharing, OfSomeInputsByOutputsInPlace) {
  expect_the_models([](Rack& rack) {
    for (std::size_t i = 0; i < rack.size(); ++i) rack.in_place(i, i % rack.channels);
  });
}

TEST_P(Sharing, OfInputsAmongNeighboursOneOfWhichIsInPlace) {
  expect_the_models_with_one([](Rack& rack, std::size_t i) {
    rack.contexts[i + 1].inputs = rack.contexts[i - 1].inputs = rack.contexts[i].inputs;
    for (std::size_t c = 0; c < rack.channels; ++c) rack.in_place(i, c);
  });
}

}  // namespace
}  // namespace channelstrip::test::sharing_test
