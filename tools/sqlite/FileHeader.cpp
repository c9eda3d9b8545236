#include "sqlite/FileHeader.h"

#include "kit/ToolError.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sqlite {
namespace {

using kit::ToolError;

constexpr std::string_view magic("SQLite format 3\0", 16);
constexpr std::size_t headerSize = 100;
constexpr std::uint32_t smallestPage = 512;
using Bytes = std::array<unsigned char, headerSize>;

class Descriptor {
public:
    explicit Descriptor(int descriptor) : number(descriptor) {}
    Descriptor(Descriptor const&) = delete;
    Descriptor& operator=(Descriptor const&) = delete;
    ~Descriptor() {
        if (number >= 0) {
            close(number);
        }
    }

    int const number;
};

std::uint32_t numberAt(Bytes const& bytes, std::size_t offset) {
    std::uint32_t number = 0;
    for (std::size_t i = offset; i < offset + 4; ++i) {
        number = number << 8 | bytes[i];
    }
    return number;
}

/// 65536 doesn't fit into the two bytes and is written as 1.
std::uint32_t pageSizeOf(Bytes const& bytes) {
    std::uint32_t const written = static_cast<std::uint32_t>(bytes[16] << 8 | bytes[17]);
    return written == 1 ? 65536 : written;
}

bool isPageSize(std::uint32_t size) {
    return size >= smallestPage && (size & (size - 1)) == 0;
}

/// Very old writers leave the number of pages as it was, which they show by not updating a counter beside it.
std::uint32_t pageCountOf(Bytes const& bytes) {
    bool const valid = numberAt(bytes, 24) == numberAt(bytes, 92);
    return valid ? numberAt(bytes, 28) : 0;
}

std::size_t readStart(int descriptor, Bytes& bytes, std::string const& name) {
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        ssize_t const got = read(descriptor, bytes.data() + filled, bytes.size() - filled);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            throw ToolError(name, std::strerror(errno));
        }
        if (got == 0) {
            break;
        }
        filled += static_cast<std::size_t>(got);
    }
    return filled;
}

void checkKind(struct stat const& status, std::string const& name) {
    if (S_ISDIR(status.st_mode)) {
        throw ToolError(name, "is a directory");
    }
    if (!S_ISREG(status.st_mode)) {
        throw ToolError(name, "is not a regular file");
    }
}

} // namespace

FileHeader readFileHeader(std::string const& path, std::string const& name) {
    struct stat status;
    if (stat(path.c_str(), &status) != 0) {
        throw ToolError(name, std::strerror(errno));
    }
    checkKind(status, name);
    Descriptor const descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (descriptor.number < 0) {
        throw ToolError(name, std::strerror(errno));
    }

    FileHeader header;
    header.fileSize = static_cast<std::uintmax_t>(status.st_size);
    Bytes bytes{};
    std::size_t const filled = readStart(descriptor.number, bytes, name);
    if (filled == 0) {
        return header;
    }
    if (filled < magic.size() || std::memcmp(bytes.data(), magic.data(), magic.size()) != 0) {
        throw ToolError(name, "is not an SQLite database, or is an encrypted one");
    }
    if (filled < headerSize) {
        throw ToolError(name, "is truncated within its header");
    }
    header.pageSize = pageSizeOf(bytes);
    if (!isPageSize(header.pageSize)) {
        throw ToolError(name, "is damaged: its header has no valid page size");
    }
    header.neededSize = std::uintmax_t{pageCountOf(bytes)} * header.pageSize;
    header.writerVersion = numberAt(bytes, 96);
    return header;
}

} // namespace sqlite
