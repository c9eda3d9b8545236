#include "QORRecipe.h"

#include "QORWalkPath.h"

#include <qor/QORException.h>
#include <qor/QORLinkTree.h>
#include <qor/QORSDK.h>
#include <qor/QORTraversalOperation.h>
#include <qor/QORVector.h>

#include "foundation/QORPrefetch.h"

#include <algorithm>
#include <deque>
#include <exception>
#include <new>
#include <vector>

// ---- one end --------------------------------------------------------------------------------------------

namespace {

/// A field of an object, by its offset in bytes.
template <class Field>
Field& fieldAt(QORObject& object, std::uint16_t offset) {
    return *std::launder(reinterpret_cast<Field*>(reinterpret_cast<std::uintptr_t>(&object) + offset));
}

} // namespace

QORObject*& QORRecipe::field(QORObject& object, QORLinkEnd const& end) {
    return fieldAt<QORObject*>(object, end.offset);
}

/// The node that a unary end remembers; the end that answers it is a tree.
QORRBTreeNode*& QORRecipe::node(QORObject& held, QORLinkEnd const& heldEnd) {
    return fieldAt<QORHeldEnd>(held, heldEnd.offset).node;
}

QORLinkTree& QORRecipe::tree(QORObject& object, QORLinkEnd const& end) {
    return fieldAt<QORLinkTree>(object, end.offset);
}

QORVector& QORRecipe::vector(QORObject& object, QORLinkEnd const& end) {
    return fieldAt<QORVector>(object, end.offset);
}

QORContainer& QORRecipe::container(QORObject& object, QORLinkEnd const& end) {
    if (end.shape == QOREndShape::TREE)
        return tree(object, end);
    return vector(object, end);
}

QORObject* QORRecipe::far(QORObject const& object, QORLinkEnd const& end) {
    return field(const_cast<QORObject&>(object), end);
}

int QORRecipe::count(QORObject const& object, QORLinkEnd const& end) {
    auto& self = const_cast<QORObject&>(object);
    return end.shape == QOREndShape::TREE ? tree(self, end).size : vector(self, end).size;
}

bool QORRecipe::holdsAny(QORObject const& object, QORLinkEnd const& end) {
    return end.shape == QOREndShape::UNARY ? far(object, end) != nullptr : count(object, end) != 0;
}

bool QORRecipe::isSet(QORObject const& object, QORLinkEnd const& end) {
    if (object.linked & lookAtEnds)
        return holdsAny(object, end);
    return object.linked >> end.bit & 1;
}

/// Brings the object's bit of an end up to date. An empty end keeps no memory, since nobody destroys it.
void QORRecipe::note(QORObject& object, QORLinkEnd const& end) {
    std::uint64_t const bit = std::uint64_t{1} << end.bit;
    if (holdsAny(object, end)) {
        object.linked |= bit;
        if (end.shape == QOREndShape::VECTOR)
            vector(object, end).buildIndex();
        return;
    }
    object.linked &= ~bit;
    if (end.shape == QOREndShape::VECTOR)
        vector(object, end).releaseMemory();
}

QORObject* QORRecipe::at(QORObject const& object, QORLinkEnd const& end, int position) {
    auto& self = const_cast<QORObject&>(object);
    if (end.shape == QOREndShape::TREE)
        return static_cast<QORObject*>(tree(self, end)[position]);
    return static_cast<QORObject*>(vector(self, end)[position]);
}

QORObject* QORRecipe::find(QORObject const& object, QORLinkEnd const& end, QORString const& name,
                           int* cursor) {
    auto& self = const_cast<QORObject&>(object);
    if (!cursor)
        return static_cast<QORObject*>(container(self, end).findFirst(&name, nullptr));
    if (end.shape == QOREndShape::TREE)
        return object._getn(&tree(self, end), name, cursor);
    return object._getn(&vector(self, end), name, cursor);
}

bool QORRecipe::contains(QORObject const& object, QORLinkEnd const& end, QORObject const* element) {
    return element && container(const_cast<QORObject&>(object), end).contains(element, nullptr);
}

void QORRecipe::fill(QORObject const& object, QORLinkEnd const& end, QORContainer& view) {
    view.empty();
    auto& self = const_cast<QORObject&>(object);
    if (end.shape == QOREndShape::TREE) {
        QORRBTree::Iterator walk(tree(self, end), true);
        for (QORContainerItem* item = walk.get(); item; item = walk.next(1))
            view.add(item, false, nullptr);
    } else {
        QORVector::Iterator walk(vector(self, end), true);
        for (QORContainerItem* item = walk.get(); item; item = walk.next(1))
            view.add(item, false, nullptr);
    }
}

