#pragma once

#include "Metamodel.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

/// A slow and obvious picture of an object graph, changed by the rules as they are told and never by the
/// library. It looks at the library's objects in three cases only: for their addresses, which some ends are
/// sorted by; to learn which new objects are the copies that an operation has made; and where a tree is no
/// longer in order, so that the way down it, which no rule tells, decides whether and where it takes an
/// element.
namespace model {

using metamodel::Attribute;
using metamodel::Class;
using metamodel::Container;
using metamodel::End;

/// What the library does otherwise than the model.
struct Mismatch : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Several changes hang on a tree that is out of order: what comes of them has to be read from the library.
struct Unforeseeable {};

/// The attributes and ends of a class with all its bases, from the class up to the root.
struct Shape {
    struct Level {
        Class const* declaring;
        std::vector<int> ends; ///< indices into `ends`, in field order
    };
    Class const* type;
    std::vector<Level> levels;
    std::vector<Attribute const*> attributes;
    std::vector<End const*> ends;
    std::vector<int> indexOfEnd; ///< by the end's number; -1 for one that the class lacks

    bool isA(int classId) const;
    int attribute(int id) const; ///< its index, or -1
};

Shape const& shapeOf(int classId);

struct Object;

struct Side {
    Object* far = nullptr;         ///< of a unary end
    std::vector<Object*> elements; ///< of a nary end, in order
    bool draining = false;         ///< while all its elements go, the end counts as set

    bool isSet() const { return far || draining || !elements.empty(); }
};

/// The step that made an object, and its number among the objects of that step.
struct Key {
    int step;
    int place;

    bool operator<(Key const& other) const {
        return step != other.step ? step < other.step : place < other.place;
    }
};

struct Object {
    Key key;
    QORObject* real;
    Shape const* shape;
    std::string name;
    std::vector<std::string> values; ///< of the attributes, as text; those of `name` aren't used
    std::vector<Side> sides;
    std::size_t level = 0; ///< how far the destructors have come
    bool alive = true;
    bool takingApart = false;
    bool watched = false;
    bool touched = false;

    bool isA(int classId) const { return shape->isA(classId); }
    Side& side(End const& end) {
        return sides[static_cast<std::size_t>(shape->indexOfEnd[static_cast<std::size_t>(end.id)])];
    }
    Side const& side(End const& end) const { return const_cast<Object*>(this)->side(end); }
    std::string& value(int attributeId) {
        return values[static_cast<std::size_t>(shape->attribute(attributeId))];
    }
};

/// Which way a name or value was taken or refused, as only the library can tell where a tree is out of order.
struct Outcome {
    bool threw = false;
    std::string name; ///< the object's name now
};

struct Counters {
    long foreseen = 0;      ///< elements whose acceptance and place followed from the rules
    long unforeseen = 0;    ///< those that went into a tree out of order
    long refused = 0;       ///< elements and renames that an end refused
    long unforeseeable = 0; ///< operations read from the library as a whole
};

class World {
public:
    Object& create(Key key, QORObject* real, int classId);
    Object* find(Key key) const;
    std::vector<Object*> living() const;
    /// What has come about since the last call.
    std::vector<Object*> takeCreated();
    std::vector<Object*> takeDead();
    /// The living objects that were changed since the last call.
    std::vector<Object*> takeTouched();
    /// Frees the dead ones of the last `takeDead`.
    void forgetDead();

    // ---- questions --------------------------------------------------------------------------------------

    std::string nameOf(Object const& object) const;
    bool isReferenced(Object const& object) const;
    std::vector<Object*> parentsOf(Object const& object) const;
    bool equals(Object const& a, Object const& b) const;
    /// Whether the walk over owned objects from this one comes to an end.
    bool walkEnds(Object const& object) const;
    /// Whether an object below this one refers to it: it can then die of their deaths.
    bool refersToFromBelow(Object const& object) const;
    std::vector<Object*> childrenOf(Object const& object) const;
    bool inOrder(End const& end, std::vector<Object*> const& elements) const;
    bool holdsEqual(Object const& object, End const& end, Object const& element) const;
    /// The position of the element that removal and search by name mean, -1 if none. The cursor takes the
    /// position that the library is to report. A null cursor searches from the beginning.
    int findNamed(Object const& object, End const& end, std::string const& name, int* cursor,
                  std::function<int()> const& observe) const;

