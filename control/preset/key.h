// A key of a preset: what it sets and within what limits.

#pragma once

#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace channelstrip::host {

inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

// A number, the index of a word, or 0 or 1 for a switch; none if an optional setting isn't set.
using Value = std::optional<double>;

enum class Kind { kNumber, kWord, kSwitch };

struct Range {
  std::string_view unit;
  double minimum, maximum;       // the maximum may be infinity
  bool or_zero = false;          // 0 is allowed too
  double step = 0;               // values are multiples of it; 0: any
  std::string_view reason = {};  // why no other value makes sense, where that isn't plain

  bool contains(double value) const;
};

// "0 or 0.1 to 60"; without the unit.
std::string limits(const Range& range);

template <class Settings>
struct Access {
  Kind kind;
  void (*set)(Settings&, Value);
  Value (*get)(const Settings&);
};

template <class Settings>
struct Key {
  std::string_view name;
  int number;                   // among the keys of its table; never changes, never returns
  std::string_view short_name;  // where there is little room
  std::string_view meaning;
  Access<Settings> access;
  Range range = {};                              // for numbers
  std::span<const std::string_view> words = {};  // for choices, in the order of the enumeration
  std::string_view retired = {};  // a word that once stood for the last one, still read
  // Why the key means nothing to these settings; empty: it does. Null: it always does.
  std::string (*objection)(const Settings&) = nullptr;
  bool lasting = false;  // can't change in time
  bool switches =
      false;  // says whether something is there, which settings that are whole don't say
};

template <class Type>
inline constexpr bool kIsOptional = false;
template <class Type>
inline constexpr bool kIsOptional<std::optional<Type>> = true;

// The member at the end of a path; optional members on the way are created.
template <auto kFirst, auto... kRest>
auto& reach(auto& settings) {
  auto& member = settings.*kFirst;
  if constexpr (sizeof...(kRest) == 0) {
    return member;
  } else if constexpr (kIsOptional<std::remove_reference_t<decltype(member)>>) {
    return reach<kRest...>(member ? *member : member.emplace());
  } else {
    return reach<kRest...>(member);
  }
}

// Access to the member at the end of a path, whatever the settings that the path begins at.
template <auto... kPath>
struct Member {
  template <class Settings>
  using Type = std::remove_cvref_t<decltype(reach<kPath...>(std::declval<Settings&>()))>;

  template <class Settings>
  static void set(Settings& settings, Value value) {
    if constexpr (kIsOptional<Type<Settings>>) {
      reach<kPath...>(settings) = value;
    } else {
      reach<kPath...>(settings) = static_cast<Type<Settings>>(value.value_or(0));
    }
  }

  // If an optional member on the way isn't set: the value it would be created with.
  template <class Settings>
  static Value get(const Settings& settings) {
    Settings copy = settings;
    if constexpr (kIsOptional<Type<Settings>>) {
      return reach<kPath...>(copy);
    } else {
      return static_cast<double>(reach<kPath...>(copy));
    }
  }

  template <class Settings>
  constexpr operator Access<Settings>() const {
    constexpr Kind kKind = std::is_same_v<Type<Settings>, bool> ? Kind::kSwitch
                           : std::is_enum_v<Type<Settings>>     ? Kind::kWord
                                                                : Kind::kNumber;
    return {kKind, &set<Settings>, &get<Settings>};
  }
};

template <auto... kPath>
inline constexpr Member<kPath...> kMember{};

}  // namespace channelstrip::host
