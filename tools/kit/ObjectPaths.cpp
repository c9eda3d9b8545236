#include "kit/ObjectPaths.h"

#include "kit/Numbering.h"
#include "kit/Reflection.h"
#include "kit/ToolError.h"

#include <algorithm>

namespace kit {
namespace {

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

/// The name that a step tells, without class and number.
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

} // namespace

ObjectPaths::ObjectPaths(Numbering const& numbering) : root(numbering.objects().front()), forest(numbering) {
    for (QORObject* object : numbering.objects()) {
        if (object != root) {
            children[forest.of(*object)].push_back(object);
        }
    }
    for (auto const& [owner, siblings] : children) {
        nameSiblings(siblings);
    }
}

void ObjectPaths::nameSiblings(std::vector<QORObject*> const& siblings) {
    std::unordered_map<std::string, int> named;
    std::unordered_map<std::string, int> classed;
    for (QORObject const* object : siblings) {
        ++named[escaped(view(object->getName()))];
    }
    for (QORObject const* object : siblings) {
        std::string const name = escaped(view(object->getName()));
        if (!name.empty() && named[name] == 1) {
            steps[object] = name;
            continue;
        }
        std::string const step = withClass(*object);
        int const place = ++classed[step];
        steps[object] = place == 1 ? step : step + "#" + std::to_string(place);
    }
}

std::string ObjectPaths::pathOf(QORObject const& object) const {
    if (&object == root) {
        return "/";
    }
    std::vector<QORObject const*> chain{&object};
    QORObject const* owner = forest.of(object);
    for (; owner && owner != root; owner = forest.of(*owner)) {
        chain.push_back(owner);
    }
    std::string path = owner == root ? "" : "/";
    for (auto each = chain.rbegin(); each != chain.rend(); ++each) {
        path += (each == chain.rbegin() ? "" : "/") + steps.at(*each);
    }
    return path;
}

std::vector<QORObject*> ObjectPaths::find(std::string_view path) const {
    if (path.empty() || path == "/") {
        return {root};
    }
    bool const outside = path.front() == '/';
    QORObject const* const start = outside ? nullptr : root;
    std::vector<QORObject*> found;
    bool first = true;
    for (std::string const& step : stepsOf(outside ? path.substr(1) : path)) {
        if (!first && found.size() != 1) {
            return {};
        }
        auto const owned = children.find(first ? start : found.front());
        first = false;
        found.clear();
        if (owned == children.end()) {
            return {};
        }
        for (QORObject* object : owned->second) {
            if (steps.at(object) == step) {
                found = {object};
                break;
            }
            if (answers(*object, step)) {
                found.push_back(object);
            }
        }
    }
    return found;
}

bool ObjectPaths::answers(QORObject const& object, std::string const& step) const {
    return escaped(view(object.getName())) == step || withClass(object) == step || steps.at(&object) == step;
}

/// The objects of which the path ends with this one.
std::vector<QORObject*> ObjectPaths::findEnd(std::string_view path) const {
    std::vector<std::string> const wanted = stepsOf(path);
    if (byName.empty()) {
        for (auto const& [object, step] : steps) {
            byName.emplace(view(object->getName()), object);
        }
    }
    std::vector<QORObject*> found;
    std::string const name = nameIn(wanted.back());
    auto const [first, last] = byName.equal_range(name);
    for (auto candidate = first; candidate != last; ++candidate) {
        QORObject const* each = candidate->second;
        auto step = wanted.rbegin();
        while (step != wanted.rend() && each && each != root && answers(*each, *step)) {
            each = forest.of(*each);
            ++step;
        }
        if (step == wanted.rend()) {
            found.push_back(const_cast<QORObject*>(candidate->second));
        }
    }
    return found;
}

std::string ObjectPaths::problem(std::string_view path) const {
    std::string const text = "no object at " + std::string(path) + ": ";
    std::string before;
    for (std::string const& step : stepsOf(path)) {
        std::string const next = before.empty() ? step : before + "/" + step;
        if (find(next).empty() && findEnd(next).empty()) {
            return text + (before.empty() ? "there is no " : before + " has no ") + step;
        }
        before = next;
    }
    return text + "the path is incomplete";
}

QORObject& ObjectPaths::only(std::string_view path, std::string const& subject) const {
    std::vector<QORObject*> found = find(path);
    if (found.empty() && !path.empty() && path.front() != '/') {
        found = findEnd(path);
    }
    if (found.empty()) {
        throw ToolError(subject, problem(path));
    }
    if (found.size() > 1) {
        std::vector<std::string> paths;
        for (QORObject const* object : found) {
            paths.push_back(pathOf(*object));
        }
        std::sort(paths.begin(), paths.end());
        throw ToolError(subject, "more than one object at " + std::string(path) + ", such as " + paths[0] +
                                     " and " + paths[1]);
    }
    return *found.front();
}

} // namespace kit
