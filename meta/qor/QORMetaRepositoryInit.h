#pragma once

#include <qor/QORExport.h>

/// Builds the repository and the reflection records of all classes. The library makes one at load, so that
/// the records are complete before any caller can ask.
class QOR_API QORMetaRepositoryInit {
public:
    /// Builds what isn't built yet.
    QORMetaRepositoryInit();
};
