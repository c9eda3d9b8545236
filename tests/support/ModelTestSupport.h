#pragma once

#include "GraphObservers.h"
#include "GraphTestSupport.h"

#include <qor/QORMetaClass.h>
#include <qor/QORMetaLink.h>
#include <qor/QORNote.h>
#include <qor/QORSynonym.h>

#include <string>
#include <type_traits>
#include <vector>

/// The names of objects, in their order.
inline Labels namesOf(std::vector<QORObject*> const& objects) {
    Labels names;
    for (QORObject const* const each : objects)
        names.emplace_back(each->getName().chars);
    return names;
}

/// All objects at the far side of an object's links, whatever their kind.
inline std::vector<QORObject*> farObjectsOf(QORObject& object) {
    std::vector<QORObject*> all;
    QORVector const& links = object.getMetaClass()->getMetaLinks();
    for (int i = 0; i < links.size; ++i) {
        auto const* const link = static_cast<QORMetaLink const*>(links[i]);
        int const count = link->isUnary() ? 1 : link->getLinkCount(&object);
        for (int at = 0; at < count; ++at)
            if (QORObject* const far = link->getLink(&object, at))
                all.push_back(far);
    }
    return all;
}

/// An object that may die, named like its label.
template <class Class>
Class* hung(Graph& graph, char const* label) {
    return graph.mortal<Class>(label, label);
}

/// Links what shows in which order the layers below a class are handled: the children "note" and "synonym",
/// and the "base" that is only referred to.
inline void linkLayers(Graph& graph, QORModelObject& object) {
    ASSERT_TRUE(object.addNote(hung<QORNote>(graph, "note")));
    ASSERT_TRUE(object.addSynonym(hung<QORSynonym>(graph, "synonym")));
    linkBase(graph, object);
}

/// `linkOwner` for an end whose class is abstract: the owner is of the class `Made`.
template <class Made, class Class, class Base, class Owner>
void linkOwnerMade(Graph& graph, Owners owners, char const* label, Class& object, bool (Base::*add)(Owner*)) {
    if (owners == Owners::NONE)
        return;
    Made* const owner = owners == Owners::ALL ? graph.mortal<Made>(label) : graph.make<Made>();
    EXPECT_TRUE((object.*add)(owner)) << label;
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
    EXPECT_EQ(graph.transcodes, children);
    EXPECT_EQ(recode.errors, 0);
}

/// Expects copies to have none of the source's links but a copy of its note, and the target of an assignment
/// to keep its own besides. `link` sets every end, the note "note" included.
template <class Class>
void expectCopiesUnlinked(void (*link)(Graph&, Class&, Owners)) {
    Graph graph;
    Class* const object = graph.make<Class>();
    link(graph, *object, Owners::ONE);
    auto const before = farObjectsOf(*object);
    Class copy(*object);
    EXPECT_EQ(namesOf(farObjectsOf(copy)), Labels{"note"});
    EXPECT_NE(copy.getNote(0), object->getNote(0));
    Class assigned;
    assigned = *object;
    EXPECT_EQ(namesOf(farObjectsOf(assigned)), Labels{"note"});
    copy = *object;
    EXPECT_EQ(namesOf(farObjectsOf(copy)), (Labels{"note", "note"}));
    Class const& itself = *object;
    *object = itself;
    EXPECT_EQ(farObjectsOf(*object), before);
    EXPECT_EQ(graph.deaths, Labels());
}

/// Expects `isolate(false)` to clear the far side of each link as well. `link` sets every end.
template <class Class>
void expectIsolationFreesFarEnds(void (*link)(Graph&, Class&, Owners)) {
    Graph graph;
    Class* const object = graph.make<Class>();
    link(graph, *object, Owners::ALL);
    auto const far = farObjectsOf(*object);
    EXPECT_FALSE(far.empty());
    for (QORObject const* const each : far)
        EXPECT_TRUE(each->isReferenced());
    object->isolate(false);
    for (QORObject const* const each : far)
        EXPECT_FALSE(each->isReferenced());
}

/// Expects an attribute that a new object has with `first` to keep what is set, to be taken over by copy,
/// assignment and `setFrom`, and to count for equality.
template <class Class, class Getter, class Setter, class First, class Value>
void expectAttribute(Getter get, Setter set, First const& first, Value const& value) {
    using Held = std::decay_t<std::invoke_result_t<Getter, Class const&>>;
    Class const fresh;
    EXPECT_EQ((fresh.*get)(), Held(first));
    Class source;
    EXPECT_TRUE(source.equals(fresh));
    (source.*set)(value);
    EXPECT_EQ((source.*get)(), Held(value));
    EXPECT_FALSE(source.equals(fresh));
    EXPECT_FALSE(fresh.equals(source));

    Class const copy(source);
    EXPECT_EQ((copy.*get)(), Held(value));
    Class assigned;
    EXPECT_EQ(&(assigned = source), &assigned);
    EXPECT_EQ((assigned.*get)(), Held(value));
    Class set1;
    EXPECT_EQ(&set1.setFrom(source), &set1);
    EXPECT_EQ((set1.*get)(), Held(value));
    EXPECT_TRUE(copy.equals(source) && assigned.equals(source) && set1.equals(source));
}

/// Expects objects of two classes never to be equal, though they hold the same.
template <class One, class Other>
void expectClassesUnequal() {
    One const one;
    Other const other;
    EXPECT_FALSE(one.equals(other));
    EXPECT_FALSE(other.equals(one));
    EXPECT_TRUE(one.equals(One()));
    EXPECT_TRUE(other.equals(Other()));
}

/// Expects exactly this owner to be asked first, out of that many.
inline void expectParent(QORObject const& object, QORObject const* parent, int count) {
    EXPECT_EQ(object.getParent(), parent);
    EXPECT_EQ(object.getParentCount(), count);
}

/// Expects an object to leave its owners one after the other, in this order.
inline void expectLeaves(QORObject& object, std::vector<QORObject*> const& owners) {
    int left = static_cast<int>(owners.size());
    for (QORObject* const owner : owners) {
        expectParent(object, owner, left--);
        EXPECT_EQ(object.removeAggregationAssembly(), owner);
    }
    expectParent(object, nullptr, 0);
    EXPECT_EQ(object.removeAggregationAssembly(), nullptr);
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
    EXPECT_EQ(namesOf(listOf(view)), (Labels{"d", "b", "c", "a"}));
    EXPECT_EQ(farObjectsOf(*object).size(), 4U);
}

/// Re-encodes objects from UTF-7, in which one text has several forms, to UTF-8.
class FromUtf7 {
public:
    int converted = 0;
    int errors = 0;

    void operator()(QORObject& object) { object.transcode(from.get(), to.get(), converted, errors); }

private:
    std::unique_ptr<QOREncodingConverter> from{QOREncodingConverter::create("UTF-7")};
    std::unique_ptr<QOREncodingConverter> to{QOREncodingConverter::create("UTF-8")};
};
