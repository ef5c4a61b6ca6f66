// Which files are to be rendered.

#pragma once

#include <string>
#include <vector>

namespace channelstrip::host {

struct InputFile {
  std::string path;
  std::string place;  // in a folder of outputs: its name, or where it is below the folder given
};

// The files named, and in place of a folder the audio files in it, in alphabetical order, and, if
// `recursive`, in its folders, except for hidden ones and what lies in the folder `out`. Throws
// std::runtime_error, one line for the user, for a folder without any.
std::vector<InputFile> find_inputs(const std::vector<std::string>& names, bool recursive,
                                   const std::string& out);

}  // namespace channelstrip::host
