#pragma once

#include <qor/QORContainer.h>
#include <qor/QORMetaAttributeType.h>
#include <qor/QORMetaLinkType.h>
#include <qor/QORObject.h>
#include <qor/QORRBTree.h>
#include <qor/QORString.h>

#include <vector>

/// The class tables as constant data, for the model of the random test and for what the checks of classes
/// share: nothing of it comes from the library.
namespace metamodel {

enum class Container {
    NONE, ///< a unary end
    PTR_TREE,
    NAME_TREE,
    OPTIONAL_NAME_TREE,
    NAME_PTR_TREE,
    NAME_ELEMENT_TYPE_TREE,
    TYPE_VALUE_TREE,
    FORMAT_TREE,
    MODEL_ELEMENT_TREE,
    PTR_VECTOR,
    NAME_VECTOR
};

/// What the destructor of each object made by `makeWatched` calls.
extern void (*whenWatchedDies)(QORObject* object);
/// What each virtual operation of those calls first; it may throw.
extern void (*whenWatchedIsAsked)(QORObject const* object);

/// A link end with its typed members; those that it lacks are null.
struct End {
    int id;
    char const* owner; ///< the class that declares it
    char const* role;
    int ownerId;
    int farId; ///< the end that answers this one
    QORMetaLinkType type;
    Container container;
    bool leftToDestructor;

    bool (*add)(QORObject& object, QORObject* far);
    bool (*unlink)(QORObject& object, QORObject* far);
    QORObject* (*get)(QORObject const& object);
    bool (*remove)(QORObject& object);
    int (*count)(QORObject const& object);
    QORObject* (*at)(QORObject const& object, int index);
    bool (*removeAt)(QORObject& object, int index);
    bool (*removeNamed)(QORObject& object, QORString const& name, int* cursor);
    void (*removeAll)(QORObject& object);

    QORObject* (*find)(QORObject const& object, QORString const& name, int* cursor);
    bool (*contains)(QORObject const& object, QORObject const* far);
    std::vector<QORObject*> (*byPosition)(QORObject const& object);
};

struct Attribute {
    int id;
    char const* name;
    QORMetaAttributeType type;
    char const* first; ///< the text of a new object's value
    bool compared;
    bool assigned;
    char const* const* enumerators; ///< texts by value, closed by null; an empty one is retired
    int place;                      ///< of its record among those of the class
};

/// A class with what it declares itself, in the order of its fields.
struct Class {
    int id;
    char const* name;
    int baseId; ///< -1 for the root
    bool abstract;
    std::vector<Attribute> attributes;
    std::vector<int> ends;

    QORObject* (*make)(); ///< null for an abstract class
    QORObject* (*makeWatched)();
    QORObject* (*copy)(QORObject const& object);
    void (*assign)(QORObject& target, QORObject const& source);
};

/// All classes, by number.
std::vector<Class> const& classes();
/// All link ends, by number.
std::vector<End> const& ends();
/// The attributes that a class declares itself, in the order of its fields.
std::vector<Attribute> attributesOf(int classId);
/// The numbers of the ends that a class declares itself, in the order of its fields.
std::vector<int> endsOf(int classId);

// ---- how the tables reach the typed members ---------------------------------------------------------------

/// A caller's class over one of the library, which overrides all that the root class lets it override.
template <class Type>
class Watched final : public Type {
public:
    Watched() = default;
    Watched(Watched const&) = delete;
    Watched& operator=(Watched const&) = delete;
    ~Watched() override { whenWatchedDies(this); }

