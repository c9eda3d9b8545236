// A text as a graph in the exchange format: refused, or read, written and read again as the same graph.

#include "Bytes.h"
#include "Require.h"

#include "exchange/JsonReader.h"
#include "exchange/JsonWriter.h"
#include "kit/ToolError.h"
#include "kit/Verify.h"

#include <sstream>

namespace {

std::string written(std::string const& text) {
    std::istringstream in(text);
    kit::Graph const graph = exchange::readJson(in, "input");
    for (std::string const& fault : kit::verify(graph.root()))
        require(false, fault.c_str());
    std::ostringstream out;
    exchange::writeJson(graph.root(), out);
    return out.str();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string first;
    try {
        first = written(Bytes(data, size).rest());
    } catch (kit::ToolError const&) {
        return 0;
    }
    require(written(first) == first, "what was written reads as the same graph");
    return 0;
}
