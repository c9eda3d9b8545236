#pragma once

#include <qor/QORBusinessRule.h>
#include <qor/QOREncodingConverter.h>
#include <qor/QORMetaClass.h>
#include <qor/QORMetaLink.h>
#include <qor/QORObject.h>
#include <qor/QORString.h>
#include <qor/QORTraversalOperation.h>
#include <qor/QORVector.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

/// Shows a text in a failure message.
inline void PrintTo(QORString const& text, std::ostream* out) {
    *out << '"' << text.chars << '"';
}

/// What has happened to labelled objects, in order; or the names of objects.
using Labels = std::vector<std::string>;
using Objects = std::vector<QORObject*>;

template <class Base>
class Mortal;

/// Makes the objects of a test and notes what happens to the mortal ones. At its end, all objects that still
/// live are unlinked and then deleted, so that none is deleted by another one's end.
class Graph {
public:
    Labels deaths;    ///< in the order in which the destructors began
    Labels recodings; ///< in the order of the calls of transcode
    Labels namings;   ///< in the order of the calls of setName

    Graph() = default;
    Graph(Graph const&) = delete;
    Graph& operator=(Graph const&) = delete;
    ~Graph() {
        for (QORObject* const each : objects)
            each->isolate(false);
        while (!objects.empty()) {
            QORObject* const last = objects.back();
            objects.pop_back();
            delete last;
        }
    }

    /// An object of exactly this class, which must not die before the test ends.
    template <class Class>
    Class* make(char const* name = "") {
        auto object = std::make_unique<Class>();
        object->QORObject::setName(name);
        objects.push_back(object.get());
        return object.release();
    }

    /// An object that may die, of a class derived from `Class`. Its name is its label.
    template <class Class>
    Mortal<Class>* mortal(char const* label) {
        return mortal<Class>(label, label);
    }
    template <class Class>
    Mortal<Class>* mortal(char const* label, char const* name) {
        auto object = std::make_unique<Mortal<Class>>(*this, label, name);
        objects.push_back(object.get());
        return object.release();
    }

private:
    template <class Base>
    friend class Mortal;

    void noteDeath(QORObject const* object, std::string const& label) {
        deaths.push_back(label);
        auto const found = std::find(objects.rbegin(), objects.rend(), object);
        if (found != objects.rend())
            objects.erase(found.base() - 1);
    }

    Objects objects;
};

/// A caller's class that notes in a graph what happens to it. Also makes objects of an abstract class.
template <class Base>
class Mortal : public Base {
public:
    Mortal(Graph& owner, char const* ownLabel) : Mortal(owner, ownLabel, ownLabel) {}
    Mortal(Graph& owner, char const* ownLabel, char const* ownName) : graph(owner), label(ownLabel) {
        this->name = ownName;
    }
    Mortal(Mortal const&) = delete;
    Mortal& operator=(Mortal const&) = delete;
    ~Mortal() override { graph.noteDeath(this, label); }

    void transcode(QOREncodingConverter* from, QOREncodingConverter* to, int& firstCounter,
                   int& errorCounter) override {
        graph.recodings.push_back(label);
        Base::transcode(from, to, firstCounter, errorCounter);
    }

    void setName(QORString const& newName) override {
        graph.namings.push_back(label);
        if (onSetName)
            onSetName();
        Base::setName(newName);
    }

    std::function<void()> onSetName; ///< called before the name changes

private:
    Graph& graph;
    std::string label;
};

/// A caller's class that adds nothing. Makes objects of an abstract class.
template <class Base>
class Plain : public Base {};

/// A named object that something else in the test comes to own.
template <class Class>
Class* named(char const* name) {
    auto* const object = new Class;
    object->setName(name);
    return object;
}

// ---- linking --------------------------------------------------------------------------------------------

/// Which of its owners an object gets.
enum class Owners { NONE, ONE, ALL };

