#include "kit/Progress.h"
#include "qor/Program.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <iostream>
#include <sstream>
#include <string_view>
#include <unistd.h>

namespace {

/// A standard stream that the caller has closed is taken by something that can't be written, so that no file
/// of the program's own gets its number.
void occupyStandardStreams() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) < 0) {
            open("/dev/null", O_RDONLY);
        }
    }
}

bool isQuiet(int argc, char** argv) {
    return std::any_of(argv, argv + argc, [](std::string_view argument) { return argument == "--quiet"; });
}

} // namespace

int main(int argc, char** argv) {
    occupyStandardStreams();
    std::signal(SIGXFSZ, SIG_IGN); // a file that grows too large is an error like others
    std::ostringstream remarks;    // for which the progress has to make way
    int exitCode = 0;
    {
        kit::ProgressDisplay const display(isatty(STDERR_FILENO) == 1 && !isQuiet(argc, argv));
        exitCode = qorprogram::run(argc, argv, std::cout, remarks);
    }
    if (exitCode != qorprogram::failure && !std::cout.flush()) { // of a help text, say
        remarks << "qor: standard output: can't be written\n";
        exitCode = qorprogram::failure;
    }
    std::cerr << remarks.str();
    return exitCode;
}
