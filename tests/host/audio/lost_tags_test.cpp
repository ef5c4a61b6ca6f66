#include "host/audio/lost_tags.h"

#include <fileref.h>
#include <gtest/gtest.h>
#include <tpropertymap.h>
#include <xiphcomment.h>

#include <string>
#include <utility>
#include <vector>

#include "rendered_file.h"

namespace channelstrip::test::lost_tags_test {
namespace {

using namespace host;
using Tags = std::vector<std::pair<const char*, const char*>>;

// Instead of those that the file has.
void set_tags(const std::string& path, const Tags& tags) {
  TagLib::FileRef file(path.c_str());
  TagLib::PropertyMap properties;
  for (const auto& [name, value] : tags) properties[name].append(value);
  file.file()->setProperties(properties);
  ASSERT_TRUE(file.save());
}

class LostTags : public RenderedFile {
 protected:
  std::string tagged(int format, const std::string& name, const Tags& tags) {
    const std::string file =
        input({.format = format, .sample_rate = 48000, .floats = noise(4800, 0.5f)}, name);
    set_tags(file, tags);
    return file;
  }

  const std::vector<std::pair<int, std::string>> kFiles{
      {SF_FORMAT_FLAC | SF_FORMAT_PCM_16, "in.flac"},
      {SF_FORMAT_OGG | SF_FORMAT_VORBIS, "in.ogg"},
      {SF_FORMAT_OGG | SF_FORMAT_OPUS, "in.opus"},
      {SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III, "in.mp3"}};
};

// libsndfile reads ten of the usual tags, in either case.
TEST_F(LostTags, AreNamed) {
  for (const auto& [format, name] : kFiles) {
    const std::string file = tagged(format, name,
                                    {{"TITLE", "A song"},
                                     {"artist", "Somebody"},
                                     {"REPLAYGAIN_TRACK_GAIN", "-7.03 dB"},
                                     {"MOOD", "calm"},
                                     {"MOOD", "bright"}});
    const auto warnings = rendered(file).warnings;
    EXPECT_EQ(warnings, std::vector{output + " doesn't keep MOOD, REPLAYGAIN_TRACK_GAIN"}) << name;
  }
}

TEST_F(LostTags, AreNoneOfThoseThatAreKept) {
  for (const auto& [format, name] : kFiles) {
    const std::string file =
        tagged(format, name, {{"TITLE", "A song"}, {"GENRE", "Jazz"}, {"ENCODER", "some"}});
    EXPECT_EQ(rendered(file).warnings, std::vector<std::string>{}) << name;
  }
}

TEST_F(LostTags, PicturesAreNamed) {
  const std::string file = tagged(SF_FORMAT_OGG | SF_FORMAT_VORBIS, "in.ogg", {});
  {
    TagLib::FileRef open(file.c_str());
    auto* const comments = dynamic_cast<TagLib::Ogg::XiphComment*>(open.file()->tag());
    ASSERT_NE(comments, nullptr);
    auto* const picture = new TagLib::FLAC::Picture;  // the comments take it
    picture->setMimeType("image/png");
    comments->addPicture(picture);
    ASSERT_TRUE(open.save());
  }
  const auto warnings = rendered(file).warnings;
  EXPECT_EQ(warnings, std::vector{output + " doesn't keep picture"});
}

}  // namespace
}  // namespace channelstrip::test::lost_tags_test
