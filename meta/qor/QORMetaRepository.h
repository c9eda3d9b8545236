#pragma once

#include <qor/QORAssociationType.h>
#include <qor/QORAttributeType.h>
#include <qor/QORElementType.h>
#include <qor/QORExport.h>
#include <qor/QORMetaClassDisplayNameHashtable.h>

#include <memory>

class QORMetaAttribute;
class QORMetaClass;
class QORMetaLink;

/// All reflection records of the process, by id and the classes also by display name. The records aren't
/// the repository's: it deletes none of them.
class QOR_API QORMetaRepository {
public:
    /// The one repository, made at the first call.
    static QORMetaRepository* getMetaRepository();

    QORMetaRepository(QORMetaRepository const&) = delete;
    QORMetaRepository& operator=(QORMetaRepository const&) = delete;

    /// Stores a class in the place of its id, and by its display name unless another class has that.
    void addMetaClass(QORMetaClass* metaClass);
    /// Stores an attribute in the place of its id.
    void addMetaAttribute(QORMetaAttribute* metaAttribute);
    /// Stores a link end in the place of its id.
    void addMetaLink(QORMetaLink* metaLink);

    /// The class with an id, null for a retired one. The id must be an element type: nothing tests it.
    QORMetaClass* getMetaClassByID(QORElementType id) const { return metaClasses[id]; }
    /// The attribute with an id, null for a retired one. The id must be an attribute type: nothing tests it.
    QORMetaAttribute* getMetaAttributeByID(QORAttributeType id) const { return metaAttributes[id]; }
    /// The link end with an id, null for a retired one. The id must be an association type: nothing tests it.
    QORMetaLink* getMetaLinkByID(QORAssociationType id) const { return metaLinks[id]; }
    /// The class with a display name, or null.
    QORMetaClass* getMetaClassByDisplayName(char const* displayName) const;

private:
    QORMetaRepository();
    ~QORMetaRepository();

    // The records stand outside, so that a larger vocabulary moves nothing that callers' code reaches into.
    QORMetaClass** metaClasses;
    QORMetaAttribute** metaAttributes;
    QORMetaLink** metaLinks;
    std::unique_ptr<QORMetaClassDisplayNameHashtable> byDisplayName;
};
