#pragma once

#include <qor/QORAttributeType.h>
#include <qor/QORExport.h>
#include <qor/QORMetaAttributeType.h>
#include <qor/QORMetaWrappers.h>
#include <qor/QORString.h>

class QORMetaClass;
class QORObject;

/// The record of one attribute of a class; reads and writes it as text on any object that has it.
class QOR_API QORMetaAttribute {
public:
    /// Describes an attribute, adds it to the class that declares it, if there is one, and stores it in the
    /// repository under its id. The class takes part in no deletion: the record must outlive its use. An
    /// accessor whose value isn't of the kind `type` counts as none.
    QORMetaAttribute(QORMetaClass* metaClass, QORAttributeType id, char const* displayName,
                     QORMetaAttributeType type, QORString defaultValue, QORGetValueWrapper getter,
                     QORSetValueWrapper setter, QORGetEnumIDByNameWrapper enumReader,
                     QORGetEnumNameByIDWrapper enumWriter);
    QORMetaAttribute(QORMetaAttribute const&) = delete;
    QORMetaAttribute& operator=(QORMetaAttribute const&) = delete;

    /// The number of the attribute.
    QORAttributeType getId() const { return id; }
    /// The text of that number, such as "MODEL_OBJECT__PHYSICAL_NAME".
    QORString const& getName() const { return name; }
    /// The attribute's name, such as "physicalName".
    QORString const& getDisplayName() const { return displayName; }
    /// The class that declares the attribute, or null.
    QORMetaClass* getMetaClass() const { return metaClass; }
    /// The kind of the value.
    QORMetaAttributeType getType() const { return type; }
    /// The value of a new object, as text.
    QORString const& getDefaultValue() const { return defaultValue; }
    /// The texts of the enumeration that the value is of, by number, closed by a null pointer; a retired
    /// number has the empty text. Null for the other kinds of values, and for a record that isn't the
    /// library's own.
    char const* const* getEnumTexts() const;

    /// Returns the value as text: "true" or "false", a number's digits, a date's text, the text of an
    /// enumeration's value. Empty if the attribute has no getter or a negative value no text. The object must
    /// be of the declaring class or below.
    QORString getValue(QORObject* object) const;
    /// The same without a copy where the object holds the value as text; other values, and an empty one, are
    /// written to `room`, whose memory is used again. The result is good until the object or `room` changes.
    QORString const& getValue(QORObject* object, QORString& room) const;

    /// Sets the value from text; does nothing if the attribute has no setter. Only "true" is true. Of a
    /// number the leading part counts, 0 if there is none, and one too large becomes the nearest that fits.
    /// An unknown text of an enumeration sets -1. Throws what the attribute's setter throws.
    void setValue(QORObject* object, QORString& text) const;

private:
    char const* getEnumName(QORObject const* object) const;

    QORAttributeType id;
    QORString name;
    QORString displayName;
    QORMetaClass* metaClass;
    QORMetaAttributeType type;
    QORString defaultValue;
    QORGetValueWrapper getter;
    QORSetValueWrapper setter;
    QORGetEnumIDByNameWrapper enumReader;
    QORGetEnumNameByIDWrapper enumWriter;
};
