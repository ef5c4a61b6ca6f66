// Draws a strip as its window shows it at a moment of a sound.
//
//   view_picture PRESET SOUND PICTURE.png [--size 1200x700] [--scale 1] [--format 5.1]
//                [--key SOUND] [--at SECONDS] [--set SYMBOL=VALUE]... [--time N]
//                [--hover PART:INDEX] [--focus PART:INDEX] [--type TEXT] [--small 120x48]
//
// Parts and indices are those of view::Target. --small draws the picture for mixers. --time draws
// the picture N times more, as a window does, and prints how long that takes.

#include <cairo.h>
#include <fmt/format.h>
#include <sndfile.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <ctime>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "played.h"
#include "plugins/view/draw.h"
#include "plugins/view/small.h"

namespace channelstrip::view_test {
namespace {

struct Request {
  std::string preset, sound, picture, key, format;
  view::Size size = view::kUsualSize;
  double scale = 1, at = -1;
  std::vector<std::string> changes;
  view::Attention attention;
  int times = 0;
  bool is_small = false;
};

double number(std::string_view text) {
  double value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  if (read.ec != std::errc() || read.ptr != text.data() + text.size()) {
    throw std::runtime_error(fmt::format("\"{}\" isn't a number", text));
  }
  return value;
}

std::pair<std::string_view, std::string_view> split(std::string_view text, char at) {
  const std::size_t place = text.find(at);
  if (place == std::string_view::npos) {
    throw std::runtime_error(fmt::format("\"{}\" has no {}", text, at));
  }
  return {text.substr(0, place), text.substr(place + 1)};
}

Request read_arguments(std::span<char*> arguments) {
  Request request;
  std::vector<std::string> files;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view name = arguments[i];
    if (!name.starts_with("--")) {
      files.emplace_back(name);
      continue;
    }
    if (i + 1 == arguments.size()) throw std::runtime_error(fmt::format("{} takes a value", name));
    const std::string_view value = arguments[++i];
    if (name == "--size" || name == "--small") {
      request.is_small = name == "--small";
      const auto [width, height] = split(value, 'x');
      request.size = {number(width), number(height)};
    } else if (name == "--scale") {
      request.scale = number(value);
    } else if (name == "--at") {
      request.at = number(value);
    } else if (name == "--format") {
      request.format = value;
    } else if (name == "--key") {
      request.key = value;
    } else if (name == "--set") {
      request.changes.emplace_back(value);
    } else if (name == "--time") {
      request.times = static_cast<int>(number(value));
    } else if (name == "--hover" || name == "--focus") {
      const auto [part, index] = split(value, ':');
      (name == "--hover" ? request.attention.hovered : request.attention.focused) = {
          static_cast<view::Part>(number(part)), static_cast<std::size_t>(number(index))};
    } else if (name == "--type") {
      request.attention.typed = value;
      request.attention.is_editing = true;
    } else {
      throw std::runtime_error(fmt::format("no option {}", name));
    }
  }
  const double width = request.size.width * request.scale;
  const double height = request.size.height * request.scale;
  constexpr double kMost = 8192;
  if (!(width >= 1 && width <= kMost && height >= 1 && height <= kMost)) {
    throw std::runtime_error("a picture has 1 to 8192 pixels in width and height");
  }
  if (files.size() != 3) throw std::runtime_error("usage: view_picture PRESET SOUND PICTURE.png");
  request.preset = files[0];
  request.sound = files[1];
  request.picture = files[2];
  return request;
}

struct Sound {
  Planar channels;
  double rate = 0;
};

Sound read_sound(const std::string& path, double seconds) {
  SF_INFO info{};
  SNDFILE* const file = sf_open(path.c_str(), SFM_READ, &info);
  if (!file) throw std::runtime_error(path + ": " + sf_strerror(nullptr));
  std::vector<float> samples(static_cast<std::size_t>(info.frames * info.channels));
  const auto read = static_cast<std::size_t>(sf_readf_float(file, samples.data(), info.frames));
  sf_close(file);
  const auto channels = static_cast<std::size_t>(info.channels);
  const double rate = info.samplerate;
  const std::size_t frames =
      seconds < 0 ? read : std::min(read, static_cast<std::size_t>(seconds * rate));
  if (frames == 0) throw std::runtime_error(path + " is empty");
  Sound sound{Planar(channels, std::vector<float>(frames)), rate};
  for (std::size_t i = 0; i < frames; ++i) {
    for (std::size_t c = 0; c < channels; ++c) sound.channels[c][i] = samples[i * channels + c];
  }
  return sound;
}

std::uint32_t format_of(const std::string& name, std::size_t channels) {
  for (std::uint32_t f = 0; f < channelstrip_format_count(); ++f) {
    channelstrip_format info{};
    channelstrip_format_info(f, &info, sizeof info);
    // Of formats with as many channels the last one is usual: 5.1, 7.1.
    const bool is_usual = channels != 6 || std::string_view(info.name) == "5.1";
    if (info.channels == channels && (name.empty() ? is_usual : name == info.name)) return f;
  }
  throw std::runtime_error(fmt::format("no format {} has {} channels", name, channels));
}

void apply(channelstrip_settings* settings, const std::string& change) {
  const auto [symbol, text] = split(change, '=');
  std::uint32_t id = 0;
  double value = 0;
  if (channelstrip_parameter_find(std::string(symbol).c_str(), &id) != CHANNELSTRIP_OK ||
      channelstrip_text_to_value(id, std::string(text).c_str(), &value) != CHANNELSTRIP_OK) {
    throw std::runtime_error(fmt::format("{} can't be set", change));
  }
  channelstrip_settings_set(settings, id, value);
}

// Of this thread's processor time, as others may be busy beside it.
double milliseconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return 1e3 * static_cast<double>(now.tv_sec) + 1e-6 * static_cast<double>(now.tv_nsec);
}

