#include "kit/Verify.h"

#include "kit/Hash.h"
#include "kit/Reflection.h"
#include "kit/TreePrinter.h"

#include <qor/QORTraversalOperation.h>

#include <algorithm>
#include <functional>
#include <unordered_map>
#include <unordered_set>

namespace kit {
namespace {

std::string nameOf(QORObject const& object) {
    return std::string(view(object.getMetaClass()->getDisplayName())) + " " + quoted(view(object.getName()));
}

std::string nameOf(QORObject const& object, QORMetaLink const& link) {
    return nameOf(object) + " " + std::string(view(link.getRoleName()));
}

/// Two objects and the kind of link between them, seen from the side that owns or refers.
struct Tie {
    QORObject const* near;
    QORObject const* far;
    bool owning;

    bool operator==(Tie const& other) const {
        return near == other.near && far == other.far && owning == other.owning;
    }
};

struct TieHash {
    std::size_t operator()(Tie const& tie) const {
        std::hash<void const*> const hash;
        return static_cast<std::size_t>(mixed(mixed(tie.owning, hash(tie.near)), hash(tie.far)));
    }
};

/// The ends that make the ties between two objects: as many on either side in a sound graph.
struct Ends {
    std::vector<QORMetaLink const*> ofNear;
    std::vector<QORMetaLink const*> ofFar;
};

/// Collects an object's children in the order of a walk over its ends.
class Children : public QORTraversalOperation {
public:
    explicit Children(QORObject const& ofObject) : owner(&ofObject) {}

    bool pre_process(QORObject* object, void*&) override {
        if (object == owner && !started) {
            return started = true;
        }
        children.push_back(object);
        return false;
    }

    std::vector<QORObject*> children;

private:
    QORObject const* owner;
    bool started = false;
};

class Verification {
public:
    std::vector<std::string> run(QORObject& root) {
        reach(root);
        while (!pending.empty()) {
            QORObject* const object = pending.back();
            pending.pop_back();
            check(*object);
        }
        checkTies();
        std::sort(findings.begin(), findings.end());
        return std::move(findings);
    }

private:
    void reach(QORObject& object) {
        if (reached.insert(&object).second) {
            pending.push_back(&object);
        }
    }

    void check(QORObject& object) {
        std::vector<QORObject*> const walked = walkedChildren(object);
        std::size_t placed = 0;
        for (QORMetaLink const* link : linksOf(object)) {
            std::vector<QORObject*> const elements = checkedElements(object, *link);
            for (QORObject* element : checkedDistinct(object, *link, elements)) {
                noteTie(object, *link, *element);
                reach(*element);
            }
            if (link->getType() == QORMetaLinkType::CHILD) {
                placed += elements.size();
                checkWalk(object, *link, elements, walked);
            }
        }
        if (placed != walked.size()) {
            findings.push_back(nameOf(object) + " has " + std::to_string(placed) +
                               " children by position, a walk meets " + std::to_string(walked.size()));
        }
    }

    static std::vector<QORObject*> walkedChildren(QORObject& object) {
        Children operation(object);
        object.depthTraversal(operation, nullptr);
        return std::move(operation.children);
    }

    /// Reads an end in both directions, which takes different ways through a large one.
    std::vector<QORObject*> checkedElements(QORObject& object, QORMetaLink const& link) {
        std::vector<QORObject*> const elements = elementsOf(object, link);
        if (link.isUnary()) {
            return elements;
        }
        int const count = link.getLinkCount(&object);
        if (count < 0 || elements.size() != static_cast<std::size_t>(count)) {
            findings.push_back(nameOf(object, link) + " counts " + std::to_string(count) + " and holds " +
                               std::to_string(elements.size()));
            return elements;
        }
        link.getLink(&object, 0); // from here, the last object is reached from the other side
        std::vector<QORObject*> backwards;
        for (int i = count - 1; i >= 0; --i) {
            backwards.push_back(link.getLink(&object, i));
        }
        if (!std::equal(elements.begin(), elements.end(), backwards.rbegin())) {
            findings.push_back(nameOf(object, link) + " returns other objects when read from the end");
        }
        return elements;
    }

    std::vector<QORObject*> checkedDistinct(QORObject const& object, QORMetaLink const& link,
                                            std::vector<QORObject*> elements) {
        std::sort(elements.begin(), elements.end(), std::less<>());
        auto const twice = std::adjacent_find(elements.begin(), elements.end());
        if (twice != elements.end()) {
            findings.push_back(nameOf(object, link) + " holds " + nameOf(**twice) + " more than once");
        }
        elements.erase(std::unique(twice, elements.end()), elements.end());
        return elements;
    }

    /// The objects of one end must lie next to each other in the walk over all child ends.
    void checkWalk(QORObject const& object, QORMetaLink const& link, std::vector<QORObject*> const& elements,
                   std::vector<QORObject*> const& walked) {
        if (std::search(walked.begin(), walked.end(), elements.begin(), elements.end()) == walked.end() &&
            !elements.empty()) {
            findings.push_back(nameOf(object, link) + " returns other children by position than a walk");
        }
    }

    void noteTie(QORObject const& object, QORMetaLink const& link, QORObject const& far) {
        switch (link.getType()) {
        case QORMetaLinkType::REF:
            ties[{&object, &far, false}].ofNear.push_back(&link);
            break;
        case QORMetaLinkType::CHILD:
            ties[{&object, &far, true}].ofNear.push_back(&link);
            break;
        case QORMetaLinkType::BACK_REF:
            ties[{&far, &object, false}].ofFar.push_back(&link);
            break;
        case QORMetaLinkType::PARENT:
            ties[{&far, &object, true}].ofFar.push_back(&link);
            break;
        }
    }

    void checkTies() {
        for (auto const& [tie, ends] : ties) {
            if (ends.ofNear.size() > ends.ofFar.size()) {
                reportUnanswered(*tie.near, ends.ofNear, *tie.far, ends.ofFar);
            } else if (ends.ofFar.size() > ends.ofNear.size()) {
                reportUnanswered(*tie.far, ends.ofFar, *tie.near, ends.ofNear);
            }
        }
    }

    void reportUnanswered(QORObject const& holder, std::vector<QORMetaLink const*> const& holding,
                          QORObject const& held, std::vector<QORMetaLink const*> const& answering) {
        std::string finding = nameOf(holder);
        for (QORMetaLink const* link : holding) {
            finding.append(link == holding.front() ? " " : ", ").append(view(link->getRoleName()));
        }
        finding.append(holding.size() > 1 ? " hold " : " holds ").append(nameOf(held));
        if (holding.front()->getType() == QORMetaLinkType::CHILD) {
            finding.append(", which doesn't name it as its owner");
        } else if (holding.front()->getType() == QORMetaLinkType::PARENT) {
            finding.append(", which doesn't own it");
        } else {
            finding.append(", which doesn't answer");
        }
        if (!answering.empty()) {
            finding.append(" with more than ").append(std::to_string(answering.size()));
        }
        findings.push_back(finding);
    }

    std::unordered_set<QORObject const*> reached;
    std::vector<QORObject*> pending;
    std::unordered_map<Tie, Ends, TieHash> ties;
    std::vector<std::string> findings;
};

} // namespace

std::vector<std::string> verify(QORObject& root) {
    return Verification().run(root);
}

} // namespace kit
