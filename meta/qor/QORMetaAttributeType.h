#pragma once

namespace QORMetaAttributeTypes {
/// The kind of an attribute's value.
enum Type : int {
    BOOL = 0,
    STRING = 1,
    INT = 2, ///< an int or a long
    SHORT = 3,
    DATE = 4,
    ENUM = 5, ///< one of the metamodel's enumerations
};
} // namespace QORMetaAttributeTypes
using QORMetaAttributeType = QORMetaAttributeTypes::Type;
