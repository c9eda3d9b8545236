#pragma once

#include <optional>
#include <string>
#include <sys/types.h>

namespace kit {

/// Which file a path leads to: equal for all paths to one file, over links of both kinds.
struct FileIdentity {
    dev_t device;
    ino_t inode;      ///< of the file, or of its folder if it isn't there yet
    std::string name; ///< of a file that isn't there yet

    bool operator==(FileIdentity const& other) const {
        return device == other.device && inode == other.inode && name == other.name;
    }
};

/// Nothing for a path that leads nowhere, and for a terminal or another device that is read and written
/// apart.
std::optional<FileIdentity> identityOf(std::string const& path);
/// The same for an open file.
std::optional<FileIdentity> identityOf(int descriptor);

/// Where the links of a path end.
struct PathEnd {
    std::string path; ///< whether something is there or not
    /// True for a name such as /dev/stdout, which stands for an open file and not for a place in a folder.
    bool isOpenFile;
};

PathEnd followLinks(std::string const& path);

/// The descriptor of this process that a path such as /dev/stdout stands for, or -1.
int descriptorOf(std::string const& path);

} // namespace kit
