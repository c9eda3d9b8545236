#pragma once

#include <qor/QORAttributeType.h>
#include <qor/QORBusinessRule.h>
#include <qor/QOREncodingConverter.h>
#include <qor/QORException.h>
#include <qor/QORMetaAttribute.h>
#include <qor/QORMetaRepository.h>
#include <qor/QORModelObject.h>
#include <qor/QORObject.h>
#include <qor/QORString.h>
#include <qor/QORTraversalOperation.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

/// Shows a text in a failure message.
inline void PrintTo(QORString const& text, std::ostream* out) {
    *out << '"' << text.chars << '"';
}

/// What has happened to labelled objects, in order.
using Labels = std::vector<std::string>;

/// Makes the objects of a test. At its end, all that still live are unlinked and then deleted, so that none
/// is deleted by another one's end.
class Graph {
public:
    Labels deaths;     ///< labels of the mortal objects that have died
    Labels transcodes; ///< labels of the mortal objects that have been re-encoded

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

    /// An object that must not die before the test ends.
    template <class Class>
    Class* make(char const* name = "") {
        auto object = std::make_unique<Class>();
        object->QORObject::setName(name);
        objects.push_back(object.get());
        return object.release();
    }

    /// An object of a class derived from `Class` that may die: then its label goes to `deaths`.
    template <class Class>
    Class* mortal(char const* label, char const* name = "") {
        auto object = std::make_unique<Labelled<Class>>(*this, label);
        object->QORObject::setName(name);
        objects.push_back(object.get());
        return object.release();
    }

private:
    template <class Class>
    class Labelled final : public Class {
    public:
        Labelled(Graph& owner, char const* text) : graph(owner), label(text) {}
        Labelled(Labelled const&) = delete;
        Labelled& operator=(Labelled const&) = delete;
        ~Labelled() override {
            graph.deaths.push_back(label);
            auto& all = graph.objects;
            all.erase(std::remove(all.begin(), all.end(), this), all.end());
        }

        void transcode(QOREncodingConverter* from, QOREncodingConverter* to, int& firstCounter,
                       int& errorCounter) override {
            graph.transcodes.push_back(label);
            Class::transcode(from, to, firstCounter, errorCounter);
        }

    private:
        Graph& graph;
        std::string label;
    };

    std::vector<QORObject*> objects;
};

/// Which of its owners an object gets.
enum class Owners { NONE, ONE, ALL };

/// Links an object that dies, labelled "base", to an end which every model object has.
inline void linkBase(Graph& graph, QORModelObject& object) {
    ASSERT_TRUE(object.addAssociatedBusinessRule(graph.mortal<QORBusinessRule>("base")));
}

/// Gives the object its owner, if it is to have one. With all owners, it is a mortal one.
template <class Class, class Base, class Owner>
void linkOwner(Graph& graph, Owners owners, char const* label, Class& object, bool (Base::*add)(Owner*)) {
    if (owners == Owners::NONE)
        return;
    auto* const owner = owners == Owners::ALL ? graph.mortal<Owner>(label) : graph.make<Owner>();
    EXPECT_TRUE((object.*add)(owner)) << label;
}

