#include "outputs.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <stdexcept>
#include <utility>

namespace channelstrip::host {
namespace {

namespace fs = std::filesystem;

template <typename... Arguments>
[[noreturn]] void refuse(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
  throw std::runtime_error(fmt::format(format, std::forward<Arguments>(arguments)...));
}

bool is_folder(const std::string& path) {
  std::error_code not_there;
  return fs::is_directory(path, not_there);
}

std::string in_folder(const std::string& input, const std::string& folder,
                      const std::optional<std::string>& extension) {
  fs::path name = fs::path(input).filename();
  if (input == "-" || !name.has_stem() || name == "." || name == "..") {
    refuse("{}: has no name that a file in {} could take", input, folder);
  }
  if (extension) name.replace_extension(*extension);
  return (fs::path(folder) / name).string();
}

// The same for all names of a file: its device and inode, or the path if the file doesn't exist.
using Identity = std::pair<std::pair<dev_t, ino_t>, std::string>;

Identity identity(const std::string& path) {
  struct stat status = {};
  if (stat(path.c_str(), &status) == 0) return {{status.st_dev, status.st_ino}, {}};
  return {{}, path};
}

void require_apart(const std::vector<RenderFile>& files,
                   const std::optional<std::string>& read_too) {
  std::map<Identity, std::string> inputs, outputs;
  for (const RenderFile& file : files) inputs.emplace(identity(file.input), file.input);
  if (read_too) inputs.emplace(identity(*read_too), *read_too);
  for (const auto& [input, output] : files) {
    if (output == "-") continue;
    const Identity place = identity(output);
    const auto read = inputs.find(place);
    if (read != inputs.end() && read->second == input) refuse("{}: is the input itself", output);
    if (read != inputs.end()) refuse("{}: is an input, {}", output, read->second);
    const auto [other, is_new] = outputs.emplace(place, input);
    if (!is_new) refuse("{}: would be written from {} and from {}", output, other->second, input);
  }
}

}  // namespace

std::vector<RenderFile> choose_outputs(const std::vector<std::string>& inputs,
                                       const std::string& out,
                                       const std::optional<std::string>& extension,
                                       const std::optional<std::string>& read_too) {
  std::vector<RenderFile> files;
  if (is_folder(out)) {
    for (const std::string& input : inputs) {
      files.push_back({input, in_folder(input, out, extension)});
    }
  } else if (inputs.size() > 1) {
    refuse("{}: is no folder, which {} inputs need", out, inputs.size());
  } else {
    files.push_back({inputs.front(), out});
  }
  require_apart(files, read_too);
  return files;
}

}  // namespace channelstrip::host