/// Whether an end holds this very element, wherever it stands.
bool QORRecipe::holdsItem(QORObject& object, QORLinkEnd const& end, QORObject const* element) {
    QORRBTree::Iterator walk(tree(object, end), true);
    QORContainerItem const* item = walk.get();
    while (item && item != element)
        item = walk.next(1);
    return item;
}

/// Whether two objects are linked already without the ends being sure to notice: an element whose key has
/// changed isn't always found on the way down a tree. An end of another kind, or a unary one, notices.
bool QORRecipe::isLinkedUnnoticed(QORObject& object, QORLinkEnd const& end, QORObject& far,
                                  QORLinkEnd const& farEnd) {
    if (&object == &far)
        return (end.keyed && holdsItem(object, end, &far)) ||
               (farEnd.keyed && holdsItem(far, farEnd, &object));
    if (!end.keyed || !farEnd.keyed)
        return false;
    return count(object, end) < count(far, farEnd) ? holdsItem(object, end, &far)
                                                   : holdsItem(far, farEnd, &object);
}

/// The node of an element in a tree, looked for only if the element doesn't know it.
QORRBTreeNode* QORRecipe::nodeOf(QORObject& object, QORLinkEnd const& end, QORObject& element) {
    QORLinkEnd const& farEnd = QORMetamodel::ends[end.far];
    if (farEnd.shape == QOREndShape::UNARY && field(element, farEnd) == &object &&
        !((object.linked | element.linked) & lookAtEnds)) {
        if (QORRBTreeNode* const known = node(element, farEnd))
            return known;
    }
    return tree(object, end).nodeOfItem(&element);
}

/// Links a tree end with a unary one, as `_addnu` does, and notes both ends.
bool QORRecipe::hold(QORObject& object, QORLinkEnd const& end, QORObject& far, QORLinkEnd const& farEnd) {
    if (field(far, farEnd))
        return false;
    QORRBTreeNode* const made =
        tree(object, end).addLinked(&far, end.type == QORMetaLinkType::CHILD, !end.keyed);
    if (!made)
        return false;
    object.linked |= std::uint64_t{1} << end.bit;
    if (&far == &object) // a self-link leaves the object in its own end
        return false;
    far.linked |= std::uint64_t{1} << farEnd.bit;
    field(far, farEnd) = &object;
    node(far, farEnd) = made;
    return true;
}

bool QORRecipe::makeLink(QORObject& object, QORLinkEnd const& end, QORObject& far, QORLinkEnd const& farEnd) {
    bool const unary = end.shape == QOREndShape::UNARY;
    bool const farUnary = farEnd.shape == QOREndShape::UNARY;
    if (unary && farUnary)
        return object._adduu(&field(object, end), &field(far, farEnd), &far);
    if (unary)
        return far._addnu(&vector(far, farEnd), &field(object, end), &object);
    if (farUnary)
        return object._addnu(&vector(object, end), &field(far, farEnd), &far);
    return object._addnn(&container(object, end), &container(far, farEnd), &far);
}

/// Surrounds a protected primitive of QORObject. Those set `lookAtEnds`, as they don't know which end they
/// change; here it is known, so the end's bit is brought up to date and the rest of the state put back.
class QORRecipe::Noting {
public:
    Noting(QORObject& changed, QORLinkEnd const& itsEnd)
        : object(changed), end(itsEnd), before(changed.linked) {}
    Noting(Noting const&) = delete;
    Noting& operator=(Noting const&) = delete;
    ~Noting() {
        object.linked &= before | ~lookAtEnds;
        note(object, end);
    }

private:
    QORObject& object;
    QORLinkEnd const& end;
    std::uint64_t before;
};

bool QORRecipe::link(QORObject& object, QORLinkEnd const& end, QORObject* far) {
    if (!far)
        return false;
    QORLinkEnd const& farEnd = QORMetamodel::ends[end.far];
    if (isLinkedUnnoticed(object, end, *far, farEnd))
        return false;
    if (end.shape == QOREndShape::UNARY && farEnd.shape == QOREndShape::TREE)
        return hold(*far, farEnd, object, end);
    if (end.shape == QOREndShape::TREE && farEnd.shape == QOREndShape::UNARY)
        return hold(object, end, *far, farEnd);
    // Both ends are noted also where no link is made, as a self-link may leave the object in its own vector,
    // and where memory ends.
    Noting const farNoting(*far, farEnd);
    Noting const noting(object, end);
    return makeLink(object, end, *far, farEnd);
}

