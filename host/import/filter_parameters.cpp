#include "filter_parameters.h"

#include <string_view>
#include <utility>

#include "control/design/refuse.h"
#include "number_text.h"

namespace channelstrip::host {
namespace {

class ParameterReader {
 public:
  explicit ParameterReader(std::span<const std::string> words) : words_(words) {}

  FilterParameters read() {
    if (!words_.empty() && '0' <= words_.front().front() && words_.front().front() <= '9') {
      parameters_.slope = number("slope");
      skip("DB");
    }
    while (!words_.empty()) read_parameter();
    // Comes last, when the other numbers have shown the line's decimal separator.
    if (frequency_) parameters_.frequency = grouped_number("frequency", *frequency_, decimal_);
    return parameters_;
  }

 private:
  void read_parameter() {
    const std::string first = words_.front();
    if (skip("FC")) {
      set(frequency_, "frequency", word("frequency"));
      skip("HZ");
    } else if (skip("GAIN")) {
      set(parameters_.gain, "gain", number("gain"));
      skip("DB");
    } else if (skip("Q")) {
      set(parameters_.q, "Q", number("Q"));
    } else if (skip("BW") && skip("OCT")) {
      set(parameters_.bandwidth, "bandwidth", number("bandwidth"));
    } else if (skip("T60") && skip("TARGET")) {
      number("T60 target");
      skip("MS");
    } else {
      refuse("\"{}\" is not understood", first);
    }
  }

  template <typename Value>
  void set(std::optional<Value>& parameter, std::string_view what, Value value) {
    if (parameter) refuse("the {} stands twice", what);
    parameter = std::move(value);
  }

  bool skip(std::string_view expected) {
    if (words_.empty() || words_.front() != expected) return false;
    words_ = words_.subspan(1);
    return true;
  }

  std::string word(std::string_view what) {
    if (words_.empty()) refuse("the {} is missing", what);
    std::string text = words_.front();
    words_ = words_.subspan(1);
    return text;
  }

  double number(std::string_view what) {
    const std::string text = word(what);
    if (const char decimal = decimal_separator(text)) decimal_ = decimal;
    return plain_number(what, text);
  }

  std::span<const std::string> words_;
  FilterParameters parameters_;
  std::optional<std::string> frequency_;
  char decimal_ = 0;  // the separator that the numbers show; 0: none
};

}  // namespace

FilterParameters read_filter_parameters(std::span<const std::string> words) {
  return ParameterReader(words).read();
}

}  // namespace channelstrip::host
