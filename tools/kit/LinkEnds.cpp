#include "kit/LinkEnds.h"

#include <qor/QORMetaLink.h>

namespace kit {

bool isNearEnd(QORMetaLink const& link) {
    return link.getType() == QORMetaLinkType::CHILD || link.getType() == QORMetaLinkType::REF;
}

} // namespace kit
