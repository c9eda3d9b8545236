#include "kit/ObjectPaths.h"

#include "kit/Numbering.h"
#include "kit/Reflection.h"
#include "kit/Text.h"
#include "kit/ToolError.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <set>
#include <utility>

namespace kit {
namespace {

constexpr std::size_t mostSteps = 16; ///< at either end of a path; and
constexpr std::size_t mostCharacters = 1000;

std::string escaped(std::string_view name) {
    std::string text;
    for (char const character : name) {
        if (character == '/' || character == ':' || character == '#' || character == '\\') {
            text += '\\';
        }
        text += character;
    }
    return text;
}

std::string withClass(QORObject const& object) {
    return std::string(view(object.getMetaClass()->getDisplayName())) + ":" + escaped(view(object.getName()));
}

/// The parts of a path between its slashes, which stay as they are written.
std::vector<std::string> stepsOf(std::string_view path) {
    std::vector<std::string> steps(1);
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (path[i] == '/') {
            steps.emplace_back();
            continue;
        }
        steps.back() += path[i];
        if (path[i] == '\\' && i + 1 < path.size()) {
            steps.back() += path[++i];
        }
    }
    return steps;
}

/// The name in a step, without class and number.
std::string nameIn(std::string const& step) {
    std::string name;
    for (std::size_t i = 0; i < step.size() && step[i] != '#'; ++i) {
        if (step[i] == ':') {
            name.clear();
        } else if (step[i] == '\\' && i + 1 < step.size()) {
            name += step[++i];
        } else {
            name += step[i];
        }
    }
    return name;
}

/// Whether a step is the number of omitted ones.
bool isGap(std::string const& step) {
    constexpr std::size_t longest = 10;
    return step.size() > 1 && step.size() <= longest && step[0] == '#' && step[1] != '0' &&
           step.find_first_not_of("0123456789", 1) == step.npos;
}

/// The path of these steps, the last of which is its first.
std::string joinedSteps(std::vector<std::string> const& steps) {
    return joined({steps.rbegin(), steps.rend()}, "/");
}

} // namespace

ObjectPaths::ObjectPaths(Numbering const& numbering) : forest(numbering), places(numbering.objects().size()) {
    for (Number number = 0; number < places.size(); ++number) {
        nameSiblings(owned(number));
    }
    nameSiblings(owned(Owners::none));
    measure();
}

/// The root counts as none: paths begin below it, as they do outside of it.
ObjectPaths::Number ObjectPaths::owner(Number number) const {
    Number const found = forest.of(number);
    return found == 0 ? Owners::none : found;
}

/// All that a path can lead on to from here; of `none` what isn't below the root.
std::vector<ObjectPaths::Number> ObjectPaths::owned(Number number) const {
    std::vector<Number> found = forest.ownedBy(number);
    if (number == Owners::none) {
        found.erase(found.begin());
    }
    return found;
}

std::size_t ObjectPaths::depthOf(Number number) const {
    return number == Owners::none ? 0 : places[number].depth;
}

void ObjectPaths::nameSiblings(std::vector<Number> siblings) {
    auto const keyOf = [this](Number number) {
        return std::pair(view(object(number).getName()),
                         view(object(number).getMetaClass()->getDisplayName()));
    };
    std::stable_sort(siblings.begin(), siblings.end(),
                     [&](Number a, Number b) { return keyOf(a) < keyOf(b); });
    for (std::size_t i = 0; i < siblings.size(); ++i) {
        auto const [name, className] = keyOf(siblings[i]);
        bool const sharesBefore = i > 0 && keyOf(siblings[i - 1]).first == name;
        bool const sharesBehind = i + 1 < siblings.size() && keyOf(siblings[i + 1]).first == name;
        if (name.empty() || sharesBefore || sharesBehind) {
            bool const sameClass = sharesBefore && keyOf(siblings[i - 1]).second == className;
            places[siblings[i]].rank = sameClass ? places[siblings[i - 1]].rank + 1 : 1;
        }
    }
}

