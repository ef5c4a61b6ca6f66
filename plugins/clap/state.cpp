// What a host stores with an instance: its settings as TOML, which is a preset, too.

#include <clap/ext/params.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "instance.h"

namespace channelstrip::clap {
namespace {

// Initial settings are an empty text, an empty state is none.
constexpr std::string_view kTitle = "# channelstrip settings\n";

// Far more than any settings take.
constexpr std::size_t kMostBytes = std::size_t{1} << 20;

std::optional<std::string> contents(const clap_istream_t& stream) {
  std::string text;
  std::array<char, 4096> part;
  for (;;) {
    const std::int64_t read = stream.read(&stream, part.data(), part.size());
    if (read == 0) return text;
    if (read < 0 || text.size() + static_cast<std::size_t>(read) > kMostBytes) return std::nullopt;
    text.append(part.data(), static_cast<std::size_t>(read));
  }
}

}  // namespace

bool Instance::save(const clap_ostream_t& stream) {
  update_settings();
  std::size_t length = 0;
  channelstrip_settings_write(settings_.get(), nullptr, 0, &length);
  std::string toml(length + 1, '\0');
  if (channelstrip_settings_write(settings_.get(), toml.data(), toml.size(), nullptr) !=
      CHANNELSTRIP_OK) {
    return false;
  }
  toml.resize(length);
  const std::string text = std::string(kTitle) + toml;
  for (std::size_t at = 0; at < text.size();) {
    const std::int64_t written = stream.write(&stream, text.data() + at, text.size() - at);
    if (written <= 0) return false;
    at += std::min(static_cast<std::size_t>(written), text.size() - at);
  }
  return true;
}

bool Instance::load(const clap_istream_t& stream) {
  const auto text = contents(stream);
  if (!text || text->empty()) return false;
  const plugins::Settings settings = plugins::new_settings();
  if (channelstrip_settings_read(settings.get(), text->data(), text->size(), nullptr, nullptr) !=
      CHANNELSTRIP_OK) {
    return false;
  }
  channelstrip_settings_copy(settings_.get(), settings.get());
  if (strip_) channelstrip_strip_set_settings(strip_, settings_.get());
  const auto* parameters =
      static_cast<const clap_host_params_t*>(host_->get_extension(host_, CLAP_EXT_PARAMS));
  if (parameters) parameters->rescan(host_, CLAP_PARAM_RESCAN_VALUES);
  return true;
}

}  // namespace channelstrip::clap
