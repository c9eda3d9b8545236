#pragma once

#include <qor/QORString.h>

#include <vector>

class QORMetaAttribute;
class QORMetaClass;
class QORObject;

namespace exchange {

/// The attributes of a class in the order in which they are set: those of the class first, those of the root
/// last, since a class may derive its name from what is its own.
std::vector<QORMetaAttribute*> inSettingOrder(QORMetaClass const& metaClass);

/// Sets an attribute unless it has the value already. False if the object doesn't take the text as it stands.
bool setAttribute(QORObject& object, QORMetaAttribute const& attribute, QORString text);

/// The attributes that must be set to make a new object equal this one, in the order of its class. What a new
/// object doesn't take isn't an object's own: it comes from what the object is linked with.
std::vector<QORMetaAttribute const*> attributesToWrite(QORObject& object);

} // namespace exchange
