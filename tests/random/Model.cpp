#include "Model.h"

#include <qor/QORAssociationType.h>
#include <qor/QORAttributeType.h>
#include <qor/QORElementType.h>
#include <qor/QORNote.h>

#include <algorithm>
#include <set>
#include <sstream>
#include <utility>

namespace model {
namespace {

bool isParent(End const& end) {
    return end.type == QORMetaLinkType::PARENT;
}

bool isChild(End const& end) {
    return end.type == QORMetaLinkType::CHILD;
}

bool isUnary(End const& end) {
    return end.container == Container::NONE;
}

bool isVector(Container container) {
    return container == Container::PTR_VECTOR || container == Container::NAME_VECTOR;
}

End const& farOf(End const& end) {
    return endOf(end.farId);
}

int sign(int order) {
    return order < 0 ? -1 : order > 0;
}

int sign(Object const* a, Object const* b) {
    auto const left = reinterpret_cast<std::uintptr_t>(a->real);
    auto const right = reinterpret_cast<std::uintptr_t>(b->real);
    return left < right ? -1 : left > right;
}

Shape makeShape(int classId) {
    Shape shape;
    shape.type = &metamodel::classes()[static_cast<std::size_t>(classId)];
    shape.indexOfEnd.assign(metamodel::ends().size(), -1);
    for (int id = classId; id >= 0;) {
        Class const& level = metamodel::classes()[static_cast<std::size_t>(id)];
        shape.levels.push_back({&level, {}});
        for (int const end : level.ends) {
            int const index = static_cast<int>(shape.ends.size());
            shape.indexOfEnd[static_cast<std::size_t>(end)] = index;
            shape.levels.back().ends.push_back(index);
            shape.ends.push_back(&endOf(end));
        }
        for (Attribute const& attribute : level.attributes)
            shape.attributes.push_back(&attribute);
        id = level.baseId;
    }
    return shape;
}

/// The name of a new object: that of the one type of formats which some classes stand for.
char const* firstName(int classId) {
    switch (classId) {
    case QORElementType::MODEL_FORMAT:
        return "Model Metadata";
    case QORElementType::MAPPING_FORMAT:
        return "Transformation Metadata";
    case QORElementType::DATA_MOVEMENT_FORMAT:
        return "ETL Metadata";
    case QORElementType::CONFIGURATION_FORMAT:
        return "Configuration Metadata";
    default:
        return "";
    }
}

char const* fixedFormatType(int classId) {
    switch (classId) {
    case QORElementType::MODEL_FORMAT:
        return "application/x-tova-tzm";
    case QORElementType::MAPPING_FORMAT:
        return "application/x-tova-tzt";
    case QORElementType::DATA_MOVEMENT_FORMAT:
        return "application/x-tova-tze";
    case QORElementType::CONFIGURATION_FORMAT:
        return "application/x-tova-tzc";
    default:
        return nullptr;
    }
}

/// Which element types share one name space in a design package.
int typeInPackage(Object const& object) {
    int const type = object.shape->type->id;
    return type == QORElementType::SQL_VIEW_ENTITY ? static_cast<int>(QORElementType::CLASS) : type;
}

bool sharesNames(int type) {
    static std::set<int> const relationships{
        QORElementType::GENERALIZATION, QORElementType::ASSOCIATION, QORElementType::SQL_VIEW_ASSOCIATION,
        QORElementType::DEPENDENCY,     QORElementType::REALIZATION, QORElementType::JOIN};
    return relationships.count(type) != 0;
}

/// Whether search by name runs through the elements one by one, whatever their order.
bool scansForNames(Container container) {
    switch (container) {
    case Container::PTR_TREE:
    case Container::FORMAT_TREE:
    case Container::MODEL_ELEMENT_TREE:
    case Container::PTR_VECTOR:
    case Container::NAME_VECTOR:
        return true;
    default:
        return false;
    }
}

template <class List, class Item>
auto position(List const& list, Item const& item) {
    return std::find(list.begin(), list.end(), item);
}

} // namespace

End const& endOf(int id) {
    return metamodel::ends()[static_cast<std::size_t>(id)];
}

Shape const& shapeOf(int classId) {
    static std::map<int, Shape> shapes;
    auto const found = shapes.find(classId);
    return found != shapes.end() ? found->second : shapes.emplace(classId, makeShape(classId)).first->second;
}

bool Shape::isA(int classId) const {
    return std::any_of(levels.begin(), levels.end(),
                       [=](Level const& level) { return level.declaring->id == classId; });
}

int Shape::attribute(int id) const {
    for (std::size_t i = 0; i < attributes.size(); ++i)
        if (attributes[i]->id == id)
            return static_cast<int>(i);
    return -1;
}

std::string describe(Object const& object) {
    std::ostringstream text;
    text << object.shape->type->name << " " << object.key.step;
    if (object.key.place)
        text << "." << object.key.place;
    return text.str();
}

bool recode(std::string& text, bool toUtf8) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned const byte = static_cast<unsigned char>(text[i]);
        if (byte < 0x80) {
            result += text[i];
        } else if (toUtf8) {
            result += static_cast<char>(0xC0 | byte >> 6);
            result += static_cast<char>(0x80 | (byte & 0x3F));
        } else {
            // Only two-byte characters up to U+00FF have a place in the other encoding.
            unsigned const next = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0U;
            if ((byte != 0xC2 && byte != 0xC3) || (next & 0xC0) != 0x80)
                return false;
            result += static_cast<char>((byte & 3) << 6 | (next & 0x3F));
            ++i;
        }
    }
    text = result;
    return true;
}

