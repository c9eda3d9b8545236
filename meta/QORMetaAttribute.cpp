#include <qor/QORMetaAttribute.h>

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

QORString textOf(long value) {
    if (value == static_cast<int>(value))
        return QORString(static_cast<int>(value));
    char digits[24];
    *std::to_chars(digits, digits + sizeof digits - 1, value).ptr = '\0';
    return QORString(digits);
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

QORString QORMetaAttribute::getValue(QORObject* object) const {
    if (!getter.isFilled())
        return QORString();
    switch (type) {
    case QORMetaAttributeType::BOOL:
        return QORString(getter.getNumber(object) ? "true" : "false");
    case QORMetaAttributeType::STRING:
        return getter.getString(object);
    case QORMetaAttributeType::INT:
    case QORMetaAttributeType::SHORT:
        return textOf(getter.getNumber(object));
    case QORMetaAttributeType::DATE: {
        QORDate const date = getter.getDate(object);
        return QORString(date.chars());
    }
    case QORMetaAttributeType::ENUM:
        return getEnumName(object);
    }
    return QORString();
}

// An unknown text sets -1, which lies before every table of texts.
QORString QORMetaAttribute::getEnumName(QORObject const* object) const {
    int const value = static_cast<int>(getter.getNumber(object));
    char const* const text = value < 0 ? nullptr : enumWriter.getName(value);
    return text ? QORString(text) : QORString();
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
