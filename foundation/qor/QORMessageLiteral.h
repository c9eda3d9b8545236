#pragma once

#include <qor/QORExport.h>
#include <qor/QORParameterizedTextLiteral.h>

/// A literal that is a message: it has a severity and a code that is unique over all documents.
class QOR_API QORMessageLiteral : public QORParameterizedTextLiteral {
public:
    /// A message with copies of id and text. The global code is empty until a derived class sets it.
    QORMessageLiteral(QORString const& literalId, QORString const& literalText, QORString const& severity);
    QORMessageLiteral(QORMessageLiteral const&) = default;
    QORMessageLiteral& operator=(QORMessageLiteral const&) = default;
    ~QORMessageLiteral() override;

    /// 4 for "FATAL", 3 for "ERROR", 2 for "WARNING", 1 for "INFORMATION", 0 for any other severity.
    int getSeverityLevel() const noexcept { return severityLevel; }

    /// The full code, by which the message is known to its readers.
    QORString const& getGlobalCode() const noexcept { return globalCode; }

protected:
    int severityLevel;
    QORString globalCode;
};
