#pragma once

#include <qor/QORExport.h>

class QORString;

/// A point in time to the second, or unset. A value of fixed size, copyable byte for byte, that holds its
/// text.
class QOR_API QORDate {
public:
    /// An unset date.
    QORDate() noexcept;
    QORDate(QORDate const&) = default;
    QORDate& operator=(QORDate const&) = default;

    /// "HH:MM:SS YYYY-MM-DD", or "00:00:00 " with its trailing blank if unset. Lives as long as the date.
    char const* chars() const noexcept { return text; }

    /// Accepts a text of the form that `chars` returns, leading and trailing blanks aside. Any other text, a
    /// day or time that doesn't exist included, leaves the date unset.
    void setDate(QORString& newText) noexcept;

    /// The same for a text that can't be changed.
    void setDate(QORString const& newText) noexcept;

    /// True if the date holds a point in time.
    bool isSet() const noexcept;

private:
    // The longest text and its NUL; what lies after the NUL is always zero.
    char text[20];

    void unset() noexcept;
};
