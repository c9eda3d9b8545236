#pragma once

#include <qor/QORElementType.h>

#include <vector>

class QORMetaLink;
class QORObject;

namespace kit {

/// The objects of a link end in the order of the end itself, by ascending positions; those of a unary end are
/// one or none. Positions that hold nothing are omitted.
std::vector<QORObject*> elementsOf(QORObject& object, QORMetaLink const& link);

/// Facts that the record of a link end doesn't have, determined once for each end by linking objects made for
/// this purpose.
struct LinkEnd {
    QORMetaLink const* reverse; ///< the other end of the same link
    bool keepsOrder;            ///< whether it keeps its objects in the order in which they were added
};

/// The facts of an end. Each thread determines them for itself.
LinkEnd const& linkEnd(QORMetaLink const& link);

/// The class of the objects at the far side of an end, or a base of it.
QORElementType farClassOf(QORMetaLink const& link);

/// Whether a link is recorded at this end: that of the owner or of the referring object.
bool isNearEnd(QORMetaLink const& link);

} // namespace kit
