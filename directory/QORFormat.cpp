#include <qor/QORFormat.h>

QORFormat& QORFormat::operator=(QORFormat const& other) {
    if (this == &other)
        return *this;
    QORRepositoryObject::operator=(other);
    setFormatType(other.formatType_);
    return *this;
}

void QORFormat::setFormatType(QORString const& value) {
    formatType_ = value;
}