// ---- objects ----------------------------------------------------------------------------------------------

Object& World::create(Key key, QORObject* real, int classId) {
    Shape const& shape = shapeOf(classId);
    auto object = std::make_unique<Object>();
    object->key = key;
    object->real = real;
    object->shape = &shape;
    object->name = firstName(classId);
    for (Attribute const* attribute : shape.attributes)
        object->values.push_back(attribute->first);
    if (char const* const type = fixedFormatType(classId))
        object->value(QORAttributeType::FORMAT__FORMAT_TYPE) = type;
    object->sides.resize(shape.ends.size());
    Object& made = *object;
    if (!objects.emplace(key, std::move(object)).second)
        throw std::logic_error("two objects of one key");
    byAddress[real] = &made;
    created.push_back(&made);
    touch(made);
    return made;
}

Object* World::find(Key key) const {
    auto const found = objects.find(key);
    return found != objects.end() && found->second->alive ? found->second.get() : nullptr;
}

std::vector<Object*> World::living() const {
    std::vector<Object*> all;
    for (auto const& [key, object] : objects)
        if (object->alive)
            all.push_back(object.get());
    return all;
}

std::vector<Object*> World::takeCreated() {
    return std::exchange(created, {});
}

std::vector<Object*> World::takeDead() {
    forgotten.insert(forgotten.end(), dead.begin(), dead.end());
    return std::exchange(dead, {});
}

std::vector<Object*> World::takeTouched() {
    std::vector<Object*> living;
    for (Object* object : changed) {
        object->touched = false;
        if (object->alive)
            living.push_back(object);
    }
    changed.clear();
    return living;
}

void World::forgetDead() {
    for (Object* object : std::exchange(forgotten, {}))
        objects.erase(Key(object->key));
}

void World::touch(Object& object) {
    if (object.touched)
        return;
    object.touched = true;
    changed.push_back(&object);
}

// ---- questions --------------------------------------------------------------------------------------------

std::string World::nameOf(Object const& object) const {
    if (!object.isA(QORElementType::PROPERTY_VALUE))
        return object.name;
    Object const* const type = object.side(endOf(QORAssociationType::PROPERTY_VALUE__PROPERTY_TYPE)).far;
    return type ? type->name : std::string();
}

/// Whether any end is set, of the levels that the destructors have not yet passed.
bool World::isReferenced(Object const& object) const {
    for (std::size_t level = object.level; level < object.shape->levels.size(); ++level)
        for (int const end : object.shape->levels[level].ends)
            if (object.sides[static_cast<std::size_t>(end)].isSet())
                return true;
    return false;
}

std::vector<Object*> World::parentsOf(Object const& object) const {
    std::vector<Object*> parents;
    for (std::size_t i = 0; i < object.sides.size(); ++i)
        if (isParent(*object.shape->ends[i]) && object.sides[i].far)
            parents.push_back(object.sides[i].far);
    return parents;
}

bool World::equals(Object const& a, Object const& b) const {
    if (a.shape != b.shape)
        return false;
    if (&a == &b)
        return true;
    if (a.isA(QORElementType::DERIVED_TYPE)) {
        End const& end = endOf(QORAssociationType::DERIVED_TYPE__TYPE_VALUE);
        auto const& left = a.side(end).elements;
        auto const& right = b.side(end).elements;
        if (!std::equal(left.begin(), left.end(), right.begin(), right.end(),
                        [this](Object const* x, Object const* y) { return equals(*x, *y); }))
            return false;
    }
    for (std::size_t i = 0; i < a.values.size(); ++i) {
        Attribute const& attribute = *a.shape->attributes[i];
        bool const counts = attribute.compared && attribute.id != QORAttributeType::OBJECT__ID &&
                            attribute.id != QORAttributeType::OBJECT__NAME;
        if (counts && a.values[i] != b.values[i])
            return false;
    }
    return nameOf(a) == nameOf(b);
}

