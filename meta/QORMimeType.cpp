#include <qor/QORMimeType.h>

#include <cstring>

char const* const QorMimeTypes[8] = {
    "application/vnd.ms-excel", "application/vnd.ms-powerpoint",
    "application/vnd.msword",   "application/x-tova-tzm",
    "application/x-tova-tze",   "application/x-tova-tzt",
    "application/x-tova-tzc",   nullptr,
};

char const* const QorMimeTypeNames[8] = {
    "Microsoft Excel", "Microsoft Powerpoint",    "Microsoft Word",         "Model Metadata",
    "ETL Metadata",    "Transformation Metadata", "Configuration Metadata", nullptr,
};

namespace {

char const* translate(char const* const* from, char const* const* to, char const* text) {
    if (!text)
        return nullptr;
    for (; *from; ++from, ++to) {
        if (std::strcmp(*from, text) == 0)
            return *to;
    }
    return text;
}

} // namespace

char const* getMimeTypeName(char const* mimeType) {
    return translate(QorMimeTypes, QorMimeTypeNames, mimeType);
}

char const* getMimeTypeByName(char const* name) {
    return translate(QorMimeTypeNames, QorMimeTypes, name);
}
