#include "database/Omission.h"

#include "kit/JsonText.h"

#include <ostream>
#include <utility>

namespace database {

Omission omissionOf(Extra const& extra, std::string const& object, char const* system) {
    constexpr std::size_t longest = 40;
    bool const isShort = extra.value.size() <= longest && extra.value.find('\n') == std::string::npos;
    bool const isFact = extra.value == "true";
    std::string const value = isShort && !isFact ? " " + extra.value : "";
    return {extra.name + value + " of " + object, std::string(system) + " doesn't have it",
            isShort ? "" : extra.value};
}

std::string textOf(Omission const& omission) {
    return "left out: " + omission.object + ": " + omission.reason;
}

/// PostgreSQL ends a comment at either of the two characters that end a line, and reads nothing but UTF-8.
void writeComment(std::string_view text, std::ostream& out) {
    bool const isUtf8 = kit::isUtf8(text);
    out << "-- ";
    for (char const character : text) {
        bool const endsLine = character == '\n' || character == '\r';
        bool const isUnknown = !isUtf8 && static_cast<unsigned char>(character) >= 0x80;
        out << (endsLine ? '\n' : isUnknown ? '?' : character) << (endsLine ? "-- " : "");
    }
    out << '\n';
}

void leaveOut(Omission omission, std::ostream& out, Omissions& list) {
    writeComment(textOf(omission), out);
    if (!omission.original.empty()) {
        writeComment(omission.original, out);
    }
    list.push_back(std::move(omission));
}

} // namespace database
