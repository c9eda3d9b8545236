#pragma once

#include <cstdint>
#include <string_view>

namespace kit {

/// Hashes that are the same in every process and for every word size.
using Hash = std::uint64_t;

/// The hash of a text by FNV-1a; `before` is the hash of the text before it.
inline Hash hashOf(std::string_view text, Hash before = 14695981039346656037u) {
    for (char const character : text) {
        before = (before ^ static_cast<unsigned char>(character)) * 1099511628211u;
    }
    return before;
}

/// The hash of a sequence: of its beginning, whose hash is `hash`, and the next number. The first number must
/// be mixed with a constant, since many pairs of small numbers have equal hashes.
inline Hash mixed(Hash hash, Hash other) {
    Hash mix = (hash ^ (other + 0x9e3779b97f4a7c15u + (hash << 6) + (hash >> 2))) * 0xbf58476d1ce4e5b9u;
    mix ^= mix >> 27;
    mix *= 0x94d049bb133111ebu;
    return mix ^ mix >> 31;
}

inline Hash mixed(Hash hash, std::string_view text) {
    return mixed(hash, mixed(hashOf(text), text.size()));
}

} // namespace kit
