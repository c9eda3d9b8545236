#include <qor/QORSDK.h>

#include <qor/QORException.h>

// The priorities make the order certain: these statics come one after the other, and before every static
// initialiser of this library that names no priority.
#define QOR_STATIC_ORDER(position) __attribute__((init_priority(1000 + (position))))

QORString QORSDK::DOCUMENT_ID QOR_STATIC_ORDER(1)("QORSDK");
QORString QORSDK::PREFIX QOR_STATIC_ORDER(2)("QORSDK");
QORString BLANK_GLOBAL_CODE QOR_STATIC_ORDER(3)("0000");

QORSDK::MessageInstance_String_String QORSDK::ILLEGAL_ARGUMENT
    QOR_STATIC_ORDER(4)("1", "Illegal Argument: The {0} already contains a {1} with this name\n", "FATAL");

QORSDK::MessageInstance QORSDK::ILLEGAL_FORMAT_TYPE
    QOR_STATIC_ORDER(5)("2", "The formatType property of a MetadataFormat object cannot be changed", "FATAL");

QORMessageLiteral* const QORSDK::textLiterals[] = {&ILLEGAL_ARGUMENT, &ILLEGAL_FORMAT_TYPE, nullptr};

namespace {

struct Loader {
    Loader() { QORSDK(); }
};

Loader const loader QOR_STATIC_ORDER(6);

QORString codeOf(QORString const& id, QORString const& severity) {
    int const padding = BLANK_GLOBAL_CODE.length - id.length;
    QORString code(QORSDK::PREFIX);
    code += "_";
    code += severity.mid(0, 1);
    code += BLANK_GLOBAL_CODE.mid(0, padding > 0 ? static_cast<unsigned int>(padding) : 0);
    code += id;
    return code;
}

QORString messageOf(QORString const& code, QORString const& text) {
    QORString message;
    message.add("[", code.chars, "] ", text.chars, nullptr);
    return message;
}

} // namespace

QORSDK::MessageInstance::MessageInstance(QORString const& literalId, QORString const& literalText,
                                         QORString const& severity)
    : QORMessageLiteral(literalId, literalText, severity) {
    globalCode = codeOf(literalId, severity);
}

QORSDK::MessageInstance::~MessageInstance() = default;

QORString QORSDK::MessageInstance::toString() const {
    return getText();
}

QORString QORSDK::MessageInstance::getMessage() const {
    return messageOf(globalCode, toString());
}

void QORSDK::MessageInstance::log(QORLog& log) const {
    log.log(QORLogEvent(toString(), globalCode, severityLevel, emptyString));
}

void QORSDK::MessageInstance::throwException() const {
    throw QORException(getMessage());
}

QORSDK::MessageInstance_String_String::MessageInstance_String_String(QORString const& literalId,
                                                                     QORString const& literalText,
                                                                     QORString const& severity)
    : QORMessageLiteral(literalId, literalText, severity) {
    globalCode = codeOf(literalId, severity);
}

QORSDK::MessageInstance_String_String::~MessageInstance_String_String() = default;

QORString QORSDK::MessageInstance_String_String::toString(QORString const& first,
                                                          QORString const& second) const {
    void* const handle = prapareForParameters();
    try {
        setParameterValue(handle, 0, first);
        setParameterValue(handle, 1, second);
    } catch (...) {
        discardParameters(handle);
        throw;
    }
    return createParametrizedText(handle);
}

QORString QORSDK::MessageInstance_String_String::getMessage(QORString const& first,
                                                            QORString const& second) const {
    return messageOf(globalCode, toString(first, second));
}

void QORSDK::MessageInstance_String_String::log(QORLog& log, QORString const& first,
                                                QORString const& second) const {
    log.log(QORLogEvent(toString(first, second), globalCode, severityLevel, emptyString));
}

void QORSDK::MessageInstance_String_String::throwException(QORString const& first,
                                                           QORString const& second) const {
    throw QORException(getMessage(first, second));
}

QORSDK::QORSDK() {
    DOCUMENT_ID = "QORSDK";
    init();
}

QORString const& QORSDK::getDocumentId() const {
    return DOCUMENT_ID;
}

QORMessageLiteral* const* QORSDK::listAllLiterals() const {
    return textLiterals;
}

QORMessageLiteral* const* QORSDK::getAllLiterals() noexcept {
    return textLiterals;
}

QORMessageLiteral* QORSDK::findTextLiteral(QORString const& id) noexcept {
    for (QORMessageLiteral* literal : textLiterals) {
        if (literal != nullptr && literal->getId() == id) {
            return literal;
        }
    }
    return nullptr;
}