void ObjectPaths::measure() {
    std::vector<std::size_t> lengths(places.size());
    for (Number const number : forest.downwards()) {
        if (number == 0) {
            continue;
        }
        Number const above = owner(number);
        Place& place = places[number];
        place.depth = above == Owners::none ? 1 : places[above].depth + 1;
        place.isOutside = above == Owners::none ? forest.of(number) != 0 : places[above].isOutside;
        bool const isWhole = above == Owners::none || places[above].head == above;
        lengths[number] = (above == Owners::none ? 0 : lengths[above] + 1) + stepOf(number).size();
        bool const fits = place.depth <= mostSteps && lengths[number] <= mostCharacters;
        place.head = isWhole && fits ? number : above == Owners::none ? above : places[above].head;
    }
}

std::string ObjectPaths::stepOf(Number number) const {
    std::uint32_t const rank = places[number].rank;
    if (rank == 0) {
        return escaped(view(object(number).getName()));
    }
    return withClass(object(number)) + (rank > 1 ? "#" + std::to_string(rank) : "");
}

/// Adds the steps from an object up to below `end`, the lowest one first, as many as there is room for in a
/// path. The answer is the object of the next step, or `end`.
ObjectPaths::Number ObjectPaths::climb(Number number, Number end, Steps& steps) const {
    std::size_t length = 0;
    while (number != end && steps.size() < mostSteps) {
        std::string step = stepOf(number);
        length += step.size();
        if (!steps.empty() && length > mostCharacters) {
            break;
        }
        steps.push_back(std::move(step));
        number = owner(number);
    }
    return number;
}

std::string ObjectPaths::gapBetween(Number above, Number below) const {
    return "#" + std::to_string(depthOf(below) - depthOf(above));
}

std::string ObjectPaths::pathOf(QORObject const& object) const {
    Number const number = forest.numbering().numberOf(object);
    if (number == 0) {
        return "/";
    }
    Steps steps;
    Number const head = places[number].head;
    Number each = climb(number, head, steps);
    if (each != head) {
        steps.push_back(gapBetween(head, each));
    }
    for (each = head; each != Owners::none; each = owner(each)) {
        steps.push_back(stepOf(each));
    }
    return (places[number].isOutside ? "/" : "") + joinedSteps(steps);
}

std::string ObjectPaths::pathFrom(QORObject const& from, QORObject const& object) const {
    Number const start = forest.numbering().numberOf(from);
    if (start == 0) {
        return pathOf(object);
    }
    Steps steps;
    Number const each = climb(forest.numbering().numberOf(object), start, steps);
    if (each != start) {
        steps.push_back(gapBetween(start, each));
    }
    return joinedSteps(steps);
}

std::vector<QORObject*> ObjectPaths::find(std::string_view path) const {
    std::vector<QORObject*> found;
    for (Number const number : findNumbers(path)) {
        found.push_back(&object(number));
    }
    return found;
}

std::vector<ObjectPaths::Number> ObjectPaths::findNumbers(std::string_view path) const {
    if (path.empty() || path == "/") {
        return {0};
    }
    bool const outside = path.front() == '/';
    Steps const steps = stepsOf(outside ? path.substr(1) : path);
    auto const gap = std::find_if(steps.begin(), steps.end(), isGap);
    std::vector<Number> const start = descend(outside ? Owners::none : 0, {steps.begin(), gap});
    if (gap == steps.end() || start.size() != 1) {
        return gap == steps.end() ? start : std::vector<Number>();
    }
    std::vector<Number> found;
    for (Number const candidate : findEnd({gap + 1, steps.end()})) {
        if (isBelow(candidate, start.front(),
                    std::stoul(gap->substr(1)) + static_cast<std::size_t>(steps.end() - gap - 1))) {
            found.push_back(candidate);
        }
    }
    return found;
}

/// Whether an object is owned by the other one over that many steps.
bool ObjectPaths::isBelow(Number number, Number start, std::size_t steps) const {
    if (depthOf(number) != depthOf(start) + steps) {
        return false;
    }
    while (steps-- > 0) {
        number = forest.of(number);
    }
    return number == start;
}

