#include "Chooser.h"

#include <qor/QORAttributeType.h>
#include <qor/QORElementType.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace model {
namespace {

char const* const nameTexts[] = {"",    "a",      "b", "c",   "\xE9",         "d", "\xC3\xA9", "e",
                                 "a/1", "\xE9/1", "f", "a_1", "\xE2\x82\xAC", "Z", "b/1",      "\xC3\xA9/1"};

struct Weight {
    Kind kind;
    int weight;
};

constexpr Weight weights[] = {
    {Kind::LINK, 34},        {Kind::UNLINK, 5},     {Kind::REMOVE, 4},        {Kind::REMOVE_AT, 4},
    {Kind::REMOVE_NAMED, 4}, {Kind::REMOVE_ALL, 4}, {Kind::SET_NAME, 14},     {Kind::SET_UNIQUE_NAME, 2},
    {Kind::SET_VALUE, 9},    {Kind::COPY, 2},       {Kind::ASSIGN, 4},        {Kind::COMPARE, 2},
    {Kind::ISOLATE, 1},      {Kind::TAKE_APART, 1}, {Kind::LEAVE_OWNER, 2},   {Kind::DESTROY, 2},
    {Kind::TRANSCODE, 2},    {Kind::WALK, 2},       {Kind::DESTROY_BELOW, 1}, {Kind::FIND, 2},
    {Kind::VIEW, 2},         {Kind::CREATE, 3},
};

bool clearsMuch(Kind kind) {
    return kind == Kind::REMOVE_ALL || kind == Kind::ISOLATE || kind == Kind::TAKE_APART ||
           kind == Kind::DESTROY || kind == Kind::DESTROY_BELOW;
}

bool takesOut(Kind kind) {
    return kind == Kind::UNLINK || kind == Kind::REMOVE || kind == Kind::REMOVE_AT ||
           kind == Kind::REMOVE_NAMED || kind == Kind::LEAVE_OWNER;
}

bool changesKeys(Kind kind) {
    return kind == Kind::SET_NAME || kind == Kind::SET_UNIQUE_NAME || kind == Kind::SET_VALUE ||
           kind == Kind::ASSIGN;
}

std::size_t longestText(std::vector<Object*> const& objects) {
    std::size_t longest = 0;
    for (Object const* object : objects) {
        longest = std::max(longest, object->name.size());
        for (std::string const& value : object->values)
            longest = std::max(longest, value.size());
    }
    return longest;
}

} // namespace

Chooser::Chooser(unsigned long seed, bool withLongTexts)
    : random(static_cast<std::mt19937::result_type>(seed)), longTexts(withLongTexts) {
    withoutPool = !oneIn(4);
    watched = oneIn(3);
    large = oneIn(6);
    calm = !large && oneIn(2);
    fewest = large ? 110 : 6 + below(20);
    most = large ? 170 : fewest + 10 + below(25);
    names = large ? 300 : 4 + below(13);
    chooseClasses(seed);
}

/// The same numbers everywhere: the standard distributions differ from library to library.
int Chooser::below(int limit) {
    return static_cast<int>(random() % static_cast<unsigned>(limit));
}

int Chooser::concreteClass(int classId) {
    std::vector<int> candidates;
    for (Class const& each : metamodel::classes())
        if (each.make && shapeOf(each.id).isA(classId))
            candidates.push_back(each.id);
    return candidates.empty() ? -1 : oneOf(candidates);
}

void Chooser::addClass(int classId) {
    if (classId >= 0 && std::find(chosen.begin(), chosen.end(), classId) == chosen.end())
        chosen.push_back(classId);
}

/// Children that are sorted by their names, with all who can own them: a rename goes to one owner alone and
/// leaves the ends of the others out of order.
void Chooser::chooseChildren() {
    std::vector<End const*> sorted;
    for (End const& end : metamodel::ends())
        if (end.role && end.type == QORMetaLinkType::CHILD && end.container != Container::NONE &&
            end.container != Container::PTR_TREE && end.container != Container::PTR_VECTOR)
            sorted.push_back(&end);
    End const& end = *oneOf(sorted);
    int const child = concreteClass(endOf(end.farId).ownerId);
    addClass(concreteClass(end.ownerId));
    addClass(child);
    focus.push_back(&end);
    for (End const* parentEnd : shapeOf(child).ends) {
        if (parentEnd->type != QORMetaLinkType::PARENT || parentEnd->farId == end.id || oneIn(4))
            continue;
        addClass(concreteClass(endOf(parentEnd->farId).ownerId));
        focus.push_back(&endOf(parentEnd->farId));
    }
}