bool QORRecipe::linkStaged(QORObject& object, QORLinkEnd const& end, QORObject& far, QORLinkTree& staged) {
    QORLinkEnd const& farEnd = QORMetamodel::ends[end.far];
    QORRBTreeNode* const adopted = tree(object, end).adoptItem(staged, &far);
    if (!adopted)
        return false;
    field(far, farEnd) = &object;
    node(far, farEnd) = adopted;
    note(object, end);
    note(far, farEnd);
    return true;
}

/// Takes this very element out of a nary end.
bool QORRecipe::takeOut(QORObject& object, QORLinkEnd const& end, QORObject* element) {
    bool found;
    if (end.shape == QOREndShape::TREE)
        found = tree(object, end).removeNode(nodeOf(object, end, *element)) != nullptr;
    else
        found = vector(object, end).removeItem(element);
    note(object, end);
    return found;
}

/// Clears the end of `element` that leads to `object`.
void QORRecipe::clearFarEnd(QORObject& element, QORLinkEnd const& farEnd, QORObject& object) {
    if (farEnd.shape != QOREndShape::UNARY) {
        takeOut(element, farEnd, &object);
    } else if (field(element, farEnd) == &object) {
        field(element, farEnd) = nullptr;
        note(element, farEnd);
    }
}

bool QORRecipe::unlink(QORObject& object, QORLinkEnd const& end, QORObject* far) {
    if (!far)
        return false;
    if (end.shape == QOREndShape::UNARY) {
        QORObject*& own = field(object, end);
        if (own != far)
            return false;
        clearFarEnd(*far, QORMetamodel::ends[end.far], object);
        own = nullptr;
        note(object, end);
        return true;
    }
    if (!takeOut(object, end, far))
        return false;
    clearFarEnd(*far, QORMetamodel::ends[end.far], object);
    return true;
}

/// While it lives, the deleting forms leave an object alone.
class QORRecipe::Sparing {
public:
    explicit Sparing(QORObject& spared) : object(spared), before(spared.linked & spare) {
        object.linked |= spare;
    }
    Sparing(Sparing const&) = delete;
    Sparing& operator=(Sparing const&) = delete;
    ~Sparing() { object.linked = (object.linked & ~spare) | before; }

private:
    QORObject& object;
    std::uint64_t before;
};

/// Holds back the first exception of callers' overrides until what they interrupted is done.
class QORRecipe::Interruption {
public:
    template <class Step>
    void hold(Step step) {
        try {
            step();
        } catch (...) {
            keep();
        }
    }

    void passOn() const {
        if (first)
            std::rethrow_exception(first);
    }

private:
    [[gnu::cold]] void keep() {
        if (!first)
            first = std::current_exception();
    }

    std::exception_ptr first;
};

bool QORRecipe::isSpared(QORObject const& object) {
    return object.takingApart || object.linked & spare;
}

// Out of line, as those that ask whether to delete are many and called often.
[[gnu::noinline]] void QORRecipe::dispose(QORObject& object) {
    if (isSpared(object))
        return;
    object.linked |= spare;
    delete &object;
}

/// Deletes an object that has lost its link with another one, unless something still refers to it.
void QORRecipe::disposeUnreferenced(QORObject& far, QORObject const& object) {
    if (&far != &object && !far.isReferenced())
        dispose(far);
}

bool QORRecipe::remove(QORObject& object, QORLinkEnd const& end) {
    if (!field(object, end))
        return false;
    Sparing const sparing(object);
    removeFar(object, end);
    return true;
}

bool QORRecipe::removeAt(QORObject& object, QORLinkEnd const& end, int position) {
    QORContainerItem* const item = end.shape == QOREndShape::TREE
                                       ? tree(object, end).removeElement(position)
                                       : vector(object, end).removeElement(position);
    if (!item)
        return false;
    note(object, end);
    auto* const element = static_cast<QORObject*>(item);
    clearFarEnd(*element, QORMetamodel::ends[end.far], object);
    disposeUnreferenced(*element, object);
    return true;
}

bool QORRecipe::removeNamed(QORObject& object, QORLinkEnd const& end, QORString const& name, int* cursor) {
    QORObject* element;
    if (cursor) {
        Noting const noting(object, end);
        element = end.shape == QOREndShape::TREE ? object._removen(&tree(object, end), name, cursor)
                                                 : object._removen(&vector(object, end), name, cursor);
    } else {
        element = find(object, end, name, nullptr);
        if (element)
            takeOut(object, end, element);
    }
    if (!element)
        return false;
    clearFarEnd(*element, QORMetamodel::ends[end.far], object);
    disposeUnreferenced(*element, object);
    return true;
}

