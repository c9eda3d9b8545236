#pragma once

#include "Graph.h"

#include <qor/QORException.h>
#include <qor/QORNote.h>
#include <qor/QORSDK.h>
#include <qor/QORSynonym.h>

// ---- taking apart ---------------------------------------------------------------------------------------

/// Links what shows in which order the layers below a class are handled: the children "note" and "synonym",
/// and the "base" that is only referred to.
inline void linkLayers(Graph& graph, QORModelObject& object) {
    ASSERT_TRUE(object.addNote(graph.mortal<QORNote>("note")));
    ASSERT_TRUE(object.addSynonym(graph.mortal<QORSynonym>("synonym")));
    linkBase(graph, object);
}

/// Takes an object apart in all ways, `link` having set every end with a mortal object which nothing else
/// refers to. `isolated` is the order of deaths of `isolate(true)`, with all owners set; `deleted` that of
/// `recursiveDelete` without owners; in that of `delete`, with one owner, `left` follows.
template <class Class>
void expectTakenApart(void (*link)(Graph&, Class&, Owners), Labels const& isolated, Labels deleted,
                      Labels const& left = {}) {
    {
        SCOPED_TRACE("isolate(true)");
        Graph graph;
        Class* const object = graph.make<Class>();
        link(graph, *object, Owners::ALL);
        EXPECT_EQ(object->isolate(true), object);
        EXPECT_EQ(graph.deaths, isolated);
        EXPECT_FALSE(object->isReferenced());
    }
    {
        SCOPED_TRACE("isolate(false)");
        Graph graph;
        Class* const object = graph.make<Class>();
        link(graph, *object, Owners::ALL);
        EXPECT_EQ(object->isolate(false), object);
        EXPECT_EQ(graph.deaths, Labels());
        EXPECT_FALSE(object->isReferenced());
        EXPECT_EQ(object->getParentCount(), 0);
    }
    {
        SCOPED_TRACE("recursiveDelete of an owned object");
        Graph graph;
        Class* const object = graph.make<Class>();
        link(graph, *object, Owners::ALL);
        int const owners = object->getParentCount();
        if (owners) {
            EXPECT_FALSE(object->recursiveDelete());
            EXPECT_EQ(graph.deaths, Labels());
            EXPECT_EQ(object->getParentCount(), owners);
        }
    }
    {
        SCOPED_TRACE("recursiveDelete");
        Graph graph;
        Class* const object = graph.make<Class>();
        link(graph, *object, Owners::NONE);
        EXPECT_TRUE(object->recursiveDelete());
        EXPECT_EQ(graph.deaths, deleted);
        EXPECT_EQ(object->isReferenced(), !left.empty());
    }
    {
        SCOPED_TRACE("delete");
        Graph graph;
        auto* const object = new Class;
        link(graph, *object, Owners::ONE);
        delete object;
        deleted.insert(deleted.end(), left.begin(), left.end());
        EXPECT_EQ(graph.deaths, deleted);
    }
}

/// Expects the walk and the re-encoding to reach exactly these children, in this order. `link` sets every
/// end.
template <class Class>
void expectChildrenReached(void (*link)(Graph&, Class&, Owners), Labels const& children) {
    Graph graph;
    Class* const object = graph.make<Class>("root");
    link(graph, *object, Owners::ONE);
    Labels walked = children;
    walked.insert(walked.begin(), "root");
    EXPECT_EQ(namesOf(walkOf(*object)), walked);
    Recoding recode;
    recode(*object);
    EXPECT_EQ(graph.recodings, children);
    EXPECT_EQ(recode.errors, 0);
}

// ---- owners ---------------------------------------------------------------------------------------------

/// Expects exactly this owner to be asked first, out of that many.
inline void expectParent(QORObject const& object, QORObject const* parent, int count) {
    EXPECT_EQ(object.getParent(), parent);
    EXPECT_EQ(object.getParentCount(), count);
}

