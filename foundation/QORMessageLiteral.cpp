#include <qor/QORMessageLiteral.h>

namespace {

int levelOf(QORString const& severity) {
    char const* const severities[] = {"INFORMATION", "WARNING", "ERROR", "FATAL"};
    int level = 0;
    for (char const* known : severities) {
        ++level;
        if (std::strcmp(severity.chars, known) == 0) {
            return level;
        }
    }
    return 0;
}

} // namespace

QORMessageLiteral::QORMessageLiteral(QORString const& literalId, QORString const& literalText,
                                     QORString const& severity)
    : QORParameterizedTextLiteral(literalId, literalText), severityLevel(levelOf(severity)) {}

QORMessageLiteral::~QORMessageLiteral() = default;