std::vector<Object*> World::childrenOf(Object const& object) const {
    std::vector<Object*> children;
    for (auto level = object.shape->levels.rbegin(); level != object.shape->levels.rend(); ++level) {
        for (int const end : level->ends)
            if (isChild(*object.shape->ends[static_cast<std::size_t>(end)]))
                if (Object* const child = object.sides[static_cast<std::size_t>(end)].far)
                    children.push_back(child);
        for (int const end : level->ends)
            if (isChild(*object.shape->ends[static_cast<std::size_t>(end)])) {
                auto const& elements = object.sides[static_cast<std::size_t>(end)].elements;
                children.insert(children.end(), elements.begin(), elements.end());
            }
    }
    return children;
}

namespace {

/// Whether the objects below this one form no circle; also none that a shared child would have to be walked
/// through too often.
bool endsBelow(World const& world, Object const& object, std::vector<Object const*>& above, int& left) {
    if (--left < 0 || position(above, &object) != above.end())
        return false;
    above.push_back(&object);
    for (Object const* child : world.childrenOf(object))
        if (!endsBelow(world, *child, above, left))
            return false;
    above.pop_back();
    return true;
}

} // namespace

bool World::walkEnds(Object const& object) const {
    std::vector<Object const*> above;
    int left = 5000;
    return endsBelow(*this, object, above, left);
}

bool World::refersToFromBelow(Object const& object) const {
    std::vector<Object*> below = childrenOf(object);
    for (std::size_t i = 0; i < below.size(); ++i) {
        std::vector<Object*> const children = childrenOf(*below[i]);
        below.insert(below.end(), children.begin(), children.end());
    }
    for (std::size_t i = 0; i < object.sides.size(); ++i) {
        if (isChild(*object.shape->ends[i]) || isParent(*object.shape->ends[i]))
            continue;
        for (Object* each : below)
            if (object.sides[i].far == each ||
                position(object.sides[i].elements, each) != object.sides[i].elements.end())
                return true;
    }
    return false;
}

int World::findNamed(Object const& object, End const& end, std::string const& name, int* cursor,
                     std::function<int()> const& observe) const {
    Elements const& elements = object.side(end).elements;
    int const count = static_cast<int>(elements.size());
    auto const isNamed = [&](int i) { return nameOf(*elements[static_cast<std::size_t>(i)]) == name; };
    auto const scan = [&](int from) {
        while (from < count && !isNamed(from))
            ++from;
        return from < count ? from : -1;
    };
    if (cursor && *cursor != 0) {
        if (isVector(end.container)) {
            int const found = scan(std::clamp(*cursor, 0, count));
            if (found >= 0)
                *cursor = found;
            return found;
        }
        if (*cursor < 1 || *cursor - 1 >= count)
            return -1;
        if (scansForNames(end.container))
            return scan(*cursor); // the cursor is told to stay, wherever the match lies
        return *cursor < count && isNamed(*cursor) ? *cursor : -1;
    }
    int found;
    bool const sorted =
        std::is_sorted(elements.begin(), elements.end(),
                       [this](Object const* a, Object const* b) { return nameOf(*a) < nameOf(*b); });
    if (scansForNames(end.container) || sorted) {
        found = scan(0);
    } else {
        found = observe();
        if (found >= 0 && !isNamed(found))
            throw Mismatch("an element of another name was taken for " + name);
    }
    if (cursor && found >= 0)
        *cursor = found;
    return found;
}

// ---- order ------------------------------------------------------------------------------------------------

int World::compare(Container container, Object const& a, Object const& b) const {
    int const names = sign(nameOf(a).compare(nameOf(b)));
    int const types = sign(a.shape->type->id - b.shape->type->id);
    switch (container) {
    case Container::NAME_TREE:
    case Container::NAME_VECTOR:
        return names;
    case Container::OPTIONAL_NAME_TREE:
        return names == 0 && nameOf(a).empty() ? sign(&a, &b) : names;
    case Container::NAME_PTR_TREE:
        return names ? names : sign(&a, &b);
    case Container::NAME_ELEMENT_TYPE_TREE:
        return names ? names : types;
    case Container::TYPE_VALUE_TREE: {
        if (names || !nameOf(a).empty())
            return names;
        int const value = QORAttributeType::TYPE_VALUE__VALUE;
        return sign(const_cast<Object&>(a).value(value).compare(const_cast<Object&>(b).value(value)));
    }
    case Container::FORMAT_TREE:
        return types ? types : names;
    case Container::MODEL_ELEMENT_TREE: {
        if (names)
            return names;
        int const type = typeInPackage(a);
        if (int const order = sign(type - typeInPackage(b)))
            return order;
        return sharesNames(type) ? sign(&a, &b) : 0;
    }
    default:
        return sign(&a, &b);
    }
}

