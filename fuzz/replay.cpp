// usage: <target> <file or folder>... | --random <number of inputs> <seed>
//
// Gives each file, or random bytes, to the target without a fuzzer. A failure ends the program; the input
// that it ended in was named before.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesOf(fs::path const& path) {
    if (!fs::is_directory(path))
        return {path};
    std::vector<fs::path> files;
    for (fs::directory_entry const& entry : fs::directory_iterator(path))
        files.push_back(entry.path());
    return files;
}

/// An input that takes a minute counts as one that never ends.
void run(std::vector<std::uint8_t> const& data) {
    alarm(60);
    LLVMFuzzerTestOneInput(data.data(), data.size());
    alarm(0);
}

void replay(fs::path const& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "%s: can't be read\n", path.c_str());
        std::exit(2);
    }
    std::string const bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);
    // A copy of exactly that size, so that reading beyond it shows.
    std::vector<std::uint8_t> const data(bytes.begin(), bytes.end());
    run(data);
}

void runRandom(int count, unsigned seed) {
    for (int i = 0; i < count; ++i) {
        unsigned const own = seed + static_cast<unsigned>(i);
        std::mt19937 random(own);
        std::vector<std::uint8_t> data(random() % 2000);
        for (std::uint8_t& byte : data)
            byte = static_cast<std::uint8_t>(random());
        std::printf("seed %u\n", own);
        std::fflush(stdout);
        run(data);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::strcmp(argv[1], "--random") == 0) {
        runRandom(std::atoi(argv[2]), static_cast<unsigned>(std::strtoul(argv[3], nullptr, 10)));
        return 0;
    }
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        for (fs::path const& path : filesOf(argv[i])) {
            replay(path);
            ++count;
        }
    }
    if (count == 0) {
        std::fprintf(stderr, "no inputs\n");
        return 2;
    }
    std::printf("%d inputs\n", count);
}
