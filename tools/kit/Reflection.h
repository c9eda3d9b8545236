#pragma once

#include <qor/QORMetaAttribute.h>
#include <qor/QORMetaClass.h>
#include <qor/QORMetaLink.h>
#include <qor/QORObject.h>

#include <string_view>
#include <vector>

namespace kit {

/// The items of one of the reflection records' vectors in their true type.
template <class Record>
std::vector<Record*> recordsOf(QORVector const& vector) {
    std::vector<Record*> records;
    records.reserve(static_cast<std::size_t>(vector.size));
    for (int i = 0; i < vector.size; ++i) {
        records.push_back(static_cast<Record*>(vector[i]));
    }
    return records;
}

/// The link ends of an object's class, inherited ones first.
inline std::vector<QORMetaLink*> linksOf(QORObject const& object) {
    return recordsOf<QORMetaLink>(object.getMetaClass()->getMetaLinks());
}

/// The attributes of an object's class, inherited ones first.
inline std::vector<QORMetaAttribute*> attributesOf(QORObject const& object) {
    return recordsOf<QORMetaAttribute>(object.getMetaClass()->getMetaAttributes());
}

/// The characters of a text, for as long as it lives.
inline std::string_view view(QORString const& text) {
    return {text.chars, static_cast<std::size_t>(text.length)};
}

} // namespace kit