/// Expects an object to leave its owners one after the other, in this order.
inline void expectLeaves(QORObject& object, Objects const& owners) {
    int left = static_cast<int>(owners.size());
    for (QORObject* const owner : owners) {
        expectParent(object, owner, left--);
        EXPECT_EQ(object.removeAggregationAssembly(), owner);
    }
    expectParent(object, nullptr, 0);
    EXPECT_EQ(object.removeAggregationAssembly(), nullptr);
}

/// Expects `recursiveDelete` to be refused and the number of owners to stay.
inline void expectDeletionRefused(QORObject& object) {
    QORObject* const owner = object.getParent();
    int const owners = object.getParentCount();
    EXPECT_GT(owners, 0);
    EXPECT_FALSE(object.recursiveDelete());
    expectParent(object, owner, owners);
}

// ---- names, values --------------------------------------------------------------------------------------

/// Expects the operation to throw the message that the owner already holds an object of that name.
template <class Operation>
void expectRefused(Operation operation, char const* ownerClass, char const* ownClass) {
    try {
        operation();
        ADD_FAILURE() << "nothing thrown";
    } catch (QORException const& refusal) {
        EXPECT_STREQ(refusal.what(), QORSDK::ILLEGAL_ARGUMENT.getMessage(ownerClass, ownClass).chars);
    }
}

/// Expects the object to refuse a name, and to keep its name and its owners.
inline void expectNameRefused(QORObject& object, char const* name, char const* ownerClass,
                              char const* ownClass) {
    QORString const oldName = object.getName();
    QORObject* const owner = object.getParent();
    int const owners = object.getParentCount();
    expectRefused([&] { object.setName(name); }, ownerClass, ownClass);
    EXPECT_EQ(object.getName(), oldName);
    expectParent(object, owner, owners);
}

/// Expects an object to have that owner as its only parent, and to be refused a name that a sibling has.
template <class Owner, class Class, class Sibling = Class, class Base, class Element>
void expectNamedAndOwned(bool (Base::*add)(Element*), char const* ownerClass, char const* ownClass) {
    Graph graph;
    auto* const owner = graph.make<Owner>();
    auto* const object = graph.make<Class>("name");
    ASSERT_TRUE((owner->*add)(object) && (owner->*add)(graph.make<Sibling>("taken")));
    expectNameRefused(*object, "taken", ownerClass, ownClass);
    expectDeletionRefused(*object);
    expectLeaves(*object, {owner});
}

/// Expects a new name, though a sibling has it, to take an object to the end of what its owner holds.
template <class Owner, class Class>
void expectNewNameMovesToEnd(bool (Owner::*add)(Class*), Class* (Owner::*at)(int) const) {
    Graph graph;
    auto* const owner = graph.make<Owner>();
    auto* const first = graph.make<Class>("A");
    auto* const second = graph.make<Class>("B");
    ASSERT_TRUE((owner->*add)(first) && (owner->*add)(second));
    first->setName("B");
    EXPECT_EQ(first->getName(), "B");
    expectParent(*first, owner, 1);
    EXPECT_EQ((owner->*at)(0), second);
    EXPECT_EQ((owner->*at)(1), first);
}

/// Expects the view to be emptied first, and then to get the elements sorted by position and then by name.
template <class Class, class Element, class View, class Add, class Fill>
void expectSortedByPosition(Add add, Fill fill) {
    Graph graph;
    Class* const object = graph.make<Class>();
    View view;
    ASSERT_TRUE(view.add(graph.make<Element>("stale"), false, nullptr));
    (object->*fill)(view);
    EXPECT_EQ(view.size, 0);

    ASSERT_TRUE(view.add(graph.make<Element>("stale"), false, nullptr));
    short const positions[] = {2, 1, -1, 1};
    char const* const names[] = {"a", "c", "d", "b"};
    for (int i = 0; i < 4; ++i) {
        auto* const element = graph.make<Element>(names[i]);
        element->setPosition(positions[i]);
        ASSERT_TRUE((object->*add)(element));
    }
    (object->*fill)(view);
    EXPECT_EQ(namesOf(view), (Labels{"d", "b", "c", "a"}));
    EXPECT_EQ(farObjectsOf(*object).size(), 4U);
}
