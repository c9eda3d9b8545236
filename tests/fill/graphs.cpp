// usage: qor-fill-graphs <number of graphs>
//
// Prints graphs that random operations have built, with all their attributes and links; and on stderr a byte
// of fresh memory from the pool, which tells what memory is filled with.

#include "GraphOperations.h"

#include <qor/QORPool.h>

#include <cstdio>
#include <cstdlib>
#include <random>

int main(int argc, char** argv) {
    auto* const block = static_cast<unsigned char volatile*>(QORPool::allocate(200));
    std::fprintf(stderr, "%d\n", block[150]);
    QORPool::release(const_cast<unsigned char*>(block), 200);

    int const count = argc > 1 ? std::atoi(argv[1]) : 0;
    for (int seed = 0; seed < count; ++seed) {
        std::mt19937 random(static_cast<unsigned>(seed));
        std::vector<std::uint8_t> data(2000);
        for (std::uint8_t& byte : data)
            byte = static_cast<std::uint8_t>(random());
        GraphOperations operations;
        Bytes bytes(data.data(), data.size());
        operations.run(bytes);
        std::printf("graph %d\n%s", seed, operations.dump().c_str());
    }
}
