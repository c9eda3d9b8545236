#include <qor/QORMetadataFormat.h>

#include <qor/QORSDK.h>

void QORMetadataFormat::setFormatType(QORString const& value) {
    if (value != getFormatType())
        QORSDK::ILLEGAL_FORMAT_TYPE.throwException();
}
