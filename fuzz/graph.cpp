// Bytes as operations on a graph of objects of all classes.

#include "GraphOperations.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    GraphOperations operations;
    Bytes bytes(data, size);
    operations.run(bytes);
    std::vector<std::string> const faults = operations.faults();
    for (std::string const& fault : faults)
        std::fprintf(stderr, "%s\n", fault.c_str());
    if (!faults.empty())
        std::abort();
    return 0;
}
