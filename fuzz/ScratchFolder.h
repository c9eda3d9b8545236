#pragma once

#include "Require.h"

#include <filesystem>
#include <string>
#include <unistd.h>

/// A folder that goes with the process, in memory where the system has such a place.
class ScratchFolder {
public:
    ScratchFolder() {
        namespace fs = std::filesystem;
        std::string form =
            (fs::exists("/dev/shm") ? "/dev/shm" : fs::temp_directory_path().string()) + "/qor-fuzz-XXXXXX";
        require(mkdtemp(form.data()) != nullptr, "there is room for a folder");
        path = form;
    }
    ScratchFolder(ScratchFolder const&) = delete;
    ScratchFolder& operator=(ScratchFolder const&) = delete;
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    std::filesystem::path path;
};
