#include <fmt/format.h>

#include "../pictures/xml.h"
#include "../text/wording.h"
#include "control/design/dynamics.h"
#include "page.h"

namespace channelstrip::host {
namespace {

struct Judgement {
  const char* css_class;
  std::string summary, detail;
};

Judgement judgement(const RenderAnalysis& analysis) {
  const Comparison& comparison = analysis.comparison;
  const std::string type = sample_type_name(analysis.after.format);
  const std::string greatest = fmt::format("The greatest difference of a sample is {} dBFS.",
                                           number(linear_to_db(comparison.greatest())));
  const char* const kSame = "This file is what these settings give";
  switch (comparison.verdict()) {
    case Verdict::kIdentical:
      return {"good", kSame, "Rendered again, every sample is the same."};
    case Verdict::kRounded:
      return {
          "good", kSame,
          fmt::format("{} No sample is off by more than rounding to {} makes it.", greatest, type)};
    case Verdict::kDithered:
      return {"good", kSame,
              fmt::format("{} No sample is off by more than dither and rounding to {} make it.",
                          greatest, type)};
    case Verdict::kCoded:
      return {"", "This file can't be checked sample by sample",
              fmt::format("{} is lossy. {}", type, greatest)};
    case Verdict::kDifferent:
      break;
  }
  return {"bad", "This file isn't what these settings give",
          greatest + " The settings, the input or the file are others than those of the render."};
}

}  // namespace

std::string verdict(const RenderAnalysis& analysis) {
  const auto [css_class, summary, detail] = judgement(analysis);
  return fmt::format("<p class=\"verdict {}\"><b>{}.</b> {}</p>\n", css_class, escape_xml(summary),
                     escape_xml(detail));
}

}  // namespace channelstrip::host