bool World::inOrder(End const& end, Elements const& elements) const {
    if (isVector(end.container))
        return true;
    for (std::size_t i = 1; i < elements.size(); ++i)
        if (compare(end.container, *elements[i - 1], *elements[i]) >= 0)
            return false;
    return true;
}

bool World::holdsEqual(Object const& object, End const& end, Object const& element) const {
    Elements const& elements = object.side(end).elements;
    return std::any_of(elements.begin(), elements.end(),
                       [&](Object const* each) { return compare(end.container, *each, element) == 0; });
}

/// Where an element goes among elements that are in order.
World::Place World::placeFor(End const& end, Elements const& elements, Object const& object) const {
    if (isVector(end.container)) {
        bool const taken = std::any_of(elements.begin(), elements.end(), [&](Object const* each) {
            return compare(end.container, object, *each) == 0;
        });
        return {taken, vectorsLoseTheirOrder ? 0 : elements.size()};
    }
    for (std::size_t i = 0; i < elements.size(); ++i) {
        int const order = compare(end.container, object, *elements[i]);
        if (order <= 0)
            return {order == 0, i};
    }
    return {false, elements.size()};
}

World::Elements World::readEnd(Object const& object, End const& end) const {
    Elements elements;
    for (int i = 0, count = end.count(*object.real); i < count; ++i) {
        auto const found = byAddress.find(end.at(*object.real, i));
        if (found == byAddress.end())
            throw Mismatch(describe(object) + " " + end.role + " holds an unknown object");
        elements.push_back(found->second);
    }
    return elements;
}

/// Puts an element into an end, in so far as the end takes it.
bool World::insert(Object& owner, End const& end, Object& element) {
    Elements& elements = owner.side(end).elements;
    if (inOrder(end, elements)) {
        ++counters.foreseen;
        Place const place = placeFor(end, elements, element);
        if (place.taken) {
            ++counters.refused;
            return false;
        }
        elements.insert(elements.begin() + static_cast<std::ptrdiff_t>(place.position), &element);
        touch(owner);
        return true;
    }
    ++counters.unforeseen;
    bool const mayBeTaken = std::any_of(elements.begin(), elements.end(), [&](Object const* each) {
        return compare(end.container, element, *each) == 0;
    });
    Elements const now = readEnd(owner, end);
    bool const inBefore = position(elements, &element) != elements.end();
    if (inBefore && now.size() != elements.size())
        throw Mismatch(describe(owner) + " " + end.role + " has taken " + describe(element) + " twice");
    auto const place = position(now, &element);
    if (inBefore || place == now.end()) {
        if (!mayBeTaken)
            throw Mismatch(describe(owner) + " " + end.role + " refused " + describe(element) +
                           ", which compares equal to no element");
        ++counters.refused;
        return false;
    }
    Elements others(now.begin(), place);
    others.insert(others.end(), place + 1, now.end());
    if (others != elements)
        throw Mismatch(describe(owner) + " " + end.role + " has changed the order of its other elements");
    if (place != now.begin() && compare(end.container, **(place - 1), element) >= 0)
        throw Mismatch(describe(element) + " stands behind a greater one in " + describe(owner) + " " +
                       end.role);
    if (place + 1 != now.end() && compare(end.container, element, **(place + 1)) >= 0)
        throw Mismatch(describe(element) + " stands before a smaller one in " + describe(owner) + " " +
                       end.role);
    elements = now;
    touch(owner);
    return true;
}

// ---- links ------------------------------------------------------------------------------------------------

bool World::link(Object& object, End const& end, Object& far) {
    End const& farEnd = farOf(end);
    touch(object);
    touch(far);
    if (isUnary(end) && !isUnary(farEnd))
        return link(far, farEnd, object);
    if (isUnary(end)) {
        if (object.side(end).far || far.side(farEnd).far || &object == &far)
            return false;
        object.side(end).far = &far;
        far.side(farEnd).far = &object;
        return true;
    }
    if (isUnary(farEnd)) {
        if (far.side(farEnd).far || !insert(object, end, far))
            return false;
        if (&object == &far)
            return false; // it stays in its own end
        far.side(farEnd).far = &object;
        return true;
    }
    bool const linked = position(object.side(end).elements, &far) != object.side(end).elements.end();
    if (&object == &far || linked || !insert(object, end, far))
        return false;
    if (insert(far, farEnd, object))
        return true;
    takeOut(object, end, far);
    return false;
}

bool World::takeOut(Object& object, End const& end, Object& element) {
    Elements& elements = object.side(end).elements;
    auto const place = position(elements, &element);
    if (place == elements.end())
        return false;
    elements.erase(place);
    touch(object);
    return true;
}

