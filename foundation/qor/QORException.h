#pragma once

#include <qor/QORExport.h>
#include <qor/QORString.h>

#include <exception>
#include <memory>

/// The exception of this library family: a message and nothing else. Copies share the message, so that
/// copying never fails.
class QOR_API QORException : public std::exception {
public:
    /// An exception with a copy of the message.
    explicit QORException(QORString const& message);
    QORException(QORException const& other) noexcept;
    QORException& operator=(QORException const& other) noexcept;
    ~QORException() override;

    /// The characters of the message; they live as long as this exception or a copy of it.
    char const* what() const noexcept override;

    /// The message.
    QORString const& getMessage() const noexcept;

private:
    std::shared_ptr<QORString const> message;
};
