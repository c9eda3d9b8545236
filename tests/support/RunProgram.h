#pragma once

#include "TemporaryFolder.h"

#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

/// What a program that has ended leaves behind.
struct ProgramResult {
    int exitCode; ///< 256 and more for a program that a signal ended
    std::string out;
    std::string err;
    long peakMemory = 0; ///< the most that it held at once, in KiB
};

/// Runs a program to its end. `prepare` is called in the new process before the program starts.
inline ProgramResult runProgram(std::vector<std::string> const& command, void (*prepare)() = nullptr) {
    TemporaryFolder const folder;
    std::string const outPath = folder.file("out");
    std::string const errPath = folder.file("err");
    std::vector<char*> arguments;
    for (std::string const& word : command) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);

    pid_t const child = fork();
    if (child < 0) {
        throw std::runtime_error("no new process");
    }
    if (child == 0) {
        int const out = open(outPath.c_str(), O_WRONLY | O_CREAT, 0600);
        int const err = open(errPath.c_str(), O_WRONLY | O_CREAT, 0600);
        dup2(out, STDOUT_FILENO);
        dup2(err, STDERR_FILENO);
        if (prepare) {
            prepare();
        }
        execv(arguments[0], arguments.data());
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    int const exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 256 + WTERMSIG(status);
    return {exitCode, contentOf(outPath), contentOf(errPath), usage.ru_maxrss};
}
