// What may follow on a command line, for the shells' completion.

#pragma once

#include <span>
#include <string>

namespace CLI {
class App;
}

namespace channelstrip::host {

// The candidates for the last of `words`, which may be empty or the beginning of a word; those
// before it are whole. One candidate a line, "word" or "word<tab>what it means"; not only those
// that begin like the word, because shells match by rules of their own. Last, where the name of a
// file may stand: an empty line. Commands, options and the words that an option takes are those of
// `program`; the words are in its type name, "NAME:{one,other}".
std::string completions(const CLI::App& program, std::span<const std::string> words);

}  // namespace channelstrip::host