    QORObject& setFrom(QORObject const& other) override { return asked().Type::setFrom(other); }
    QORObject* removeAggregationAssembly() override { return asked().Type::removeAggregationAssembly(); }
    bool recursiveDelete() override { return asked().Type::recursiveDelete(); }
    QORObject* isolate(bool deleteUnreferenced) override { return asked().Type::isolate(deleteUnreferenced); }
    bool isInstanceOf(QORElementType type) const override { return asked().Type::isInstanceOf(type); }
    QORObject* getParent() const override { return asked().Type::getParent(); }
    int getParentCount() const override { return asked().Type::getParentCount(); }
    bool operator==(QORObject const& other) const override { return asked().Type::operator==(other); }
    bool operator!=(QORObject const& other) const override { return asked().Type::operator!=(other); }
    bool equals(QORObject const& other) const override { return asked().Type::equals(other); }
    bool isReferenced() const override { return asked().Type::isReferenced(); }
    void transcode(QOREncodingConverter* from, QOREncodingConverter* to, int& first, int& errors) override {
        asked().Type::transcode(from, to, first, errors);
    }
    bool depthTraversal(QORTraversalOperation& operation, void* data) override {
        return asked().Type::depthTraversal(operation, data);
    }
    void setName(QORString const& newName) override { asked().Type::setName(newName); }
    QORString const& getName() const override { return asked().Type::getName(); }
    QORString getDisplayName() const override { return asked().Type::getDisplayName(); }
    void _depthTraversal(QORTraversalOperation& operation, void* data) override {
        asked().Type::_depthTraversal(operation, data);
    }
    QORMetaClass* getMetaClass() const override { return asked().Type::getMetaClass(); }

private:
    Watched& asked() {
        whenWatchedIsAsked(this);
        return *this;
    }
    Watched const& asked() const {
        whenWatchedIsAsked(this);
        return *this;
    }
};

template <class Type>
struct Made {
    static QORObject* make() { return new Type; }
    static QORObject* makeWatched() { return new Watched<Type>; }
    static QORObject* copy(QORObject const& object) { return new Type(static_cast<Type const&>(object)); }
    static void assign(QORObject& target, QORObject const& source) {
        static_cast<Type&>(target) = static_cast<Type const&>(source);
    }
};

template <class Type, class Far, Far* (Type::*getFar)() const, bool (Type::*addFar)(Far*),
          bool (Type::*removeFar)(), bool (Type::*unlinkFar)(Far*)>
struct Unary {
    static bool add(QORObject& object, QORObject* far) {
        return (static_cast<Type&>(object).*addFar)(static_cast<Far*>(far));
    }
    static bool unlink(QORObject& object, QORObject* far) {
        return (static_cast<Type&>(object).*unlinkFar)(static_cast<Far*>(far));
    }
    static QORObject* get(QORObject const& object) { return (static_cast<Type const&>(object).*getFar)(); }
    static bool remove(QORObject& object) { return (static_cast<Type&>(object).*removeFar)(); }

    static void fill(End& end) {
        end.add = add;
        end.unlink = unlink;
        end.get = get;
        end.remove = remove;
    }
};

template <class Type, class Far, int (Type::*countFar)() const, Far* (Type::*farAt)(int) const,
          bool (Type::*addFar)(Far*), bool (Type::*removeFarAt)(int),
          bool (Type::*removeFarNamed)(QORString const&, int*), bool (Type::*unlinkFar)(Far*),
          void (Type::*removeAllFar)()>
struct Nary {
    static bool add(QORObject& object, QORObject* far) {
        return (static_cast<Type&>(object).*addFar)(static_cast<Far*>(far));
    }
    static bool unlink(QORObject& object, QORObject* far) {
        return (static_cast<Type&>(object).*unlinkFar)(static_cast<Far*>(far));
    }
    static int count(QORObject const& object) { return (static_cast<Type const&>(object).*countFar)(); }
    static QORObject* at(QORObject const& object, int index) {
        return (static_cast<Type const&>(object).*farAt)(index);
    }
    static bool removeAt(QORObject& object, int index) {
        return (static_cast<Type&>(object).*removeFarAt)(index);
    }
    static bool removeNamed(QORObject& object, QORString const& name, int* cursor) {
        return (static_cast<Type&>(object).*removeFarNamed)(name, cursor);
    }
    static void removeAll(QORObject& object) { (static_cast<Type&>(object).*removeAllFar)(); }

    static void fill(End& end) {
        end.add = add;
        end.unlink = unlink;
        end.count = count;
        end.at = at;
        end.removeAt = removeAt;
        end.removeNamed = removeNamed;
        end.removeAll = removeAll;
    }
};

template <class Type, class Far, Far* (Type::*findFar)(QORString const&, int*) const,
          bool (Type::*containsFar)(Far const*) const>
struct Finding {
    static QORObject* find(QORObject const& object, QORString const& name, int* cursor) {
        return (static_cast<Type const&>(object).*findFar)(name, cursor);
    }
    static bool contains(QORObject const& object, QORObject const* far) {
        return (static_cast<Type const&>(object).*containsFar)(static_cast<Far const*>(far));
    }

    static void fill(End& end) {
        end.find = find;
        end.contains = contains;
    }
};

template <class Type, class View, void (Type::*fillView)(View&) const>
struct ByPosition {
    static std::vector<QORObject*> read(QORObject const& object) {
        View view;
        (static_cast<Type const&>(object).*fillView)(view);
        std::vector<QORObject*> elements;
        QORRBTree::Iterator walk(view, true);
        for (QORContainerItem* item = walk.get(); item; item = walk.next(1))
            elements.push_back(static_cast<QORObject*>(item));
        return elements;
    }

    static void fill(End& end) { end.byPosition = read; }
};

template <class... Members>
End end(End row) {
    (Members::fill(row), ...);
    return row;
}

} // namespace metamodel
