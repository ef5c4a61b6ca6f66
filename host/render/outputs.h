// Where the renderings of several files go.

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "inputs.h"

namespace channelstrip::host {

struct RenderFile {
  std::string input, output;
};

// `out` itself for a single file. If it is a folder, every output has the place of its input there,
// with `extension` ("wav"), if given, in place of the input's. `out` is a folder if it is there and
// is one, or if it isn't there and ends in a slash, or if `many` need one and its name isn't an
// audio file's. Throws std::runtime_error, one line for the user, if many inputs have no folder to
// go to, if neither `out` nor `extension` names a container, if an output would replace an input or
// one of `read_too`, which are read as well, or if two outputs would be one file.
std::vector<RenderFile> choose_outputs(const std::vector<InputFile>& inputs, bool many,
                                       const std::string& out,
                                       const std::optional<std::string>& extension,
                                       const std::vector<std::string>& read_too);

}  // namespace channelstrip::host