/// How many objects ahead a walk prefetches: further than it gets while the memory arrives.
constexpr int prefetchDistance = 2;

/// Prefetches an object that is about to be read and most likely is of that class: where its name, the state
/// of its links and the first of its texts lie. Objects are large, so a walk mostly waits for memory.
void QORRecipe::prefetch(void const* object, QORClassDescription const& level) {
    if (!object)
        return;
    constexpr int texts = 5; // the last ones, those of the root classes, are mostly empty
    auto const start = static_cast<char const*>(object);
    qorPrefetch(start);
    for (int i = 0, count = std::min<int>(texts, level.strings.count); i < count; ++i)
        qorPrefetch(start + level.strings.first[i]);
}

/// The next element of an end that is being emptied. The end counts it on until `endDraining`, so that the
/// object stays referenced while what hangs on it goes.
QORObject* QORRecipe::drain(QORObject& object, QORLinkEnd const& end) {
    return static_cast<QORObject*>(end.shape == QOREndShape::TREE ? tree(object, end).drainFirst()
                                                                  : vector(object, end).drainFirst());
}

void QORRecipe::endDraining(QORObject& object, QORLinkEnd const& end) {
    if (end.shape == QOREndShape::TREE)
        tree(object, end).endDraining();
    else
        vector(object, end).endDraining();
    note(object, end);
}

void QORRecipe::removeAll(QORObject& object, QORLinkEnd const& end) {
    if (!isSet(object, end))
        return;
    Sparing const sparing(object);
    removeFar(object, end);
}

/// The deleting form of any end that is set, for all that it holds; the object is spared already.
void QORRecipe::removeFar(QORObject& object, QORLinkEnd const& end) {
    QORLinkEnd const& farEnd = QORMetamodel::ends[end.far];
    if (end.shape == QOREndShape::UNARY) {
        QORObject* const far = field(object, end);
        /// Comes last, also where an override throws. The end may have been set anew meanwhile.
        struct Clearing {
            QORObject& object;
            QORLinkEnd const& end;
            QORObject const* far;

            ~Clearing() {
                if (field(object, end) != far)
                    return;
                field(object, end) = nullptr;
                note(object, end);
            }
        };
        Clearing const clearing{object, end, far};
        clearFarEnd(*far, farEnd, object);
        if (farEnd.shape == QOREndShape::TREE)
            node(object, end) = nullptr; // it has gone, while the end is still set
        disposeUnreferenced(*far, object);
        return;
    }
    Interruption interruption;
    while (QORObject* const element = drain(object, end)) {
        clearFarEnd(*element, farEnd, object);
        interruption.hold([&] { disposeUnreferenced(*element, object); });
    }
    endDraining(object, end);
    interruption.passOn();
}

void QORRecipe::unlinkAll(QORObject& object, QORLinkEnd const& end) {
    if (!isSet(object, end))
        return;
    if (end.shape == QOREndShape::UNARY) {
        unlink(object, end, far(object, end));
        return;
    }
    while (QORObject* const element = at(object, end, 0))
        unlink(object, end, element);
}

// ---- questions ------------------------------------------------------------------------------------------

bool QORRecipe::isReferenced(QORObject const& object, QORClassDescription const& level) {
    if (!(object.linked & lookAtEnds))
        return object.linked & level.linkBits;
    return std::any_of(level.ends.begin(), level.ends.end(),
                       [&](std::uint16_t end) { return isSet(object, QORMetamodel::ends[end]); });
}

QORObject* QORRecipe::getParent(QORObject const& object, QORClassDescription const& level) {
    QORLinkEnd const* const end = firstOwnerEnd(object, level);
    return end ? far(object, *end) : nullptr;
}

int QORRecipe::getParentCount(QORObject const& object, QORClassDescription const& level) {
    return static_cast<int>(std::count_if(level.parents.begin(), level.parents.end(), [&](std::uint16_t end) {
        return isSet(object, QORMetamodel::ends[end]);
    }));
}

bool QORRecipe::ownerIsSet(QORObject const& object, QORClassDescription const& level) {
    return getParent(object, level) != nullptr;
}

bool QORRecipe::isParent(QORObject const& object, QORClassDescription const& level) {
    if (!(object.linked & lookAtEnds))
        return object.linked & level.childBits;
    return std::any_of(level.children.begin(), level.children.end(),
                       [&](std::uint16_t end) { return isSet(object, QORMetamodel::ends[end]); });
}

