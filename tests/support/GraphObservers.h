#pragma once

#include <qor/QORElementType.h>
#include <qor/QOREncodingConverter.h>
#include <qor/QORException.h>
#include <qor/QORMetaClass.h>
#include <qor/QORObject.h>
#include <qor/QORSDK.h>
#include <qor/QORTraversalOperation.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// What tests of object graphs share: observers that are derived like a caller's own classes, owners that are
/// safe whatever is linked, and the walks and refusals that many classes have alike.
namespace graph {

using Labels = std::vector<std::string>;
using Objects = std::vector<QORObject*>;

/// What happened to watched objects, by their labels.
struct Journal {
    Labels deaths;    ///< in the order in which the destructors began
    Labels recodings; ///< in the order of the calls of transcode
    Labels namings;   ///< in the order of the calls of setName
};

/// A caller's class that tells a journal about itself. Also makes objects of an abstract class.
template <class Base>
class Watched : public Base {
public:
    Watched(Journal& where, std::string ownLabel) : journal(where), label(std::move(ownLabel)) {}
    Watched(Watched const&) = delete;
    Watched& operator=(Watched const&) = delete;
    ~Watched() override { journal.deaths.push_back(label); }

    void transcode(QOREncodingConverter* from, QOREncodingConverter* to, int& firstCounter,
                   int& errorCounter) override {
        journal.recodings.push_back(label);
        Base::transcode(from, to, firstCounter, errorCounter);
    }

    void setName(QORString const& newName) override {
        journal.namings.push_back(label);
        if (onSetName)
            onSetName();
        Base::setName(newName);
    }

    std::function<void()> onSetName; ///< called before the name changes

private:
    Journal& journal;
    std::string label;
};

/// A watched object that is expected to die by the operation under test.
template <class Base>
Watched<Base>* watched(Journal& journal, std::string const& label) {
    return new Watched<Base>(journal, label);
}

/// A named object that something in the test comes to own.
template <class Class>
Class* named(char const* name) {
    auto* const object = new Class;
    object->setName(name);
    return object;
}

/// Makes objects of an abstract class.
template <class Base>
class Plain : public Base {};

/// An object that outlives what the test does to its links, and goes alone in the end.
template <class Class>
class Held {
public:
    Held() : object(new Class) {}
    explicit Held(char const* name) : Held() { object->setName(name); }
    template <class... Arguments>
    explicit Held(Journal& journal, Arguments&&... arguments)
        : object(new Class(journal, std::forward<Arguments>(arguments)...)) {}
    Held(Held const&) = delete;
    Held& operator=(Held const&) = delete;
    ~Held() {
        object->isolate(false);
        delete object;
    }

