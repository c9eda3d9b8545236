#include <qor/QORException.h>

QORException::QORException(QORString const& text) : message(std::make_shared<QORString const>(text)) {}

QORException::QORException(QORException const& other) noexcept = default;

QORException& QORException::operator=(QORException const& other) noexcept = default;

QORException::~QORException() = default;

char const* QORException::what() const noexcept {
    return message->chars;
}

QORString const& QORException::getMessage() const noexcept {
    return *message;
}