/// The description of the object's class if the object is exactly of that class and not of one that a caller
/// has derived: then its virtual operations are those of the recipe.
QORClassDescription const* QORRecipe::exactDescription(QORObject const& object) {
    int const type = object.elementType;
    QORClassDescription const* const description =
        type >= 0 && type < QORMetamodel::descriptionCount ? QORMetamodel::descriptions[type] : nullptr;
    return description && *description->type == typeid(object) ? description : nullptr;
}

// ---- names ----------------------------------------------------------------------------------------------

QORLinkEnd const& QORRecipe::ownEnd(QORElementType declaring, QORElementType owner) {
    QORIndexList const ends = QORMetamodel::description(declaring).own;
    auto const* const found = std::find_if(ends.begin(), ends.end(), [owner](std::uint16_t index) {
        QORLinkEnd const& end = QORMetamodel::ends[index];
        return end.type == QORMetaLinkType::PARENT && QORMetamodel::ends[end.far].owner == owner;
    });
    return QORMetamodel::ends[*found];
}

QORException QORRecipe::refusal(QORLinkEnd const& parentEnd) {
    QORLinkEnd const& ownerEnd = QORMetamodel::ends[parentEnd.far];
    return QORException(
        QORSDK::ILLEGAL_ARGUMENT.getMessage(QORMetamodel::descriptions[ownerEnd.owner]->displayName,
                                            QORMetamodel::descriptions[parentEnd.owner]->displayName));
}

bool QORRecipe::rekey(QORObject& object, QORLinkEnd const& parentEnd, void (*change)(void*), void* context) {
    QORObject& owner = *field(object, parentEnd);
    QORLinkEnd const& ownerEnd = QORMetamodel::ends[parentEnd.far];
    switch (ownerEnd.shape) {
    case QOREndShape::TREE:
        return tree(owner, ownerEnd).rekeyNode(nodeOf(owner, ownerEnd, object), change, context);
    case QOREndShape::VECTOR:
        change(context);
        vector(owner, ownerEnd).moveToEnd(&object); // as if taken out and added again
        return true;
    default:
        change(context);
        return true;
    }
}

/// Renames an object under an owner to the other name. Allocates nothing unless the owner refuses it.
void QORRecipe::rename(QORObject& object, QORLinkEnd const& parentEnd, QORString&& name) {
    struct Names {
        QORString& held;
        QORString& other;
    } names{object.name, name};
    auto const exchange = [](void* context) {
        auto& both = *static_cast<Names*>(context);
        both.held.swap(both.other);
    };
    if (!rekey(object, parentEnd, exchange, &names))
        throw refusal(parentEnd);
}

/// The end that holds the object's first owner; null if it has none.
QORLinkEnd const* QORRecipe::firstOwnerEnd(QORObject const& object, QORClassDescription const& level) {
    if (!(object.linked & (level.parentBits | lookAtEnds)))
        return nullptr;
    for (std::uint16_t const end : level.parents)
        if (isSet(object, QORMetamodel::ends[end]))
            return &QORMetamodel::ends[end];
    return nullptr;
}

void QORRecipe::setName(QORObject& object, QORClassDescription const& level, QORString&& name) {
    if (QORLinkEnd const* const end = firstOwnerEnd(object, level))
        rename(object, *end, std::move(name));
    else
        object.name = std::move(name);
}

void QORRecipe::setName(QORObject& object, QORClassDescription const& level, QORString const& name) {
    if (QORLinkEnd const* const end = firstOwnerEnd(object, level))
        rename(object, *end, QORString(name));
    else
        object.name = name;
}

void QORRecipe::reserveTexts(QORObject& object, QORObject const& other, QORClassDescription const& level) {
    object.name.reserve(other.name.length);
    for (std::uint16_t const offset : level.strings)
        fieldAt<QORString>(object, offset)
            .reserve(fieldAt<QORString>(const_cast<QORObject&>(other), offset).length);
}

// ---- taking apart ---------------------------------------------------------------------------------------

QORObject* QORRecipe::removeAggregationAssembly(QORObject& object, QORClassDescription const& level) {
    QORLinkEnd const* const end = firstOwnerEnd(object, level);
    QORObject* const parent = end ? far(object, *end) : nullptr;
    if (parent)
        unlink(object, *end, parent);
    return parent;
}