/// Gives the object a second or third owner, a mortal one, if it is to have all.
template <class Class, class Base, class Owner>
void linkFurtherOwner(Graph& graph, Owners owners, char const* label, Class& object,
                      bool (Base::*add)(Owner*)) {
    if (owners == Owners::ALL)
        linkOwner(graph, owners, label, object, add);
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

/// Expects an object to be referenced by that one end alone, and no longer when it is undone. `Made` is the
/// class of the far object, where that of the end is abstract.
template <class Class, class Far, class Made = Far>
void expectEndCounts(bool (Class::*add)(Far*)) {
    Graph graph;
    Class* const object = graph.make<Class>();
    EXPECT_FALSE(object->isReferenced());
    ASSERT_TRUE((object->*add)(graph.make<Made>()));
    EXPECT_TRUE(object->isReferenced());
    object->isolate(false);
    EXPECT_FALSE(object->isReferenced());
}

/// Expects the operation to throw the message that the owner already holds an object of that name.
template <class Operation>
void expectRefused(Operation operation, char const* ownerClass, char const* ownClass) {
    try {
        operation();
        ADD_FAILURE() << "nothing thrown";
    } catch (QORException const& refusal) {
        EXPECT_EQ(std::string(refusal.what()), std::string("[QORSDK_F0001] Illegal Argument: The ") +
                                                   ownerClass + " already contains a " + ownClass +
                                                   " with this name\n");
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
    EXPECT_EQ(object.getParent(), owner);
    EXPECT_EQ(object.getParentCount(), owners);
}

/// The elements of an end, in its order.
template <class At>
auto listOf(int count, At at) -> std::vector<decltype(at(0))> {
    std::vector<decltype(at(0))> all;
    for (int i = 0; i < count; ++i)
        all.push_back(at(i));
    return all;
}

/// The elements of a view, in its order.
template <class View>
std::vector<QORObject*> listOf(View const& view) {
    std::vector<QORObject*> all;
    for (int i = 0; i < view.size; ++i)
        all.push_back(static_cast<QORObject*>(view[i]));
    return all;
}

/// The objects of a walk, each before its children.
inline std::vector<QORObject*> walkOf(QORObject& root) {
    class Walk : public QORTraversalOperation {
    public:
        std::vector<QORObject*> entered;
        bool pre_process(QORObject* object, void*&) override {
            entered.push_back(object);
            return true;
        }
    } walk;
    root.depthTraversal(walk, nullptr);
    return walk.entered;
}

inline constexpr char const* inUtf8 = "\xC3\xA9";          ///< a letter, before re-encoding
inline constexpr char const* inLatin1 = "\xE9";            ///< the same letter, after re-encoding
inline constexpr char const* notInLatin1 = "\xE2\x82\xAC"; ///< a character that re-encoding refuses

/// Re-encodes objects from UTF-8 to ISO 8859-1.
class Recoding {
public:
    int converted = 0;
    int errors = 0;

    void operator()(QORObject& object) { object.transcode(from.get(), to.get(), converted, errors); }

private:
    std::unique_ptr<QOREncodingConverter> from{QOREncodingConverter::create("UTF-8")};
    std::unique_ptr<QOREncodingConverter> to{QOREncodingConverter::create("ISO-8859-1")};
};

/// A text attribute by its accessors.
template <class Class>
struct TextAttribute {
    QORString const& (Class::*get)() const;
    void (Class::*set)(QORString const&);
};

/// Expects each of the attributes, and the name, to be re-encoded on its own: when one fails, it keeps its
/// text and the others change all the same.
template <class Class>
void expectTextsRecoded(std::vector<TextAttribute<Class>> const& attributes) {
    for (std::size_t failing = 0; failing <= attributes.size() + 1; ++failing) {
        SCOPED_TRACE(failing);
        Class object;
        for (std::size_t i = 0; i < attributes.size(); ++i)
            (object.*attributes[i].set)(i == failing ? notInLatin1 : inUtf8);
        bool const nameFails = failing == attributes.size();
        object.setName(nameFails ? notInLatin1 : inUtf8);
        Recoding recode;
        recode(object);
        for (std::size_t i = 0; i < attributes.size(); ++i)
            EXPECT_EQ((object.*attributes[i].get)(), QORString(i == failing ? notInLatin1 : inLatin1)) << i;
        EXPECT_EQ(object.getName(), QORString(nameFails ? notInLatin1 : inLatin1));
        bool const anyFails = failing <= attributes.size();
        EXPECT_EQ(recode.errors, anyFails ? 1 : 0);
        EXPECT_EQ(recode.converted, static_cast<int>(attributes.size()) + (anyFails ? 0 : 1));
    }
}

/// The default value that the reflection record of an attribute gives.
inline QORString recordedDefault(QORAttributeType attribute) {
    return QORMetaRepository::getMetaRepository()->getMetaAttributeByID(attribute)->getDefaultValue();
}
