#include "lost_tags.h"

#include <fileref.h>
#include <fmt/format.h>
#include <sndfile.h>
#include <tfilestream.h>
#include <tpropertymap.h>
#include <xiphcomment.h>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace channelstrip::host {
namespace {

// Where libsndfile puts the tags that it reads; 0: of the coding.
struct Understood {
  std::string_view name;
  int tag;
};
constexpr Understood kUnderstood[] = {{"TITLE", SF_STR_TITLE},
                                      {"COPYRIGHT", SF_STR_COPYRIGHT},
                                      {"SOFTWARE", SF_STR_SOFTWARE},
                                      {"ARTIST", SF_STR_ARTIST},
                                      {"COMMENT", SF_STR_COMMENT},
                                      {"DATE", SF_STR_DATE},
                                      {"ALBUM", SF_STR_ALBUM},
                                      {"LICENSE", SF_STR_LICENSE},
                                      {"GENRE", SF_STR_GENRE},
                                      {"TRACKNUMBER", SF_STR_TRACKNUMBER},
                                      {"ENCODER", 0},
                                      {"ENCODING", 0},
                                      {"ENCODEDBY", 0},
                                      {"ENCODER_OPTIONS", 0}};

bool is_kept(const std::string& name, const std::map<int, std::string>& read) {
  const auto* const found = std::ranges::find(kUnderstood, name, &Understood::name);
  return found != std::end(kUnderstood) && (found->tag == 0 || read.contains(found->tag));
}

bool has_picture(TagLib::Tag* tag, const TagLib::PropertyMap& properties) {
  auto* const comments = dynamic_cast<TagLib::Ogg::XiphComment*>(tag);
  return properties.unsupportedData().contains("APIC") ||
         (comments && !comments->pictureList().isEmpty());
}

}  // namespace

std::vector<std::string> lost_tags(int descriptor, const std::map<int, std::string>& read) {
  const std::string path = fmt::format("/dev/fd/{}", descriptor);
  TagLib::FileStream stream(path.c_str(), true);
  const TagLib::FileRef file(&stream, false);
  if (file.isNull()) return {};
  const TagLib::PropertyMap properties = file.file()->properties();
  std::vector<std::string> names;
  for (const auto& [name, values] : properties) {
    if (!is_kept(name.to8Bit(true), read)) names.push_back(name.to8Bit(true));
  }
  if (has_picture(file.file()->tag(), properties)) names.emplace_back("picture");
  return names;
}

}  // namespace channelstrip::host
