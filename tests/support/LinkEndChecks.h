#pragma once

#include "TableDeviations.h"
#include "TableSubjects.h"

#include <qor/QORException.h>
#include <qor/QORMetaAttribute.h>
#include <qor/QORMetaClass.h>
#include <qor/QORMetaLinkType.h>
#include <qor/QORSDK.h>
#include <qor/QORString.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// Checks of a link end, through its typed members and through reflection.
namespace table {

/// In what order an end holds its elements.
enum class Order { NONE, AS_ADDED, BY_ADDRESS, BY_NAME };

/// Which elements an end takes beside each other.
enum class Names {
    ANY,           ///< any number of one name
    UNIQUE,        ///< no two of one name, the empty name included
    UNIQUE_OR_NONE ///< no two of one name, but any number without a name
};

/// What the table says of an end.
struct LinkRow {
    int id;
    char const* text; ///< of the id
    char const* role;
    QORMetaLinkType type;
    bool unary;
    int ownerId; ///< number of the class that declares the end
    char const* owner;
    Order order;
    Names names;
    bool leftToDestructor;
    int companionId;    ///< another end of the objects that have this one, -1 if there is none
    int companionClass; ///< what is to be linked there
    int place;          ///< among the ends that the class declares itself
};

/// An end with its typed members. Those of the other shape are null.
struct End {
    LinkRow row;
    Maker maker; ///< makes objects that have the end
    bool (*add)(QORObject& object, QORObject* far);
    bool (*unlink)(QORObject& object, QORObject* far);

    QORObject* (*get)(QORObject const& object) = nullptr;
    bool (*remove)(QORObject& object) = nullptr;