/// The first end that is set from a place in `takeApart` on, both places from 1 on; 0 if there is none.
unsigned short QORRecipe::nextSet(QORObject const& object, QORClassDescription const& level,
                                  unsigned short from) {
    unsigned const none = level.takeApart.count + 1U;
    unsigned nearest = none;
    if (object.linked & lookAtEnds) {
        nearest = from;
        while (nearest < none && !isSet(object, QORMetamodel::ends[level.takeApart.first[nearest - 1]]))
            ++nearest;
    } else {
        for (std::uint64_t bits = object.linked & level.linkBits; bits; bits &= bits - 1) {
            unsigned const place = level.takeApartPlaces[__builtin_ctzll(bits)];
            if (place >= from && place < nearest)
                nearest = place;
        }
    }
    return nearest < none ? static_cast<unsigned short>(nearest) : 0;
}

/// Goes on with taking an object apart until a child turns up that is to be deleted; null when all is done.
/// The place reached stands in the object itself: deleting allocates nothing.
QORObject* QORRecipe::nextChildToDelete(QORObject& object, QORClassDescription const& level,
                                        Interruption& interruption) {
    while ((object.takingApart = nextSet(object, level, object.takingApart))) {
        QORLinkEnd const& end = QORMetamodel::ends[level.takeApart.first[object.takingApart - 1]];
        if (end.type == QORMetaLinkType::CHILD) {
            if (end.shape == QOREndShape::UNARY) {
                ++object.takingApart;
                QORObject* const child = far(object, end);
                if (unlink(object, end, child))
                    return child;
                continue;
            }
            if (QORObject* const child = drain(object, end)) {
                clearFarEnd(*child, QORMetamodel::ends[end.far], object);
                if (end.shape == QOREndShape::TREE)
                    if (QORClassDescription const* const likely = exactDescription(*child))
                        prefetch(tree(object, end).firstItem(), *likely);
                return child;
            }
            endDraining(object, end);
        } else {
            interruption.hold([&] { removeFar(object, end); });
        }
        ++object.takingApart;
    }
    return nullptr;
}

/// Takes an object apart with all that it owns, in the order of the recursion that this stands for: the
/// objects under way form a chain through `takenApartFor`.
void QORRecipe::takeApart(QORObject& top, QORClassDescription const& level, Interruption& interruption) {
    QORObject* current = &top;
    QORClassDescription const* description = &level;
    top.takingApart = 1; // one more than the place in `takeApart`, which starts at 0
    top.takenApartFor = nullptr;
    for (;;) {
        if (QORObject* const child = nextChildToDelete(*current, *description, interruption)) {
            if (isSpared(*child))
                continue; // an object that owns itself over some way goes with the one that began
            QORClassDescription const* const exact = exactDescription(*child);
            if (!exact) {
                interruption.hold([&] {
                    if (child->recursiveDelete())
                        dispose(*child);
                });
            } else if (!ownerIsSet(*child, *exact)) {
                child->takingApart = 1;
                child->takenApartFor = current;
                current = child;
                description = exact;
            }
            continue;
        }
        QORObject* const waiting = current->takenApartFor;
        current->takingApart = 0;
        current->takenApartFor = nullptr;
        if (current == &top)
            return;
        delete current;
        current = waiting;
        description = current == &top ? &level : QORMetamodel::descriptions[current->elementType];
    }
}

bool QORRecipe::recursiveDelete(QORObject& object, QORClassDescription const& level,
                                Interruption& interruption) {
    if (ownerIsSet(object, level) || object.takingApart)
        return false;
    takeApart(object, level, interruption);
    return true;
}

bool QORRecipe::recursiveDelete(QORObject& object, QORClassDescription const& level) {
    Interruption interruption;
    bool const done = recursiveDelete(object, level, interruption);
    interruption.passOn();
    return done;
}

void QORRecipe::isolate(QORObject& object, QORClassDescription const& level, bool deleteUnreferenced) {
    Sparing const sparing(object);
    Interruption interruption;
    for (std::uint16_t const index : level.ends) {
        QORLinkEnd const& end = QORMetamodel::ends[index];
        if (!deleteUnreferenced)
            unlinkAll(object, end);
        else if (isSet(object, end))
            interruption.hold([&] { removeFar(object, end); });
    }
    interruption.passOn();
}

void QORRecipe::destroy(QORObject& object, QORClassDescription const& level) noexcept {
    if (object.linked & (level.linkBits | lookAtEnds))
        destroyLinked(object, level);
}

