#include "inputs.h"

#include <algorithm>
#include <filesystem>

#include "../audio/containers.h"
#include "../system/output_file.h"

namespace channelstrip::host {
namespace {

namespace fs = std::filesystem;

bool is_hidden(const fs::path& path) {
  return path.filename().string().starts_with('.');
}

// Appends what stands in `folder`, which is, or lies in, `top`.
void add_folder(const fs::path& folder, const fs::path& top, bool recursive, const fs::path& out,
                std::vector<InputFile>& files) {
  std::vector<fs::path> entries;
  for (const auto& entry : fs::directory_iterator(folder)) entries.push_back(entry.path());
  std::ranges::sort(entries);
  for (const fs::path& entry : entries) {
    std::error_code none;
    if (is_hidden(entry)) continue;
    if (fs::is_directory(entry, none)) {
      const bool linked = fs::is_symlink(entry, none);  // may lead back up
      if (recursive && !linked && !fs::equivalent(entry, out, none)) {
        add_folder(entry, top, recursive, out, files);
      }
    } else if (container_of(entry.string())) {
      files.push_back({entry.string(), entry.lexically_relative(top).string()});
    }
  }
}

}  // namespace

std::vector<InputFile> find_inputs(const std::vector<std::string>& names, bool recursive,
                                   const std::string& out) {
  std::vector<InputFile> files;
  for (const std::string& name : names) {
    std::error_code none;
    if (!fs::is_directory(name, none)) {
      files.push_back({name, fs::path(name).filename().string()});
      continue;
    }
    const std::size_t before = files.size();
    try {
      add_folder(name, name, recursive, out, files);
    } catch (const fs::filesystem_error& error) {
      fail_on(error.path1().string(), error.code().message());
    }
    if (files.size() == before) {
      fail_on(name, recursive ? "holds no audio files"
                              : "holds no audio files; --recursive looks in its folders, too");
    }
  }
  return files;
}

}  // namespace channelstrip::host
