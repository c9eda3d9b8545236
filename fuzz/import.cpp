// A file's bytes as a database: refused, or read as a model whose links hold and which can be printed.

#include "Bytes.h"
#include "Require.h"
#include "ScratchFolder.h"

#include "kit/ToolError.h"
#include "kit/TreePrinter.h"
#include "kit/Verify.h"
#include "qor/Session.h"
#include "qor/Sources.h"

#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static ScratchFolder const folder;
    fs::path const file = folder.path / "input";
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<char const*>(data), static_cast<std::streamsize>(size));
    try {
        std::ostringstream remarks;
        qorprogram::Session session(0, nullptr, remarks, remarks);
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
