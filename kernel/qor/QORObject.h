#pragma once

#include <qor/QORElementType.h>
#include <qor/QOREncodingConverter.h>
#include <qor/QORExport.h>
#include <qor/QORPool.h>
#include <qor/QORString.h>

#include <cstddef>
#include <cstdint>
#include <new>

class QORArrayInterface;
class QORContainer;
class QORMetaClass;
class QORObject;
class QORRBTreeNode;
class QORTraversalOperation;

/// A unary link end whose far end is a tree.
struct QORHeldEnd {
    QORObject* far = nullptr;
    /// Where the far object's tree holds this one, so that leaving it needs no search. Only good while `far`
    /// is set and neither object was linked beside the recipe.
    QORRBTreeNode* node = nullptr;
};

/// @page links Links and owners
///
/// A **link** joins two objects and has an end in each. A **unary** end holds one object, a **nary** end any
/// number, in the order of its container. Both ends change together, or neither does.
///
/// - **Linking**: `addX(far)` returns false, and changes nothing, if `far` is null, if the far end is unary
///   and taken, or if either container refuses: a tree by name, for instance, refuses a second element of the
///   same name. A link of an object with itself is the exception: see `_addnu`.
/// - **Owning**: at a `child` end an object owns what is linked there; the far end is its `parent` end.
///   An object may have several owners, of which `getParent` returns the first. `ref` and `back-ref` ends
///   own nothing.
/// - **Unlinking**: `removeX(far)` deletes nothing. All other forms (by position, by name, of a unary end,
///   the plural) delete the far object if `isReferenced` returns false afterwards.
/// - **Deleting** an object deletes what it owns, but for objects with another owner. It clears every
///   link that leads to the object, and deletes far objects that nothing refers to any more.
/// - **Renaming** moves the object within the ends of its owner. If the owner refuses the name, the old one
///   stays and `setName` throws.

/// @page callbacks What a callback may do to the objects under way
///
/// The library calls its callers while it works: the operation of a walk, overrides of the virtual
/// operations, destructors. **Under way** are then the object that the call began with, the one that
/// the callback gets, and the owners between them. What holds for all callbacks:
///
/// - A callback may read everything and set attributes. It may add, unlink and delete objects that
///   aren't under way, except where this page says otherwise.
/// - What a callback throws arrives at the caller, and no link is left with one end alone. Two take it
///   otherwise: where a name is made unique, what `setName` throws is the refusal of that name; a
///   destructor passes nothing on.
///
/// **In a walk** (`depthTraversal`, QORTraversalOperation):
///
/// - `post_process` may delete its object, and so may a `pre_process` that returns false. Either may
///   unlink its object or give it another owner. The owners above must stay alive.
/// - A walk reads each end as it goes: it visits what is added ahead of it and not what is taken out
///   ahead of it.
/// - Renaming an object moves it in its owner's end. If the walk is at that object, the walk moves
///   along. In a tree that is ordered by name, it skips the siblings before a later place, and it
///   visits those behind an earlier place again. In a vector, a renamed object moves to the end and is
///   visited again there, so that an operation that renames whatever it visits doesn't end. In a tree
///   that is ordered by address, nothing moves. To rename many objects, collect them in a walk and
///   rename them after it.
/// - Another walk over the same objects may start, with an operation of its own.
///
/// **While texts are re-encoded** (`transcode`): the children of an end are read before the first of
/// them is re-encoded. Overrides may rename, unlink and add objects: what is unlinked from an end that
/// was read is re-encoded nevertheless, what is added to it is not. They must delete no object that is
/// still to come.
///
/// **While objects are deleted**: a destructor may unlink and delete other objects. It must not delete
/// one that is under way itself; the deleting forms of the library leave such objects alone.
///
/// **While links are made and looked up** (`getName`, `isReferenced` and others that only answer): an
/// override must change no link and no name.
///
/// **Rings of owners**: an object may own itself, directly or through others; no link operation looks
/// for that. Deleting such objects ends. Re-encoding them doesn't, nor does a walk over them unless its
/// operation cuts it off. In a build of the library with the CMake option QOR_CHECKED, both end the
/// process with an assertion when they enter an object that is under way; so does an operation that
/// walks an owner of its object with itself.

/// The root of all model classes: element type, id, name and a caller's scratch state, and the primitives
/// through which every two-way link is made and broken.
///
/// A link is two ends, one in each object: a pointer (unary end) or a link container (nary end). An object
/// owns what hangs on its `child` ends and dies with its owner: see @ref links. A graph belongs to one thread
/// at a time. What overrides, operations of walks and destructors may do while the library works: see @ref
/// callbacks.
///
/// Deleting, walking and re-encoding need a small stack however deep a graph of the library's own classes is.
/// An object of a caller's class is asked through its virtual operations, as it may override them: where such
/// objects own each other, each of them takes stack, some hundred bytes.
///
/// Whatever an override throws, both ends of each link stay in step. Adding, finding and naming then change
/// nothing. An operation that deletes is completed first: an object whose `isReferenced` or `recursiveDelete`
/// throws loses its link and stays alive. Then the first exception is passed on; a destructor swallows it.
///
/// While an object is being deleted or taken apart, no other operation of the library deletes it, whatever
/// callers' destructors do to its links. This doesn't protect an object that a caller has deleted by `delete`
/// until the bodies of its callers' destructors have ended.
class QOR_API QORObject {
public:
    /// An unnamed object with id 0.
    QORObject();
    /// Copies the name only; the copy stands alone and has id 0.
    QORObject(QORObject const& other);
    /// Copies the name and clears the scratch state. Id, element type and links remain.
    QORObject& operator=(QORObject const& other);

