#pragma once

#include "TableDeviations.h"

#include <qor/QORAllClasses.h>
#include <qor/QORElementType.h>
#include <qor/QORMetaLink.h>
#include <qor/QORMetaRepository.h>
#include <qor/QORObject.h>

#include <gtest/gtest.h>

/// The objects that the checks of the generated rows work on. Classes are erased here, so that the checks
/// themselves are compiled once a unit and not once a class.
namespace table {

/// An object of the library's own class of that number.
inline QORObject* createObject(int classId) {
    return createQORObject(static_cast<QORElementType>(classId));
}

/// A caller's class: it tells its death, and the library can't take it for one of its own.
template <class Class>
class Watched final : public Class {
public:
    explicit Watched(bool& whereToTell) : dead(whereToTell) {}
    Watched(Watched const&) = delete;
    Watched& operator=(Watched const&) = delete;
    ~Watched() override { dead = true; }

private:
    bool& dead;
};

/// How objects of one class are made, copied and assigned.
struct Maker {
    QORObject* (*make)();
    QORObject* (*makeWatched)(bool& dead);
    QORObject* (*copy)(QORObject const& object);
    void (*assign)(QORObject& target, QORObject const& source);
};

template <class Class>
struct MakerOf {
    static QORObject* make() { return new Class; }
    static QORObject* makeWatched(bool& dead) { return new Watched<Class>(dead); }
    static QORObject* copy(QORObject const& object) { return new Class(static_cast<Class const&>(object)); }
    static void assign(QORObject& target, QORObject const& source) {
        static_cast<Class&>(target) = static_cast<Class const&>(source);
    }
    static constexpr Maker maker{make, makeWatched, copy, assign};
};

/// An object under test. What is still alive in the end is unlinked and deleted. A death shows at once in a
/// watched object; of an object of the library's own class, the leak check of the sanitizers tells.
class Subject {
public:
    Subject(Maker const& maker, bool isWatched)
        : object(isWatched ? maker.makeWatched(dead) : maker.make()), watched(isWatched) {}
    explicit Subject(QORObject* toDelete) : object(toDelete), watched(false) {}
    Subject(Subject const&) = delete;
    Subject& operator=(Subject const&) = delete;
    ~Subject() {
        if (gone || dead)
            return;
        object->isolate(false);
        delete object;
    }

    QORObject& operator*() const { return *object; }
    QORObject* operator->() const { return object; }
    QORObject* get() const { return object; }

    void expectAlive() const { EXPECT_FALSE(dead); }
    void expectDead() {
        if (watched) {
            EXPECT_TRUE(dead);
        }
        gone = watched ? dead : true;
    }
    void destroy() {
        gone = true;
        delete object;
    }

private:
    bool dead = false;
    bool gone = false;
    QORObject* object;
    bool watched;
};

/// Keeps an object referenced, over an end other than the one under test.
class Companion {
public:
    Companion(QORObject& object, int linkId, int companionClass) : companion(createObject(companionClass)) {
        QORMetaLink const* const link =
            QORMetaRepository::getMetaRepository()->getMetaLinkByID(static_cast<QORAssociationType>(linkId));
        EXPECT_TRUE(link->addLink(&object, companion));
        EXPECT_TRUE(object.isReferenced());
    }
    Companion(Companion const&) = delete;
    Companion& operator=(Companion const&) = delete;
    ~Companion() {
        if (gone)
            return;
        companion->isolate(false);
        delete companion;
    }

    /// It has gone with the object, as nothing else referred to it.
    void expectGone() { gone = true; }

private:
    QORObject* companion;
    bool gone = false;
};

/// Names an object, if it can be named.
inline void nameObject(QORObject& object, char const* name) {
    if (!hasNameOfItsType(object.getElementType()))
        object.setName(name);
}

} // namespace table