/// Links an object that dies, labelled "base", to an end which every model object has.
inline void linkBase(Graph& graph, QORModelObject& object) {
    ASSERT_TRUE(object.addAssociatedBusinessRule(graph.mortal<QORBusinessRule>("base")));
}

/// Gives the object its owner, if it is to have one. With all owners, it is a mortal one. `Made` is the class
/// of the owner, where that of the end is abstract.
template <class Made, class Class, class Base, class Owner>
void linkOwnerMade(Graph& graph, Owners owners, char const* label, Class& object, bool (Base::*add)(Owner*)) {
    if (owners == Owners::NONE)
        return;
    Made* const owner = owners == Owners::ALL ? graph.mortal<Made>(label) : graph.make<Made>();
    EXPECT_TRUE((object.*add)(owner)) << label;
}
template <class Class, class Base, class Owner>
void linkOwner(Graph& graph, Owners owners, char const* label, Class& object, bool (Base::*add)(Owner*)) {
    linkOwnerMade<Owner>(graph, owners, label, object, add);
}

/// Gives the object a second or third owner, a mortal one, if it is to have all.
template <class Class, class Base, class Owner>
void linkFurtherOwner(Graph& graph, Owners owners, char const* label, Class& object,
                      bool (Base::*add)(Owner*)) {
    if (owners == Owners::ALL)
        linkOwner(graph, owners, label, object, add);
}

// ---- looking --------------------------------------------------------------------------------------------

/// The elements of an end, in its order.
template <class At>
auto listOf(int count, At at) -> std::vector<decltype(at(0))> {
    std::vector<decltype(at(0))> all;
    for (int i = 0; i < count; ++i)
        all.push_back(at(i));
    return all;
}

/// The elements of a view or a container, in its order.
template <class View>
Objects listOf(View const& view) {
    Objects all;
    for (int i = 0; i < view.size; ++i)
        all.push_back(static_cast<QORObject*>(view[i]));
    return all;
}

/// The names of objects, in their order.
template <class Class>
Labels namesOf(std::vector<Class*> const& objects) {
    Labels names;
    for (QORObject const* const each : objects)
        names.emplace_back(each->getName().chars);
    return names;
}
template <class View>
Labels namesOf(View const& view) {
    return namesOf(listOf(view));
}

/// The objects of a walk, each before its children.
inline Objects walkOf(QORObject& root) {
    class Walk : public QORTraversalOperation {
    public:
        Objects entered;
        bool pre_process(QORObject* object, void*&) override {
            entered.push_back(object);
            return true;
        }
    } walk;
    root.depthTraversal(walk, nullptr);
    return walk.entered;
}

/// All objects at the far side of an object's links, whatever their kind.
inline Objects farObjectsOf(QORObject& object) {
    Objects all;
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

/// Two objects of which the first has the lower address, as ends ordered by address hold them.
template <class Class>
std::pair<Class*, Class*> byAddress(Class* one, Class* other) {
    return std::less<QORObject*>()(one, other) ? std::pair(one, other) : std::pair(other, one);
}

// ---- re-encoding ----------------------------------------------------------------------------------------

inline constexpr char const* inUtf8 = "\xC3\xA9";          ///< a letter, before re-encoding
inline constexpr char const* inLatin1 = "\xE9";            ///< the same letter, after re-encoding
inline constexpr char const* notInLatin1 = "\xE2\x82\xAC"; ///< a character that re-encoding refuses

/// Re-encodes objects and counts the texts.
class Recoding {
public:
    explicit Recoding(char const* from = "UTF-8", char const* to = "ISO-8859-1")
        : source(QOREncodingConverter::create(from)), target(QOREncodingConverter::create(to)) {}

    void operator()(QORObject& object) { object.transcode(source.get(), target.get(), converted, errors); }

    int converted = 0;
    int errors = 0;

private:
    std::unique_ptr<QOREncodingConverter> source;
    std::unique_ptr<QOREncodingConverter> target;
};
