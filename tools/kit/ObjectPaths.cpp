#include "kit/ObjectPaths.h"

#include "kit/Numbering.h"
#include "kit/Reflection.h"

#include <algorithm>
#include <unordered_set>

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

} // namespace

ObjectPaths::ObjectPaths(Numbering const& numbering) : root(numbering.objects().front()) {
    for (QORObject* object : numbering.objects()) {
        if (object != root) {
            children[object->getParent()].push_back(object);
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
    std::unordered_set<QORObject const*> met{&object};
    QORObject const* owner = object.getParent();
    for (; owner && owner != root && met.insert(owner).second; owner = owner->getParent()) {
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
            if (escaped(view(object->getName())) == step || withClass(*object) == step) {
                found.push_back(object);
            }
        }
    }
    return found;
}

} // namespace kit
