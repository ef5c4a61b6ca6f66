// Every buffer and record lies between unmapped pages, and what only the host writes is
// write-protected.

#include <tests/support/busy_strip.h>
#include <tests/support/compare.h>
#include <tests/support/every_format.h>
#include <tests/support/guarded.h>

#include <memory>

namespace channelstrip::test::bounds_test {
namespace {

class Bounds : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Bounds, every_format(), format_name);

using Channels = std::vector<std::unique_ptr<Guarded<float>>>;

// A copy of the strip between guard pages; what only the host writes is read-only.
class GuardedStrip {
 public:
  GuardedStrip(const Strip& strip, Guard guard)
      : guard_(guard),
        in_(channels(strip.in, strip.channels, Access::kReadOnly)),
        out_(channels(strip.out, strip.channels, Access::kReadWrite)),
        inputs_(hosts(pointers_to(in_))),
        outputs_(hosts(pointers_to(out_))),
        key_index_(host(strip.key_index)),
        sample_count_(host(strip.sample_count)),
        dyn_(host(strip.dyn)),
        dyn_state_(shared(strip.dyn_state)),
        eq_(host(strip.eq)),
        dezip_(std::span(&strip.dezip, 1), guard, Access::kReadWrite),
        eq_state_(shared(strip.eq_state)),
        meters_(shared(strip.meters)),
        meter_pointer_(host(meters_.data())),
        context_(host(SChannelStrip_Alg_Context{inputs_.data(), outputs_.data(), key_index_.data(),
                                                sample_count_.data(), dyn_.data(),
                                                dyn_state_.data(), eq_.data(), dezip_.data(),
                                                eq_state_.data(), meter_pointer_.data()})),
        contexts_(host<const SChannelStrip_Alg_Context*>(context_.data())) {}

  const SChannelStrip_Alg_Context* const* begin() const { return contexts_.data(); }
  const SChannelStrip_Alg_Context* const* end() const { return contexts_.data() + 1; }

  void copy_results(Strip& strip) const {
    for (size_t c = 0; c < out_.size(); ++c) {
      std::ranges::copy(out_[c]->values(), strip.out[c].begin());
    }
    std::ranges::copy(dyn_state_.values(), strip.dyn_state.begin());
    strip.dezip = *dezip_.data();
    std::ranges::copy(eq_state_.values(), strip.eq_state.begin());
    std::ranges::copy(meters_.values(), strip.meters.begin());
  }

 private:
  template <typename T>
  Guarded<T> host(const T& value) const {
    return Guarded<T>(std::span(&value, 1), guard_, Access::kReadOnly);
  }
  template <typename T>
  Guarded<T> hosts(const std::vector<T>& values) const {
    return Guarded<T>(values, guard_, Access::kReadOnly);
  }
  template <typename T>
  Guarded<T> shared(const std::vector<T>& values) const {
    return Guarded<T>(values, guard_, Access::kReadWrite);
  }
  Channels channels(const std::vector<std::vector<float>>& samples, int count,
                    Access access) const {
    Channels result;
    for (size_t c = 0; c < static_cast<size_t>(count); ++c) {
      result.push_back(std::make_unique<Guarded<float>>(samples[c], guard_, access));
    }
    return result;
  }
  static std::vector<float*> pointers_to(const Channels& channels) {
    std::vector<float*> result;
    for (const auto& channel : channels) result.push_back(channel->data());
    return result;
  }

  Guard guard_;
  Channels in_, out_;
  Guarded<float*> inputs_, outputs_;
  Guarded<int32_t> key_index_, sample_count_;
  Guarded<Dyn_SCoefsBlock> dyn_;
  Guarded<Dyn_SState> dyn_state_;
  Guarded<EQ_SCoefs> eq_;
  Guarded<EQ_SDezipCoefs> dezip_;
  Guarded<EQ_SState> eq_state_;
  Guarded<float> meters_;
  Guarded<float*> meter_pointer_;
  Guarded<SChannelStrip_Alg_Context> context_;
  Guarded<const SChannelStrip_Alg_Context*> contexts_;
};

void expect_same_as_unguarded(std::string_view format, Guard guard) {
  BusyStrip strip(format), reference(format);
  strip.sample_count = reference.sample_count = 17;
  const GuardedStrip guarded(strip, guard);
  entry_point(strip.format)(guarded.begin(), guarded.end());
  guarded.copy_results(strip);
  reference.process();
  EXPECT_EQ(differences(strip, reference), "");
}

TEST_P(Bounds, NothingBehindARecordOrBufferIsTouched) {
  expect_same_as_unguarded(format(), Guard::kBehind);
}

TEST_P(Bounds, NothingBeforeARecordOrBufferIsTouched) {
  expect_same_as_unguarded(format(), Guard::kBefore);
}

}  // namespace
}  // namespace channelstrip::test::bounds_test
