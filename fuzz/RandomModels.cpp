#include "RandomModels.h"

#include "kit/Numbering.h"
#include "kit/TreePrinter.h"

#include <qor/QORModel.h>

#include <algorithm>
#include <cstdlib>
#include <random>

namespace {

using ByteVector = std::vector<std::uint8_t>;

unsigned numberFrom(char const* variable, unsigned otherwise) {
    char const* const text = std::getenv(variable);
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : otherwise;
}

ByteVector randomBytes(unsigned seed, std::size_t mostOperations) {
    std::mt19937 random(seed);
    ByteVector bytes((1 + random() % mostOperations) * ModelOperations::bytesOfOne);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random());
    return bytes;
}

/// The faults of the model that the operations lead to, and then its objects, a line each.
std::string failureOf(RandomModels const& models, ByteVector const& input) {
    ModelOperations operations(models.kind);
    if (models.begin)
        models.begin(operations);
    Bytes bytes(input.data(), input.size());
    operations.run(bytes);
    std::string text;
    for (std::string const& fault : models.faultsOf(operations.model()))
        text += fault + "\n";
    if (text.empty())
        return "";
    kit::Numbering const numbering(operations.model());
    for (QORObject* object : numbering.objects())
        text += kit::lineOf(*object) + "\n";
    return text;
}

/// Leaves out ever smaller pieces as long as it still fails.
ByteVector shrunk(RandomModels const& models, ByteVector input) {
    constexpr std::size_t one = ModelOperations::bytesOfOne;
    for (std::size_t length = input.size() / one * one; length > 0; length = length / one / 2 * one) {
        for (std::size_t at = 0; at < input.size();) {
            ByteVector shorter = input;
            auto const begin = shorter.begin() + static_cast<std::ptrdiff_t>(at);
            shorter.erase(begin, begin + static_cast<std::ptrdiff_t>(std::min(length, shorter.size() - at)));
            if (!failureOf(models, shorter).empty())
                input = shorter;
            else
                at += length;
        }
    }
    return input;
}

} // namespace

std::string smallestFailure(RandomModels const& models) {
    unsigned const seed = numberFrom("QOR_RANDOM_SEED", 1);
    unsigned const runs = models.runs * numberFrom("QOR_RANDOM_STEPS", 1);
    for (unsigned i = 0; i < runs; ++i) {
        ByteVector const input = randomBytes(seed + i, models.mostOperations);
        if (!failureOf(models, input).empty())
            return "seed " + std::to_string(seed + i) + ": " + failureOf(models, shrunk(models, input));
    }
    return "";
}