// Out of line, as each class's destructor asks and few find a link: what is below needs a frame with a stack
// protector.
[[gnu::noinline]] void QORRecipe::destroyLinked(QORObject& object,
                                                QORClassDescription const& level) noexcept {
    prefetch(&object, level); // the texts, whose destructors come next
    object.linked |= spare;
    Interruption interruption; // which a destructor can't pass on
    removeAggregationAssembly(object, level);
    recursiveDelete(object, level, interruption);
    if (!(object.linked & (level.linkBits | lookAtEnds)))
        return;
    object.takingApart = 1; // still, so that nobody takes it apart meanwhile
    for (std::uint16_t const end : level.own)
        if (QORMetamodel::ends[end].leftToDestructor)
            interruption.hold([&] { removeAll(object, QORMetamodel::ends[end]); });
    object.takingApart = 0;
    for (std::uint16_t const end : level.own)
        unlinkAll(object, QORMetamodel::ends[end]);
    if (object.linked & lookAtEnds)
        for (std::uint16_t const end : level.own)
            note(object, QORMetamodel::ends[end]);
}

// ---- re-encoding ----------------------------------------------------------------------------------------

void QORRecipe::transcode(QORString& text, QOREncodingConverter* from, QOREncodingConverter* to,
                          int& firstCounter, int& errorCounter) {
    if (text.length == 0 || isUnchangedByEncoding(text, from, to, firstCounter))
        return;
    int const errors = errorCounter;
    QORString converted = convertEncoding(text, from, to, firstCounter, errorCounter);
    if (errorCounter == errors)
        text = std::move(converted);
}

/// Re-encodes the name of an object that is exactly of its class. Naming it finds it a place under its first
/// owner, also with a name that stays; that is left out where the object has no owner or is held in
/// `inOrder`, an end in order, as nothing would come of it.
void QORRecipe::transcodeName(QORObject& object, QORClassDescription const& level, QORLinkEnd const* inOrder,
                              QOREncodingConverter* from, QOREncodingConverter* to, int& firstCounter,
                              int& errorCounter) {
    if (object.name.length == 0)
        return;
    QORLinkEnd const* const end = firstOwnerEnd(object, level);
    int counted = firstCounter;
    if ((!end || &QORMetamodel::ends[end->far] == inOrder) &&
        isUnchangedByEncoding(object.name, from, to, counted)) {
        firstCounter = counted;
        return;
    }
    int const errors = errorCounter;
    QORString converted = convertEncoding(object.name, from, to, firstCounter, errorCounter);
    if (errorCounter != errors)
        return;
    try {
        setName(object, level, std::move(converted)); // which leaves a refused name in `converted`
    } catch (...) {
        object.setUniqueName(converted, '/');
    }
}

/// An object whose children are being re-encoded. They stand in a snapshot, since a child's new name moves it
/// in its owner's container.
struct QORRecipe::TranscodeFrame {
    QORObject* object;
    QORIndexList ends;
    std::uint16_t nextEnd = 0;
    std::vector<QORObject*> snapshot{};
    std::size_t nextChild = 0;
    QORLinkEnd const* inOrder = nullptr; ///< the end of the snapshot if each element stands where it belongs

    /// A child that comes soon.
    QORObject const* ahead() const {
        std::size_t const at = nextChild + prefetchDistance - 1;
        return at < snapshot.size() ? snapshot[at] : nullptr;
    }

    QORObject* next() {
        while (nextChild == snapshot.size()) {
            if (nextEnd == ends.count)
                return nullptr;
            QORLinkEnd const& end = QORMetamodel::ends[ends.first[nextEnd++]];
            snapshot.clear();
            nextChild = 0;
            inOrder = nullptr;
            if (!isSet(*object, end))
                continue;
            if (end.shape == QOREndShape::UNARY) {
                if (QORObject* const child = far(*object, end))
                    snapshot.push_back(child);
                continue;
            }
            for (int i = 0, count = QORRecipe::count(*object, end); i < count; ++i) {
                snapshot.push_back(at(*object, end, i));
                qorPrefetch(snapshot.back());
            }
            if (end.shape == QOREndShape::TREE && isInOrder(tree(*object, end)))
                inOrder = &end;
        }
        return snapshot[nextChild++];
    }

    /// Keys may have changed since the elements were added.
    bool isInOrder(QORLinkTree const& tree) const {
        return std::adjacent_find(snapshot.begin(), snapshot.end(), [&](QORObject* a, QORObject* b) {
                   return tree.compare2Object(a, b) >= 0;
               }) == snapshot.end();
    }
};

