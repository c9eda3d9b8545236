#include <qor/QORDataMovementFormat.h>

#include "QORFixedFormatType.h"

#include <qor/QORMimeType.h>

namespace {

constexpr char const* formatTypeOfQORDataMovementFormat = "application/x-tova-tze";

} // namespace

QORDataMovementFormat::QORDataMovementFormat() {
    elementType = QORElementType::DATA_MOVEMENT_FORMAT;
    formatType_ = formatTypeOfQORDataMovementFormat;
    name = getMimeTypeName(formatTypeOfQORDataMovementFormat);
}

void QORDataMovementFormat::setFormatType(QORString const& value) {
    qorRequireFormatType(value, formatTypeOfQORDataMovementFormat);
    formatType_ = value;
}
