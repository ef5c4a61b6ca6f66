// Where the renderings of several files go.

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace channelstrip::host {

struct RenderFile {
  std::string input, output;
};

// `out` itself for a single input. If it is an existing folder, every output lies there and has the
// name of its input, with `extension` ("wav"), if given, in place of the input's. Throws
// std::runtime_error, one line for the user, if several inputs have no folder to go to, if an
// output would replace an input or `read_too`, which is read as well, or if two outputs would be
// one file.
std::vector<RenderFile> choose_outputs(const std::vector<std::string>& inputs,
                                       const std::string& out,
                                       const std::optional<std::string>& extension,
                                       const std::optional<std::string>& read_too);

}  // namespace channelstrip::host
