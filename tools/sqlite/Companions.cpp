#include "sqlite/Companions.h"

#include <filesystem>

namespace sqlite {

/// They lie where the links of the path end.
std::vector<std::string> filesOf(std::string const& path) {
    std::vector<std::string> files{path};
    std::error_code ignored;
    std::filesystem::path const end = std::filesystem::canonical(path, ignored);
    for (char const* const suffix : {"-wal", "-shm", "-journal"}) {
        files.push_back(path + suffix);
        files.push_back(end.string() + suffix);
    }
    return files;
}

} // namespace sqlite