    /// Assigns from an object that is taken for this class without a test.
    virtual QORObject& setFrom(QORObject const& other);
    /// Takes the object out of its owner, deletes what it owns and undoes all its links.
    virtual ~QORObject();
    /// Unlinks the object from its first owner; returns that owner, or null.
    virtual QORObject* removeAggregationAssembly();
    /// Deletes what the object owns and undoes its links. Returns false and does nothing while an owner is
    /// set; otherwise true: the caller may delete the object.
    virtual bool recursiveDelete();
    /// Undoes all links. With `deleteUnreferenced`, deletes each far object that is then left without any
    /// link. Returns this object.
    virtual QORObject* isolate(bool deleteUnreferenced);
    /// Whether the object's class is the one of that number or derives from it.
    virtual bool isInstanceOf(QORElementType type) const;
    /// The first owner, or null.
    virtual QORObject* getParent() const;
    /// The number of owners.
    virtual int getParentCount() const;
    /// `equals`.
    virtual bool operator==(QORObject const& other) const;
    /// The opposite of `equals`.
    virtual bool operator!=(QORObject const& other) const;
    /// Whether both are of one class and hold the same attributes. Links and dates play no part.
    virtual bool equals(QORObject const& other) const;
    /// Whether any link end is set.
    virtual bool isReferenced() const;
    /// Re-encodes all texts of the object and of what it owns. A text that can't be converted stays as it is
    /// and counts in `errorCounter`; a name that collides after conversion gets "/" and a number.
    virtual void transcode(QOREncodingConverter* from, QOREncodingConverter* to, int& firstCounter,
                           int& errorCounter);
    /// Walks the object and all that it owns, owners before children: `pre_process`, the children,
    /// `post_process`. Returns false if `pre_process` does, which cuts off the subtree. What the operation
    /// throws arrives at the caller.
    virtual bool depthTraversal(QORTraversalOperation& operation, void* data);
    /// Names the object. Throws the "Illegal Argument" message, with nothing changed, when the owner already
    /// holds an object of that name.
    virtual void setName(QORString const& name);
    virtual QORString const& getName() const;
    /// A text that presents the object; for most classes the name.
    virtual QORString getDisplayName() const;
    /// Calls `depthTraversal` on each owned object.
    virtual void _depthTraversal(QORTraversalOperation& operation, void* data);
    /// The reflection record of the object's class.
    virtual QORMetaClass* getMetaClass() const;

    /// Objects made by `new` lie in a QORPool.
    static void* operator new(std::size_t size) { return QORPool::allocate(size); }
    static void operator delete(void* object, std::size_t size) noexcept { QORPool::release(object, size); }
    static void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
        try {
            return QORPool::allocate(size);
        } catch (std::bad_alloc const&) {
            return nullptr;
        }
    }
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void*, void*) noexcept {}

    /// Whether the names are equal.
    bool finalEquals(QORObject const& other) const;
    /// Calls `setName` with `base`, the separator and 1, 2, 3 ... until it doesn't throw, whatever it
    /// throws. `base` itself isn't tried. Throws only if there is no memory for a candidate.
    void setUniqueName(QORString const& base, char separator = '_');
    /// Renames `other` to its name, the separator and 1, 2, 3 ..., calling `add` with it each time until that
    /// returns true; the suffixes accumulate. Passes on every exception.
    void addLinkUniqueName(bool (QORObject::*add)(QORObject*), QORObject* other, char separator = '_');
    /// Sets the caller's number for the object.
    void setID(long number) { id = number; }
    long getID() const { return id; }
    /// The number of the object's class.
    QORElementType getElementType() const { return elementType; }
    static QORMetaClass* getStaticMetaClass();

protected:
    /// Links two nary ends: `own` of this object, `far` of `other`. Returns false, with nothing changed, for
    /// a self-link and when either end refuses. `setName` reorders the ends of the library's classes alone:
    /// in a caller's end that is ordered by name, an object must keep its name while it is linked.
    bool _addnn(QORContainer* own, QORContainer* far, QORObject* other);
    /// Links the nary end `own` of this object with the unary end `far` of `other`. Returns false when `far`
    /// is taken or `own` refuses. A self-link returns false and yet leaves this object in its own end.
    bool _addnu(QORContainer* own, QORObject** far, QORObject* other);
    /// Links two unary ends. Returns false, with nothing changed, for a self-link and when either is taken.
    bool _adduu(QORObject** own, QORObject** far, QORObject* other);
    /// Reads an element by name; `cursor` is the position at which the search resumes and takes that of the
    /// match.
    QORObject* _getn(QORArrayInterface const* end, QORString const& key, int* cursor) const;
    /// Takes an element out by name, as `_getn` finds it; the far end is the caller's matter.
    QORObject* _removen(QORArrayInterface* end, QORString const& key, int* cursor);
    /// Takes this very object out of an end; returns whether it was in it.
    bool _removen(QORContainer* end, QORObject* item);

    QORElementType elementType = QORElementType::OBJECT; ///< each concrete class's constructors write it

private:
    friend class QORRecipe;
    /// How far the taking apart of the object has come; 0 while none is under way.
    unsigned short takingApart = 0;
    /// Which ends are set, a bit each, so that questions needn't look at every end. The highest bit stands
    /// for "look": a caller's own class has used the primitives; the one below for "spare": the deleting
    /// forms leave the object alone.
    std::uint64_t linked = 0;

protected:
    QORString name; // all up to here lies in one line of the cache

private:
    long id = 0;

public:
    bool flag1 = false;             ///< a scratch mark for callers
    bool flag2 = false;             ///< a scratch mark for callers
    bool flag3 = false;             ///< a scratch mark for callers
    void* generalPointer = nullptr; ///< a scratch pointer for callers

private:
    QORObject* takenApartFor = nullptr; ///< the owner whose taking apart waits for this object's
};