void Chooser::chooseClasses(unsigned long seed) {
    std::vector<End const*> all;
    for (End const& end : metamodel::ends())
        if (end.role)
            all.push_back(&end);
    if (large && !oneIn(3)) {
        // Ends whose large forms have a way of their own to find elements and keep their order.
        auto const isPlain = [](End const* end) {
            return end->container == Container::NONE || end->container == Container::PTR_TREE ||
                   (end->container == Container::PTR_VECTOR && end->type != QORMetaLinkType::CHILD);
        };
        all.erase(std::remove_if(all.begin(), all.end(), isPlain), all.end());
    }
    // Seeds in a row come by each end in turn.
    End const& first = *all[seed % all.size()];
    End const& farOfFirst = endOf(first.farId);
    bool const holdsMany = first.container != Container::NONE;
    int const holder = concreteClass(holdsMany ? first.ownerId : farOfFirst.ownerId);
    elementClass = concreteClass(holdsMany ? farOfFirst.ownerId : first.ownerId);
    addClass(holder);
    addClass(elementClass);
    focus.push_back(holdsMany ? &first : &farOfFirst);
    if (large)
        return;
    if (!oneIn(3))
        chooseChildren();
    std::size_t const count = static_cast<std::size_t>(2 + below(7));
    for (int tries = 0; tries < 40 && chosen.size() < count; ++tries) {
        Shape const& shape = shapeOf(oneOf(chosen));
        // Ends of the class itself are more telling than those that all classes have.
        std::size_t const few = std::min<std::size_t>(shape.ends.size(), 12);
        std::vector<End const*> const near(shape.ends.begin(),
                                           shape.ends.begin() + static_cast<std::ptrdiff_t>(few));
        End const& end = *oneOf(oneIn(4) || near.empty() ? shape.ends : near);
        addClass(concreteClass(endOf(end.farId).ownerId));
    }
}

/// In a large or a calm universe, ends are left to fill.
bool Chooser::isSpared(Kind kind) {
    if (clearsMuch(kind))
        return large ? !oneIn(30) : calm && !oneIn(3);
    return calm && takesOut(kind) && !oneIn(3);
}

Kind Chooser::chooseKind(int objects) {
    if (objects < fewest && !oneIn(3))
        return Kind::CREATE;
    if (objects > most)
        return large      ? Kind::REMOVE_AT
               : oneIn(3) ? Kind::DESTROY
               : oneIn(2) ? Kind::REMOVE_ALL
                          : Kind::REMOVE_AT;
    int total = 0;
    for (Weight const& each : weights)
        total += each.weight;
    // Ends fill quickly in a calm universe, and then names matter more.
    if (calm && oneIn(3))
        return oneIn(3) ? Kind::ASSIGN : Kind::SET_NAME;
    int place = below(total);
    for (Weight const& each : weights)
        if ((place -= each.weight) < 0)
            return isSpared(each.kind) ? Kind::LINK : each.kind;
    return Kind::LINK;
}

void Chooser::setText(Step& step, std::string const& text) {
    std::string const fitting = text.substr(0, step.text.size() - 1);
    std::copy(fitting.begin(), fitting.end(), step.text.begin());
}

std::string Chooser::nameText() {
    int const which = below(names);
    if (longTexts)
        return "a text that needs some memory, number " + std::to_string(which);
    return which < static_cast<int>(std::size(nameTexts)) ? nameTexts[which] : "n" + std::to_string(which);
}

void Chooser::chooseEnd(Step& step, Object const& object, World const& world,
                        std::vector<Object*> const& objects) {
    std::vector<End const*> candidates;
    for (End const* end : object.shape->ends) {
        bool const nary = end->container != Container::NONE;
        bool const fits = step.kind == Kind::REMOVE                              ? !nary
                          : step.kind == Kind::LINK || step.kind == Kind::UNLINK ? true
                          : step.kind == Kind::FIND                              ? end->find != nullptr
                          : step.kind == Kind::VIEW                              ? end->byPosition != nullptr
                                                                                 : nary;
        bool const promising = step.kind == Kind::LINK || object.side(*end).isSet() || oneIn(20);
        bool const inFocus = std::find(focus.begin(), focus.end(), end) != focus.end();
        if (fits && promising) {
            candidates.push_back(end);
            if (inFocus)
                candidates.insert(candidates.end(), 3 * object.shape->ends.size(), end);
        }
    }
    if (candidates.empty() && step.kind != Kind::LINK) {
        step.kind = Kind::LINK;
        return chooseEnd(step, object, world, objects);
    }
    if (candidates.empty()) {
        step.kind = Kind::COMPARE;
        step.other = oneOf(objects)->key;
        return;
    }
    End const* end = oneOf(candidates);
    std::vector<Object*> far;
    for (int tries = 0; tries < 4 && far.empty(); ++tries) {
        if (tries)
            end = oneOf(candidates);
        for (Object* each : objects)
            if (each->isA(endOf(end->farId).ownerId))
                far.push_back(each);
    }
    step.what = end->id;
    End const& farEnd = endOf(end->farId);
    std::vector<Object*> free;
    if (step.kind == Kind::LINK && farEnd.container == Container::NONE && !oneIn(4))
        std::copy_if(far.begin(), far.end(), std::back_inserter(free),
                     [&](Object* each) { return !each->side(farEnd).far; });
    if (!far.empty())
        step.other = oneOf(free.empty() ? far : free)->key;
    std::vector<Object*> const& elements = object.side(*end).elements;
    if (step.kind == Kind::UNLINK && !oneIn(5)) {
        if (object.side(*end).far)
            step.other = object.side(*end).far->key;
        else if (!elements.empty())
            step.other = oneOf(elements)->key;
    }
    bool const byName = step.kind == Kind::REMOVE_NAMED || step.kind == Kind::FIND;
    if (byName)
        setText(step, elements.empty() || oneIn(4) ? nameText() : world.nameOf(*oneOf(elements)));
    int const count = static_cast<int>(elements.size());
    if (step.kind == Kind::REMOVE_AT)
        step.detail = oneIn(10) ? count : below(count + 1);
    else if (byName)
        step.detail = oneIn(3) ? 0 : oneIn(12) ? -3 : below(count + 3);
    step.form = step.kind == Kind::REMOVE_NAMED ? below(3) : step.kind == Kind::LINK ? below(4) : below(2);
}

