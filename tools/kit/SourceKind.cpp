#include "kit/SourceKind.h"

#include <filesystem>
#include <fstream>

namespace kit {

SourceHint hintOf(std::string const& source) {
    SourceHint hint{source, ""};
    std::error_code ignored;
    if (std::filesystem::is_regular_file(source, ignored)) {
        constexpr std::size_t enough = 65536;
        hint.start.resize(enough);
        std::ifstream in(source, std::ios::binary);
        (in >> std::ws).read(hint.start.data(), enough);
        hint.start.resize(static_cast<std::size_t>(in.gcount()));
    }
    return hint;
}

} // namespace kit
