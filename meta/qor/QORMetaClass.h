#pragma once

#include <qor/QORAssociationType.h>
#include <qor/QORAttributeType.h>
#include <qor/QORElementType.h>
#include <qor/QORExport.h>
#include <qor/QORString.h>
#include <qor/QORVector.h>

#include <cstdint>
#include <vector>

class QORMetaAttribute;
class QORMetaLink;
class QORObject;
struct QORClassDescription;

/// The record of one class of the metamodel: its place in the class tree, its attributes and its link ends.
class QOR_API QORMetaClass {
public:
    /// Describes a class, adds it to the subclasses of its parent, takes over the parent's attributes and
    /// link ends as they are now, and stores itself in the repository under its id and display name. The
    /// record must outlive its use: nothing takes it out again.
    QORMetaClass(QORMetaClass* parent, QORElementType id, char const* displayName, bool abstract);
    QORMetaClass(QORMetaClass const&) = delete;
    QORMetaClass& operator=(QORMetaClass const&) = delete;

    /// The element type of the class's objects.
    QORElementType getId() const { return id; }
    /// The text of that number, such as "AGGREGATION_RULE".
    QORString const& getName() const { return name; }
    /// The class's name without prefix, such as "AggregationRule".
    QORString const& getDisplayName() const { return displayName; }
    /// Whether the class only serves as a base.
    bool isAbstract() const { return abstract; }
    /// The record of the base class, null for that of the root.
    QORMetaClass* getParent() const { return parent; }
    /// The `QORMetaClass*` of the direct subclasses, in order of their creation.
    QORVector const& getSubclasses() const { return subclasses; }
    /// The `QORMetaAttribute*` of all attributes, inherited ones first.
    QORVector const& getMetaAttributes() const { return metaAttributes; }
    /// The `QORMetaLink*` of all link ends, inherited ones first.
    QORVector const& getMetaLinks() const { return metaLinks; }

    /// The first attribute with an id, or null; inherited ones are found.
    QORMetaAttribute* getMetaAttributeByID(QORAttributeType attributeId) const;
    /// The first attribute whose enumeration text is `attributeName`, or null; inherited ones are found.
    QORMetaAttribute* getMetaAttributeByName(char const* attributeName) const;
    /// The first attribute whose display name is `attributeName`, or null; inherited ones are found.
    QORMetaAttribute* getMetaAttributeByDisplayName(char const* attributeName) const;
    /// The first link end with an id, or null; inherited ones are found.
    QORMetaLink* getMetaLinkByID(QORAssociationType linkId) const;
    /// The first link end whose enumeration text is `linkName`, or null; inherited ones are found.
    QORMetaLink* getMetaLinkByName(char const* linkName) const;
    /// The first link end with a role name, or null; inherited ones are found.
    QORMetaLink* getMetaLinkByRoleName(char const* roleName) const;

    /// Returns a new object of the class, which the caller owns; null for an abstract class and for "Object".
    QORObject* newInstance() const;

    /// What the library's own operations know of the class; null for a record that isn't the library's own.
    QORClassDescription const* getDescription() const { return description; }

private:
    friend class QORClassRecords;
    friend class QORMetaAttribute;
    friend class QORMetaLink;

    /// What a scan compares first, so that it reads only those records that can match.
    struct Sign {
        void* record;
        int id;
        std::uint32_t name;
        std::uint32_t label; ///< of the display name or the role name
    };

    static std::uint32_t signOf(QORString const& text);
    static void addRecord(QORVector& records, std::vector<Sign>& signs, Sign sign);
    void addAttribute(QORMetaAttribute* attribute);
    void addLink(QORMetaLink* link);

    QORElementType id;
    QORString name;
    QORString displayName;
    bool abstract;
    QORMetaClass* parent;
    QORVector subclasses;
    QORVector metaAttributes;
    QORVector metaLinks;
    std::vector<Sign> attributeSigns; ///< one for each place of `metaAttributes`
    std::vector<Sign> linkSigns;      ///< one for each place of `metaLinks`
    QORClassDescription const* description = nullptr;
};