    Class* operator->() const { return object; }
    Class& operator*() const { return *object; }
    operator Class*() const { return object; }
    Class* get() const { return object; }

private:
    Class* object;
};

/// The objects of a walk, owners first.
inline Objects walkOf(QORObject& root) {
    struct Visits : QORTraversalOperation {
        Objects objects;
        bool pre_process(QORObject* object, void*&) override {
            objects.push_back(object);
            return true;
        }
    } visits;
    root.depthTraversal(visits, nullptr);
    return visits.objects;
}

/// The names of what a container-like view holds, in its order.
template <class View>
Labels namesIn(View const& view) {
    Labels names;
    for (int i = 0; i < view.size; ++i)
        names.emplace_back(static_cast<QORObject const*>(view[i])->getName().chars);
    return names;
}

/// Two objects of which the first has the lower address, as ends ordered by address hold them.
template <class Class>
std::pair<Class*, Class*> byAddress(Class* one, Class* other) {
    return std::less<QORObject*>()(one, other) ? std::pair(one, other) : std::pair(other, one);
}

/// Expects the name to be refused with the message of that owner's and that object's class, and the object to
/// be where and what it was.
inline void expectNameRefused(QORObject& object, char const* name, char const* ownerClass,
                              char const* objectClass) {
    std::string const before = object.getName().chars;
    QORObject* const owner = object.getParent();
    int const owners = object.getParentCount();
    try {
        object.setName(name);
        ADD_FAILURE() << "the name " << name << " was accepted";
    } catch (QORException const& exception) {
        EXPECT_STREQ(exception.what(), QORSDK::ILLEGAL_ARGUMENT.getMessage(ownerClass, objectClass).chars);
    }
    EXPECT_EQ(before, object.getName().chars);
    EXPECT_EQ(owner, object.getParent());
    EXPECT_EQ(owners, object.getParentCount());
}

/// Expects each of both objects to count as referenced exactly while the link stands. `remove` must be the
/// unlinking form.
template <class Near, class Far, class NearBase, class FarBase>
void expectReferencedThrough(bool (NearBase::*add)(FarBase*), bool (NearBase::*remove)(FarBase*)) {
    Held<Near> near;
    Held<Far> far;
    EXPECT_FALSE(near->isReferenced());
    EXPECT_FALSE(far->isReferenced());
    ASSERT_TRUE((near.get()->*add)(far.get()));
    EXPECT_TRUE(near->isReferenced());
    EXPECT_TRUE(far->isReferenced());
    ASSERT_TRUE((near.get()->*remove)(far.get()));
    EXPECT_FALSE(near->isReferenced());
    EXPECT_FALSE(far->isReferenced());
}

/// Expects `recursiveDelete` to be refused and the number of owners to stay.
inline void expectDeletionRefused(QORObject& object) {
    QORObject* const owner = object.getParent();
    int const owners = object.getParentCount();
    EXPECT_GT(owners, 0);
    EXPECT_FALSE(object.recursiveDelete());
    EXPECT_EQ(owner, object.getParent());
    EXPECT_EQ(owners, object.getParentCount());
}

/// Expects a class that can be made by its number, under the base of that number.
template <class Class>
void expectConcrete(QORElementType type, int number, char const* displayName, QORMetaClass* base) {
    EXPECT_EQ(number, static_cast<int>(type));
    QORMetaClass* const metaClass = Class::getStaticMetaClass();
    EXPECT_EQ(type, metaClass->getId());
    EXPECT_STREQ(displayName, metaClass->getDisplayName().chars);
    EXPECT_EQ(base, metaClass->getParent());
    EXPECT_FALSE(metaClass->isAbstract());
    std::unique_ptr<QORObject> const made(metaClass->newInstance());
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(type, made->getElementType());
    EXPECT_NE(dynamic_cast<Class*>(made.get()), nullptr);
}

/// Expects a class of which no object can be made by its number.
template <class Class>
void expectAbstract(QORElementType type, int number, char const* displayName, QORMetaClass* base) {
    EXPECT_EQ(number, static_cast<int>(type));
    QORMetaClass* const metaClass = Class::getStaticMetaClass();
    EXPECT_EQ(type, metaClass->getId());
    EXPECT_STREQ(displayName, metaClass->getDisplayName().chars);
    EXPECT_EQ(base, metaClass->getParent());
    EXPECT_TRUE(metaClass->isAbstract());
    EXPECT_EQ(metaClass->newInstance(), nullptr);
}

/// Expects two objects that were made alike to differ for `equals` once `change` was applied to one of them.
template <class Class, class Change>
void expectCompared(Change const& change) {
    Class const other;
    Class object;
    EXPECT_TRUE(object.equals(other));
    change(object);
    EXPECT_FALSE(object.equals(other));
    EXPECT_FALSE(other.equals(object));
    EXPECT_TRUE(object.equals(object));
}

/// Expects two objects that were made alike to be equal also after `change` was applied to one of them.
template <class Class, class Change>
void expectNotCompared(Change const& change) {
    Class const other;
    Class object;
    change(object);
    EXPECT_TRUE(object.equals(other));
    EXPECT_TRUE(other.equals(object));
}

/// Texts in UTF-8, and what becomes of them in ISO 8859-1.
constexpr char const* const rawText = "\xC3\xA9";
constexpr char const* const recodedText = "\xE9";
constexpr char const* const stubbornText = "\xE4\xB8\x80"; ///< a character that ISO 8859-1 lacks

/// Re-encodes graphs from UTF-8 to ISO 8859-1.
class Recoding {
public:
    void operator()(QORObject& object) { object.transcode(from.get(), to.get(), first, errors); }

    int first = 0;
    int errors = 0;

private:
    std::unique_ptr<QOREncodingConverter> from{QOREncodingConverter::create("UTF-8")};
    std::unique_ptr<QOREncodingConverter> to{QOREncodingConverter::create("ISO-8859-1")};
};

} // namespace graph
