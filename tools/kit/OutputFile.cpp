#include "kit/OutputFile.h"

#include "kit/ToolError.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
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

/// A new file that goes again unless it is given its place.
class Draft {
public:
    explicit Draft(std::string const& ofPath) : path(ofPath), name(path + ".XXXXXX") {
        int const file = mkstemp(name.data());
        if (file < 0) {
            fail(path, errno);
        }
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
    bool placed = false;
};

} // namespace

void writeFile(std::string const& path, std::function<void(std::ostream&)> const& write) {
    std::error_code ignored;
    if (fs::exists(path, ignored) && !fs::is_regular_file(path, ignored)) {
        return writeTo(path, path, write);
    }
    // A link stays one: what it leads to is replaced.
    std::string const target = fs::is_symlink(path, ignored) ? fs::canonical(path, ignored).string() : path;
    Draft draft(target.empty() ? path : target);
    writeTo(draft.file(), path, write);
    draft.place();
}

void writeOutput(std::string const& path, std::ostream& out,
                 std::function<void(std::ostream&)> const& write) {
    if (!path.empty() && path != "-") {
        return writeFile(path, write);
    }
    std::ostringstream text;
    write(text);
    out << text.str();
}

} // namespace kit
