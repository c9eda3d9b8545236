#include "sqlite/VirtualTable.h"

#include <strings.h>

namespace sqlite {
namespace {

/// Cuts a statement into words as SQL does: names in any quotation marks are one word, without these;
/// comments are none.
class Words {
public:
    explicit Words(std::string_view statement) : rest(statement) {}

    /// The next word, empty at the end.
    std::string next() {
        skipBlanks();
        if (rest.empty()) {
            return "";
        }
        char const first = rest.front();
        if (first == '"' || first == '`' || first == '\'' || first == '[') {
            return quotedWord(first == '[' ? ']' : first);
        }
        return plainWord();
    }

private:
    static bool isBlank(char character) {
        return character == ' ' || (character >= '\t' && character <= '\r');
    }

    static bool isPartOfName(char character) {
        return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
               (character >= 'a' && character <= 'z') || character == '_' || character == '$' ||
               static_cast<unsigned char>(character) >= 0x80;
    }

    void skipBlanks() {
        while (!rest.empty()) {
            if (isBlank(rest.front())) {
                rest.remove_prefix(1);
            } else if (rest.substr(0, 2) == "--") {
                skipBehind("\n");
            } else if (rest.substr(0, 2) == "/*") {
                rest.remove_prefix(2);
                skipBehind("*/");
            } else {
                return;
            }
        }
    }

    void skipBehind(std::string_view end) {
        auto const found = rest.find(end);
        rest.remove_prefix(found == std::string_view::npos ? rest.size() : found + end.size());
    }

    /// Inside of quotation marks these stand doubled; square brackets know no such thing.
    std::string quotedWord(char closing) {
        std::string word;
        for (rest.remove_prefix(1); !rest.empty(); rest.remove_prefix(1)) {
            if (rest.front() == closing) {
                rest.remove_prefix(1);
                if (closing == ']' || rest.empty() || rest.front() != closing) {
                    break;
                }
            }
            word += rest.front();
        }
        return word;
    }

    /// What is no part of a name is a word of its own.
    std::string plainWord() {
        std::size_t length = 0;
        while (length < rest.size() && isPartOfName(rest[length])) {
            ++length;
        }
        std::string const word(rest.substr(0, length ? length : 1));
        rest.remove_prefix(word.size());
        return word;
    }

    std::string_view rest;
};

bool nextIs(Words& words, char const* keyword) {
    return strcasecmp(words.next().c_str(), keyword) == 0;
}

} // namespace

std::string moduleOf(std::string_view createStatement) {
    Words words(createStatement);
    if (!nextIs(words, "CREATE") || !nextIs(words, "VIRTUAL") || !nextIs(words, "TABLE")) {
        return "";
    }
    words.next(); // the table's name
    return nextIs(words, "USING") ? words.next() : "";
}

} // namespace sqlite
