#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

using ByteVector = std::vector<std::uint8_t>;

/// The shortest input that can be had by leaving out pieces of a failing one and still fails. Pieces are of
/// so many bytes.
inline ByteVector shrunk(ByteVector input, std::size_t piece,
                         std::function<bool(ByteVector const&)> const& fails) {
    for (std::size_t count = input.size() / piece; count > 0; count /= 2) {
        for (std::size_t at = 0; at < input.size();) {
            ByteVector shorter = input;
            auto const begin = shorter.begin() + static_cast<std::ptrdiff_t>(at);
            std::size_t const length = std::min(count * piece, shorter.size() - at);
            shorter.erase(begin, begin + static_cast<std::ptrdiff_t>(length));
            if (fails(shorter)) {
                input = shorter;
            } else {
                at += count * piece;
            }
        }
    }
    return input;
}