    int (*count)(QORObject const& object) = nullptr;
    QORObject* (*at)(QORObject const& object, int index) = nullptr;
    bool (*removeAt)(QORObject& object, int index) = nullptr;
    bool (*removeNamed)(QORObject& object, QORString const& name, int* cursor) = nullptr;
    void (*removeAll)(QORObject& object) = nullptr;
};

template <class Class, class Far, Far* (Class::*get)() const, bool (Class::*add)(Far*),
          bool (Class::*remove)(), bool (Class::*unlink)(Far*)>
struct UnaryMembers {
    static QORObject* callGet(QORObject const& object) { return (static_cast<Class const&>(object).*get)(); }
    static bool callAdd(QORObject& object, QORObject* far) {
        return (static_cast<Class&>(object).*add)(static_cast<Far*>(far));
    }
    static bool callRemove(QORObject& object) { return (static_cast<Class&>(object).*remove)(); }
    static bool callUnlink(QORObject& object, QORObject* far) {
        return (static_cast<Class&>(object).*unlink)(static_cast<Far*>(far));
    }
    static constexpr End of(LinkRow const& row, Maker const& maker) {
        return {row, maker, callAdd, callUnlink, callGet, callRemove};
    }
};

template <class Class, class Far, int (Class::*count)() const, Far* (Class::*at)(int) const,
          bool (Class::*add)(Far*), bool (Class::*removeAt)(int),
          bool (Class::*removeNamed)(QORString const&, int*), bool (Class::*unlink)(Far*),
          void (Class::*removeAll)()>
struct NaryMembers {
    static int callCount(QORObject const& object) { return (static_cast<Class const&>(object).*count)(); }
    static QORObject* callAt(QORObject const& object, int index) {
        return (static_cast<Class const&>(object).*at)(index);
    }
    static bool callAdd(QORObject& object, QORObject* far) {
        return (static_cast<Class&>(object).*add)(static_cast<Far*>(far));
    }
    static bool callRemoveAt(QORObject& object, int index) {
        return (static_cast<Class&>(object).*removeAt)(index);
    }
    static bool callRemoveNamed(QORObject& object, QORString const& name, int* cursor) {
        return (static_cast<Class&>(object).*removeNamed)(name, cursor);
    }
    static bool callUnlink(QORObject& object, QORObject* far) {
        return (static_cast<Class&>(object).*unlink)(static_cast<Far*>(far));
    }
    static void callRemoveAll(QORObject& object) { (static_cast<Class&>(object).*removeAll)(); }
    static constexpr End of(LinkRow const& row, Maker const& maker) {
        return {row,       maker,  callAdd,      callUnlink,      nullptr,      nullptr,
                callCount, callAt, callRemoveAt, callRemoveNamed, callRemoveAll};
    }
};

// ---- looking --------------------------------------------------------------------------------------------

inline QORMetaLink const& recordOf(End const& end) {
    return *QORMetaRepository::getMetaRepository()->getMetaLinkByID(
        static_cast<QORAssociationType>(end.row.id));
}

inline bool hasRecord(End const& end) {
    return QORMetaRepository::getMetaRepository()->getMetaLinkByID(
               static_cast<QORAssociationType>(end.row.id)) != nullptr;
}

inline int countOf(End const& end, QORObject const& object) {
    if (end.row.unary)
        return end.get(object) ? 1 : 0;
    return end.count(object);
}

inline QORObject* elementOf(End const& end, QORObject const& object, int index) {
    return end.row.unary ? end.get(object) : end.at(object, index);
}

inline std::vector<QORObject*> elementsOf(End const& end, QORObject const& object) {
    std::vector<QORObject*> elements;
    for (int i = 0, count = countOf(end, object); i < count; ++i)
        elements.push_back(elementOf(end, object, i));
    return elements;
}

/// Expects an end to hold just these elements, in whatever order, also for the reader of the record.
inline void expectHolds(End const& end, QORObject& object, std::vector<QORObject*> expected) {
    std::vector<QORObject*> elements = elementsOf(end, object);
    QORMetaLink const& record = recordOf(end);
    EXPECT_EQ(end.row.unary ? 0 : static_cast<int>(elements.size()), record.getLinkCount(&object));
    for (int i = 0; i < static_cast<int>(elements.size()); ++i)
        EXPECT_EQ(elements[static_cast<std::size_t>(i)], record.getLink(&object, i));
    if (elements.empty()) {
        EXPECT_EQ(nullptr, record.getLink(&object, 0));
    }
    std::sort(elements.begin(), elements.end(), std::less<>());
    std::sort(expected.begin(), expected.end(), std::less<>());
    EXPECT_EQ(expected, elements) << end.row.text;
}

inline void expectLinked(End const& end, QORObject& near, End const& farEnd, QORObject& far) {
    expectHolds(end, near, {&far});
    expectHolds(farEnd, far, {&near});
}

inline void expectUnlinked(End const& end, QORObject& near, End const& farEnd, QORObject& far) {
    expectHolds(end, near, {});
    expectHolds(farEnd, far, {});
}

inline bool isNamed(Subject const& subject) {
    return subject->getName().length != 0;
}

// ---- the record -----------------------------------------------------------------------------------------

inline void checkLinkRecord(End const& end) {
    LinkRow const& row = end.row;
    QORMetaLink const& record = recordOf(end);
    EXPECT_EQ(row.id, static_cast<int>(record.getId()));
    EXPECT_STREQ(row.text, record.getName().chars);
    EXPECT_STREQ(row.role, record.getRoleName().chars);
    EXPECT_EQ(row.unary, record.isUnary());
    EXPECT_EQ(row.type, record.getType());
    ASSERT_NE(nullptr, record.getMetaClass());
    EXPECT_EQ(row.ownerId, static_cast<int>(record.getMetaClass()->getId()));
    QORVector const& records = record.getMetaClass()->getMetaLinks();
    QORMetaClass const* const base = record.getMetaClass()->getParent();
    EXPECT_EQ(&record, records[(base ? base->getMetaLinks().size : 0) + row.place]);
    Subject object(end.maker, false);
    EXPECT_EQ(&record, object->getMetaClass()->getMetaLinkByRoleName(row.role));
    EXPECT_EQ(&record, object->getMetaClass()->getMetaLinkByName(row.text));
    EXPECT_EQ(&record, object->getMetaClass()->getMetaLinkByID(record.getId()));
}

inline void checkFarRecord(End const& end, End const& farEnd) {
    QORMetaLink const& record = recordOf(end);
    EXPECT_EQ(&recordOf(farEnd), record.getFarMetaLink());
    ASSERT_NE(nullptr, record.getFarMetaClass());
    EXPECT_EQ(farEnd.row.ownerId, static_cast<int>(record.getFarMetaClass()->getId()));
    EXPECT_EQ(end.row.order == Order::AS_ADDED, record.isOrdered());
}

// ---- making and unlinking -------------------------------------------------------------------------------

/// Expects what an object says of its owners to follow from one link.
inline void expectOwners(End const& end, QORObject& near, QORObject& far) {
    bool const owned = end.row.type == QORMetaLinkType::PARENT;
    bool const owns = end.row.type == QORMetaLinkType::CHILD;
    EXPECT_EQ(owned ? &far : nullptr, near.getParent());
    EXPECT_EQ(owned ? 1 : 0, near.getParentCount());
    EXPECT_EQ(owns ? &near : nullptr, far.getParent());
    EXPECT_EQ(owns ? 1 : 0, far.getParentCount());
}

enum class MadeBy { THIS_SIDE, FAR_SIDE, REFLECTION };

inline void checkLinking(End const& end, End const& farEnd, bool watched, MadeBy madeBy) {
    Subject near(end.maker, watched), far(farEnd.maker, watched), stranger(farEnd.maker, watched);
    EXPECT_FALSE(near->isReferenced());
    EXPECT_FALSE(far->isReferenced());
    expectUnlinked(end, *near, farEnd, *far);

    bool const made = madeBy == MadeBy::THIS_SIDE  ? end.add(*near, far.get())
                      : madeBy == MadeBy::FAR_SIDE ? farEnd.add(*far, near.get())
                                                   : recordOf(end).addLink(near.get(), far.get());
    EXPECT_TRUE(made);
    expectLinked(end, *near, farEnd, *far);
    expectOwners(end, *near, *far);
    EXPECT_TRUE(near->isReferenced());
    EXPECT_TRUE(far->isReferenced());

    EXPECT_FALSE(end.add(*near, far.get()));
    EXPECT_FALSE(farEnd.add(*far, near.get()));
    EXPECT_FALSE(recordOf(end).addLink(near.get(), far.get()));
    EXPECT_FALSE(end.unlink(*near, stranger.get()));
    expectLinked(end, *near, farEnd, *far);

    bool const fromFar = madeBy == MadeBy::FAR_SIDE;
    EXPECT_TRUE(fromFar ? farEnd.unlink(*far, near.get()) : end.unlink(*near, far.get()));
    expectUnlinked(end, *near, farEnd, *far);
    EXPECT_FALSE(end.unlink(*near, far.get()));
    EXPECT_FALSE(farEnd.unlink(*far, near.get()));
    EXPECT_FALSE(near->isReferenced());
    EXPECT_FALSE(far->isReferenced());
    EXPECT_EQ(0, near->getParentCount() + far->getParentCount());
    near.expectAlive();
    far.expectAlive();
}

/// A further far object is refused by a unary end, and taken by a nary one.
inline void checkFurtherFarObject(End const& end, End const& farEnd, bool watched) {
    Subject near(end.maker, watched), far(farEnd.maker, watched), further(farEnd.maker, watched);
    nameObject(*far, "one");
    nameObject(*further, "another");
    ASSERT_TRUE(end.add(*near, far.get()));
    EXPECT_EQ(!end.row.unary, end.add(*near, further.get()));
    EXPECT_FALSE(farEnd.add(*further, near.get()));
    if (end.row.unary) {
        expectLinked(end, *near, farEnd, *far);
        EXPECT_FALSE(further->isReferenced());
        return;
    }
    expectHolds(end, *near, {far.get(), further.get()});
    expectHolds(farEnd, *further, {near.get()});
    EXPECT_TRUE(end.unlink(*near, far.get()));
    expectHolds(farEnd, *far, {});
    expectLinked(end, *near, farEnd, *further);
}

// ---- deleting forms -------------------------------------------------------------------------------------

/// A deleting form, with which the only element goes.
using Form = std::function<bool(QORObject& near, QORObject& far)>;

inline std::vector<Form> deletingForms(End const& end) {
    if (end.row.unary)
        return {[&end](QORObject& near, QORObject&) { return end.remove(near); }};
    return {
        [&end](QORObject& near, QORObject&) { return end.removeAt(near, 0); },
        [&end](QORObject& near, QORObject& far) {
            return end.removeNamed(near, QORString(far.getName()), nullptr);
        },
        [&end](QORObject& near, QORObject& far) {
            int cursor = 0;
            bool const removed = end.removeNamed(near, QORString(far.getName()), &cursor);
            EXPECT_EQ(0, cursor);
            return removed;
        },
        [&end](QORObject& near, QORObject&) {
            end.removeAll(near);
            return true;
        },
    };
}

inline void checkDeletingForm(End const& end, End const& farEnd, bool watched, Form const& form) {
    {
        Subject near(end.maker, watched), far(farEnd.maker, watched);
        nameObject(*far, "far");
        ASSERT_TRUE(end.add(*near, far.get()));
        EXPECT_TRUE(form(*near, *far));
        far.expectDead();
        expectHolds(end, *near, {});
        EXPECT_FALSE(near->isReferenced());
        near.expectAlive();
    }
    if (farEnd.row.companionId >= 0) {
        Subject near(end.maker, watched), far(farEnd.maker, watched);
        Companion const companion(*far, farEnd.row.companionId, farEnd.row.companionClass);
        nameObject(*far, "far");
        ASSERT_TRUE(end.add(*near, far.get()));
        EXPECT_TRUE(form(*near, *far));
        far.expectAlive();
        expectUnlinked(end, *near, farEnd, *far);
        EXPECT_TRUE(far->isReferenced());
    }
    if (!farEnd.row.unary) {
        Subject near(end.maker, watched), other(end.maker, watched), far(farEnd.maker, watched);
        nameObject(*near, "near");
        nameObject(*other, "other");
        nameObject(*far, "far");
        ASSERT_TRUE(end.add(*near, far.get()));
        ASSERT_TRUE(end.add(*other, far.get()));
        EXPECT_TRUE(form(*near, *far));
        far.expectAlive();
        expectHolds(end, *near, {});
        expectLinked(end, *other, farEnd, *far);
    }
}

/// What isn't there isn't removed.
inline void checkNothingToRemove(End const& end, End const& farEnd, bool watched) {
    Subject near(end.maker, watched), far(farEnd.maker, watched);
    if (end.row.unary) {
        EXPECT_FALSE(end.remove(*near));
        return;
    }
    int cursor = 0;
    nameObject(*far, "far");
    EXPECT_FALSE(end.removeAt(*near, 0));
    EXPECT_FALSE(end.removeNamed(*near, far->getName(), nullptr));
    EXPECT_FALSE(end.removeNamed(*near, far->getName(), &cursor));
    end.removeAll(*near);
    ASSERT_TRUE(end.add(*near, far.get()));
    for (int const outside : {-1, 1}) {
        EXPECT_EQ(nullptr, end.at(*near, outside));
        EXPECT_FALSE(end.removeAt(*near, outside));
    }
    EXPECT_FALSE(end.removeNamed(*near, "nobody", nullptr));
    EXPECT_FALSE(end.removeNamed(*near, "nobody", &cursor));
    EXPECT_EQ(0, cursor);
    expectLinked(end, *near, farEnd, *far);
}

/// A nary end emptied at once: what is referenced elsewhere stays.
inline void checkRemoveAll(End const& end, End const& farEnd, bool watched) {
    if (end.row.unary || farEnd.row.companionId < 0)
        return;
    Subject near(end.maker, watched), first(farEnd.maker, watched), spared(farEnd.maker, watched),
        last(farEnd.maker, watched);
    Companion const companion(*spared, farEnd.row.companionId, farEnd.row.companionClass);
    nameObject(*first, "a");
    nameObject(*spared, "b");
    nameObject(*last, "c");
    for (QORObject* each : {first.get(), spared.get(), last.get()})
        ASSERT_TRUE(end.add(*near, each));
    end.removeAll(*near);
    first.expectDead();
    last.expectDead();
    spared.expectAlive();
    expectUnlinked(end, *near, farEnd, *spared);
}

/// A cursor brings removal by name to all namesakes, one after the other.
inline void checkRemoveNamedInTurn(End const& end, End const& farEnd, bool watched) {
    if (end.row.unary || end.row.names != Names::ANY)
        return;
    Subject near(end.maker, watched);
    std::vector<std::unique_ptr<Subject>> far;
    for (int i = 0; i < 6; ++i) {
        far.push_back(std::make_unique<Subject>(farEnd.maker, watched));
        nameObject(**far.back(), i % 2 ? "other" : "same");
        ASSERT_TRUE(end.add(*near, far.back()->get()));
    }
    bool const named = isNamed(*far[0]);
    QORString const name = named ? "same" : "";
    int cursor = 0, removed = 0;
    while (end.removeNamed(*near, name, &cursor))
        ++removed;
    EXPECT_EQ(named ? 3 : 6, removed);
    std::vector<QORObject*> left;
    for (std::size_t i = 0; i < far.size(); ++i)
        if (named && i % 2)
            left.push_back(far[i]->get());
        else
            far[i]->expectDead();
    expectHolds(end, *near, left);
}

// ---- isolating, deaths ----------------------------------------------------------------------------------

inline void checkIsolating(End const& end, End const& farEnd, bool watched) {
    {
        Subject near(end.maker, watched), far(farEnd.maker, watched);
        ASSERT_TRUE(end.add(*near, far.get()));
        EXPECT_EQ(near.get(), near->isolate(false));
        near.expectAlive();
        far.expectAlive();
        expectUnlinked(end, *near, farEnd, *far);
    }
    {
        Subject near(end.maker, watched), far(farEnd.maker, watched);
        ASSERT_TRUE(end.add(*near, far.get()));
        EXPECT_EQ(near.get(), near->isolate(true));
        near.expectAlive();
        far.expectDead();
        expectHolds(end, *near, {});
    }
    if (farEnd.row.companionId < 0)
        return;
    Subject near(end.maker, watched), far(farEnd.maker, watched);
    Companion const companion(*far, farEnd.row.companionId, farEnd.row.companionClass);
    ASSERT_TRUE(end.add(*near, far.get()));
    EXPECT_EQ(near.get(), near->isolate(true));
    far.expectAlive();
    expectUnlinked(end, *near, farEnd, *far);
}

/// Whether a far object that something else refers to stays when the near one is taken apart.
inline bool sparesReferenced(End const& end, QORObject const& far) {
    return end.row.type != QORMetaLinkType::CHILD || end.row.leftToDestructor || far.getParentCount() > 1;
}

inline void checkDeath(End const& end, End const& farEnd, bool watched) {
    bool const ownedByFar = end.row.type == QORMetaLinkType::PARENT;
    {
        Subject near(end.maker, watched), far(farEnd.maker, watched);
        ASSERT_TRUE(end.add(*near, far.get()));
        near.destroy();
        if (ownedByFar) {
            far.expectAlive();
            expectHolds(farEnd, *far, {});
            EXPECT_FALSE(far->isReferenced());
        } else {
            far.expectDead();
        }
    }
    if (farEnd.row.companionId < 0)
        return;
    Subject near(end.maker, watched), far(farEnd.maker, watched);
    Companion companion(*far, farEnd.row.companionId, farEnd.row.companionClass);
    ASSERT_TRUE(end.add(*near, far.get()));
    bool const spared = sparesReferenced(end, *far);
    near.destroy();
    if (spared) {
        far.expectAlive();
        expectHolds(farEnd, *far, {});
        EXPECT_TRUE(far->isReferenced());
    } else {
        far.expectDead();
        companion.expectGone();
    }
}

/// `recursiveDelete` leaves the object itself alive, and does nothing for one that is owned.
inline void checkRecursiveDelete(End const& end, End const& farEnd, bool watched) {
    Subject near(end.maker, watched), far(farEnd.maker, watched);
    ASSERT_TRUE(end.add(*near, far.get()));
    bool const owned = end.row.type == QORMetaLinkType::PARENT;
    EXPECT_EQ(!owned, near->recursiveDelete());
    near.expectAlive();
    if (owned || end.row.leftToDestructor) {
        far.expectAlive();
        expectLinked(end, *near, farEnd, *far);
    } else {
        far.expectDead();
        expectHolds(end, *near, {});
        EXPECT_FALSE(near->isReferenced());
    }
}

inline void checkAggregation(End const& end, End const& farEnd, bool watched) {
    Subject near(end.maker, watched), far(farEnd.maker, watched);
    EXPECT_EQ(nullptr, near->removeAggregationAssembly());
    ASSERT_TRUE(end.add(*near, far.get()));
    if (end.row.type == QORMetaLinkType::PARENT) {
        EXPECT_EQ(far.get(), near->removeAggregationAssembly());
        expectUnlinked(end, *near, farEnd, *far);
    } else {
        EXPECT_EQ(nullptr, near->removeAggregationAssembly());
        expectLinked(end, *near, farEnd, *far);
    }
    near.expectAlive();
    far.expectAlive();
}

// ---- order, names, views --------------------------------------------------------------------------------

/// Three far objects in a nary end, added as "b", "a", "c".
struct Three {
    Three(End const& end, End const& farEnd, bool watched)
        : near(end.maker, watched), b(farEnd.maker, watched), a(farEnd.maker, watched),
          c(farEnd.maker, watched) {
        nameObject(*b, "b");
        nameObject(*a, "a");
        nameObject(*c, "c");
        for (QORObject* each : {b.get(), a.get(), c.get()})
            EXPECT_TRUE(end.add(*near, each));
    }

