// A file's bytes as a database: refused, or read as a model whose links hold and which can be printed.

#include "Bytes.h"
#include "Require.h"

#include "kit/ToolError.h"
#include "kit/TreePrinter.h"
#include "kit/Verify.h"
#include "qor/Session.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

/// A folder that goes with the process, in memory where the system has such a place.
class Folder {
public:
    Folder() {
        std::string form =
            (fs::exists("/dev/shm") ? "/dev/shm" : fs::temp_directory_path().string()) + "/qor-import-XXXXXX";
        require(mkdtemp(form.data()) != nullptr, "there is room for a folder");
        path = form;
    }
    Folder(Folder const&) = delete;
    Folder& operator=(Folder const&) = delete;
    ~Folder() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }

    fs::path path;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static Folder const folder;
    fs::path const file = folder.path / "input";
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<char const*>(data), static_cast<std::streamsize>(size));
    try {
        std::ostringstream remarks;
        qorprogram::Session const session{remarks, remarks};
        kit::Graph const graph = qorprogram::loadSource(file.string(), session);
        for (std::string const& fault : kit::verify(graph.root()))
            require(false, fault.c_str());
        std::ostringstream out;
        kit::printTree(graph.root(), out);
        require(!out.str().empty(), "a model prints");
    } catch (kit::ToolError const&) { // no database
    }
    std::size_t left = 0;
    for (fs::directory_entry const& entry : fs::directory_iterator(folder.path))
        left += entry.path() != file;
    require(left == 0, "reading leaves no files behind");
    return 0;
}