    // ---- changes ----------------------------------------------------------------------------------------

    bool link(Object& object, End const& end, Object& far);
    bool unlink(Object& object, End const& end, Object& far);
    bool remove(Object& object, End const& end);
    bool removeAt(Object& object, End const& end, int position);
    void removeAll(Object& object, End const& end);
    Object* removeAggregationAssembly(Object& object);
    bool recursiveDelete(Object& object);
    void isolate(Object& object, bool deleteUnreferenced);
    void destroy(Object& object);
    /// False where the rules call for an exception.
    bool setName(Object& object, std::string const& name, Outcome const& outcome);
    void setUniqueName(Object& object, std::string const& base, char separator, Outcome const& outcome);
    bool setValue(Object& object, int attribute, std::string const& text, Outcome const& outcome);
    Object& copy(Key key, Object const& source, QORObject* real);
    bool assign(Key key, Object& target, Object& source, Outcome const& outcome);
    void transcode(Object& object, bool toUtf8, int& converted, int& failed);
    void destroyBelow(Object& top);
    /// Takes over names, texts and orders of an object and all it owns, and the order of the ends that hold
    /// them, as the library has them: the same elements, in whatever order.
    void readBack(Object& object);

    Counters counters;
    /// A rule that is wrong on purpose, for the test of the test.
    bool vectorsLoseTheirOrder = false;

private:
    using Elements = std::vector<Object*>;
    struct Place {
        bool taken;
        std::size_t position;
    };

    int compare(Container container, Object const& a, Object const& b) const;
    Place placeFor(End const& end, Elements const& elements, Object const& object) const;
    bool insert(Object& owner, End const& end, Object& element);
    bool rekey(Object& object, End const& parentEnd, std::function<void()> const& change,
               std::function<void()> const& restore, std::function<bool()> const& accepted);
    bool rename(Object& object, std::string const& name, std::function<bool()> const& accepted);
    End const* firstOwnerEnd(Object const& object, std::size_t level) const;
    Elements readEnd(Object const& object, End const& end) const;
    void clearFarEnd(Object& element, End const& farEnd, Object& object);
    bool takeOut(Object& object, End const& end, Object& element);
    void unlinkAll(Object& object, End const& end);
    void deleteUnreferenced(Object& element, Object const& object);
    Object* removeAggregationAssembly(Object& object, std::size_t level);
    bool recursiveDelete(Object& object, std::size_t level);
    void takeApart(Object& object, std::size_t level);
    void transcodeTexts(Object& object, bool toUtf8, int& converted, int& failed);
    void transcodeNames(Object& object, bool toUtf8, int& converted, int& failed);
    void transcodeName(Object& object, bool toUtf8, int& converted, int& failed);
    void copyNotes(Key& key, Object& from, Object& to);
    void copyValues(Key& key, Object& from, Object& to);
    Object& copyAlone(Key key, Object const& source, QORObject* real);
    void destroyWalked(Object& object);
    End const* valuesEnd(Object const& object) const;
    void touch(Object& object);

    std::map<Key, std::unique_ptr<Object>> objects;
    std::map<QORObject const*, Object*> byAddress;
    std::vector<Object*> created;
    std::vector<Object*> dead;
    std::vector<Object*> forgotten;
    std::vector<Object*> changed;
};

End const& endOf(int id);
std::string describe(Object const& object);
/// The text in the other encoding, or the same and false if that can't be.
bool recode(std::string& text, bool toUtf8);

} // namespace model
