#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

/// A new folder that goes, with all in it, when the object does.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "qor-test-XXXXXX").string();
        if (!mkdtemp(pattern.data())) {
            throw std::runtime_error("no temporary folder");
        }
        path = pattern;
    }
    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    /// The path of a file in the folder, whether there is one or not.
    std::string file(std::string const& name) const { return (path / name).string(); }

    /// Writes a file and gives its path.
    std::string write(std::string const& name, std::string const& content) const {
        std::ofstream(file(name), std::ios::binary) << content;
        return file(name);
    }

    std::filesystem::path path;
};

/// All bytes of a file.
inline std::string contentOf(std::string const& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}
