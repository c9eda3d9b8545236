#include "Universe.h"

#include "Deaths.h"

#include <kit/Verify.h>

#include <qor/QORAllClasses.h>
#include <qor/QORAssociationType.h>
#include <qor/QORAttributeType.h>
#include <qor/QORElementType.h>
#include <qor/QOREncodingConverter.h>
#include <qor/QORException.h>
#include <qor/QORMetaAttribute.h>
#include <qor/QORMetaClass.h>
#include <qor/QORMetaLink.h>
#include <qor/QORMetaRepository.h>
#include <qor/QORTraversalDelete.h>
#include <qor/QORTraversalOperation.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <sstream>

namespace model {
namespace {

std::string printable(std::string const& text) {
    std::ostringstream result;
    result << '"';
    for (char const each : text) {
        unsigned const byte = static_cast<unsigned char>(each);
        if (byte < 0x80)
            result << each;
        else
            result << "\\x" << std::hex << byte << std::dec;
    }
    result << '"';
    return result.str();
}

[[noreturn]] void fail(std::string const& text) {
    throw Mismatch(text);
}

template <class Value>
void expectSame(Value const& byRules, Value const& found, std::string const& what) {
    if (byRules == found)
        return;
    std::ostringstream text;
    text << what << ": by the rules " << byRules << ", found " << found;
    fail(text.str());
}

std::string nameOfReal(QORObject const& object) {
    return object.getName().chars;
}

Outcome outcomeOf(QORObject& object, bool threw) {
    return {threw, nameOfReal(object)};
}

enum class Thrown { NOTHING, MESSAGE, NUMBER };

template <class Operation>
Thrown thrownBy(Operation operation) {
    try {
        operation();
        return Thrown::NOTHING;
    } catch (QORException const&) {
        return Thrown::MESSAGE;
    } catch (int number) {
        expectSame(1, number, "the number thrown");
        return Thrown::NUMBER;
    }
}

} // namespace

char const* describe(Kind kind) {
    static char const* const names[] = {"create",
                                        "link",
                                        "unlink",
                                        "remove",
                                        "removeAt",
                                        "removeNamed",
                                        "removeAll",
                                        "setName",
                                        "setUniqueName",
                                        "setValue",
                                        "copy",
                                        "assign",
                                        "compare",
                                        "isolate",
                                        "recursiveDelete",
                                        "removeAggregationAssembly",
                                        "delete",
                                        "transcode",
                                        "depthTraversal",
                                        "depthTraversal that deletes",
                                        "find",
                                        "view"};
    return names[static_cast<std::size_t>(kind)];
}

namespace {

std::string describe(Key const& key) {
    return key.place ? "#" + std::to_string(key.step) + "." + std::to_string(key.place)
                     : "#" + std::to_string(key.step);
}

bool takesOther(Kind kind) {
    return kind == Kind::LINK || kind == Kind::UNLINK || kind == Kind::ASSIGN || kind == Kind::COMPARE;
}

QOREncodingConverter* converter(bool utf8) {
    static std::unique_ptr<QOREncodingConverter> const converters[] = {
        std::unique_ptr<QOREncodingConverter>(QOREncodingConverter::create("ISO-8859-1")),
        std::unique_ptr<QOREncodingConverter>(QOREncodingConverter::create("UTF-8"))};
    return converters[utf8].get();
}

} // namespace

bool concernsEnd(Kind kind) {
    switch (kind) {
    case Kind::LINK:
    case Kind::UNLINK:
    case Kind::REMOVE:
    case Kind::REMOVE_AT:
    case Kind::REMOVE_NAMED:
    case Kind::REMOVE_ALL:
    case Kind::FIND:
    case Kind::VIEW:
        return true;
    default:
        return false;
    }
}

std::string describe(Step const& step) {
    std::ostringstream text;
    text << "#" << step.number << " " << describe(step.kind);
    if (step.kind == Kind::CREATE) {
        text << " " << metamodel::classes()[static_cast<std::size_t>(step.what)].name;
    } else {
        text << " " << describe(step.object);
        if (concernsEnd(step.kind))
            text << " " << endOf(step.what).owner << "::" << endOf(step.what).role;
        if (takesOther(step.kind))
            text << ", " << describe(step.other);
    }
    if (step.kind == Kind::SET_VALUE)
        text << " " << shapeOf(step.detail).attributes[static_cast<std::size_t>(step.what)]->name;
    else if (step.detail)
        text << " [" << step.detail << "]";
    if (step.form)
        text << " form " << step.form;
    if (step.text[0])
        text << " " << printable(step.text.data());
    return text.str();
}

Universe::Universe(Coverage& whatIsDone, Plant plant, bool withoutMemory)
    : coverage(whatIsDone), planted(plant), memoryEnds(withoutMemory) {
    world.vectorsLoseTheirOrder = plant == Plant::WRONG_RULE;
}

// ---- memory that ends -----------------------------------------------------------------------------------

void Universe::checkUnchanged() {
    if (!deaths::take().empty())
        fail("objects have died of an operation that ran out of memory");
    for (Object const* object : world.living())
        check(*object, true);
}

template <class Operation>
auto Universe::onLibrary(Operation operation) -> decltype(operation()) {
    if (!memoryEnds)
        return operation();
    bool const forGood = stepsDone % 2 == 1;
    for (long spared = 0;; ++spared) {
        struct Failing {
            Failing(long after, bool always) { deaths::failAfter(after, always); }
            Failing(Failing const&) = delete;
            Failing& operator=(Failing const&) = delete;
            ~Failing() { deaths::failNoMore(); }
        };
        try {
            Failing const failing(spared, forGood);
            return operation();
        } catch (std::bad_alloc const&) {
        }
        ++coverage.failedAllocations;
        checkUnchanged();
    }
}

// ---- one step
// -----------------------------------------------------------------------------------------------

void Universe::prepare() {
    converter(false);
    for (Class const& each : metamodel::classes())
        if (each.make)
            delete createQORObject(static_cast<QORElementType>(each.id));
}

void Universe::perform(Step const& step) {
    Object* const object = world.find(step.object);
    Object* const other = world.find(step.other);
    bool const lacksObject = step.kind != Kind::CREATE && !object;
    bool const lacksEnd = object && concernsEnd(step.kind) &&
                          object->shape->indexOfEnd[static_cast<std::size_t>(step.what)] < 0;
    bool const lacksOther =
        takesOther(step.kind) &&
        (!other || (concernsEnd(step.kind) && !other->isA(endOf(endOf(step.what).farId).ownerId)));
    if (lacksObject || lacksEnd || lacksOther)
        return;
    reading = static_cast<unsigned>(step.number) * 2654435761U;
    ++coverage.steps[static_cast<std::size_t>(step.kind)];
    run(step, object, other);
    watchNew();
    checkDeaths();
    checkTouched();
    if (++stepsDone % 4 == 0)
        checkAll();
}

void Universe::run(Step const& step, Object* object, Object* other) {
    QORObject* const real = object ? object->real : nullptr;
    switch (step.kind) {
    case Kind::CREATE:
        return create(step);
    case Kind::LINK:
        return link(step, endOf(step.what), *object, *other);
    case Kind::UNLINK:
        return unlink(step, endOf(step.what), *object, *other);
    case Kind::REMOVE:
    case Kind::REMOVE_AT:
    case Kind::REMOVE_ALL:
        return remove(step, endOf(step.what), *object);
    case Kind::REMOVE_NAMED:
        return removeNamed(step, endOf(step.what), *object);
    case Kind::SET_NAME:
        return setName(step, *object);
    case Kind::SET_UNIQUE_NAME:
        return setUniqueName(step, *object);
    case Kind::SET_VALUE:
        return setValue(step, *object);
    case Kind::COPY:
        return copy(step, *object);
    case Kind::ASSIGN:
        return assign(step, *object, *other);
    case Kind::COMPARE:
        return compare(*object, *other);
    case Kind::ISOLATE:
        if (onLibrary([&] { return real->isolate(step.form == 1); }) != real)
            fail("isolate gave another object");
        return world.isolate(*object, step.form == 1);
    case Kind::TAKE_APART: {
        bool const done = onLibrary([&] { return real->recursiveDelete(); });
        return expectSame(world.recursiveDelete(*object), done, "recursiveDelete");
    }
    case Kind::LEAVE_OWNER: {
        QORObject const* const owner = onLibrary([&] { return real->removeAggregationAssembly(); });
        Object const* const expected = world.removeAggregationAssembly(*object);
        if (owner != (expected ? expected->real : nullptr))
            fail("removeAggregationAssembly gave another owner");
        return;
    }
    case Kind::DESTROY:
        onLibrary([&] { delete real; });
        return world.destroy(*object);
    case Kind::TRANSCODE:
        return transcode(step, *object);
    case Kind::WALK:
        return walk(*object);
    case Kind::DESTROY_BELOW:
        if (world.walkEnds(*object) && !world.refersToFromBelow(*object)) {
            QORTraversalDelete operation;
            real->depthTraversal(operation, real); // which may fail half way
            world.destroyBelow(*object);
        }
        return;
    case Kind::FIND:
        return find(step, endOf(step.what), *object, other);
    case Kind::VIEW:
        return view(endOf(step.what), *object);
    case Kind::COUNT:
        return;
    }
}

void Universe::create(Step const& step) {
    Class const& type = metamodel::classes()[static_cast<std::size_t>(step.what)];
    QORObject* const real = onLibrary([&]() -> QORObject* {
        if (step.form == 1)
            return type.makeWatched();
        return step.form == 2 ? type.make() : createQORObject(static_cast<QORElementType>(type.id));
    });
    ++coverage.created[static_cast<std::size_t>(type.id)];
    Object& object = world.create({step.number, 0}, real, type.id);
    object.watched = step.form == 1;
    if (object.isA(QORElementType::PROPERTY_VALUE))
        return;
    real->setName(step.text.data());
    object.name = step.text.data();
}

void Universe::link(Step const& step, End const& end, Object& object, Object& other) {
    End const& farEnd = endOf(end.farId);
    QORMetaRepository const& repository = *QORMetaRepository::getMetaRepository();
    bool const done = onLibrary([&] {
        switch (step.form) {
        case 0:
            return end.add(*object.real, other.real);
        case 1:
            return farEnd.add(*other.real, object.real);
        case 2:
            return repository.getMetaLinkByID(static_cast<QORAssociationType>(end.id))
                ->addLink(object.real, other.real);
        default:
            return repository.getMetaLinkByID(static_cast<QORAssociationType>(farEnd.id))
                ->addLink(other.real, object.real);
        }
    });
    // Of two unary or two nary ends, the one that is asked comes first.
    bool const fromHere = step.form % 2 == 0;
    bool const linked = fromHere ? world.link(object, end, other) : world.link(other, farEnd, object);
    expectSame(linked, done, "the result of add");
    coverage.linked[static_cast<std::size_t>(end.id)] += linked;
    coverage.linked[static_cast<std::size_t>(farEnd.id)] += linked;
    coverage.elements[static_cast<std::size_t>(end.container)] += linked;
    coverage.elements[static_cast<std::size_t>(farEnd.container)] += linked;
    coverage.selfLinks += &object == &other;
    for (End const* each : {&end, &farEnd})
        if (each->container != Container::NONE) {
            bool const isVector =
                each->container == Container::PTR_VECTOR || each->container == Container::NAME_VECTOR;
            long& largest = isVector ? coverage.largestVector : coverage.largestTree;
            Object const& holder = each == &end ? object : other;
            largest = std::max(largest, static_cast<long>(holder.side(*each).elements.size()));
        }
    if (planted == Plant::CRASH && end.count && object.side(end).elements.size() == 3)
        std::abort();
}

void Universe::unlink(Step const& step, End const& end, Object& object, Object& other) {
    End const& farEnd = endOf(end.farId);
    bool const fromFar = step.form == 1;
    bool const done = onLibrary([&] {
        return fromFar ? farEnd.unlink(*other.real, object.real) : end.unlink(*object.real, other.real);
    });
    bool const expected = fromFar ? world.unlink(other, farEnd, object) : world.unlink(object, end, other);
    expectSame(expected, done, "the result of remove with an object");
    coverage.removed[static_cast<std::size_t>((fromFar ? farEnd : end).id)][0] += done;
}

void Universe::remove(Step const& step, End const& end, Object& object) {
    bool const unary = end.container == Container::NONE;
    auto& removed = coverage.removed[static_cast<std::size_t>(end.id)];
    if (unary) {
        bool const done = onLibrary([&] { return end.remove(*object.real); });
        expectSame(world.remove(object, end), done, "the result of remove");
        removed[1] += done;
    } else if (step.kind == Kind::REMOVE_AT) {
        bool const done = onLibrary([&] { return end.removeAt(*object.real, step.detail); });
        expectSame(world.removeAt(object, end, step.detail), done, "the result of remove by position");
        removed[1] += done;
    } else if (step.kind == Kind::REMOVE_ALL) {
        removed[2] += !object.side(end).elements.empty();
        onLibrary([&] { end.removeAll(*object.real); });
        world.removeAll(object, end);
    }
}

/// One removal by name; which of several elements goes where the end is out of order is read from the
/// library.
bool Universe::removeNamedOnce(End const& end, Object& object, QORString const& name, int* cursor) {
    int expectedCursor = cursor ? *cursor : 0;
    bool const done = onLibrary([&] { return end.removeNamed(*object.real, name, cursor); });
    auto const observe = [&] {
        if (!done)
            return -1;
        std::vector<Object*> const& elements = object.side(end).elements;
        std::vector<QORObject*> left;
        for (int i = 0, count = end.count(*object.real); i < count; ++i)
            left.push_back(end.at(*object.real, i));
        for (std::size_t i = 0; i < elements.size(); ++i)
            if (i >= left.size() || left[i] != elements[i]->real)
                return static_cast<int>(i);
        return -1;
    };
    int const position =
        world.findNamed(object, end, name.chars, cursor ? &expectedCursor : nullptr, observe);
    expectSame(position >= 0, done, "the result of remove by name");
    if (cursor)
        expectSame(expectedCursor, *cursor, "the cursor of remove by name");
    if (position >= 0)
        world.removeAt(object, end, position);
    coverage.removed[static_cast<std::size_t>(end.id)][3] += done;
    return done;
}

void Universe::removeNamed(Step const& step, End const& end, Object& object) {
    if (!end.removeNamed)
        return;
    QORString const name(step.text.data());
    if (step.form == 0) {
        removeNamedOnce(end, object, name, nullptr);
        return;
    }
    int cursor = step.detail;
    bool goesOn = true;
    while (goesOn)
        goesOn = removeNamedOnce(end, object, name, &cursor) && step.form == 2;
    // What a scan says of positions is of use for the next search alone, so the end is asked for one that it
    // doesn't find, which makes it forget.
    int fresh = 0;
    if (end.removeNamed(*object.real, "\x01", &fresh))
        fail("an element was removed by a name that none has");
}

// ---- names and values
// ---------------------------------------------------------------------------------------

void Universe::setName(Step const& step, Object& object) {
    Thrown const thrown = thrownBy([&] { onLibrary([&] { object.real->setName(step.text.data()); }); });
    bool const named =
        world.setName(object, step.text.data(), outcomeOf(*object.real, thrown != Thrown::NOTHING));
    Thrown const refusal = object.isA(QORElementType::PROPERTY_VALUE) ? Thrown::NUMBER : Thrown::MESSAGE;
    expectSame(static_cast<int>(named ? Thrown::NOTHING : refusal), static_cast<int>(thrown),
               "what setName throws");
}

void Universe::setUniqueName(Step const& step, Object& object) {
    if (object.isA(QORElementType::PROPERTY_VALUE))
        return; // would try for ever
    char const separator = step.form ? '/' : '_';
    object.real->setUniqueName(step.text.data(), separator);
    world.setUniqueName(object, step.text.data(), separator, outcomeOf(*object.real, false));
}

void Universe::setValue(Step const& step, Object& object) {
    if (step.detail != object.shape->type->id)
        return;
    Attribute const& attribute = *object.shape->attributes[static_cast<std::size_t>(step.what)];
    QORMetaAttribute const* const record =
        object.real->getMetaClass()->getMetaAttributeByID(static_cast<QORAttributeType>(attribute.id));
    QORString text(step.text.data());
    Thrown const thrown = thrownBy([&] { onLibrary([&] { record->setValue(object.real, text); }); });
    bool const done = world.setValue(object, step.what, step.text.data(),
                                     outcomeOf(*object.real, thrown != Thrown::NOTHING));
    bool const throwsNumber =
        attribute.id == QORAttributeType::FORMAT__FORMAT_TYPE ||
        (attribute.id == QORAttributeType::OBJECT__NAME && object.isA(QORElementType::PROPERTY_VALUE));
    Thrown const refusal = throwsNumber ? Thrown::NUMBER : Thrown::MESSAGE;
    expectSame(static_cast<int>(done ? Thrown::NOTHING : refusal), static_cast<int>(thrown),
               "what a setter throws");
}

void Universe::copy(Step const& step, Object& object) {
    QORObject* const real = onLibrary([&] { return object.shape->type->copy(*object.real); });
    Object const& made = world.copy({step.number, 0}, object, real);
    expectSame(world.equals(object, made), *object.real == *real, "whether the copy equals its source");
    expectSame(0L, real->getID(), "the id of a copy");
}

void Universe::assign(Step const& step, Object& object, Object& other) {
    if (object.shape != other.shape)
        return;
    object.real->flag2 = true;
    object.real->generalPointer = this;
    auto const assignment = [&] {
        if (step.form)
            object.shape->type->assign(*object.real, *other.real);
        else
            object.real->setFrom(*other.real);
    };
    Thrown const thrown = thrownBy([&] { onLibrary(assignment); });
    bool const done =
        world.assign({step.number, 0}, object, other, outcomeOf(*object.real, thrown != Thrown::NOTHING));
    expectSame(static_cast<int>(done ? Thrown::NOTHING : Thrown::MESSAGE), static_cast<int>(thrown),
               "what an assignment throws");
    bool const cleared = !object.real->flag2 && !object.real->generalPointer;
    expectSame(&object != &other, cleared, "whether the scratch marks are cleared");
}

void Universe::compare(Object& object, Object& other) {
    bool const same = world.equals(object, other);
    expectSame(same, onLibrary([&] { return object.real->equals(*other.real); }), "equals");
    expectSame(same, *object.real == *other.real, "operator==");
    expectSame(!same, *object.real != *other.real, "operator!=");
}

// ---- walks
// --------------------------------------------------------------------------------------------------

void Universe::transcode(Step const& step, Object& object) {
    if (!world.walkEnds(object))
        return;
    bool const toUtf8 = step.form == 1;
    int converted = 3, failed = 5;
    object.real->transcode(converter(!toUtf8), converter(toUtf8), converted, failed);
    int expectedConverted = 3, expectedFailed = 5;
    try {
        world.transcode(object, toUtf8, expectedConverted, expectedFailed);
    } catch (Unforeseeable const&) {
        world.readBack(object);
        return;
    }
    expectSame(expectedConverted, converted, "the number of texts converted");
    expectSame(expectedFailed, failed, "the number of texts not converted");
}

namespace {

/// Writes down which objects a walk comes by, before their children and after; passes some by.
class Record : public QORTraversalOperation {
public:
    bool pre_process(QORObject* object, void*& data) override {
        events.emplace_back(object, true);
        std::intptr_t const depth = reinterpret_cast<std::intptr_t>(data);
        data = reinterpret_cast<void*>(depth + 1);
        return depth < limit;
    }
    void post_process(QORObject* object, void*) override { events.emplace_back(object, false); }

