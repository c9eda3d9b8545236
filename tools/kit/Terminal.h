#pragma once

namespace kit {

/// Whether text for a file descriptor may have colours: it is a terminal that knows them, and the variable
/// NO_COLOR is unset or empty.
bool wantsColor(int descriptor);

} // namespace kit