void World::clearFarEnd(Object& element, End const& farEnd, Object& object) {
    touch(element);
    if (!isUnary(farEnd))
        takeOut(element, farEnd, object);
    else if (element.side(farEnd).far == &object)
        element.side(farEnd).far = nullptr;
}

bool World::unlink(Object& object, End const& end, Object& far) {
    touch(object);
    if (isUnary(end)) {
        if (object.side(end).far != &far)
            return false;
        clearFarEnd(far, farOf(end), object);
        object.side(end).far = nullptr;
        return true;
    }
    if (!takeOut(object, end, far))
        return false;
    clearFarEnd(far, farOf(end), object);
    return true;
}

void World::deleteUnreferenced(Object& element, Object const& object) {
    if (&element != &object && !isReferenced(element))
        destroy(element);
}

bool World::remove(Object& object, End const& end) {
    Object* const far = object.side(end).far;
    if (!far)
        return false;
    touch(object);
    clearFarEnd(*far, farOf(end), object);
    deleteUnreferenced(*far, object);
    object.side(end).far = nullptr;
    return true;
}

bool World::removeAt(Object& object, End const& end, int at) {
    Elements& elements = object.side(end).elements;
    if (at < 0 || static_cast<std::size_t>(at) >= elements.size())
        return false;
    touch(object);
    Object& element = *elements[static_cast<std::size_t>(at)];
    elements.erase(elements.begin() + at);
    clearFarEnd(element, farOf(end), object);
    deleteUnreferenced(element, object);
    return true;
}

void World::removeAll(Object& object, End const& end) {
    Side& side = object.side(end);
    if (!side.isSet())
        return;
    touch(object);
    side.draining = true;
    while (!side.elements.empty()) {
        Object& element = *side.elements.front();
        side.elements.erase(side.elements.begin());
        clearFarEnd(element, farOf(end), object);
        deleteUnreferenced(element, object);
    }
    side.draining = false;
}

void World::unlinkAll(Object& object, End const& end) {
    if (isUnary(end)) {
        if (Object* const far = object.side(end).far)
            unlink(object, end, *far);
        return;
    }
    while (!object.side(end).elements.empty())
        unlink(object, end, *object.side(end).elements.front());
}

// ---- taking apart -----------------------------------------------------------------------------------------

End const* World::firstOwnerEnd(Object const& object, std::size_t level) const {
    for (; level < object.shape->levels.size(); ++level)
        for (int const end : object.shape->levels[level].ends)
            if (isParent(*object.shape->ends[static_cast<std::size_t>(end)]) &&
                object.sides[static_cast<std::size_t>(end)].far)
                return object.shape->ends[static_cast<std::size_t>(end)];
    return nullptr;
}

Object* World::removeAggregationAssembly(Object& object, std::size_t level) {
    End const* const end = firstOwnerEnd(object, level);
    if (!end)
        return nullptr;
    Object* const parent = object.side(*end).far;
    unlink(object, *end, *parent);
    return parent;
}

Object* World::removeAggregationAssembly(Object& object) {
    return removeAggregationAssembly(object, 0);
}

bool World::recursiveDelete(Object& object, std::size_t level) {
    if (firstOwnerEnd(object, level) || object.takingApart)
        return false;
    object.takingApart = true;
    takeApart(object, level);
    object.takingApart = false;
    return true;
}

bool World::recursiveDelete(Object& object) {
    return recursiveDelete(object, 0);
}

void World::takeApart(Object& object, std::size_t lowest) {
    touch(object);
    for (std::size_t level = object.shape->levels.size(); level-- > lowest;) {
        std::vector<End const*> own;
        for (int const end : object.shape->levels[level].ends)
            own.push_back(object.shape->ends[static_cast<std::size_t>(end)]);
        for (End const* end : own) {
            Object* const child = isChild(*end) ? object.side(*end).far : nullptr;
            if (!child)
                continue;
            unlink(object, *end, *child);
            if (recursiveDelete(*child))
                destroy(*child);
        }
        for (End const* end : own) {
            if (!isChild(*end) || isUnary(*end) || end->leftToDestructor)
                continue;
            Side& side = object.side(*end);
            side.draining = true;
            while (!side.elements.empty()) {
                Object& child = *side.elements.front();
                side.elements.erase(side.elements.begin());
                clearFarEnd(child, farOf(*end), object);
                if (!child.takingApart && recursiveDelete(child))
                    destroy(child);
            }
            side.draining = false;
        }
        for (End const* end : own) {
            if (isChild(*end) || isParent(*end))
                continue;
            if (isUnary(*end))
                remove(object, *end);
            else
                removeAll(object, *end);
        }
    }
}

