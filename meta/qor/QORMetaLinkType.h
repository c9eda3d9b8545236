#pragma once

namespace QORMetaLinkTypes {
/// The kind of a link end.
enum Type : int {
    REF = 0,      ///< holds the reference
    BACK_REF = 1, ///< is the reverse end of a reference
    PARENT = 2,   ///< points to the owner
    CHILD = 3,    ///< holds owned objects
};
} // namespace QORMetaLinkTypes
using QORMetaLinkType = QORMetaLinkTypes::Type;