    std::vector<std::pair<QORObject*, bool>> events;
    static constexpr std::intptr_t limit = 4; ///< levels walked
};

void walkByRules(World const& world, Object const& object, std::intptr_t depth,
                 std::vector<std::pair<QORObject*, bool>>& events) {
    events.emplace_back(object.real, true);
    if (depth >= Record::limit)
        return;
    for (Object const* child : world.childrenOf(object))
        walkByRules(world, *child, depth + 1, events);
    events.emplace_back(object.real, false);
}

} // namespace

void Universe::walk(Object& object) {
    if (!world.walkEnds(object))
        return;
    Record record;
    bool const done = onLibrary([&] {
        record.events.clear();
        return object.real->depthTraversal(record, nullptr);
    });
    expectSame(true, done, "depthTraversal");
    std::vector<std::pair<QORObject*, bool>> events;
    walkByRules(world, object, 0, events);
    if (events != record.events)
        fail("depthTraversal went another way");
}

// ---- searches and views
// -------------------------------------------------------------------------------------

void Universe::find(Step const& step, End const& end, Object& object, Object* other) {
    if (!end.find)
        return;
    int cursor = step.detail, expected = step.detail;
    bool const withCursor = step.form == 1;
    QORObject* const found =
        onLibrary([&] { return end.find(*object.real, step.text.data(), withCursor ? &cursor : nullptr); });
    auto const& elements = object.side(end).elements;
    auto const observe = [&] {
        for (std::size_t i = 0; i < elements.size(); ++i)
            if (elements[i]->real == found)
                return static_cast<int>(i);
        return -1;
    };
    int const position =
        world.findNamed(object, end, step.text.data(), withCursor ? &expected : nullptr, observe);
    if (found != (position < 0 ? nullptr : elements[static_cast<std::size_t>(position)]->real))
        fail("a search by name found another object");
    if (withCursor)
        expectSame(expected, cursor, "the cursor of a search");
    if (!other || !other->isA(endOf(end.farId).ownerId) || !world.inOrder(end, elements))
        return;
    bool const holds = world.holdsEqual(object, end, *other);
    expectSame(holds, end.contains(*object.real, other->real), "contains");
}

void Universe::view(End const& end, Object& object) {
    if (!end.byPosition)
        return;
    std::vector<Object*> expected = object.side(end).elements;
    auto const positionOf = [](Object* each) {
        for (std::size_t i = 0; i < each->values.size(); ++i)
            if (std::strcmp(each->shape->attributes[i]->name, "position") == 0)
                return std::stoi(each->values[i]);
        return 0;
    };
    std::sort(expected.begin(), expected.end(), [&](Object* a, Object* b) {
        int const left = positionOf(a), right = positionOf(b);
        if (left != right)
            return left < right;
        int const names = world.nameOf(*a).compare(world.nameOf(*b));
        return names ? names < 0
                     : reinterpret_cast<std::uintptr_t>(a->real) < reinterpret_cast<std::uintptr_t>(b->real);
    });
    std::vector<QORObject*> objects;
    for (Object const* each : expected)
        objects.push_back(each->real);
    if (onLibrary([&] { return end.byPosition(*object.real); }) != objects)
        fail("a view by position has another order");
}

// ---- comparing
// ----------------------------------------------------------------------------------------------

void Universe::watchNew() {
    for (Object* object : world.takeCreated())
        if (deaths::allAreWatched() || object->watched)
            deaths::watch(object->real);
}

void Universe::checkDeaths() {
    std::vector<QORObject*> told = deaths::take();
    std::vector<Object*> const dead = world.takeDead();
    std::vector<QORObject*> expected;
    for (Object const* object : dead)
        if (deaths::allAreWatched() || object->watched)
            expected.push_back(object->real);
    coverage.deaths += static_cast<long>(dead.size());
    std::sort(told.begin(), told.end());
    std::sort(expected.begin(), expected.end());
    if (told != expected) {
        std::ostringstream text;
        text << "by the rules " << expected.size() << " watched objects die, " << told.size()
             << " have died;";
        for (Object const* object : dead)
            if (!std::binary_search(told.begin(), told.end(), object->real))
                text << " should have died: " << describe(*object);
        for (Object const* object : world.living())
            if (std::binary_search(told.begin(), told.end(), object->real))
                text << " shouldn't have died: " << describe(*object);
        fail(text.str());
    }
    coverage.foreseen += world.counters.foreseen;
    coverage.unforeseen += world.counters.unforeseen;
    coverage.refused += world.counters.refused;
    coverage.unforeseeable += world.counters.unforeseeable;
    world.counters = {};
}

void Universe::checkTouched() {
    for (Object const* object : world.takeTouched())
        check(*object, true);
    world.forgetDead();
}

void Universe::checkAll() {
    for (Object const* object : world.living())
        check(*object, stepsDone % 64 == 0);
    if (stepsDone % 256 != 0 || !soundForVerify())
        return;
    for (Object const* object : world.living()) {
        std::vector<std::string> const findings = kit::verify(*object->real);
        if (!findings.empty())
            fail("verification of the graph: " + findings.front());
        break;
    }
}

/// Whether no object stands in an end of its own, which the verification rightly finds one-sided.
bool Universe::soundForVerify() const {
    for (Object* object : world.living())
        for (Side const& side : object->sides)
            if (std::find(side.elements.begin(), side.elements.end(), object) != side.elements.end())
                return false;
    return true;
}

void Universe::check(Object const& object, bool values) {
    QORObject& real = *object.real;
    expectSame(object.shape->type->id, static_cast<int>(real.getElementType()), describe(object) + ": class");
    std::string const name = world.nameOf(object);
    if (name != real.getName().chars || static_cast<int>(name.size()) != real.getName().length)
        fail(describe(object) + " is named " + printable(real.getName().chars) + ", by the rules " +
             printable(name));
    bool isSet = false;
    std::vector<Object*> parents;
    for (std::size_t i = 0; i < object.sides.size(); ++i) {
        End const& end = *object.shape->ends[i];
        Side const& side = object.sides[i];
        isSet |= side.isSet();
        if (end.type == QORMetaLinkType::PARENT && side.far)
            parents.push_back(side.far);
        checkEnd(object, end, side);
    }
    if (isSet != real.isReferenced())
        fail(describe(object) + (isSet ? " should be referenced" : " shouldn't be referenced"));
    if (static_cast<int>(parents.size()) != real.getParentCount())
        fail(describe(object) + " counts " + std::to_string(real.getParentCount()) + " owners");
    if ((parents.empty() ? nullptr : parents[0]->real) != real.getParent())
        fail(describe(object) + " has another first owner");
    if (!values)
        return;
    QORMetaRepository const& repository = *QORMetaRepository::getMetaRepository();
    for (std::size_t i = 0; i < object.values.size(); ++i) {
        Attribute const& attribute = *object.shape->attributes[i];
        if (attribute.id == QORAttributeType::OBJECT__NAME)
            continue;
        QORString const text =
            repository.getMetaAttributeByID(static_cast<QORAttributeType>(attribute.id))->getValue(&real);
        if (object.values[i] != text.chars)
            fail(describe(object) + " " + attribute.name + " is " + printable(text.chars) +
                 ", by the rules " + printable(object.values[i]));
    }
}

/// Reads an end in varying ways, so that the cursors of the library's ends come to stand anywhere.
void Universe::checkEnd(Object const& object, End const& end, Side const& side) {
    QORObject const& real = *object.real;
    auto const differs = [&] {
        fail(describe(object) + " " + end.role + " holds other objects or another order");
    };
    if (end.container == Container::NONE) {
        if (end.get(real) != (side.far ? side.far->real : nullptr))
            differs();
        return;
    }
    int const count = static_cast<int>(side.elements.size());
    if (end.count(real) != count)
        fail(describe(object) + " " + end.role + " counts " + std::to_string(end.count(real)) +
             ", by the rules " + std::to_string(count));
    if (count == 0)
        return;
    auto const holds = [&](int i) {
        return end.at(real, i) == side.elements[static_cast<std::size_t>(i)]->real;
    };
    reading = reading * 1664525U + 1013904223U;
    unsigned const way = reading >> 24;
    int const start = static_cast<int>(way % static_cast<unsigned>(count));
    bool const upwards = way & 64;
    for (int i = 0; i < count; ++i) {
        int const at = upwards ? (start + i) % count : (start + count - i) % count;
        if (!holds(at))
            differs();
    }
    if (end.at(real, count) || !holds(start))
        differs();
}

void Universe::clear() {
    for (;;) {
        std::vector<Object*> const living = world.living();
        if (living.empty())
            return;
        Object& object = *living[living.size() / 2];
        delete object.real;
        world.destroy(object);
        checkDeaths();
        checkTouched();
    }
}

} // namespace model
