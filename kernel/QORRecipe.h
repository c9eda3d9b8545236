#pragma once

#include "QORClassDescription.h"

#include <qor/QORObject.h>

class QORContainer;
class QORException;
class QORVector;
class QORLinkTree;

/// What all classes of the metamodel do alike, written once over their descriptions. The generated members
/// are one call each into this class; it knows no class by name.
///
/// An `end` is always one of the object's class; a description names the class level whose form is meant, so
/// that a class-qualified call does what its qualifier says.
class QORRecipe {
public:
    // ---- one end ------------------------------------------------------------------------------------------

    /// The far object of a unary end, or null.
    static QORObject* far(QORObject const& object, QORLinkEnd const& end);
    /// The number of elements of a nary end.
    static int count(QORObject const& object, QORLinkEnd const& end);
    /// The element of a nary end at the position, or null.
    static QORObject* at(QORObject const& object, QORLinkEnd const& end, int position);
    /// The first element of a nary end with the name or, with a cursor, the next one behind it; null if none.
    static QORObject* find(QORObject const& object, QORLinkEnd const& end, QORString const& name,
                           int* cursor);
    /// Whether a nary end holds an element that compares equal.
    static bool contains(QORObject const& object, QORLinkEnd const& end, QORObject const* element);
    /// Empties the view and adds each element of a nary end to it.
    static void fill(QORObject const& object, QORLinkEnd const& end, QORContainer& view);

    /// Makes the link with the primitive that the two ends call for; false, and nothing changed, if it
    /// refuses.
    static bool link(QORObject& object, QORLinkEnd const& end, QORObject* far);
    /// Takes the link apart and deletes nothing; false if there is none. Allocates nothing.
    static bool unlink(QORObject& object, QORLinkEnd const& end, QORObject* far);
    // The deleting forms leave alone an object that is being deleted or taken apart, or that one of them is
    // at work on. An object whose override of `isReferenced` or `recursiveDelete` throws lives on without the
    // link; everything else is done, then the first exception is passed on.

    /// Deleting form of a unary end: also deletes the far object if it is then unreferenced; false if unset.
    static bool remove(QORObject& object, QORLinkEnd const& end);
    /// Deleting form of a nary end by position; false if out of range.
    static bool removeAt(QORObject& object, QORLinkEnd const& end, int position);
    /// Deleting form of a nary end by name, from the cursor on if there is one; false if not found.
    static bool removeNamed(QORObject& object, QORLinkEnd const& end, QORString const& name, int* cursor);
    /// Deleting form of a nary end for all elements.
    static void removeAll(QORObject& object, QORLinkEnd const& end);

    // ---- one class level and its bases --------------------------------------------------------------------

    static bool isInstanceOf(QORClassDescription const& level, QORElementType type);
    static bool isReferenced(QORObject const& object, QORClassDescription const& level);
    static QORObject* getParent(QORObject const& object, QORClassDescription const& level);
    static int getParentCount(QORObject const& object, QORClassDescription const& level);
    static QORObject* removeAggregationAssembly(QORObject& object, QORClassDescription const& level);
    static bool recursiveDelete(QORObject& object, QORClassDescription const& level);
    static void isolate(QORObject& object, QORClassDescription const& level, bool deleteUnreferenced);
    static void setName(QORObject& object, QORClassDescription const& level, QORString const& name);
    static void transcode(QORObject& object, QORClassDescription const& level, QOREncodingConverter* from,
                          QOREncodingConverter* to, int& firstCounter, int& errorCounter);
    static void walkChildren(QORObject& object, QORClassDescription const& level,
                             QORTraversalOperation& operation, void* data);
    /// The walk of an object with its `pre_process` and `post_process`.
    static bool walk(QORObject& object, QORTraversalOperation& operation, void* data);
    /// What each class's destructor does first: takes the object apart and leaves no end that points to it.
    /// What overrides throw ends here.
    static void destroy(QORObject& object, QORClassDescription const& level) noexcept;
    /// Deletes an object, unless it is being deleted or taken apart, or a deleting form is at work on it.
    static void dispose(QORObject& object);

