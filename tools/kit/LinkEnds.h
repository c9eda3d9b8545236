#pragma once

class QORMetaLink;

namespace kit {

/// Whether a link is recorded at this end: that of the owner or of the referring object.
bool isNearEnd(QORMetaLink const& link);

} // namespace kit
