#include "kit/OutputFile.h"

#include "kit/Draft.h"
#include "kit/FileIdentity.h"
#include "kit/Progress.h"
#include "kit/ToolError.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace kit {
namespace {

bool isText(std::istream& in) {
    std::istreambuf_iterator<char> const begin(in);
    return std::find(begin, std::istreambuf_iterator<char>(), '\0') == std::istreambuf_iterator<char>();
}

/// Whether a descriptor took all of a text.
bool writeAll(int descriptor, std::string const& text) {
    for (std::size_t done = 0; done < text.size();) {
        ssize_t const count = ::write(descriptor, text.data() + done, text.size() - done);
        if (count < 0 && errno != EINTR) {
            return false;
        }
        done += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
    return true;
}

} // namespace

/// What a path leads to at the moment.
struct Output::Place {
    enum { STANDARD, OPEN_FILE, DEVICE, FILE } kind;
    int descriptor = -1; ///< of what is open already
    std::string target;  ///< of a file: where the links end
};

Output::Output(std::string toPath, FileKind const& ofKind, std::vector<std::string> fromSources,
               std::ostream& standardOutput)
    : path(toPath == "-" ? "" : std::move(toPath)), kind(ofKind), sources(std::move(fromSources)),
      standard(standardOutput) {
    Place const place = findPlace();
    refuseSources(place);
    if (place.kind == Place::FILE) {
        mayReplace(place.target);
    }
}

Output::Place Output::findPlace() const {
    if (path.empty()) {
        return {Place::STANDARD, STDOUT_FILENO, ""};
    }
    if (int const own = descriptorOf(path); own >= 0) {
        return {Place::OPEN_FILE, own, ""};
    }
    struct stat status;
    if (stat(path.c_str(), &status) != 0 && errno != ENOENT) {
        fail(errno);
    }
    PathEnd const end = followLinks(path);
    bool const isThere = stat(path.c_str(), &status) == 0;
    if (isThere && S_ISBLK(status.st_mode)) {
        throw ToolError(path, "is a disk or a partition, and must not be replaced");
    }
    if (isThere && end.isOpenFile && S_ISREG(status.st_mode)) {
        throw ToolError(path, "is a file that another program has open");
    }
    if (isThere && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) {
        return {Place::DEVICE, -1, ""};
    }
    return {Place::FILE, -1, end.path};
}

void Output::refuseSources(Place const& place) const {
    auto const ours = place.descriptor >= 0 ? identityOf(place.descriptor) : identityOf(path);
    for (std::string const& source : sources) {
        if (ours && ours == identityOf(source)) {
            throw ToolError(path.empty() ? "standard output" : path,
                            (path == source ? "is the source" : "is the same file as " + source) +
                                ", which must not be written");
        }
    }
}

/// False if there is nothing to replace.
bool Output::mayReplace(std::string const& file) const {
    struct stat status;
    if (lstat(file.c_str(), &status) != 0) {
        return errno == ENOENT ? false : (fail(errno), false);
    }
    if (!S_ISREG(status.st_mode)) {
        fail(S_ISDIR(status.st_mode) ? EISDIR : EEXIST);
    }
    std::ifstream in(file, std::ios::binary);
    if (!in || faccessat(AT_FDCWD, file.c_str(), W_OK, AT_EACCESS) != 0) {
        fail(errno);
    }
    if (status.st_size == 0) {
        return true;
    }
    bool const known = isText(in) && (in.clear(), in.seekg(0), kind.recognises(in));
    if (!known) {
        throw ToolError(path, std::string("isn't ") + kind.name + ", so it isn't replaced");
    }
    return true;
}

void Output::write(std::function<void(std::ostream&)> const& write) const {
    Progress::phase("writing");
    Place const place = findPlace();
    if (place.kind == Place::FILE) {
        return writeFile(place.target, write);
    }
    std::ostringstream text;
    text.exceptions(std::ios::badbit); // otherwise the text would end where memory is exhausted
    write(text);
    writeWhole(place, text.str());
}

void Output::writeFile(std::string const& target, std::function<void(std::ostream&)> const& write) const {
    try {
        Draft draft(target);
        draft.write(write);
        draft.place([&] {
            refuseSources({Place::FILE, -1, target});
            return mayReplace(target);
        });
    } catch (std::system_error const& error) {
        fail(error.code().value());
    }
}

void Output::writeWhole(Place const& place, std::string const& text) const {
    ProgressDisplay::end();
    if (place.kind == Place::STANDARD) {
        standard << text;
        return;
    }
    standard.flush();
    int const own = place.kind == Place::OPEN_FILE ? -1 : open(path.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
    int const device = place.kind == Place::OPEN_FILE ? place.descriptor : own;
    int const code = device >= 0 && writeAll(device, text) ? 0 : errno;
    if (own >= 0) {
        close(own);
    }
    if (code) {
        fail(code);
    }
}

void Output::fail(int code) const {
    throw ToolError(path, std::string("can't be written: ") + std::strerror(code));
}

} // namespace kit
