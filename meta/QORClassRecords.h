#pragma once

#include "kernel/QORClassDescription.h"

#include <qor/QORMetaAttribute.h>
#include <qor/QORMetaClass.h>
#include <qor/QORMetaLink.h>

#include <cstddef>
#include <deque>

/// What a class's table says of one attribute's record.
struct QORAttributeEntry {
    QORAttributeType id;
    char const* displayName;
    QORMetaAttributeType type;
    char const* defaultValue;
    QORGetValueWrapper get;
    QORSetValueWrapper set;
    QORGetEnumIDByNameWrapper idByName;
    QORGetEnumNameByIDWrapper nameById;
};

/// What a class's table says of one link end's record.
struct QORLinkEntry {
    QORAssociationType id;
    char const* roleName;
    QORMetaLink::Add add;
};

/// Constant entries of one class.
template <class Entry>
struct QOREntries {
    Entry const* first;
    std::size_t count;

    Entry const* begin() const { return first; }
    Entry const* end() const { return first + count; }
};

/// All reflection records of one class, built at the first use of its `getStaticMetaClass`.
class QORClassRecords {
public:
    QORClassRecords(QORClassDescription const& description, QORMetaClass* parent, bool abstract,
                    QOREntries<QORAttributeEntry> attributes, QOREntries<QORLinkEntry> links);

    QORMetaClass* metaClass() { return &record; }

private:
    QORMetaClass record;
    std::deque<QORMetaAttribute> attributeRecords;
    std::deque<QORMetaLink> linkRecords;
};
