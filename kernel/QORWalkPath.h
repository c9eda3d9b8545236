#pragma once

#ifdef QOR_CHECKED

#include "QORAssert.h"

#include <qor/QORObject.h>

#include <cstddef>
#include <functional>
#include <unordered_set>
#include <vector>

/// The objects from the top of a walk down to the one that it is at, in a checked build; does nothing in
/// others. Callers' classes walk in pieces, which belong together by `walk`, an address that all of them have
/// in common.
class QORWalkPath {
public:
    explicit QORWalkPath(void const* walk) : id(walk) {}
    QORWalkPath(QORWalkPath const&) = delete;
    QORWalkPath& operator=(QORWalkPath const&) = delete;
    ~QORWalkPath() {
        while (!entered.empty()) // an exception has ended the walk
            leave();
        if (underWay().empty())
            Places().swap(underWay()); // which keeps no memory then
    }

    /// Ends the process if the object is on the path already: the walk would go round for ever.
    void enter(QORObject const& object, unsigned line, char const* function) {
        entered.push_back(&object);
        if (!underWay().insert({id, &object}).second)
            qorAssertionFailed("no object owns itself, directly or through others", "QORRecipe.cpp", line,
                               function);
    }

    /// Leaves the object that was entered last.
    void leave() {
        underWay().erase({id, entered.back()});
        entered.pop_back();
    }

private:
    struct Place {
        void const* walk;
        QORObject const* object;
        bool operator==(Place const& other) const { return walk == other.walk && object == other.object; }
    };
    struct Hash {
        std::size_t operator()(Place const& place) const {
            return std::hash<void const*>()(place.object) * 31 + std::hash<void const*>()(place.walk);
        }
    };
    using Places = std::unordered_set<Place, Hash>;

    static Places& underWay() {
        static thread_local Places places;
        return places;
    }

    void const* id;
    std::vector<QORObject const*> entered;
};

#else

class QORObject;

class QORWalkPath {
public:
    explicit QORWalkPath(void const*) {}
    void enter(QORObject const&, unsigned, char const*) {}
    void leave() {}
};

#endif
