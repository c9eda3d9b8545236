#include "kit/Draft.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace kit {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view draftName = ".qor-draft-XXXXXX";
constexpr std::string_view draftStart = draftName.substr(0, draftName.size() - 6);

[[noreturn]] void fail(int code) {
    throw std::system_error(code, std::generic_category());
}

constexpr int endingSignals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

/// What a signal that ends the program must delete; a handler can't find out anything else.
char const* volatile unfinished = nullptr;

extern "C" void deleteAndEnd(int signal) {
    if (char const* const file = unfinished) {
        unlink(file);
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

bool stillHasName(int file, char const* name) {
    struct stat own;
    struct stat named;
    return fstat(file, &own) == 0 && lstat(name, &named) == 0 && own.st_dev == named.st_dev &&
           own.st_ino == named.st_ino;
}

/// A lock that is free means that its process is dead, or has handed its draft over.
void removeIfAbandoned(char const* name) {
    int const file = open(name, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0) {
        return;
    }
    struct stat status;
    bool const isOurs = fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid();
    if (isOurs && flock(file, LOCK_EX | LOCK_NB) == 0 && stillHasName(file, name)) {
        unlink(name);
    }
    close(file);
}

void removeAbandoned(fs::path const& folder) {
    std::error_code end;
    for (fs::directory_iterator each(folder.empty() ? "." : folder, end), last; !end && each != last;
         each.increment(end)) {
        std::string const name = each->path().filename().string();
        if (name.size() == draftName.size() && name.compare(0, draftStart.size(), draftStart) == 0) {
            removeIfAbandoned(each->path().c_str());
        }
    }
}

mode_t modeOfNewFiles() {
    mode_t const mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

/// If the group can't be kept, no group has its rights: another one must not inherit them.
void takeRights(int file, struct stat const& replaced) {
    mode_t mode = replaced.st_mode & 0777;
    if (fchown(file, replaced.st_uid, replaced.st_gid) != 0 &&
        fchown(file, static_cast<uid_t>(-1), replaced.st_gid) != 0) {
        mode &= ~static_cast<mode_t>(S_IRWXG);
    }
    fchmod(file, mode);
}

} // namespace

/// Catches the signals that would end the program.
class Draft::Catching {
public:
    explicit Catching(char const* file) {
        unfinished = file;
        for (std::size_t i = 0; i < std::size(endingSignals); ++i) {
            sigaction(endingSignals[i], nullptr, &before[i]);
            if (before[i].sa_handler == SIG_DFL) {
                std::signal(endingSignals[i], deleteAndEnd);
            }
        }
    }
    Catching(Catching const&) = delete;
    Catching& operator=(Catching const&) = delete;
    ~Catching() {
        unfinished = nullptr;
        for (std::size_t i = 0; i < std::size(endingSignals); ++i) {
            sigaction(endingSignals[i], &before[i], nullptr);
        }
    }

private:
    struct sigaction before[std::size(endingSignals)];
};

/// Until the lock is held, another process may mistake the draft for an abandoned one.
Draft::Draft(std::string const& target) : path(target) {
    fs::path const folder = fs::path(path).parent_path();
    removeAbandoned(folder);
    do {
        if (file >= 0) {
            close(file);
        }
        name = (folder / draftName).string();
        file = mkostemp(name.data(), O_CLOEXEC);
        if (file < 0) {
            fail(errno);
        }
        flock(file, LOCK_EX); // where there are no locks, nobody can take the draft for abandoned either
    } while (!stillHasName(file, name.c_str()));
    catching = std::make_unique<Catching>(name.c_str());
}

Draft::~Draft() {
    if (!placed) {
        unlink(name.c_str());
    }
    close(file);
}

void Draft::write(std::function<void(std::ostream&)> const& write) {
    errno = 0;
    std::ofstream out(name, std::ios::binary);
    if (out) {
        write(out);
        out.close();
    }
    if (!out) {
        fail(errno ? errno : EIO);
    }
    if (fsync(file) != 0 && errno != EINVAL) {
        fail(errno);
    }
}

/// False if a file was created at the target's path in the meantime.
bool Draft::tryToPlace(bool replacing) {
    if (!replacing) {
        if (renameat2(AT_FDCWD, name.c_str(), AT_FDCWD, path.c_str(), RENAME_NOREPLACE) == 0) {
            return true;
        }
        if (errno == EEXIST) {
            return false;
        }
        if (errno != EINVAL && errno != ENOSYS) { // a file system that doesn't know the flag
            fail(errno);
        }
    }
    if (std::rename(name.c_str(), path.c_str()) != 0) {
        fail(errno);
    }
    return true;
}

void Draft::place(std::function<bool()> const& mayReplace) {
    do {
        struct stat replaced;
        bool const replacing = mayReplace();
        if (replacing && stat(path.c_str(), &replaced) == 0) {
            takeRights(file, replaced);
        } else {
            fchmod(file, modeOfNewFiles());
        }
        placed = tryToPlace(replacing);
    } while (!placed);
}

} // namespace kit
