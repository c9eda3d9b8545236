#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qorprogram {

/// Whether a text begins like a URL, of whatever scheme.
bool isAddress(std::string_view text);

/// A text without possible secrets. It hides the part of an address between `://` and the last `@`, and all
/// that isn't known to be harmless, and what follows the equals sign after names such as `password`. It also
/// recognises these spelled with percent signs or backslashes. A safe text stays as it is.
std::string withoutSecrets(std::string_view text);

/// Makes messages fit to leave the program, which was called with these arguments: on one line, without
/// control characters and without secrets. The end of an argument ends a secret in it, which a message that
/// holds the argument doesn't show.
class SafeText {
public:
    SafeText(int argc, char const* const* argv);

    std::string operator()(std::string message) const;

private:
    /// Pieces of arguments with a secret in them, the longest first, and how they are shown.
    std::vector<std::pair<std::string, std::string>> pieces;
};

} // namespace qorprogram
