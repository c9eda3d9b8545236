#pragma once

#include <pty.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

/// Runs a program on a terminal of its own to its end and gives all that it writes there, on either stream.
inline std::string runOnTerminal(std::vector<std::string> const& command) {
    std::vector<char*> arguments;
    for (std::string const& word : command) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    int terminal = -1;
    pid_t const child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child < 0) {
        throw std::runtime_error("no new terminal");
    }
    if (child == 0) {
        execv(arguments[0], arguments.data());
        _exit(127);
    }
    std::string text;
    char buffer[4096];
    for (ssize_t count; (count = read(terminal, buffer, sizeof buffer)) > 0;) {
        text.append(buffer, static_cast<std::size_t>(count));
    }
    close(terminal);
    int status = 0;
    waitpid(child, &status, 0);
    return text;
}
