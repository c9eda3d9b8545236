#include "kit/Format.h"

namespace kit {

std::function<Writing(Exporting const&)> everyGraph(void (*write)(QORObject& root, std::ostream& out)) {
    return [write](Exporting const& exporting) -> Writing {
        return [write, &root = exporting.root](std::ostream& out) {
            write(root, out);
            return std::vector<std::string>();
        };
    };
}

} // namespace kit
