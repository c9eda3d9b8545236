#include "kit/Terminal.h"

#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace kit {

bool wantsColor(int descriptor) {
    char const* const refusal = std::getenv("NO_COLOR");
    char const* const terminal = std::getenv("TERM");
    return !(refusal && *refusal) && terminal && std::strcmp(terminal, "dumb") != 0 &&
           isatty(descriptor) == 1;
}

} // namespace kit
