// The containers a command can be asked for.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace channelstrip::host {

// SF_FORMAT_WAV ... that the extension of `path` names, whatever its case. Names of lossy files say
// how they are coded, too: SF_FORMAT_OGG | SF_FORMAT_OPUS.
std::optional<int> container_of(const std::string& path);

// The same for a name such as "wav" or "flac". Throws std::runtime_error that lists the names.
int container_from_name(std::string_view name);

// All that container_from_name() takes.
std::vector<std::string> container_names();

// libsndfile's name of a container or sample type.
std::string libsndfile_name(int container_or_sample_type);

}  // namespace channelstrip::host
