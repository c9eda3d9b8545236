#include "exchange/GraphSource.h"

#include "exchange/JsonReader.h"
#include "kit/ToolError.h"

#include <cerrno>
#include <cstring>
#include <ext/stdio_filebuf.h>
#include <filesystem>
#include <istream>
#include <unistd.h>

namespace exchange {
namespace {

using Files = std::vector<std::string>;

bool isGraphFile(kit::SourceHint const& hint) {
    return std::filesystem::path(hint.name).extension() == ".json" || hint.start.compare(0, 1, "{") == 0;
}

kit::Graph loadFile(std::string const& path, kit::Loading const&) {
    return readJsonFile(path);
}

/// Reads the descriptor itself, which may be a socket. std::cin would read it character by character.
kit::Graph loadStandardInput(std::string const&, kit::Loading const&) {
    constexpr char const* subject = "the standard input";
    int const descriptor = dup(STDIN_FILENO);
    if (descriptor < 0) {
        throw kit::ToolError(subject, std::string("can't be read: ") + std::strerror(errno));
    }
    __gnu_cxx::stdio_filebuf<char> buffer(descriptor, std::ios::in | std::ios::binary);
    std::istream in(&buffer);
    return readJson(in, subject);
}

} // namespace

kit::SourceKind graphSource() {
    return {"graph in JSON", "the suffix .json, or { as the first character", isGraphFile, loadFile,
            [](std::string const& path) { return Files{path}; }};
}

kit::SourceKind standardInputSource() {
    return {"graph in JSON on the standard input", "-",
            [](kit::SourceHint const& hint) { return isStandardInput(hint.name); }, loadStandardInput,
            [](std::string const&) { return Files{"/dev/stdin"}; }};
}

bool isStandardInput(std::string const& source) {
    return source == "-";
}

} // namespace exchange
