#pragma once

#include <qor/QORExport.h>
#include <qor/QORMessageLiteral.h>

/// The literals of one document. A collection holds nothing itself, so it needn't live longer than `init`.
class QOR_API QORTextLiteralsCollection {
public:
    QORTextLiteralsCollection() = default;
    QORTextLiteralsCollection(QORTextLiteralsCollection const&) = default;
    QORTextLiteralsCollection& operator=(QORTextLiteralsCollection const&) = default;

    /// Id of the document.
    virtual QORString const& getDocumentId() const = 0;

    /// All literals of the document; a null pointer ends the list.
    virtual QORMessageLiteral* const* listAllLiterals() const = 0;

    /// Ties every literal of the list to the document. If it throws, some may be tied already.
    void init();

protected:
    ~QORTextLiteralsCollection() = default;
};
