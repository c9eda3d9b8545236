#include <qor/QORConfigurationFormat.h>

#include "QORFixedFormatType.h"

#include <qor/QORMimeType.h>

namespace {

constexpr char const* formatTypeOfQORConfigurationFormat = "application/x-tova-tzc";

} // namespace

QORConfigurationFormat::QORConfigurationFormat() {
    elementType = QORElementType::CONFIGURATION_FORMAT;
    formatType_ = formatTypeOfQORConfigurationFormat;
    name = getMimeTypeName(formatTypeOfQORConfigurationFormat);
}

void QORConfigurationFormat::setFormatType(QORString const& value) {
    qorRequireFormatType(value, formatTypeOfQORConfigurationFormat);
    formatType_ = value;
}
