#pragma once

#include <cstdint>
#include <string>

namespace sqlite {

/// The header of an SQLite database file.
struct FileHeader {
    std::uintmax_t fileSize = 0;   ///< in bytes; an empty file has nothing else
    std::uintmax_t neededSize = 0; ///< the least size of the file, in bytes; 0 if the header doesn't say
    std::uint32_t pageSize = 0;
    std::uint32_t writerVersion = 0; ///< of SQLite, as 3040001 for 3.40.1; 0 if unknown
};

/// Reads the header of a file. Throws kit::ToolError, which names the file `name`, if that isn't a regular
/// file, can't be read or doesn't begin like an SQLite database.
FileHeader readFileHeader(std::string const& path, std::string const& name);

} // namespace sqlite
