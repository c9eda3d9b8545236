#include <qor/QORFormat.h>

#include "kernel/QORRecipe.h"

QORFormat& QORFormat::operator=(QORFormat const& other) {
    if (this == &other)
        return *this;
    QORRecipe::reserveTexts(*this, other, QORMetamodel::description(QORElementType::FORMAT));
    QORRepositoryObject::operator=(other);
    setFormatType(other.formatType_);
    return *this;
}

void QORFormat::setFormatType(QORString const& value) {
    formatType_ = value;
}