/// What the steps lead to from an object, or from outside the root; that itself without any.
std::vector<ObjectPaths::Number> ObjectPaths::descend(Number start, Steps const& steps) const {
    std::vector<Number> found{start};
    for (std::string const& step : steps) {
        if (found.size() != 1) {
            return {};
        }
        std::string const name = nameIn(step);
        std::vector<Number> const candidates = owned(found.front());
        found.clear();
        for (Number const number : candidates) {
            if (view(object(number).getName()) != name) {
                continue;
            }
            if (stepOf(number) == step) {
                found = {number};
                break;
            }
            if (answers(number, step)) {
                found.push_back(number);
            }
        }
    }
    return found;
}

bool ObjectPaths::answers(Number number, std::string const& step) const {
    return escaped(view(object(number).getName())) == step || withClass(object(number)) == step ||
           stepOf(number) == step;
}

/// The objects of which the path ends with these steps.
std::vector<ObjectPaths::Number> ObjectPaths::findEnd(Steps const& wanted) const {
    if (wanted.empty()) {
        return {};
    }
    std::vector<Number> found;
    for (Number const candidate : named(nameIn(wanted.back()))) {
        Number each = candidate;
        auto step = wanted.rbegin();
        while (step != wanted.rend() && each != Owners::none && answers(each, *step)) {
            each = owner(each);
            ++step;
        }
        if (step == wanted.rend()) {
            found.push_back(candidate);
        }
    }
    return found;
}

/// All objects of a name but the root.
std::vector<ObjectPaths::Number> ObjectPaths::named(std::string const& name) const {
    if (byName.empty()) {
        byName.resize(places.size() - 1);
        std::iota(byName.begin(), byName.end(), 1);
        std::sort(byName.begin(), byName.end(), [this](Number a, Number b) {
            return view(object(a).getName()) < view(object(b).getName());
        });
    }
    auto const first =
        std::lower_bound(byName.begin(), byName.end(), name, [this](Number number, std::string const& text) {
            return view(object(number).getName()) < text;
        });
    auto const last =
        std::upper_bound(first, byName.end(), name, [this](std::string const& text, Number number) {
            return text < view(object(number).getName());
        });
    return {first, last};
}

/// Reports the last step that leads to an object: if a step does, those before it do.
std::string ObjectPaths::problem(std::string_view path) const {
    std::string const text = "no object at " + std::string(path) + ": ";
    Steps const steps = stepsOf(path);
    auto const isThere = [&](std::size_t count) {
        Steps const first(steps.begin(), steps.begin() + static_cast<std::ptrdiff_t>(count));
        return !findNumbers(joinedSteps({first.rbegin(), first.rend()})).empty() || !findEnd(first).empty();
    };
    std::size_t there = 0;
    for (std::size_t missing = steps.size() + 1; missing - there > 1;) {
        std::size_t const middle = there + (missing - there) / 2;
        (isThere(middle) ? there : missing) = middle;
    }
    if (there == steps.size()) {
        return text + "the path is incomplete";
    }
    std::string const before = joinedSteps({steps.rend() - static_cast<std::ptrdiff_t>(there), steps.rend()});
    return text + (before.empty() ? "there is no " : before + " has no ") + steps[there];
}

QORObject& ObjectPaths::only(std::string_view path, std::string const& subject) const {
    std::vector<Number> found = findNumbers(path);
    if (found.empty() && !path.empty() && path.front() != '/') {
        found = findEnd(stepsOf(path));
    }
    if (found.empty()) {
        throw ToolError(subject, problem(path));
    }
    if (found.size() > 1) {
        std::set<std::string> paths; // the first two
        for (Number const number : found) {
            paths.insert(pathOf(object(number)));
            if (paths.size() > 2) {
                paths.erase(std::prev(paths.end()));
            }
        }
        throw ToolError(subject, "more than one object at " + std::string(path) + ", such as " +
                                     *paths.begin() + " and " + *paths.rbegin());
    }
    return object(found.front());
}

} // namespace kit
