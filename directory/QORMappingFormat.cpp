#include <qor/QORMappingFormat.h>

#include "QORFixedFormatType.h"

#include <qor/QORMimeType.h>

namespace {

constexpr char const* formatTypeOfQORMappingFormat = "application/x-tova-tzt";

} // namespace

QORMappingFormat::QORMappingFormat() {
    elementType = QORElementType::MAPPING_FORMAT;
    formatType_ = formatTypeOfQORMappingFormat;
    name = getMimeTypeName(formatTypeOfQORMappingFormat);
}

void QORMappingFormat::setFormatType(QORString const& value) {
    qorRequireFormatType(value, formatTypeOfQORMappingFormat);
    formatType_ = value;
}