/// The destructors, from the object's class up to the root.
void World::destroy(Object& object) {
    touch(object);
    for (object.level = 0; object.level < object.shape->levels.size(); ++object.level) {
        removeAggregationAssembly(object, object.level);
        recursiveDelete(object, object.level);
        auto const& own = object.shape->levels[object.level].ends;
        for (int const end : own)
            if (object.shape->ends[static_cast<std::size_t>(end)]->leftToDestructor)
                removeAll(object, *object.shape->ends[static_cast<std::size_t>(end)]);
        for (int const end : own)
            unlinkAll(object, *object.shape->ends[static_cast<std::size_t>(end)]);
    }
    object.alive = false;
    byAddress.erase(object.real);
    dead.push_back(&object);
}

void World::isolate(Object& object, bool deleting) {
    touch(object);
    for (auto const& level : object.shape->levels)
        for (int const index : level.ends) {
            End const& end = *object.shape->ends[static_cast<std::size_t>(index)];
            if (!deleting)
                unlinkAll(object, end);
            else if (isUnary(end))
                remove(object, end);
            else
                removeAll(object, end);
        }
}

// ---- names and values -------------------------------------------------------------------------------------

/// Changes what an object's place under an owner rests on. Where the owner refuses it, everything is as
/// before.
bool World::rekey(Object& object, End const& parentEnd, std::function<void()> const& change,
                  std::function<void()> const& restore, std::function<bool()> const& accepted) {
    Object& owner = *object.side(parentEnd).far;
    End const& end = farOf(parentEnd);
    touch(owner);
    if (isUnary(end)) {
        change();
        return true;
    }
    Elements& elements = owner.side(end).elements;
    Elements const before = elements;
    Elements others = elements;
    others.erase(position(others, &object));
    bool const ordered = inOrder(end, others);
    bool const taken = ordered || accepted();
    elements = others;
    change();
    if (taken && insert(owner, end, object))
        return true;
    if (!ordered) {
        ++counters.unforeseen;
        ++counters.refused;
        if (std::none_of(others.begin(), others.end(),
                         [&](Object const* each) { return compare(end.container, object, *each) == 0; }))
            throw Mismatch(describe(owner) + " " + end.role + " refused a new key for " + describe(object) +
                           ", which compares equal to no other element");
    }
    restore();
    elements = before;
    return false;
}

bool World::rename(Object& object, std::string const& name, std::function<bool()> const& accepted) {
    if (object.isA(QORElementType::PROPERTY_VALUE))
        return false;
    touch(object);
    End const* const owner = firstOwnerEnd(object, 0);
    if (!owner) {
        object.name = name;
        return true;
    }
    std::string const before = object.name;
    return rekey(
        object, *owner, [&] { object.name = name; }, [&] { object.name = before; }, accepted);
}

bool World::setName(Object& object, std::string const& name, Outcome const& outcome) {
    return rename(object, name, [&] { return !outcome.threw; });
}

void World::setUniqueName(Object& object, std::string const& base, char separator, Outcome const& outcome) {
    for (int n = 1; n < 10000; ++n) {
        std::string const candidate = base + separator + std::to_string(n);
        if (rename(object, candidate, [&] { return outcome.name == candidate; }))
            return;
    }
    throw Mismatch("no name is free for " + describe(object));
}

bool World::setValue(Object& object, int index, std::string const& text, Outcome const& outcome) {
    Attribute const& attribute = *object.shape->attributes[static_cast<std::size_t>(index)];
    std::string& value = object.values[static_cast<std::size_t>(index)];
    touch(object);
    auto const accepted = [&] { return !outcome.threw; };
    switch (attribute.id) {
    case QORAttributeType::OBJECT__NAME:
        return rename(object, text, accepted);
    case QORAttributeType::PROPERTY_ELEMENT_TYPE_SCOPE__SCOPE:
        value = text;
        return rename(object, text, accepted);
    case QORAttributeType::FORMAT__FORMAT_TYPE:
        if (char const* const fixed = fixedFormatType(object.shape->type->id))
            return text == fixed;
        value = text;
        return true;
    case QORAttributeType::TYPE_VALUE__VALUE: {
        End const& end = endOf(QORAssociationType::TYPE_VALUE__DERIVED_TYPE);
        std::string const before = value;
        if (object.side(end).far)
            return rekey(
                object, end, [&] { value = text; }, [&] { value = before; }, accepted);
        value = text;
        return true;
    }
    default:
        value = text;
        return true;
    }
}

// ---- copies -----------------------------------------------------------------------------------------------

Object& World::copyAlone(Key key, Object const& source, QORObject* real) {
    Object& copy = create(key, real, source.shape->type->id);
    copy.name = source.name;
    copy.values = source.values;
    copy.value(QORAttributeType::OBJECT__ID) = "0";
    if (copy.isA(QORElementType::ELEMENT))
        copy.value(QORAttributeType::ELEMENT__NATIVE_ID).clear();
    return copy;
}