    Subject near, b, a, c;
};

inline void checkOrder(End const& end, End const& farEnd, bool watched) {
    if (end.row.unary)
        return;
    Three const three(end, farEnd, watched);
    std::vector<QORObject*> expected{three.b.get(), three.a.get(), three.c.get()};
    if (end.row.order == Order::BY_NAME)
        expected = {three.a.get(), three.b.get(), three.c.get()};
    else if (end.row.order == Order::BY_ADDRESS)
        std::sort(expected.begin(), expected.end(), std::less<>());
    EXPECT_EQ(expected, elementsOf(end, *three.near));
}

inline bool takes(End const& end, End const& farEnd, bool watched, char const* sharedName) {
    Subject near(end.maker, watched), far(farEnd.maker, watched), namesake(farEnd.maker, watched);
    nameObject(*far, sharedName);
    nameObject(*namesake, sharedName);
    EXPECT_TRUE(end.add(*near, far.get()));
    bool const taken = end.add(*near, namesake.get());
    EXPECT_EQ(taken ? 2 : 1, countOf(end, *near));
    expectHolds(farEnd, *namesake, taken ? std::vector<QORObject*>{near.get()} : std::vector<QORObject*>{});
    EXPECT_EQ(taken, namesake->isReferenced());
    return taken;
}

inline void checkNamesakes(End const& end, End const& farEnd, bool watched) {
    if (end.row.unary)
        return;
    EXPECT_EQ(end.row.names == Names::ANY, takes(end, farEnd, watched, "same"));
    EXPECT_EQ(end.row.names != Names::UNIQUE, takes(end, farEnd, watched, ""));
}

inline std::string refusalOfName(QORObject& object, char const* name) {
    try {
        object.setName(name);
    } catch (QORException const& exception) {
        return exception.what();
    }
    return "";
}

/// An owned object is found under its new name, and can't take that of a sibling where names are unique.
inline void checkRenaming(End const& end, End const& farEnd, bool watched) {
    Subject near(end.maker, watched), sibling(end.maker, watched), owner(farEnd.maker, watched);
    if (end.row.type != QORMetaLinkType::PARENT || hasNameOfItsType(near->getElementType()))
        return;
    near->setName("near");
    sibling->setName("sibling");
    ASSERT_TRUE(end.add(*near, owner.get()));
    EXPECT_EQ(farEnd.row.unary, !end.add(*sibling, owner.get()));
    bool const refused = !farEnd.row.unary && farEnd.row.names != Names::ANY;
    std::string const message = QORSDK::ILLEGAL_ARGUMENT.getMessage(farEnd.row.owner, end.row.owner).chars;
    EXPECT_EQ(refused ? message : "", refusalOfName(*near, "sibling"));
    EXPECT_STREQ(refused ? "near" : "sibling", near->getName().chars);
    EXPECT_EQ(owner.get(), near->getParent());
    EXPECT_EQ("", refusalOfName(*near, "new"));
    EXPECT_STREQ("new", near->getName().chars);
    expectHolds(end, *near, {owner.get()});
    if (farEnd.row.unary)
        return;
    EXPECT_EQ(2, countOf(farEnd, *owner));
    EXPECT_TRUE(farEnd.removeNamed(*owner, "new", nullptr));
    near.expectDead();
    expectHolds(farEnd, *owner, {sibling.get()});
}

/// Fills a view that already holds another object, and gives what it then holds.
template <class Class, class View, void (Class::*fill)(View&) const>
std::vector<QORObject*> fillView(QORObject const& object, QORObject* staleElement) {
    View view;
    view.add(staleElement, false, nullptr);
    (static_cast<Class const&>(object).*fill)(view);
    std::vector<QORObject*> elements;
    for (int i = 0; i < view.size; ++i)
        elements.push_back(static_cast<QORObject*>(view[i]));
    return elements;
}

using FillView = std::vector<QORObject*> (*)(QORObject const& object, QORObject* staleElement);

/// A view holds all elements by position, and nothing of what was in it.
inline void checkView(End const& end, End const& farEnd, FillView fill) {
    Subject stale(farEnd.maker, false);
    {
        Subject near(end.maker, false);
        EXPECT_TRUE(fill(*near, stale.get()).empty());
    }
    Three const three(end, farEnd, false);
    std::vector<QORObject*> expected = elementsOf(end, *three.near);
    short position = 3;
    for (QORObject* each : expected) {
        QORString text(position--);
        each->getMetaClass()->getMetaAttributeByDisplayName("position")->setValue(each, text);
    }
    std::reverse(expected.begin(), expected.end());
    EXPECT_EQ(expected, fill(*three.near, stale.get()));
    EXPECT_EQ(3, countOf(end, *three.near));
}

template <class Class, class Far, Far* (Class::*find)(QORString const&, int*) const,
          bool (Class::*contains)(Far const*) const>
void checkFinding(End const& end, End const& farEnd) {
    Three const three(end, farEnd, false);
    Subject absent(farEnd.maker, false);
    auto const& near = static_cast<Class const&>(*three.near);
    EXPECT_EQ(three.b.get(), (near.*find)("b", nullptr));
    EXPECT_EQ(nullptr, (near.*find)("d", nullptr));
    int cursor = 0;
    EXPECT_EQ(three.c.get(), (near.*find)("c", &cursor));
    EXPECT_EQ(three.c.get(), elementOf(end, near, cursor));
    ++cursor;
    EXPECT_EQ(nullptr, (near.*find)("c", &cursor));
    EXPECT_TRUE((near.*contains)(static_cast<Far*>(three.a.get())));
    EXPECT_FALSE((near.*contains)(static_cast<Far*>(absent.get())));
    EXPECT_FALSE((near.*contains)(nullptr));
}

// ---- copies, self-links ---------------------------------------------------------------------------------

inline void checkCopies(End const& end, End const& farEnd) {
    ElementCopies const rule = elementCopies(end.row.id);
    Subject source(end.maker, false), far(farEnd.maker, false);
    ASSERT_TRUE(end.add(*source, far.get()));
    {
        Subject copy(end.maker.copy(*source));
        EXPECT_EQ(rule == ElementCopies::NONE ? 0 : 1, countOf(end, *copy));
        EXPECT_NE(far.get(), elementOf(end, *copy, 0));
        expectLinked(end, *source, farEnd, *far);
        copy->isolate(rule != ElementCopies::NONE);
    }
    {
        Subject target(end.maker, false), held(farEnd.maker, false);
        ASSERT_TRUE(end.add(*target, held.get()));
        end.maker.assign(*target, *source);
        if (rule == ElementCopies::REPLACED)
            held.expectDead();
        else
            expectHolds(farEnd, *held, {target.get()});
        EXPECT_EQ(rule == ElementCopies::ADDED ? 2 : 1, countOf(end, *target));
        expectLinked(end, *source, farEnd, *far);
        if (rule == ElementCopies::ADDED) {
            EXPECT_TRUE(end.unlink(*target, held.get()));
        }
        if (rule != ElementCopies::NONE)
            target->isolate(true);
    }
    end.maker.assign(*source, *source);
    expectLinked(end, *source, farEnd, *far);
}

/// Links don't count for equality, nor does an element, except where it is part of what an object says.
inline void checkComparing(End const& end, End const& farEnd) {
    Subject const linked(end.maker, false), bare(end.maker, false), far(farEnd.maker, false);
    ASSERT_TRUE(end.add(*linked, far.get()));
    EXPECT_EQ(!isComparedEnd(end.row.id), linked->equals(*bare));
    EXPECT_EQ(!isComparedEnd(end.row.id), bare->equals(*linked));
}

/// A self-link is refused. Between a nary and a unary end it leaves the object in its own nary end, from
/// which it can be unlinked; its deletion ends all the same.
inline void checkSelfLink(End const& end, End const& farEnd, Maker const& both, bool watched) {
    bool const staysIn = end.row.unary != farEnd.row.unary;
    auto const linkToItself = [&](QORObject& object) {
        EXPECT_FALSE(end.add(object, &object));
        std::vector<QORObject*> const itself{&object};
        expectHolds(end, object, staysIn && !end.row.unary ? itself : std::vector<QORObject*>{});
        expectHolds(farEnd, object, staysIn && !farEnd.row.unary ? itself : std::vector<QORObject*>{});
        EXPECT_EQ(staysIn, object.isReferenced());
        EXPECT_EQ(nullptr, object.getParent());
    };
    Subject object(both, watched);
    linkToItself(*object);
    End const& nary = end.row.unary ? farEnd : end;
    EXPECT_EQ(staysIn, nary.unlink(*object, object.get()));
    EXPECT_FALSE(object->isReferenced());
    linkToItself(*object);
    object->isolate(false);
    EXPECT_FALSE(object->isReferenced());
    object.expectAlive();

    Subject dying(both, watched);
    linkToItself(*dying);
    dying.destroy();
}

// ---- all together ---------------------------------------------------------------------------------------

/// Checks an end of a class. `both` makes objects that have this end and the far one, null if there are none.
inline void checkEnd(End const& end, End const& farEnd, Maker const* both = nullptr) {
    ASSERT_TRUE(hasRecord(end) && hasRecord(farEnd)); // without which nothing below can be asked
    checkLinkRecord(end);
    checkFarRecord(end, farEnd);
    checkCopies(end, farEnd);
    checkComparing(end, farEnd);
    for (bool const watched : {false, true}) {
        SCOPED_TRACE(watched ? "objects of a caller's classes" : "objects of the library's classes");
        for (MadeBy const madeBy : {MadeBy::THIS_SIDE, MadeBy::FAR_SIDE, MadeBy::REFLECTION})
            checkLinking(end, farEnd, watched, madeBy);
        checkFurtherFarObject(end, farEnd, watched);
        for (Form const& form : deletingForms(end))
            checkDeletingForm(end, farEnd, watched, form);
        checkNothingToRemove(end, farEnd, watched);
        checkRemoveAll(end, farEnd, watched);
        checkRemoveNamedInTurn(end, farEnd, watched);
        checkIsolating(end, farEnd, watched);
        checkDeath(end, farEnd, watched);
        checkRecursiveDelete(end, farEnd, watched);
        checkAggregation(end, farEnd, watched);
        checkOrder(end, farEnd, watched);
        checkNamesakes(end, farEnd, watched);
        checkRenaming(end, farEnd, watched);
        if (both)
            checkSelfLink(end, farEnd, *both, watched);
    }
}

} // namespace table
