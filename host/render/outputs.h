// Where the renderings of several files go.

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace channelstrip::host {

struct RenderFile {
  std::string input, output;
};

// OUT for a single input; in a folder that exists, every output has its input's name, with
// `extension` ("wav") in its place if given. Throws std::runtime_error, one line for the
// user, when that would not leave every input as it is and give every output a file of its own.
// `read_too` is read as well.
std::vector<RenderFile> choose_outputs(const std::vector<std::string>& inputs,
                                       const std::string& out,
                                       const std::optional<std::string>& extension,
                                       const std::optional<std::string>& read_too);

}  // namespace channelstrip::host
