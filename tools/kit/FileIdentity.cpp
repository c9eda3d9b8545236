#include "kit/FileIdentity.h"

#include <charconv>
#include <filesystem>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>

namespace kit {
namespace {

namespace fs = std::filesystem;

std::optional<FileIdentity> identityFrom(struct stat const& status) {
    if (S_ISCHR(status.st_mode) || S_ISSOCK(status.st_mode)) {
        return std::nullopt;
    }
    return FileIdentity{status.st_dev, status.st_ino, ""};
}

std::string folderOf(fs::path const& path) {
    return path.has_parent_path() ? path.parent_path().string() : ".";
}

bool isOfProcesses(std::string const& folder) {
    struct statfs system;
    return statfs(folder.c_str(), &system) == 0 && system.f_type == PROC_SUPER_MAGIC;
}

} // namespace

PathEnd followLinks(std::string const& path) {
    constexpr int mostLinks = 40;
    fs::path target(path);
    std::error_code ignored;
    for (int i = 0; i < mostLinks && fs::is_symlink(target, ignored); ++i) {
        if (isOfProcesses(folderOf(target))) {
            return {target.string(), true};
        }
        target = target.parent_path() / fs::read_symlink(target, ignored);
    }
    return {target.string(), false};
}

std::optional<FileIdentity> identityOf(std::string const& path) {
    struct stat status;
    if (stat(path.c_str(), &status) == 0) {
        return identityFrom(status);
    }
    fs::path const end = followLinks(path).path;
    if (stat(folderOf(end).c_str(), &status) != 0) {
        return std::nullopt;
    }
    return FileIdentity{status.st_dev, status.st_ino, end.filename().string()};
}

std::optional<FileIdentity> identityOf(int descriptor) {
    struct stat status;
    return fstat(descriptor, &status) == 0 ? identityFrom(status) : std::nullopt;
}

int descriptorOf(std::string const& path) {
    PathEnd const end = followLinks(path);
    std::string const name = fs::path(end.path).filename().string();
    int number = -1;
    auto const read = std::from_chars(name.data(), name.data() + name.size(), number);
    struct stat named;
    struct stat own;
    bool const isOwn = end.isOpenFile && read.ptr == name.data() + name.size() &&
                       stat(path.c_str(), &named) == 0 && fstat(number, &own) == 0 &&
                       named.st_dev == own.st_dev && named.st_ino == own.st_ino;
    return isOwn ? number : -1;
}

} // namespace kit
