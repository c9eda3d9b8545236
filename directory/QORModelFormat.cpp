#include <qor/QORModelFormat.h>

#include "QORFixedFormatType.h"

#include <qor/QORMimeType.h>

namespace {

constexpr char const* formatTypeOfQORModelFormat = "application/x-tova-tzm";

} // namespace

QORModelFormat::QORModelFormat() {
    elementType = QORElementType::MODEL_FORMAT;
    formatType_ = formatTypeOfQORModelFormat;
    name = getMimeTypeName(formatTypeOfQORModelFormat);
}

void QORModelFormat::setFormatType(QORString const& value) {
    qorRequireFormatType(value, formatTypeOfQORModelFormat);
    formatType_ = value;
}
