#include "kit/OutputFile.h"

#include "kit/Progress.h"
#include "kit/ToolError.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace kit {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(std::string const& path, int code) {
    throw ToolError(path, std::string("can't be written: ") + std::strerror(code));
}

void writeTo(std::string const& file, std::string const& path,
             std::function<void(std::ostream&)> const& write) {
    errno = 0;
    std::ofstream out(file, std::ios::binary);
    if (out) {
        write(out);
        out.close();
    }
    if (!out) {
        fail(path, errno ? errno : EIO);
    }
}

constexpr int endingSignals[] = {SIGHUP, SIGINT, SIGTERM};

/// What a signal that ends the program has to delete; a handler can't ask for more than this.
char const* volatile unfinished = nullptr;

extern "C" void deleteAndEnd(int signal) {
    if (char const* const file = unfinished) {
        unlink(file);
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

/// Catches the signals that would end the program.
class Catching {
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

/// A new file in the folder of another that goes again unless it is given its place.
class Draft {
public:
    explicit Draft(std::string const& ofPath)
        : path(ofPath), name((fs::path(path).parent_path() / ".qor-XXXXXX").string()) {
        int const file = mkstemp(name.data());
        if (file < 0) {
            fail(path, errno);
        }
        catching.emplace(name.c_str());
        fchmod(file, mode());
        close(file);
    }
    Draft(Draft const&) = delete;
    Draft& operator=(Draft const&) = delete;
    ~Draft() {
        if (!placed) {
            unlink(name.c_str());
        }
    }

    std::string const& file() const { return name; }

    void place() {
        if (std::rename(name.c_str(), path.c_str()) != 0) {
            fail(path, errno);
        }
        placed = true;
    }

private:
    /// That of the file to be replaced, or else what this process gives its new files.
    mode_t mode() const {
        struct stat status;
        if (stat(path.c_str(), &status) == 0) {
            return status.st_mode & 0777;
        }
        mode_t const mask = umask(0);
        umask(mask);
        return 0666 & ~mask;
    }

    std::string path;
    std::string name;
    std::optional<Catching> catching;
    bool placed = false;
};

/// What a path leads to over links, whether it is there or not.
std::string followLinks(std::string const& path) {
    constexpr int mostLinks = 40;
    fs::path target(path);
    std::error_code ignored;
    for (int i = 0; i < mostLinks && fs::is_symlink(target, ignored); ++i) {
        target = target.parent_path() / fs::read_symlink(target, ignored);
    }
    return target.string();
}

} // namespace

void writeFile(std::string const& path, std::function<void(std::ostream&)> const& write) {
    Progress::phase("writing");
    std::error_code ignored;
    if (fs::exists(path, ignored) && !fs::is_regular_file(path, ignored)) {
        return writeTo(path, path, write);
    }
    // A link stays one: what it leads to is replaced.
    Draft draft(followLinks(path));
    writeTo(draft.file(), path, write);
    draft.place();
}

void writeOutput(std::string const& path, std::ostream& out,
                 std::function<void(std::ostream&)> const& write) {
    if (!path.empty() && path != "-") {
        return writeFile(path, write);
    }
    Progress::phase("writing");
    std::ostringstream text;
    write(text);
    ProgressDisplay::end();
    out << text.str();
}

} // namespace kit
