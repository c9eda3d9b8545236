#include <qor/QORTextLiteralsCollection.h>

void QORTextLiteralsCollection::init() {
    QORString const& document = getDocumentId();
    for (QORMessageLiteral* const* literal = listAllLiterals(); *literal != nullptr; ++literal) {
        (*literal)->documentId = document;
    }
}
