#pragma once

#include <qor/QORAssociationType.h>
#include <qor/QORAttributeType.h>
#include <qor/QORElementType.h>

/// What single classes do otherwise than all others, and why. The tables tell the rest.
namespace table {

/// What becomes of the elements of an end when their owner is copied or assigned.
enum class ElementCopies {
    NONE,    ///< links stay behind
    ADDED,   ///< the target gets copies beside what it has
    REPLACED ///< the target gets copies in place of what it has
};

inline ElementCopies elementCopies(int linkId) {
    switch (linkId) {
    case QORAssociationType::ELEMENT__NOTE: // notes are part of an element's text
        return ElementCopies::ADDED;
    case QORAssociationType::DERIVED_TYPE__TYPE_VALUE: // a type is nothing without its values, nor is a rule
    case QORAssociationType::BUSINESS_RULE__TYPE_VALUE:
        return ElementCopies::REPLACED;
    default:
        return ElementCopies::NONE;
    }
}

/// Whether a copy or an assignment carries an attribute where the table doesn't speak against it.
inline bool isCarried(int attributeId) {
    // Both are the identity of one object: the caller's number and the identity in the tool of origin.
    return attributeId != QORAttributeType::OBJECT__ID && attributeId != QORAttributeType::ELEMENT__NATIVE_ID;
}

/// Whether equality looks at an attribute where the table doesn't speak against it.
inline bool isCompared(int attributeId) {
    return attributeId != QORAttributeType::OBJECT__ID; // the caller's number
}

/// Whether equality looks at the elements of an end.
inline bool isComparedEnd(int linkId) {
    return linkId == QORAssociationType::DERIVED_TYPE__TYPE_VALUE; // a type is nothing without its values
}

/// Whether a class's objects have the name of something else, and refuse another one.
inline bool hasNameOfItsType(int classId) {
    return classId == QORElementType::PROPERTY_VALUE;
}

/// Whether an attribute of an enumeration can be set by an unknown text.
inline bool takesUnknownValue(int attributeId) {
    // A scope takes its name from the table of element types, in which no text stands for that value.
    return attributeId != QORAttributeType::PROPERTY_ELEMENT_TYPE_SCOPE__SCOPE;
}

/// Whether new objects of a class bear a name: that of the one format type which the class stands for.
inline bool startsNamed(int classId) {
    return classId == QORElementType::MODEL_FORMAT || classId == QORElementType::MAPPING_FORMAT ||
           classId == QORElementType::DATA_MOVEMENT_FORMAT || classId == QORElementType::CONFIGURATION_FORMAT;
}

/// Whether the factory makes no object of a class although the class isn't abstract: the root.
inline bool isNotMade(int classId) {
    return classId == QORElementType::OBJECT;
}

} // namespace table
