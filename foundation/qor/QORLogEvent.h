#pragma once

#include <qor/QORExport.h>
#include <qor/QORString.h>

/// One record that a log receives.
class QOR_API QORLogEvent {
public:
    /// A record with copies of all.
    QORLogEvent(QORString const& eventText, QORString const& eventCode, int eventSeverity,
                QORString const& eventDetail);

    /// The text for the reader.
    QORString const& getText() const noexcept { return text; }

    /// The global code of the message.
    QORString const& getCode() const noexcept { return code; }

    /// The severity level of the message.
    int getSeverity() const noexcept { return severity; }

    /// What else is known; may be empty.
    QORString const& getDetail() const noexcept { return detail; }

private:
    QORString text;
    QORString code;
    int severity;
    QORString detail;
};
