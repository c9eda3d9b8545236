#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qorprogram {

/// Whether a text begins like a URL, of whatever scheme.
bool isAddress(std::string_view text);

/// A text without what may be a secret in it: of addresses, what stands between `://` and the last `@`, and
/// all that isn't known to be harmless; behind names such as `password`, what follows the equals sign.
/// Spelled with percent signs or backslashes, they are known as well. A text that is safe already stays as it
/// is.
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
