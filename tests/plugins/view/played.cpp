#include "played.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

#include "plugins/view/monitor.h"

namespace channelstrip::view_test {
namespace {

struct FreeStrip {
  void operator()(channelstrip_strip* strip) const { channelstrip_strip_free(strip); }
};

}  // namespace

view::Model played(const channelstrip_settings* settings, std::uint32_t format, double sample_rate,
                   const Planar& sound, const std::vector<float>& key) {
  const channelstrip_strip_options options{format, CHANNELSTRIP_ORDER_WAV, sample_rate, settings};
  channelstrip_strip* made = nullptr;
  if (channelstrip_strip_new(&options, &made) != CHANNELSTRIP_OK) {
    throw std::runtime_error("no strip has this format and sample rate");
  }
  const std::unique_ptr<channelstrip_strip, FreeStrip> strip(made);
  const auto channels = static_cast<std::uint32_t>(sound.size());
  view::Model model;
  model.setup = view::setup_of(settings, format, sample_rate);
  view::Monitor monitor(channels, sample_rate);
  plugins::SampleRing inputs(channels), outputs(channels);
  const std::size_t step = static_cast<std::size_t>(sample_rate / 40), frames = sound[0].size();
  Planar output(channels, std::vector<float>(step));
  for (std::size_t at = 0; at < frames; at += step) {
    const std::size_t length = std::min(step, frames - at);
    std::vector<const float*> from, made_to;
    std::vector<float*> to;
    for (std::uint32_t c = 0; c < channels; ++c) {
      from.push_back(sound[c].data() + at);
      to.push_back(output[c].data());
      made_to.push_back(output[c].data());
    }
    const channelstrip_block block{.inputs = from.data(),
                                   .key = key.empty() ? nullptr : key.data() + at,
                                   .outputs = to.data(),
                                   .frames = static_cast<std::uint32_t>(length),
                                   .event_count = 0,
                                   .events = nullptr};
    channelstrip_strip_process(strip.get(), &block);
    inputs.write(from.data(), static_cast<std::uint32_t>(length));
    outputs.write(made_to.data(), static_cast<std::uint32_t>(length));
    channelstrip_meters meters{};
    std::uint32_t has_news = 0;
    channelstrip_strip_read_meters(strip.get(), &meters, sizeof meters, &has_news);
    const double seconds = static_cast<double>(length) / sample_rate;
    monitor.advance(seconds, has_news != 0 ? &meters : nullptr, model.setup);
    if (at + 30 * step >= frames) monitor.analyse(seconds, inputs, outputs);
  }
  model.live = monitor.live();
  model.live.has_key = !key.empty();
  return model;
}

Settings settings_from(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) throw std::runtime_error(path + " can't be read");
  const std::string text{std::istreambuf_iterator<char>(stream), {}};
  Settings settings(channelstrip_settings_new());
  if (channelstrip_settings_read(settings.get(), text.data(), text.size(), nullptr, nullptr) !=
      CHANNELSTRIP_OK) {
    throw std::runtime_error(path + " isn't a preset");
  }
  return settings;
}

Settings preset(const std::string& name) {
  return settings_from(CHANNELSTRIP_SOURCE_DIR "/presets/" + name + ".toml");
}

}  // namespace channelstrip::view_test
