#include "exchange/Attributes.h"

#include "kit/Reflection.h"

#include <qor/QORElementType.h>
#include <qor/QORException.h>

#include <algorithm>
#include <memory>

namespace exchange {
namespace {

/// Setting an element type may look up its text, which an unknown type doesn't have. Attributes of all other
/// enumerations become unset by an unknown value.
bool isKnownValue(QORMetaAttribute const& attribute, QORString const& text) {
    return attribute.getId() != QORAttributeType::PROPERTY_ELEMENT_TYPE_SCOPE__SCOPE ||
           getElementTypeByName(text.chars) >= 0;
}

} // namespace

std::vector<QORMetaAttribute*> inSettingOrder(QORMetaClass const& metaClass) {
    std::vector<QORMetaAttribute*> attributes =
        kit::recordsOf<QORMetaAttribute>(metaClass.getMetaAttributes());
    std::reverse(attributes.begin(), attributes.end());
    return attributes;
}

// Refusals are thrown as a message or as a bare number.
bool setAttribute(QORObject& object, QORMetaAttribute const& attribute, QORString text) {
    if (attribute.getValue(&object) == text) {
        return true;
    }
    if (!isKnownValue(attribute, text)) {
        return false;
    }
    try {
        QORString given = text;
        attribute.setValue(&object, given);
    } catch (QORException const&) {
        return false;
    } catch (int) {
        return false;
    }
    return attribute.getValue(&object) == text;
}

std::vector<QORMetaAttribute const*> attributesToWrite(QORObject& object) {
    std::unique_ptr<QORObject> const fresh(object.getMetaClass()->newInstance());
    std::vector<QORMetaAttribute const*> written;
    for (QORMetaAttribute const* attribute : inSettingOrder(*object.getMetaClass())) {
        QORString const value = attribute->getValue(&object);
        if (attribute->getValue(fresh.get()) != value && setAttribute(*fresh, *attribute, value)) {
            written.push_back(attribute);
        }
    }
    std::reverse(written.begin(), written.end());
    return written;
}

} // namespace exchange