void QORRecipe::transcode(QORObject& object, QORClassDescription const& level, QOREncodingConverter* from,
                          QOREncodingConverter* to, int& firstCounter, int& errorCounter) {
    auto const texts = [&](QORObject& each, QORClassDescription const& description,
                           QORLinkEnd const* inOrder) {
        for (std::uint16_t const offset : description.strings)
            transcode(fieldAt<QORString>(each, offset), from, to, firstCounter, errorCounter);
        if (&description == exactDescription(each))
            transcodeName(each, description, inOrder, from, to, firstCounter, errorCounter);
        else
            each.QORObject::transcode(from, to, firstCounter, errorCounter);
    };
    texts(object, level, nullptr);
    std::deque<TranscodeFrame> frames;
    QORWalkPath path(&errorCounter);
    frames.push_back({&object, level.children});
    path.enter(object, __LINE__, "QORRecipe::transcode");
    while (!frames.empty()) {
        QORObject* const child = frames.back().next();
        if (!child) {
            frames.pop_back();
            path.leave();
        } else if (QORClassDescription const* const exact = exactDescription(*child)) {
            prefetch(frames.back().ahead(), *exact);
            texts(*child, *exact, frames.back().inOrder);
            if (isParent(*child, *exact)) {
                frames.push_back({child, exact->children});
                path.enter(*child, __LINE__, "QORRecipe::transcode");
            }
        } else {
            child->transcode(from, to, firstCounter, errorCounter);
        }
    }
}

// ---- walking --------------------------------------------------------------------------------------------

/// An object whose children are being walked.
struct QORRecipe::WalkFrame {
    QORObject* object;
    void* data;
    QORIndexList ends;
    std::uint16_t nextEnd = 0;
    QOREndShape walking = QOREndShape::UNARY; ///< what kind of end the walk is in; UNARY: in none
    QORRBTree::Iterator inTree{};
    QORVector::Iterator inVector{};

    QORObject* next() {
        for (;;) {
            QORContainerItem* item = nullptr;
            if (walking == QOREndShape::TREE)
                item = inTree.next(1);
            else if (walking == QOREndShape::VECTOR)
                item = inVector.next(1);
            while (!item) {
                walking = QOREndShape::UNARY;
                if (nextEnd == ends.count)
                    return nullptr;
                item = enter(QORMetamodel::ends[ends.first[nextEnd++]]);
            }
            return static_cast<QORObject*>(item);
        }
    }

    /// A child that comes soon, if that is easily found.
    QORContainerItem* ahead() const {
        if (walking == QOREndShape::TREE)
            return inTree.ahead(prefetchDistance);
        return walking == QOREndShape::VECTOR ? inVector.ahead(prefetchDistance) : nullptr;
    }

    QORContainerItem* enter(QORLinkEnd const& end) {
        if (!isSet(*object, end))
            return nullptr;
        if (end.shape == QOREndShape::UNARY)
            return far(*object, end);
        walking = end.shape;
        if (end.shape == QOREndShape::TREE) {
            inTree.moveTo(tree(*object, end), true);
            return inTree.get();
        }
        inVector.moveTo(vector(*object, end), true);
        return inVector.get();
    }
};

void QORRecipe::walkChildren(QORObject& object, QORClassDescription const& level,
                             QORTraversalOperation& operation, void* data) {
    std::deque<WalkFrame> frames;
    QORWalkPath path(&operation);
    frames.push_back({&object, data, level.children});
    for (;;) {
        WalkFrame& frame = frames.back();
        QORObject* const child = frame.next();
        if (!child) {
            QORObject* const done = frame.object;
            void* const doneData = frame.data;
            frames.pop_back();
            if (frames.empty())
                return;
            path.leave();
            operation.post_process(done, doneData);
            continue;
        }
        QORClassDescription const* const exact = exactDescription(*child);
        if (!exact) {
            child->depthTraversal(operation, frame.data);
            continue;
        }
        prefetch(frame.ahead(), *exact);
        void* childData = frame.data;
        if (!operation.pre_process(child, childData))
            continue;
        if (isParent(*child, *exact)) {
            frames.push_back({child, childData, exact->children});
            path.enter(*child, __LINE__, "QORRecipe::walkChildren");
        } else {
            operation.post_process(child, childData);
        }
    }
}

bool QORRecipe::walk(QORObject& object, QORTraversalOperation& operation, void* data) {
    if (!operation.pre_process(&object, data))
        return false;
    QORWalkPath path(&operation);
    path.enter(object, __LINE__, "QORRecipe::walk");
    object._depthTraversal(operation, data);
    path.leave();
    operation.post_process(&object, data);
    return true;
}