/// Finds the notes that an element has got, which are copies of those of another one.
void World::copyNotes(Key& key, Object& from, Object& to) {
    End const& end = endOf(QORAssociationType::ELEMENT__NOTE);
    End const& textsEnd = farOf(end);
    std::vector<QORObject*> unknown;
    Elements const known = to.side(end).elements;
    for (int i = 0, count = end.count(*to.real); i < count; ++i) {
        QORObject* const real = end.at(*to.real, i);
        if (std::none_of(known.begin(), known.end(), [=](Object const* note) { return note->real == real; }))
            unknown.push_back(real);
    }
    Elements const sources = from.side(end).elements;
    if (unknown.size() != sources.size())
        throw Mismatch(describe(to) + " has got " + std::to_string(unknown.size()) + " notes as copies of " +
                       std::to_string(sources.size()));
    for (Object* source : sources) {
        // Which copy stands for which note can be told by what they hold alone.
        auto const fits = [&](QORObject const* real) {
            auto const& note = static_cast<QORNote const&>(*real);
            return source->name == note.getName().chars &&
                   source->value(QORAttributeType::NOTE__VALUE) == note.getValue().chars &&
                   source->value(QORAttributeType::NOTE__POSITION) == std::to_string(note.getPosition());
        };
        auto const found = std::find_if(unknown.begin(), unknown.end(), fits);
        if (found == unknown.end())
            throw Mismatch(describe(to) + " has no copy of the note " + describe(*source));
        ++key.place;
        Object& copy = copyAlone(key, *source, *found);
        unknown.erase(found);
        copy.side(textsEnd).far = &to;
        insert(to, end, copy);
    }
}

End const* World::valuesEnd(Object const& object) const {
    if (object.isA(QORElementType::DERIVED_TYPE))
        return &endOf(QORAssociationType::DERIVED_TYPE__TYPE_VALUE);
    if (object.isA(QORElementType::BUSINESS_RULE))
        return &endOf(QORAssociationType::BUSINESS_RULE__TYPE_VALUE);
    return nullptr;
}

/// Finds the type values that a type or rule has got in place of its own, as copies of those of another one.
void World::copyValues(Key& key, Object& from, Object& to) {
    End const* const end = valuesEnd(to);
    if (!end)
        return;
    Elements const sources = from.side(*end).elements;
    Elements taken;
    for (Object* source : sources) {
        Place const place = placeFor(*end, taken, *source);
        if (!place.taken)
            taken.insert(taken.begin() + static_cast<std::ptrdiff_t>(place.position), source);
    }
    if (end->count(*to.real) != static_cast<int>(taken.size()))
        throw Mismatch(describe(to) + " has got " + std::to_string(end->count(*to.real)) +
                       " type values as copies of " + std::to_string(taken.size()));
    for (std::size_t i = 0; i < taken.size(); ++i) {
        ++key.place;
        Object& copy = copyAlone(key, *taken[i], end->at(*to.real, static_cast<int>(i)));
        copy.side(farOf(*end)).far = &to;
        to.side(*end).elements.push_back(&copy);
        copyNotes(key, *taken[i], copy);
    }
}

Object& World::copy(Key key, Object const& source, QORObject* real) {
    Object& copy = copyAlone(key, source, real);
    auto& from = const_cast<Object&>(source);
    if (copy.isA(QORElementType::ELEMENT))
        copyNotes(key, from, copy);
    copyValues(key, from, copy);
    return copy;
}

/// False where the rules call for an exception, after which the rest is assigned nevertheless.
bool World::assign(Key key, Object& target, Object& source, Outcome const& outcome) {
    if (&target == &source)
        return true;
    touch(target);
    if (target.isA(QORElementType::ELEMENT))
        copyNotes(key, source, target);
    target.name = source.name;
    bool const isTypeValue = target.isA(QORElementType::TYPE_VALUE);
    for (std::size_t i = 0; i < target.values.size(); ++i) {
        Attribute const& attribute = *target.shape->attributes[i];
        if (attribute.id == QORAttributeType::ELEMENT__NATIVE_ID)
            target.values[i].clear();
        else if (attribute.assigned && attribute.id != QORAttributeType::OBJECT__ID &&
                 attribute.id != QORAttributeType::TYPE_VALUE__VALUE)
            target.values[i] = source.values[i];
    }
    if (isTypeValue) {
        int const index = target.shape->attribute(QORAttributeType::TYPE_VALUE__VALUE);
        return setValue(target, index, source.value(QORAttributeType::TYPE_VALUE__VALUE), outcome);
    }
    if (target.isA(QORElementType::PROPERTY_ELEMENT_TYPE_SCOPE))
        return rename(target, target.value(QORAttributeType::PROPERTY_ELEMENT_TYPE_SCOPE__SCOPE),
                      [&] { return !outcome.threw; });
    if (End const* const end = valuesEnd(target)) {
        removeAll(target, *end);
        copyValues(key, source, target);
    }
    return true;
}

