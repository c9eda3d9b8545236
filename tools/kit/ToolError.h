#pragma once

#include <stdexcept>
#include <string>

namespace kit {

/// An error that ends a program: the file, or whatever else it is about, and what is wrong with it.
class ToolError : public std::runtime_error {
public:
    ToolError(std::string const& subject, std::string const& problem)
        : std::runtime_error(subject + ": " + problem) {}
};

} // namespace kit
