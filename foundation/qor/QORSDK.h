#pragma once

#include <qor/QORExport.h>
#include <qor/QORLog.h>
#include <qor/QORMessageLiteral.h>
#include <qor/QORTextLiteralsCollection.h>

/// The messages of this library. They are complete before any other static of the library is built.
class QOR_API QORSDK : public QORTextLiteralsCollection {
public:
    /// A message without placeholders.
    class QOR_API MessageInstance : public QORMessageLiteral {
    public:
        /// A message whose global code is made of `PREFIX`, the severity's first character and the id.
        MessageInstance(QORString const& literalId, QORString const& literalText, QORString const& severity);
        MessageInstance(MessageInstance const&) = default;
        MessageInstance& operator=(MessageInstance const&) = default;
        ~MessageInstance() override;

        /// A copy of the text.
        QORString toString() const;

        /// "[", the global code, "] " and the text.
        QORString getMessage() const;

        /// Hands the text, the global code and the severity level to the log.
        void log(QORLog& log) const;

        /// Throws the message as a QORException.
        [[noreturn]] void throwException() const;
    };

    /// A message with the placeholders {0} and {1}.
    class QOR_API MessageInstance_String_String : public QORMessageLiteral {
    public:
        /// A message whose global code is made of `PREFIX`, the severity's first character and the id.
        MessageInstance_String_String(QORString const& literalId, QORString const& literalText,
                                      QORString const& severity);
        MessageInstance_String_String(MessageInstance_String_String const&) = default;
        MessageInstance_String_String& operator=(MessageInstance_String_String const&) = default;
        ~MessageInstance_String_String() override;

        /// The text with both placeholders filled in.
        QORString toString(QORString const& first, QORString const& second) const;

        /// "[", the global code, "] " and the text with both placeholders filled in.
        QORString getMessage(QORString const& first, QORString const& second) const;

        /// Hands the filled text, the global code and the severity level to the log.
        void log(QORLog& log, QORString const& first, QORString const& second) const;

        /// Throws the filled message as a QORException.
        [[noreturn]] void throwException(QORString const& first, QORString const& second) const;
    };

    /// Id of the document of these literals, "QORSDK".
    static QORString DOCUMENT_ID;
    /// How every global code of this library begins, "QORSDK".
    static QORString PREFIX;
    /// Fatal: an object can't take a name that its owner already holds. Parameters: class of the owner, class
    /// of the object.
    static MessageInstance_String_String ILLEGAL_ARGUMENT;
    /// Fatal: the type of a metadata format is fixed.
    static MessageInstance ILLEGAL_FORMAT_TYPE;
    /// All literals; a null pointer ends the list.
    static QORMessageLiteral* const textLiterals[];

    /// Sets `DOCUMENT_ID` and ties all literals to it.
    QORSDK();

    /// `DOCUMENT_ID`.
    QORString const& getDocumentId() const override;

    /// `textLiterals`.
    QORMessageLiteral* const* listAllLiterals() const override;

    /// `textLiterals`.
    static QORMessageLiteral* const* getAllLiterals() noexcept;

    /// The literal with that id, or null.
    static QORMessageLiteral* findTextLiteral(QORString const& id) noexcept;
};

/// "0000": the padding of the number in a global code, and so its width.
extern QOR_API QORString BLANK_GLOBAL_CODE;