void measure(const Request& request, const view::Fonts& fonts, view::Model model,
             cairo_t* context) {
  view::Painter painter;
  painter.draw(context, fonts, model, request.size, request.scale);
  std::vector<double> times;
  for (int i = 0; i < request.times; ++i) {
    // The history moves on, as in a window.
    std::rotate(model.live.history.begin(), model.live.history.begin() + 1,
                model.live.history.end());
    const double begin = milliseconds();
    painter.draw(context, fonts, model, request.size, request.scale);
    times.push_back(milliseconds() - begin);
  }
  std::ranges::sort(times);
  fmt::print("median {:.2f} ms, 99th percentile {:.2f} ms\n", times[times.size() / 2],
             times[times.size() * 99 / 100]);
}

void run(const Request& request) {
  const Sound sound = read_sound(request.sound, request.at);
  std::vector<float> key;
  if (!request.key.empty()) {
    key = read_sound(request.key, -1).channels[0];
    key.resize(sound.channels[0].size());
  }
  const Settings settings = settings_from(request.preset);
  for (const std::string& change : request.changes) apply(settings.get(), change);
  view::Model model = played(settings.get(), format_of(request.format, sound.channels.size()),
                             sound.rate, sound.channels, key);
  model.attention = request.attention;

  cairo_surface_t* const surface = cairo_image_surface_create(
      CAIRO_FORMAT_RGB24, static_cast<int>(request.size.width * request.scale),
      static_cast<int>(request.size.height * request.scale));
  cairo_t* const context = cairo_create(surface);
  const view::Fonts fonts;
  if (request.times > 0) measure(request, fonts, model, context);
  if (request.is_small) {
    view::draw_small(context, fonts, model.setup, -static_cast<double>(model.live.compressor),
                     -static_cast<double>(model.live.expander), request.size);
  } else {
    view::draw(context, fonts, model, request.size, request.scale);
  }
  cairo_destroy(context);
  const cairo_status_t status = cairo_surface_write_to_png(surface, request.picture.c_str());
  cairo_surface_destroy(surface);
  if (status != CAIRO_STATUS_SUCCESS) {
    throw std::runtime_error(request.picture + ": " + cairo_status_to_string(status));
  }
}

}  // namespace
}  // namespace channelstrip::view_test

int main(int argc, char** argv) try {
  using namespace channelstrip::view_test;
  run(read_arguments(std::span(argv, static_cast<std::size_t>(argc)).subspan(1)));
  return 0;
} catch (const std::exception& e) {
  fmt::print(stderr, "view_picture: {}\n", e.what());
  return 1;
}
