// Bytes as a model, which is given to all that reads or writes one.

#include "ModelOperations.h"
#include "WriterChecks.h"

#include <qor/QORModel.h>

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    ModelOperations operations;
    Bytes bytes(data, size);
    operations.run(bytes);
    std::vector<std::string> const faults = writerFaults(operations.model());
    for (std::string const& fault : faults) {
        std::fprintf(stderr, "%s\n", fault.c_str());
    }
    if (!faults.empty()) {
        std::abort();
    }
    return 0;
}
