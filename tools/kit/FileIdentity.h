#pragma once

#include <optional>
#include <string>
#include <sys/types.h>

namespace kit {

/// The identity of a path's file: equal for all paths to the same file, over links of both kinds.
struct FileIdentity {
    dev_t device;
    ino_t inode;      ///< of the file, or of its folder if it doesn't exist yet
    std::string name; ///< of a file that doesn't exist yet

    bool operator==(FileIdentity const& other) const {
        return device == other.device && inode == other.inode && name == other.name;
    }
};

/// Nothing for a path without a file, and for a terminal or another device that is read and written
/// apart.
std::optional<FileIdentity> identityOf(std::string const& path);
/// The same for an open file.
std::optional<FileIdentity> identityOf(int descriptor);

/// Where the links of a path end.
struct PathEnd {
    std::string path; ///< whether it exists or not
    /// True for a name such as /dev/stdout, which means an open file and not an entry of a folder.
    bool isOpenFile;
};

PathEnd followLinks(std::string const& path);

/// The descriptor of this process that a path such as /dev/stdout means, or -1.
int descriptorOf(std::string const& path);

} // namespace kit
