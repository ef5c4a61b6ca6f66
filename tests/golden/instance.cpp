#include "instance.h"

namespace channelstrip::golden {

namespace {

// A section whose poles lie well inside the unit circle.
void draw_section(Numbers& numbers, float* section) {
  section[0] = numbers.real(-2, 2);
  section[1] = numbers.real(-1, 1);
  section[2] = numbers.real(-1, 1);
  section[3] = static_cast<float>(numbers.integer(-15, 15)) * 0x1p-4f;
  section[4] = static_cast<float>(numbers.integer(-58000, -4000)) * 0x1p-16f;
}

}  // namespace

void Instance::begin(const Format& format, const Scene& scene, Numbers& numbers) {
  *this = Instance{};
  format_ = &format;
  scene_ = &scene;
  draw_bands(numbers);
  draw_targets(numbers);
  draw_dynamics(numbers);
  for (int i = 0; i < CHANNELSTRIP_EQ_COEFS; ++i) {
    coefs_.coefs[i] = targets_.targetCoefs[i];
    coefs_.smoothedCoefs[i] = static_cast<double>(targets_.targetCoefs[i]);
  }
  const float rate = numbers.weight();
  for (Dyn_SState& state : dyn_state_) {
    state.curMakeupGain = dyn_.makeupGain;
    state.curCompRange = dyn_.compRange;
    state.curExpRange = dyn_.expRange;
    state.gateOpen = numbers.integer(0, 1);
    state.reserved14 = numbers.integer(-1000, 1000);
    state.dezipRate = rate;
  }
  for (EQ_SState& state : eq_state_) {
    const bool tiny = scene.audio == Audio::kDenormal && !numbers.one_in(4);
    for (float& z : state.z1) z = tiny ? numbers.tiny() : numbers.sample(10);
    for (float& z : state.z2) z = tiny ? numbers.tiny() : numbers.sample(10);
    state.reserved = numbers.real(-1, 1);
  }
  wire();
}

void Instance::draw_bands(Numbers& numbers) {
  const int32_t middle = numbers.integer(0, CHANNELSTRIP_EQ_BANDS);
  const int32_t bands[2][2] = {{numbers.integer(0, middle), middle},
                               {middle, numbers.integer(middle, CHANNELSTRIP_EQ_BANDS)}};
  const int first = numbers.integer(0, 1);
  for (int pass = 0; pass < 2; ++pass) {
    targets_.firstBand[pass] = bands[(pass + first) % 2][0];
    targets_.endBand[pass] = bands[(pass + first) % 2][1];
  }
  if (scene_->shares) {
    targets_.firstBand[0] = 1, targets_.endBand[0] = 5;
    targets_.firstBand[1] = 3, targets_.endBand[1] = 8;
  }
  if (scene_->one_pass) targets_.firstBand[first] = targets_.endBand[first];
}

void Instance::draw_targets(Numbers& numbers) {
  for (int band = 0; band < CHANNELSTRIP_EQ_BANDS; ++band) {
    float* const section = targets_.targetCoefs + 5 * band;
    draw_section(numbers, section);
    if (numbers.one_in(4)) section[0] = 1;  // whose steps are often exact
  }
}

void Instance::draw_dynamics(Numbers& numbers) {
  dyn_.compThreshold = numbers.real(-50, -5);
  dyn_.compSlope = numbers.real(-1, 0);
  dyn_.compKneeLow = dyn_.compThreshold - numbers.real(0, 10);
  dyn_.compKneeHigh = dyn_.compThreshold + numbers.real(0, 10);
  dyn_.compKneeA = numbers.real(-1, 0) * 0x1p-5f;
  dyn_.compKneeB = numbers.real(-1, 1);
  dyn_.compKneeC = numbers.real(-10, 0);
  dyn_.compRange = numbers.real(-40, -1);
  dyn_.makeupGain = numbers.real(0, 4);
  dyn_.compAttack = numbers.weight();
  dyn_.compRelease = numbers.weight();
  dyn_.reserved12 = numbers.integer(-1000, 1000);
  dyn_.expThreshold = numbers.real(-70, -20);
  dyn_.expSlope = numbers.real(0, 8);
  dyn_.expKneeLow = dyn_.expThreshold - numbers.real(0, 10);
  dyn_.expKneeHigh = dyn_.expThreshold + numbers.real(0, 10);
  dyn_.expKneeA = numbers.real(-1, 0) * 0x1p-5f;
  dyn_.expKneeB = numbers.real(-1, 1);
  dyn_.expKneeC = numbers.real(-10, 0);
  dyn_.gateOpenThreshold = dyn_.expThreshold;
  dyn_.gateCloseThreshold = dyn_.expThreshold - numbers.real(0, 20);
  dyn_.expRange = numbers.real(-90, -1);
  dyn_.expAttack = numbers.weight();
  dyn_.expRelease = numbers.weight();
  dyn_.expHoldSamples = numbers.one_in(8) ? 0x7FFFFFFF : numbers.integer(0, 100);
  dyn_.peakDecay = 1 - numbers.weight() * 0x1p-3f;
  draw_section(numbers, dyn_.keyFilter);
  draw_section(numbers, dyn_.detectorFilter);
  draw_links(numbers);
  dyn_.detectorMode = scene_->smoothed ? numbers.integer(1, 3) : numbers.integer(-1, 0);
  dyn_.keyEnable = scene_->keyed && !numbers.one_in(4) ? 1 : numbers.integer(2, 3);
  dyn_.keyListen = scene_->listens && !numbers.one_in(3) ? numbers.integer(-2, -1) : 0;
  dyn_.inputMeterGain = numbers.real(0, 2);
  dyn_.bypass = scene_->bypassed ? numbers.integer(0, 2) : -numbers.integer(0, 1);
}

void Instance::draw_links(Numbers& numbers) {
  for (int32_t& group : dyn_.linkGroup) {
    group = scene_->links ? numbers.integer(0, format_->groups - 1) : 0;
  }
}

void Instance::draw_audio(Numbers& numbers) {
  const bool harmed = call_ >= 2 && numbers.one_in(2);
  for (auto& channel : in_) {
    int32_t down = numbers.integer(0, 12);
    const bool tiny = scene_->audio == Audio::kDenormal && !numbers.one_in(4);
    for (float& x : channel) {
      if (numbers.one_in(24)) down = numbers.integer(0, 16);
      x = tiny ? numbers.tiny() : numbers.sample(down);
      if (!harmed || !numbers.one_in(200)) continue;
      if (scene_->audio == Audio::kNan) x = numbers.not_a_number();
      if (scene_->audio == Audio::kInfinite) x = numbers.one_in(2) ? numbers.infinity() : -x;
    }
  }
}

void Instance::wire() {
  for (int i = 0; i < kInputs; ++i) inputs_[i] = in_[i];
  const int channels = format_->channels;
  for (int c = 0; c < channels; ++c) {
    outputs_[c] = out_[c];
    if (scene_->wiring == Wiring::kInPlace) outputs_[c] = in_[c];
    if (scene_->wiring == Wiring::kCrossed) outputs_[c] = in_[(c + 1) % channels];
  }
  meter_pointer_ = meters_;
  context_ = {inputs_,    outputs_,  &key_,   &count_,   &dyn_,
              dyn_state_, &targets_, &coefs_, eq_state_, &meter_pointer_};
}

void Instance::prepare(Numbers& numbers, int32_t count, const Instance& first) {
  draw_audio(numbers);
  count_ = count;
  key_ = scene_->keyed ? numbers.integer(0, format_->channels) : 0;
  if (call_ > 0 && scene_->glides) {
    draw_targets(numbers);
    draw_dynamics(numbers);
  }
  if (scene_->audio == Audio::kDenormal) {
    for (EQ_SState& state : eq_state_) state.z1[numbers.integer(0, 7)] = numbers.tiny();
  }
  if (scene_->uneven) {
    if (numbers.one_in(3)) count_ = numbers.integer(-1, kMostSamples);
  } else {
    for (int pass = 0; pass < 2; ++pass) {
      targets_.firstBand[pass] = first.targets_.firstBand[pass];
      targets_.endBand[pass] = first.targets_.endBand[pass];
    }
  }
  if (call_ % 3 == 2) {
    for (float& meter : meters_) meter = 0;
  }
  ++call_;
}

void Instance::add_audio(Hash& hash) const {
  for (int c = 0; c < format_->channels; ++c) {
    for (int i = 0; i < kMostSamples; ++i) hash.add(outputs_[c][i]);
  }
}

void Instance::add_state(Hash& hash) const {
  hash.add(coefs_.coefs);
  hash.add(coefs_.smoothedCoefs);
  for (int c = 0; c < format_->channels; ++c) {
    const EQ_SState& eq = eq_state_[c];
    hash.add(eq.z1);
    hash.add(eq.z2);
    hash.add(eq.reserved);
    const Dyn_SState& dyn = dyn_state_[c];
    const float numbers[] = {dyn.compGain,      dyn.expGain,      dyn.keyZ1,       dyn.keyZ2,
                             dyn.detZ1,         dyn.detZ2,        dyn.peakLevel,   dyn.smoothLevel,
                             dyn.curMakeupGain, dyn.curCompRange, dyn.curExpRange, dyn.dezipRate};
    const int32_t counts[] = {dyn.gateOpen, dyn.holdCount, dyn.reserved14};
    hash.add(numbers);
    hash.add(counts);
  }
}

void Instance::add_meters(Hash& hash) const {
  for (int i = 0; i < 3 * format_->channels + 4; ++i) hash.add(meters_[i]);
}

}  // namespace channelstrip::golden
