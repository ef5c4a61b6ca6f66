#include "filter_list.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "../text/wording.h"
#include "control/text/text_file.h"
#include "filter_line.h"
#include "number_text.h"

namespace channelstrip::host {
namespace {

constexpr std::string_view kBlanks = " \t";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string upper(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), [](char c) {
    return 'a' <= c && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  });
  return result;
}

// Thousands separators of some countries, and what takes their place elsewhere in a line.
constexpr std::pair<std::string_view, std::string_view> kThousands[] = {
    {"\u00A0", " "},       // no-break space
    {"\u202F", " "},       // narrow no-break space
    {"\u2009", " "},       // thin space
    {"\u2019", "\u2019"},  // apostrophe
    {"'", "'"}};

// The line without thousands separators, trimmed, with every control character a blank.
std::string plain(std::string text) {
  for (const auto& [separator, elsewhere] : kThousands) {
    for (std::size_t at = 0; (at = text.find(separator, at)) != text.npos;) {
      const std::size_t end = at + separator.size();
      const bool inside =
          at > 0 && is_digit(text[at - 1]) && end < text.size() && is_digit(text[end]);
      text.replace(at, separator.size(), inside ? "" : elsewhere);
      if (!inside) at += elsewhere.size();
    }
  }
  return std::string(trimmed(one_line(text, ' ')));
}

// Takes the first word off the text.
std::string_view take_word(std::string_view& text) {
  const std::size_t end = std::min(text.find_first_of(kBlanks), text.size());
  const std::string_view word = text.substr(0, end);
  text = trimmed(text.substr(end));
  return word;
}

bool is_filter(std::string_view key) {
  return key.starts_with("FILTER") && key.find_first_not_of(" \t0123456789", 6) == key.npos;
}

// Whether a command changes nothing: after an Else: lines still stand under a condition, and a
// preset is for all devices anyway.
bool is_idle(std::string_view key, std::string_view value) {
  return key == "ELSE" || key == "ELSEIF" || (key == "DEVICE" && upper(value) == "ALL");
}

// Equalizer APO's other commands.
constexpr std::pair<std::string_view, std::string_view> kCommands[] = {
    {"CONVOLUTION", "a strip doesn't convolve"},
    {"COPY", "a strip doesn't mix channels"},
    {"DELAY", "a strip doesn't delay"},
    {"DEVICE", "a preset serves any device; what follows is taken"},
    {"EVAL", "expressions aren't evaluated"},
    {"GRAPHICEQ", "a curve of many points isn't a band"},
    {"INCLUDE", "other files aren't read; import them by themselves"},
    {"LOUDNESSCORRECTION", "a strip doesn't follow a volume control"},
    {"STAGE", "a preset has no stages; what follows is taken"},
    {"VSTPLUGIN", "a strip has no plug-ins"},
};

class Reader {
 public:
  FilterList read(std::string_view text) {
    int number = 0;
    for (std::string& line : split_lines(text)) {
      source_ = {++number, plain(std::move(line))};
      read_line();
    }
    if (list_.program.empty()) list_.program = "Equalizer APO";
    return std::move(list_);
  }

 private:
  void read_line() {
    const std::string_view line = source_.text;
    if (line.empty() || line.starts_with('#')) return;
    if (list_.program.empty()) {
      const bool heading = upper(line).starts_with("FILTER SETTINGS");
      list_.program = heading ? "Room EQ Wizard" : "Equalizer APO";
      in_headings_ = heading;
      if (heading) return;
    }
    const std::size_t colon = std::min(line.find(':'), line.size());
    const std::string key = upper(trimmed(line.substr(0, colon)));
    const std::string_view value =
        colon < line.size() ? trimmed(line.substr(colon + 1)) : std::string_view();
    if (is_filter(key) && colon < line.size()) {
      in_headings_ = false;
      read_filter(value);
    } else if (!in_headings_ || key == "PREAMP") {
      read_command(key, value);
    }
  }

  void read_filter(std::string_view value) {
    const std::string state = upper(take_word(value));
    if (state == "OFF") {
      list_.off.push_back(source_);
    } else if (state != "ON") {
      leave_out("neither ON nor OFF");
    } else if (upper(value) != "NONE" && counts()) {
      try {
        list_.bands.push_back({source_, parse_filter(value)});
      } catch (const std::invalid_argument& error) {
        leave_out(error.what());
      }
    }
  }

  void read_command(const std::string& key, std::string_view value) {
    if (key == "PREAMP") {
      read_preamp(value);
    } else if (key == "CHANNEL") {
      channel_ = upper(value) == "ALL" ? "" : value;
    } else if (key == "IF") {
      ++conditions_;
    } else if (key == "ENDIF") {
      conditions_ = std::max(0, conditions_ - 1);
    } else if (!is_idle(key, value)) {
      const auto command = std::ranges::find(kCommands, key, [](auto& c) { return c.first; });
      leave_out(command == std::end(kCommands) ? "not understood" : command->second);
    }
  }

  void read_preamp(std::string_view value) {
    if (!counts()) return;
    try {
      list_.preamps.push_back({source_, parse_decibels(value)});
    } catch (const std::invalid_argument& error) {
      leave_out(error.what());
    }
  }

  // Whether a line is for all channels and unconditional; else it is left out.
  bool counts() {
    if (conditions_ > 0) leave_out("under a condition");
    if (conditions_ == 0 && !channel_.empty()) {
      leave_out("for channel " + channel_ + " alone, a strip treats all alike");
    }
    return conditions_ == 0 && channel_.empty();
  }

  void leave_out(std::string_view reason) {
    list_.left_out.push_back({source_, std::string(reason)});
  }

  FilterList list_;
  SourceLine source_;
  std::string channel_;  // empty: all
  int conditions_ = 0;   // open If:
  bool in_headings_ = false;
};

}  // namespace

FilterList parse_filter_list(std::string_view utf8) {
  return Reader().read(utf8);
}

}  // namespace channelstrip::host