void Chooser::chooseValue(Step& step, Object const& object) {
    std::vector<Attribute const*> const& attributes = object.shape->attributes;
    int which = below(static_cast<int>(attributes.size()));
    // What orders, identifies or gives a name is of more interest than the rest.
    for (int tries = 0; tries < 6; ++tries) {
        char const* const name = attributes[static_cast<std::size_t>(which)]->name;
        if (std::strcmp(name, "value") == 0 || std::strcmp(name, "position") == 0 ||
            std::strcmp(name, "scope") == 0)
            break;
        which = below(static_cast<int>(attributes.size()));
    }
    Attribute const& attribute = *attributes[static_cast<std::size_t>(which)];
    step.what = which;
    step.detail = object.shape->type->id;
    switch (attribute.type) {
    case QORMetaAttributeType::BOOL:
        return setText(step, oneIn(2) ? "true" : "false");
    case QORMetaAttributeType::INT:
    case QORMetaAttributeType::SHORT:
        return setText(step, std::to_string(below(8) - 2));
    case QORMetaAttributeType::STRING:
        return setText(step, nameText());
    case QORMetaAttributeType::DATE:
        return setText(step, oneIn(2) ? "12:34:56 2001-02-03" : "00:00:00 ");
    case QORMetaAttributeType::ENUM:
        break;
    }
    int count = 0;
    while (attribute.enumerators[count])
        ++count;
    // A few of the many element types are enough, so that they meet.
    count = std::min(count, 9);
    char const* text = "";
    while (!*text)
        text = attribute.enumerators[below(count)];
    setText(step, text);
}

Step Chooser::next(World const& world) {
    std::vector<Object*> const objects = world.living();
    Step step{};
    step.number = ++number;
    step.kind = objects.empty() ? Kind::CREATE : chooseKind(static_cast<int>(objects.size()));
    if (step.kind == Kind::CREATE) {
        step.what = large && !oneIn(8) ? elementClass : oneOf(chosen);
        step.form = watched && oneIn(2) ? 1 : 2 * below(2);
        setText(step, nameText());
        return step;
    }
    Object const* object = oneOf(objects);
    // In a large universe, much hangs on one object.
    if (!focus.empty() && (step.kind == Kind::LINK  ? !oneIn(3)
                           : concernsEnd(step.kind) ? oneIn(2)
                                                    : large && oneIn(4))) {
        auto const hasEnd = [end = oneOf(focus)](Object const* each) {
            return each->shape->indexOfEnd[static_cast<std::size_t>(end->id)] >= 0;
        };
        auto const first = std::find_if(objects.begin(), objects.end(), hasEnd);
        if (first != objects.end() && large && !oneIn(4))
            object = *first;
        for (int tries = 0; tries < 10 && !hasEnd(object); ++tries)
            object = oneOf(objects);
    }
    if (changesKeys(step.kind))
        for (std::size_t owners : {2U, 2U, 2U, 1U, 1U}) {
            if (world.parentsOf(*object).size() >= owners)
                break;
            object = oneOf(objects);
        }
    step.object = object->key;
    switch (step.kind) {
    case Kind::LINK:
    case Kind::UNLINK:
    case Kind::REMOVE:
    case Kind::REMOVE_AT:
    case Kind::REMOVE_NAMED:
    case Kind::REMOVE_ALL:
    case Kind::FIND:
    case Kind::VIEW:
        chooseEnd(step, *object, world, objects);
        break;
    case Kind::SET_NAME:
    case Kind::SET_UNIQUE_NAME:
        step.form = below(2);
        setText(step, nameText());
        break;
    case Kind::SET_VALUE:
        chooseValue(step, *object);
        break;
    case Kind::ASSIGN:
    case Kind::COMPARE: {
        std::vector<Object*> alike;
        for (Object* each : objects)
            if (each->shape == object->shape)
                alike.push_back(each);
        step.other = oneOf(alike)->key;
        step.form = below(2);
        break;
    }
    case Kind::TRANSCODE:
        step.form = longestText(objects) < 30 ? below(2) : 0;
        break;
    default:
        step.form = below(2);
        break;
    }
    return step;
}

} // namespace model