// ---- re-encoding and walks --------------------------------------------------------------------------------

void World::transcodeTexts(Object& object, bool toUtf8, int& converted, int& failed) {
    touch(object);
    for (std::size_t i = 0; i < object.values.size(); ++i) {
        Attribute const& attribute = *object.shape->attributes[i];
        bool const isText =
            attribute.type == QORMetaAttributeType::STRING && attribute.id != QORAttributeType::OBJECT__NAME;
        if (isText && !object.values[i].empty())
            ++(recode(object.values[i], toUtf8) ? converted : failed);
    }
    for (Object* child : childrenOf(object))
        transcodeTexts(*child, toUtf8, converted, failed);
}

void World::transcodeName(Object& object, bool toUtf8, int& converted, int& failed) {
    std::string name = object.name;
    if (name.empty())
        return;
    if (!recode(name, toUtf8)) {
        ++failed;
        return;
    }
    ++converted;
    auto const unforeseeable = []() -> bool { throw Unforeseeable(); };
    if (rename(object, name, unforeseeable))
        return;
    for (int n = 1; !rename(object, name + "/" + std::to_string(n), unforeseeable);)
        ++n;
}

void World::transcodeNames(Object& object, bool toUtf8, int& converted, int& failed) {
    transcodeName(object, toUtf8, converted, failed);
    // The children of each end are taken down before the first one is re-encoded, as that may move them.
    for (auto level = object.shape->levels.rbegin(); level != object.shape->levels.rend(); ++level) {
        for (int const index : level->ends) {
            auto const end = static_cast<std::size_t>(index);
            if (isChild(*object.shape->ends[end]) && object.sides[end].far)
                transcodeNames(*object.sides[end].far, toUtf8, converted, failed);
        }
        for (int const index : level->ends) {
            auto const end = static_cast<std::size_t>(index);
            if (!isChild(*object.shape->ends[end]))
                continue;
            Elements const children = object.sides[end].elements;
            for (Object* child : children)
                transcodeNames(*child, toUtf8, converted, failed);
        }
    }
}

/// Texts first: no other object's text has a say in what becomes of a name.
void World::transcode(Object& object, bool toUtf8, int& converted, int& failed) {
    transcodeTexts(object, toUtf8, converted, failed);
    transcodeNames(object, toUtf8, converted, failed);
}

void World::destroyWalked(Object& object) {
    for (auto level = object.shape->levels.rbegin(); level != object.shape->levels.rend(); ++level) {
        for (int const unary : {1, 0})
            for (int const index : level->ends) {
                auto const end = static_cast<std::size_t>(index);
                if (!isChild(*object.shape->ends[end]) || isUnary(*object.shape->ends[end]) != (unary == 1))
                    continue;
                Elements children = object.sides[end].elements;
                if (unary && object.sides[end].far)
                    children.push_back(object.sides[end].far);
                for (Object* child : children) {
                    bool const stillThere = unary || position(object.sides[end].elements, child) !=
                                                         object.sides[end].elements.end();
                    if (!stillThere)
                        continue;
                    destroyWalked(*child);
                    destroy(*child);
                }
            }
    }
}

void World::destroyBelow(Object& top) {
    destroyWalked(top);
}

void World::readBack(Object& object) {
    std::vector<Object*> pending{&object};
    std::set<Object*> done;
    auto const reorder = [&](Object& owner, End const& end) {
        Elements& elements = owner.side(end).elements;
        Elements const now = readEnd(owner, end);
        if (!std::is_permutation(now.begin(), now.end(), elements.begin(), elements.end()))
            throw Mismatch(describe(owner) + " " + end.role + " has gained or lost elements");
        elements = now;
        touch(owner);
    };
    ++counters.unforeseeable;
    while (!pending.empty()) {
        Object& each = *pending.back();
        pending.pop_back();
        if (!done.insert(&each).second)
            continue;
        touch(each);
        if (!each.isA(QORElementType::PROPERTY_VALUE))
            each.name = each.real->getName().chars;
        for (std::size_t i = 0; i < each.sides.size(); ++i) {
            End const& end = *each.shape->ends[i];
            if (isParent(end) && each.sides[i].far && !isUnary(farOf(end)))
                reorder(*each.sides[i].far, farOf(end));
            if (isChild(end) && !isUnary(end))
                reorder(each, end);
        }
        for (Object* child : childrenOf(each))
            pending.push_back(child);
    }
}

} // namespace model
