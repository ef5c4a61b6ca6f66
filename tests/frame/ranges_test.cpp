// A call for a range equals one call for each instance in array order, whatever they share.

#include <tests/support/busy_strip.h>
#include <tests/support/compare.h>
#include <tests/support/every_format.h>

#include <memory>

namespace channelstrip::test::ranges_test {
namespace {

class Ranges : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Ranges, every_format(), format_name);

// Strips of one format whose contexts tests can change; more than fit side by side in any register.
class Rack {
 public:
  static constexpr size_t kStrips = 19;

  explicit Rack(std::string_view format) {
    for (unsigned i = 0; i < kStrips; ++i) {
      strips.push_back(std::make_unique<BusyStrip>(format, 48, i));
      contexts.push_back(*strips.back()->context());
    }
  }

  void process_in_one_call() { process(0, kStrips); }
  void process_one_by_one() {
    for (size_t i = 0; i < kStrips; ++i) process(i, i + 1);
  }

  std::vector<std::unique_ptr<BusyStrip>> strips;
  std::vector<SChannelStrip_Alg_Context> contexts;
  std::vector<std::vector<float*>> buffers{kStrips};  // for contexts to point at

 private:
  void process(size_t begin, size_t end) {
    std::vector<const SChannelStrip_Alg_Context*> pointers;
    for (size_t i = begin; i < end; ++i) pointers.push_back(&contexts[i]);
    entry_point(strips.front()->format)(pointers.data(), pointers.data() + pointers.size());
  }
};

template <typename Wire>
void expect_one_call_equals_many(std::string_view format, Wire wire) {
  Rack together(format), apart(format);
  wire(together);
  wire(apart);
  together.process_in_one_call();
  apart.process_one_by_one();
  for (size_t i = 0; i < Rack::kStrips; ++i) {
    EXPECT_EQ(differences(*together.strips[i], *apart.strips[i]), "") << "instance " << i;
  }
}

TEST_P(Ranges, EqualOneCallPerInstance) {
  expect_one_call_equals_many(format(), [](Rack&) {});
}

TEST_P(Ranges, MayHoldAnyCounts) {
  expect_one_call_equals_many(format(), [](Rack& rack) {
    int32_t count = 0;
    for (auto& strip : rack.strips) strip->sample_count = count++ * 7 % 49;
  });
}

TEST_P(Ranges, MayHoldAnyModes) {
  expect_one_call_equals_many(format(), [](Rack& rack) {
    for (int i = 0; auto& strip : rack.strips) {
      strip->dyn.bypass = i % 3 == 0;
      strip->dyn.detectorMode = i % 2;
      strip->dyn.keyEnable = i % 5 == 1;
      strip->dyn.keyListen = i % 7 == 2;
      strip->key_index = i % 2 == 1 ? strip->channels : 0;
      strip->eq.endBand[0] = i % 6;
      strip->dyn_state[0].dezipRate = 0.03f * static_cast<float>(i);
      ++i;
    }
  });
}

TEST_P(Ranges, MayHoldAnInstanceSeveralTimes) {
  expect_one_call_equals_many(format(), [](Rack& rack) {
    for (size_t i = 0; i < Rack::kStrips; ++i) rack.contexts[i] = rack.contexts[i * i % 7];
  });
}

TEST_P(Ranges, InputsMayBeTheOutputsOfTheInstanceBefore) {
  expect_one_call_equals_many(format(), [](Rack& rack) {
    for (size_t i = 1; i < Rack::kStrips; ++i) {
      rack.contexts[i].inputs = rack.contexts[i - 1].outputs;
    }
  });
}

TEST_P(Ranges, KeyMayBeAnOutputOfTheInstanceBefore) {
  expect_one_call_equals_many(format(), [](Rack& rack) {
    for (size_t i = 1; i < Rack::kStrips; ++i) {
      rack.buffers[i] = pointers(rack.strips[i]->in);
      rack.buffers[i].back() = rack.strips[i - 1]->out[0].data();
      rack.contexts[i].inputs = rack.buffers[i].data();
      rack.strips[i]->key_index = rack.strips[i]->channels;
      rack.strips[i]->dyn.keyEnable = 1;
    }
  });
}

TEST_P(Ranges, InputsMayBeTheOutputsOfTheInstanceBehind) {
  expect_one_call_equals_many(format(), [](Rack& rack) {
    for (size_t i = 1; i < Rack::kStrips; ++i) {
      rack.contexts[i - 1].inputs = rack.contexts[i].outputs;
    }
  });
}

TEST_P(Ranges, OutputsMayBeShared) {
  expect_one_call_equals_many(format(), [](Rack& rack) {
    for (auto& context : rack.contexts) context.outputs = rack.contexts[0].outputs;
  });
}

TEST_P(Ranges, BuffersInPlaceMayBeShared) {
  expect_one_call_equals_many(format(), [](Rack& rack) {
    rack.buffers[0] = pointers(rack.strips[0]->in);
    for (auto& context : rack.contexts) {
      context.inputs = context.outputs = rack.buffers[0].data();
    }
  });
}

TEST_P(Ranges, InputsAndSettingsMayBeShared) {
  expect_one_call_equals_many(format(), [](Rack& rack) {
    for (auto& context : rack.contexts) {
      context.inputs = rack.contexts[0].inputs;
      context.dynCoefs = rack.contexts[0].dynCoefs;
      context.eqTargetCoefs = rack.contexts[0].eqTargetCoefs;
    }
  });
}

TEST_P(Ranges, CoefficientsInUseMayBeShared) {
  expect_one_call_equals_many(format(), [](Rack& rack) {
    for (auto& context : rack.contexts) context.eqDezipCoefs = rack.contexts[0].eqDezipCoefs;
  });
}

TEST_P(Ranges, MemoryMayBeShared) {
  expect_one_call_equals_many(format(), [](Rack& rack) {
    for (auto& context : rack.contexts) {
      context.eqState = rack.contexts[0].eqState;
      context.dynState = rack.contexts[0].dynState;
    }
  });
}

TEST_P(Ranges, MetersMayBeShared) {
  expect_one_call_equals_many(format(), [](Rack& rack) {
    for (auto& context : rack.contexts) context.meterOutputs = rack.contexts[0].meterOutputs;
  });
}

}  // namespace
}  // namespace channelstrip::test::ranges_test