    /// Makes sure that assigning the texts of `other` needs no memory: an assignment then happens whole or
    /// not at all.
    static void reserveTexts(QORObject& object, QORObject const& other, QORClassDescription const& level);
    /// Links an object into a nary end with the node that it has in `staged`; false if the end refuses it.
    /// Needs no memory.
    static bool linkStaged(QORObject& object, QORLinkEnd const& end, QORObject& far, QORLinkTree& staged);
    /// The one parent end that a class declares towards an owner class.
    static QORLinkEnd const& ownEnd(QORElementType declaring, QORElementType owner);
    /// Re-keys an object under its owner around a change of what its order rests on. `change` is called once,
    /// and once more to restore if the owner refuses; then the result is false and everything is as before,
    /// as it is where comparing throws.
    static bool rekey(QORObject& object, QORLinkEnd const& parentEnd, void (*change)(void*), void* context);
    /// The "Illegal Argument" message with the classes of the two ends of a link.
    [[gnu::cold]] static QORException refusal(QORLinkEnd const& parentEnd);
    /// Re-encodes one text under the rules of `transcode`.
    static void transcode(QORString& text, QOREncodingConverter* from, QOREncodingConverter* to,
                          int& firstCounter, int& errorCounter);

    /// Stands in QORObject::linked for links that were made beside the recipe.
    static constexpr std::uint64_t lookAtEnds = std::uint64_t{1} << 63;
    /// Stands in QORObject::linked for an object that the deleting forms leave alone.
    static constexpr std::uint64_t spare = std::uint64_t{1} << 62;

private:
    static QORObject*& field(QORObject& object, QORLinkEnd const& end);
    static QORRBTreeNode*& node(QORObject& held, QORLinkEnd const& heldEnd);
    static QORRBTreeNode* nodeOf(QORObject& object, QORLinkEnd const& end, QORObject& element);
    static bool hold(QORObject& object, QORLinkEnd const& end, QORObject& far, QORLinkEnd const& farEnd);
    static QORLinkTree& tree(QORObject& object, QORLinkEnd const& end);
    static QORVector& vector(QORObject& object, QORLinkEnd const& end);
    static QORContainer& container(QORObject& object, QORLinkEnd const& end);
    static bool isSet(QORObject const& object, QORLinkEnd const& end);
    static bool holdsAny(QORObject const& object, QORLinkEnd const& end);
    static void note(QORObject& object, QORLinkEnd const& end);
    static void clearFarEnd(QORObject& element, QORLinkEnd const& farEnd, QORObject& object);
    static void prefetch(void const* object, QORClassDescription const& level);
    static bool isSpared(QORObject const& object);
    static void disposeUnreferenced(QORObject& far, QORObject const& object);
    static void destroyLinked(QORObject& object, QORClassDescription const& level) noexcept;
    static void removeFar(QORObject& object, QORLinkEnd const& end);
    static QORObject* drain(QORObject& object, QORLinkEnd const& end);
    static void endDraining(QORObject& object, QORLinkEnd const& end);
    static bool takeOut(QORObject& object, QORLinkEnd const& end, QORObject* element);
    static void unlinkAll(QORObject& object, QORLinkEnd const& end);
    static unsigned short nextSet(QORObject const& object, QORClassDescription const& level,
                                  unsigned short from);
    class Interruption;
    class Noting;
    class Sparing;
    static QORObject* nextChildToDelete(QORObject& object, QORClassDescription const& level,
                                        Interruption& interruption);
    static void takeApart(QORObject& top, QORClassDescription const& level, Interruption& interruption);
    static bool recursiveDelete(QORObject& object, QORClassDescription const& level,
                                Interruption& interruption);
    static bool holdsItem(QORObject& object, QORLinkEnd const& end, QORObject const* element);
    static bool isLinkedUnnoticed(QORObject& object, QORLinkEnd const& end, QORObject& far,
                                  QORLinkEnd const& farEnd);
    static bool makeLink(QORObject& object, QORLinkEnd const& end, QORObject& far, QORLinkEnd const& farEnd);
    static void transcodeName(QORObject& object, QORClassDescription const& level, QORLinkEnd const* inOrder,
                              QOREncodingConverter* from, QOREncodingConverter* to, int& firstCounter,
                              int& errorCounter);
    static bool isParent(QORObject const& object, QORClassDescription const& level);
    static bool ownerIsSet(QORObject const& object, QORClassDescription const& level);
    static QORClassDescription const* exactDescription(QORObject const& object);
    static void rename(QORObject& object, QORLinkEnd const& parentEnd, QORString&& name);
    static void setName(QORObject& object, QORClassDescription const& level, QORString&& name);
    static QORLinkEnd const* firstOwnerEnd(QORObject const& object, QORClassDescription const& level);
    struct WalkFrame;
    struct TranscodeFrame;
};
