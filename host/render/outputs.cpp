#include "outputs.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <stdexcept>
#include <utility>

#include "../audio/containers.h"
#include "../system/standard_streams.h"

namespace channelstrip::host {
namespace {

namespace fs = std::filesystem;

template <typename... Arguments>
[[noreturn]] void refuse(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
  throw std::runtime_error(fmt::format(format, std::forward<Arguments>(arguments)...));
}

bool is_folder(const std::string& out, bool many) {
  std::error_code none;
  if (fs::exists(out, none)) return fs::is_directory(out, none);
  return out.ends_with('/') || (many && out != kStandardStream && !container_of(out));
}

std::string in_folder(const InputFile& input, const std::string& folder,
                      const std::optional<std::string>& extension) {
  fs::path place = input.place;
  const fs::path name = place.filename();
  if (input.path == kStandardStream || !name.has_stem() || name == "." || name == "..") {
    refuse("{}: has no name that a file in {} could take", input.path, folder);
  }
  if (extension) place.replace_extension(*extension);
  return (fs::path(folder) / place).string();
}

// The same for all names of a file: its device and inode, or the path if the file doesn't exist.
using Identity = std::pair<std::pair<dev_t, ino_t>, std::string>;

Identity identity(const std::string& path) {
  struct stat status = {};
  if (stat(path.c_str(), &status) == 0) return {{status.st_dev, status.st_ino}, {}};
  return {{}, path};
}

void require_apart(const std::vector<RenderFile>& files, const std::vector<std::string>& read_too) {
  std::map<Identity, std::string> inputs, outputs;
  for (const RenderFile& file : files) inputs.emplace(identity(file.input), file.input);
  for (const std::string& name : read_too) inputs.emplace(identity(name), name);
  for (const auto& [input, output] : files) {
    if (output == kStandardStream) continue;
    const Identity place = identity(output);
    const auto read = inputs.find(place);
    if (read != inputs.end() && read->second == input) refuse("{}: is the input itself", output);
    if (read != inputs.end()) refuse("{}: is an input, {}", output, read->second);
    const auto [other, is_new] = outputs.emplace(place, input);
    if (!is_new) refuse("{}: would be written from {} and from {}", output, other->second, input);
  }
}

}  // namespace

std::vector<RenderFile> choose_outputs(const std::vector<InputFile>& inputs, bool many,
                                       const std::string& out,
                                       const std::optional<std::string>& extension,
                                       const std::vector<std::string>& read_too) {
  std::vector<RenderFile> files;
  if (is_folder(out, many)) {
    for (const InputFile& input : inputs) {
      files.push_back({input.path, in_folder(input, out, extension)});
    }
  } else if (many) {
    refuse("{}: is no folder, which {} input{} need{}", out, inputs.size(),
           inputs.size() == 1 ? "" : "s", inputs.size() == 1 ? "s" : "");
  } else {
    // A preset in OUT's place, say, because --preset was forgotten.
    if (!out.empty() && out != kStandardStream && !extension && !container_of(out)) {
      refuse("{}: its extension is no audio file's; --output-type chooses one", out);
    }
    files.push_back({inputs.front().path, out});
  }
  require_apart(files, read_too);
  return files;
}

}  // namespace channelstrip::host
