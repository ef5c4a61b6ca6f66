#include <fmt/format.h>
#include <fmt/ranges.h>

#include <nlohmann/json.hpp>

#include "../text/wording.h"
#include "information.h"

namespace channelstrip::host {
namespace {

using Json = nlohmann::ordered_json;

std::vector<std::string> hexadecimal(const std::vector<std::uint32_t>& masks) {
  std::vector<std::string> texts;
  texts.reserve(masks.size());
  for (const std::uint32_t mask : masks) texts.push_back(fmt::format("0x{:X}", mask));
  return texts;
}

std::string masks_text(const FormatInformation& format) {
  return fmt::format("{}", fmt::join(hexadecimal(format.wav_masks), " or "));
}

Json json(const FormatInformation& information) {
  const StemFormat& format = information.format;
  Json result{{"name", format.name},      {"channels", format.channels},
              {"groups", format.groups},  {"entry_point", format.entry_point},
              {"orders", Json::object()}, {"wav_masks", hexadecimal(information.wav_masks)},
              {"links", Json::object()}};
  for (const auto& [name, labels] : information.orders) result["orders"][name] = labels;
  for (const auto& [name, map] : information.links) result["links"][name] = map;
  return result;
}

}  // namespace

std::string human_text(const Information& information) {
  std::string text = fmt::format(
      "channelstrip {}\n"
      "library       {}{}{}\n"
      "              {}\n"
      "{}"
      "libsndfile    {}\n\n",
      information.version, information.library_version,
      information.library_version.empty() ? "" : ", ", information.library_soname,
      one_line(information.library_file),
      information.library_level.empty()
          ? ""
          : fmt::format("              for {}, chosen on loading\n", information.library_level),
      information.libsndfile_version);
  text += fmt::format("{:<8}{:<10}{:<8}", "format", "channels", "groups");
  for (const auto& [name, labels] : information.formats.front().orders) {
    text += fmt::format("{:<23}", fmt::format("order {}", name));
  }
  text += "WAV channel mask\n";
  for (const FormatInformation& format : information.formats) {
    text += fmt::format("{:<8}{:<10}{:<8}", format.format.name, format.format.channels,
                        format.format.groups);
    for (const auto& [name, labels] : format.orders) {
      text += fmt::format("{:<23}", fmt::format("{}", fmt::join(labels, " ")));
    }
    text += masks_text(format) + '\n';
  }
  return text +
         "\nM mono; L R left, right; C centre; Ls Rs surrounds; Lb Rb surrounds behind them;\n"
         "Cs S single surround; LFE low-frequency effects\n";
}

std::string human_text(const FormatInformation& information) {
  const auto& [format, orders, masks, links] = information;
  std::string text = fmt::format("{}: {} channel{}, {} link group{} in a strip, {}\n\n",
                                 format.name, format.channels, format.channels == 1 ? "" : "s",
                                 format.groups, format.groups == 1 ? "" : "s", format.entry_point);
  for (const auto& [name, labels] : orders) {
    text += fmt::format("order {:<6}  {}\n", name, fmt::join(labels, " "));
  }
  text += fmt::format("WAV mask      {}\n\n", masks_text(information));
  for (const auto& [name, map] : links) text += fmt::format("link {:<7}  {}\n", name, map);
  return text;
}

std::string json_text(const Information& information) {
  Json result{{"version", information.version},
              {"library",
               {{"version", information.library_version},
                {"soname", information.library_soname},
                {"level", information.library_level},
                {"file", information.library_file}}},
              {"libsndfile", {{"version", information.libsndfile_version}}},
              {"formats", Json::array()}};
  for (const FormatInformation& format : information.formats) {
    result["formats"].push_back(json(format));
  }
  // A file's name may be any bytes.
  return result.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace channelstrip::host
