#pragma once

#include <qor/QORAssociationType.h>
#include <qor/QORExport.h>
#include <qor/QORMetaLinkType.h>
#include <qor/QORMetaWrappers.h>
#include <qor/QORString.h>

class QORMetaClass;
class QORObject;

/// The record of one link end of a class; adds to it and follows it on any object that has it.
class QOR_API QORMetaLink {
public:
    /// The add operation of an end, seen from the root class.
    using Add = bool (QORObject::*)(QORObject*);

    /// Describes a link end, adds it to the class that declares it, if there is one, and stores it in the
    /// repository under its id. The class takes part in no deletion: the record must outlive its use.
    QORMetaLink(QORMetaClass* metaClass, QORAssociationType id, QORString roleName, bool unary,
                QORMetaLinkType type, QORGetLinkWrapper get, QORGetLinkCountWrapper count, Add add);
    QORMetaLink(QORMetaLink const&) = delete;
    QORMetaLink& operator=(QORMetaLink const&) = delete;

    /// The number of the link end.
    QORAssociationType getId() const { return id; }
    /// The text of that number, such as "CLASS__SUPERTYPE_OF__GENERALIZATION".
    QORString const& getName() const { return name; }
    /// The class that declares the end, or null.
    QORMetaClass* getMetaClass() const { return metaClass; }
    /// The role, such as "supertypeOfGeneralization".
    QORString const& getRoleName() const { return roleName; }
    /// Whether the end holds one object at most.
    bool isUnary() const { return unary; }
    /// The kind of the end.
    QORMetaLinkType getType() const { return type; }
    /// The class of the objects at the far side of the link, or a base of it: the class that declares the
    /// end `getFarMetaLink`. Null for a record that isn't the library's own.
    QORMetaClass* getFarMetaClass() const;
    /// The end at the far side of the link, which answers this one: the record that the repository has now.
    /// Null for a record that isn't the library's own.
    QORMetaLink* getFarMetaLink() const;
    /// Whether the end keeps its objects in the order in which they were added. False for a unary end, for
    /// one that sorts its objects by name or address, and for a record that isn't the library's own.
    bool isOrdered() const;

    /// Links `other` to this end of `object`. False if that is refused or the end has no add operation. Both
    /// objects must be of the classes that the link is between.
    bool addLink(QORObject* object, QORObject* other) const;

    /// Returns the number of far objects of a nary end. A unary end always returns 0: call `getLink` there.
    int getLinkCount(QORObject* object) const;

    /// Returns the far object at a position of a nary end, or that of a unary end whatever the position; null
    /// if there is none.
    QORObject* getLink(QORObject* object, int index) const;

private:
    QORAssociationType id;
    QORString name;
    QORMetaClass* metaClass;
    QORString roleName;
    bool unary;
    QORMetaLinkType type;
    QORGetLinkWrapper get;
    QORGetLinkCountWrapper count;
    Add add;
};
