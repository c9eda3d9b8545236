#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// Bytes that decide something, read from front to back; behind the last one there are zeros.
class Bytes {
public:
    Bytes(std::uint8_t const* first, std::size_t count) : next(first), left(count) {}

    bool atEnd() const { return left == 0; }
    std::size_t count() const { return left; }

    std::uint8_t byte() {
        if (left == 0)
            return 0;
        --left;
        return *next++;
    }

    /// A number below `limit`, which isn't 0.
    std::size_t below(std::size_t limit) {
        std::size_t number = byte();
        if (limit > 256)
            number = number << 8 | byte();
        return number % limit;
    }

    /// The next bytes as characters, up to `count` of them.
    std::string text(std::size_t count) {
        std::size_t const size = count < left ? count : left;
        std::string const result(reinterpret_cast<char const*>(next), size);
        next += size;
        left -= size;
        return result;
    }

    std::string rest() { return text(left); }

private:
    std::uint8_t const* next;
    std::size_t left;
};
