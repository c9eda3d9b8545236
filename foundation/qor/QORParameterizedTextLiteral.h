#pragma once

#include <qor/QORExport.h>
#include <qor/QORString.h>

class QORDOMElement;

/// A text with an id, whose placeholders {0}, {1} and so on are filled in when the text is needed.
class QOR_API QORParameterizedTextLiteral {
public:
    /// A literal with copies of both; it belongs to no document yet.
    QORParameterizedTextLiteral(QORString const& literalId, QORString const& literalText);
    QORParameterizedTextLiteral(QORParameterizedTextLiteral const&) = default;
    QORParameterizedTextLiteral& operator=(QORParameterizedTextLiteral const&) = default;
    virtual ~QORParameterizedTextLiteral();

    /// Makes `newText`, which comes from the given element of a document, the text; the element may be null
    /// and is there for derived classes. Parameter sets that are open keep the old text.
    virtual void update(QORString const& newText, QORDOMElement const* element);

    /// The literal's id within its document.
    QORString const& getId() const noexcept { return id; }

    /// The text with its placeholders unfilled.
    QORString const& getText() const noexcept { return text; }

    /// Id of the document that the literal was loaded with; empty before that.
    QORString const& getDocumentId() const noexcept { return documentId; }

    /// Opens a parameter set for the text as it stands. Any number can be open at once; each is closed by
    /// `createParametrizedText` or `discardParameters`.
    void* prapareForParameters() const;

    /// Sets the value of placeholder {index}, in place of a former value. A negative index or a null handle
    /// is ignored. If it throws, the set stays open and as it was.
    void setParameterValue(void* handle, int index, QORString const& value) const;

    /// The text with the values filled in; a placeholder without a value stays as it is, and values aren't
    /// searched for placeholders. Closes the set, even if it throws. A null handle returns the text as it
    /// stands.
    QORString createParametrizedText(void* handle) const;

    /// Closes a parameter set without making a text; null is ignored.
    void discardParameters(void* handle) const noexcept;

private:
    friend class QORTextLiteralsCollection;

    QORString id;
    QORString text;
    QORString documentId;
};
