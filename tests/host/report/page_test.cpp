// A report in a browser: what is drawn, and whether it fits the width of a phone.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "../support/audio.h"
#include "../support/child.h"
#include "../support/rendered.h"
#include "../support/temporary_folder.h"
#include "browser.h"
#include "host/pictures/xml.h"

namespace channelstrip::test::page_test {
namespace {

// A document that shows `page` in a frame of 390 pixels, high enough to need no scroll bar, and
// measures it there.
std::string telephone(const std::string& page) {
  return "<!DOCTYPE html><meta charset=utf-8><title>not yet</title>\n"
         "<iframe style='width:390px;height:20000px;border:0' srcdoc=\"" +
         host::escape_xml(page) + R"("></iframe>
<script>
onload = () => {
  const page = document.querySelector('iframe').contentDocument;
  const all = selector => [...page.querySelectorAll(selector)];
  document.title = JSON.stringify({
    width: page.documentElement.clientWidth,
    scrollWidth: page.documentElement.scrollWidth,
    headings: all('h1, h2').map(heading => heading.textContent),
    charts: all('svg').map(chart => ({
      title: chart.querySelector('title').textContent,
      width: chart.getBoundingClientRect().width,
      lines: [...chart.querySelectorAll('.line, .area')]
        .filter(line => line.getTotalLength() > 0 && line.getBBox().width > 100).length,
      text: Math.min(...[...chart.querySelectorAll('text')]
        .map(text => text.getBoundingClientRect().height))})),
    cut: all('.numbers').filter(table => table.offsetWidth > table.parentNode.clientWidth).length,
    cells: all('td').map(cell => cell.textContent),
    empty: all('p, td, dd, h2').filter(e => e.textContent.trim() === '').length
  });
};
</script>)";
}

nlohmann::json measured(const TemporaryFolder& folder, const std::string& page) {
  const std::string document = document_of(folder.write("telephone.html", telephone(page)));
  const std::size_t begin = document.find("<title>") + 7;
  return nlohmann::json::parse(document.substr(begin, document.find("</title>") - begin));
}

std::string page_of(const TemporaryFolder& folder, int channels, const std::string& preset) {
  const std::string input = write_audio(
      folder.file("in.wav"),
      {.channels = channels, .floats = noise(48000 * static_cast<std::size_t>(channels), 0.5f)});
  const std::string output = folder.file("out.wav"), page = folder.file("page.html");
  render(input, output, preset);
  const ChildResult result = run({"report", input, output, "--preset", preset, "-o", page});
  EXPECT_EQ(result.exit_status, 0) << result.output;
  return contents(page);
}

const std::string kFilm = CHANNELSTRIP_SOURCE_DIR "/presets/film_7.1.toml";

TEST(ReportPage, DrawsEveryChartWithinATelephonesWidth) {
  const TemporaryFolder folder;
  const auto page = measured(folder, page_of(folder, 8, kFilm));
  EXPECT_EQ(page["width"], 390);
  EXPECT_EQ(page["scrollWidth"], 390);
  EXPECT_EQ(page["cut"], 0) << "tables of numbers that have to be scrolled";
  const std::vector<std::string> titles{
      "Waveform, L R C",       "Spectrum, L R C",       "Waveform, LFE", "Spectrum, LFE",
      "Waveform, Lb Rb Ls Rs", "Spectrum, Lb Rb Ls Rs", "Gain reduction"};
  ASSERT_EQ(page["charts"].size(), titles.size());
  for (std::size_t i = 0; i < titles.size(); ++i) {
    const auto& chart = page["charts"][i];
    EXPECT_EQ(chart["title"], titles[i]);
    EXPECT_GT(chart["width"], 340);
    // Two lines for before and after, or one per group.
    EXPECT_EQ(chart["lines"], i < 6 ? 2 : 3) << titles[i];
    EXPECT_GT(chart["text"], 10) << titles[i];
  }
}

TEST(ReportPage, HasItsHeadingsAndNumbers) {
  const TemporaryFolder folder;
  const auto page = measured(folder, page_of(folder, 2, kFilm));
  EXPECT_EQ(page["headings"],
            (std::vector<std::string>{"out.wav", "Waveform and spectrum", "Dynamics",
                                      "Loudness and peaks", "Settings", "Files",
                                      "How this was measured"}));
  EXPECT_EQ(page["charts"].size(), 5u);
  EXPECT_GE(page["cells"].size(), 30u);
  EXPECT_EQ(page["empty"], 0);
}

}  // namespace
}  // namespace channelstrip::test::page_test
