#pragma once

#include <qor/QORElementType.h>

class QORMetaLink;
class QORObject;

namespace kit {

/// What the record of a link end doesn't tell, found out once for each end by linking objects made for that.
struct LinkEnd {
    QORMetaLink const* reverse; ///< the end that answers this one
    bool keepsOrder;            ///< whether its objects stand in the order in which they were added
};

/// The facts of an end. Each thread finds them out for itself.
LinkEnd const& linkEnd(QORMetaLink const& link);

/// The class of the objects at the far side of an end, or a base of it.
QORElementType farClassOf(QORMetaLink const& link);

/// Whether a link is told from this end: that of the owner or of the one that refers.
bool isNearEnd(QORMetaLink const& link);

} // namespace kit
