#include <qor/QORMetaAttribute.h>

#include "QOREnumTexts.h"

#include <qor/QORMetaClass.h>
#include <qor/QORMetaRepository.h>

#include <charconv>
#include <cstdlib>
#include <cstring>

namespace {

template <class Wrapper>
Wrapper ifSuited(Wrapper const& wrapper, QORMetaAttributeType type) {
    return wrapper.isFilled() && wrapper.getType() == type ? wrapper : Wrapper();
}

// Out of line, so that the reading of other attributes needs no room for digits.
[[gnu::noinline]] void writeNumber(long value, QORString& room) {
    char digits[24];
    char const* const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    room.init(digits, static_cast<int>(end - digits));
}

bool isTrue(QORString const& text) {
    return text.length == 4 && std::memcmp(text.chars, "true", 4) == 0;
}

QORDate dateOf(QORString& text) {
    QORDate date;
    date.setDate(text);
    return date;
}

} // namespace

QORMetaAttribute::QORMetaAttribute(QORMetaClass* ofClass, QORAttributeType ofId, char const* label,
                                   QORMetaAttributeType ofType, QORString defaultText, QORGetValueWrapper get,
                                   QORSetValueWrapper set, QORGetEnumIDByNameWrapper read,
                                   QORGetEnumNameByIDWrapper write)
    : id(ofId), name(getAttributeTypeName(ofId)), displayName(label), metaClass(ofClass), type(ofType),
      defaultValue(defaultText), getter(ifSuited(get, ofType)), setter(ifSuited(set, ofType)),
      enumReader(read), enumWriter(write) {
    if (metaClass)
        metaClass->addAttribute(this);
    QORMetaRepository::getMetaRepository()->addMetaAttribute(this);
}

char const* const* QORMetaAttribute::getEnumTexts() const {
    for (QOREnumTexts const* each = QOREnumTexts::all; type == QORMetaAttributeType::ENUM && each->texts;
         ++each) {
        if (each->names == enumWriter)
            return each->texts;
    }
    return nullptr;
}

QORString QORMetaAttribute::getValue(QORObject* object) const {
    QORString room;
    QORString const& value = getValue(object, room);
    if (&value != &room)
        return value;
    return room;
}

QORString const& QORMetaAttribute::getValue(QORObject* object, QORString& room) const {
    if (!getter.isFilled()) {
        room = emptyString;
        return room;
    }
    switch (type) {
    case QORMetaAttributeType::BOOL:
        room.init(getter.getNumber(object) ? "true" : "false", -1);
        break;
    case QORMetaAttributeType::STRING:
        return getter.getString(object);
    case QORMetaAttributeType::INT:
    case QORMetaAttributeType::SHORT:
        writeNumber(getter.getNumber(object), room);
        break;
    case QORMetaAttributeType::DATE:
        room.init(getter.getDate(object).chars(), -1);
        break;
    case QORMetaAttributeType::ENUM:
        room.init(getEnumName(object), -1);
        break;
    }
    return room;
}

/// Null for -1, which an unknown text sets and which lies before every table of texts.
char const* QORMetaAttribute::getEnumName(QORObject const* object) const {
    int const value = static_cast<int>(getter.getNumber(object));
    return value < 0 ? nullptr : enumWriter.getName(value);
}

void QORMetaAttribute::setValue(QORObject* object, QORString& text) const {
    if (!setter.isFilled())
        return;
    switch (type) {
    case QORMetaAttributeType::BOOL:
        return setter.setNumber(object, isTrue(text));
    case QORMetaAttributeType::STRING:
        return setter.setString(object, text);
    case QORMetaAttributeType::INT:
    case QORMetaAttributeType::SHORT:
        return setter.setNumber(object, std::strtol(text.chars, nullptr, 10));
    case QORMetaAttributeType::DATE:
        return setter.setDate(object, dateOf(text));
    case QORMetaAttributeType::ENUM:
        return setter.setNumber(object, enumReader.getID(text.chars));
    }
}
