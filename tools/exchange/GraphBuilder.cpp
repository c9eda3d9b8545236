#include "exchange/GraphBuilder.h"

#include "exchange/Attributes.h"
#include "kit/LinkEnds.h"
#include "kit/Progress.h"
#include "kit/Reflection.h"
#include "kit/TreePrinter.h"

#include <qor/QORException.h>
#include <qor/QORMetaRepository.h>

#include <algorithm>

namespace exchange {
namespace {

std::string classOf(QORObject const& object) {
    return std::string(kit::view(object.getMetaClass()->getDisplayName()));
}

bool isLinked(QORObject& object, QORMetaLink const& role, QORObject& other) {
    QORMetaLink const& reverse = *role.getFarMetaLink();
    if (reverse.isUnary()) {
        return reverse.getLink(&other, 0) != nullptr;
    }
    return role.isUnary() && role.getLink(&object, 0) != nullptr;
}

bool tryToLink(QORObject& from, QORMetaLink const& role, QORObject& to) {
    try {
        return role.addLink(&from, &to);
    } catch (QORException const&) {
        return false;
    } catch (int) {
        return false;
    }
}

char const* nameOf(QORMetaAttributeType type) {
    switch (type) {
    case QORMetaAttributeType::BOOL:
        return "true or false";
    case QORMetaAttributeType::INT:
    case QORMetaAttributeType::SHORT:
        return "a whole number";
    default:
        return "a text";
    }
}

Scalar::Kind kindOf(QORMetaAttributeType type) {
    switch (type) {
    case QORMetaAttributeType::BOOL:
        return Scalar::TRUTH;
    case QORMetaAttributeType::INT:
    case QORMetaAttributeType::SHORT:
        return Scalar::NUMBER;
    default:
        return Scalar::TEXT;
    }
}

} // namespace

void GraphBuilder::beginObject(std::uint64_t number, std::string const& className, TextPosition position) {
    if (byNumber.count(number)) {
        throw Mistake("the number " + std::to_string(number) + " is used twice", position);
    }
    QORMetaClass const* const metaClass =
        QORMetaRepository::getMetaRepository()->getMetaClassByDisplayName(className.c_str());
    QORObject* const made = metaClass ? metaClass->newInstance() : nullptr;
    if (!made) {
        throw Mistake(kit::quoted(className) +
                      (metaClass ? " is a class without instances" : " isn't a class"));
    }
    graph.adopt(made);
    byNumber.emplace(number, Entry{made, number, position});
    numbers.push_back(number);
    kit::Progress::count(byNumber.size());
    current = made;
    settings.clear();
}

void GraphBuilder::addAttribute(std::string const& name, Scalar const& value, TextPosition position) {
    QORMetaAttribute const* const attribute =
        current->getMetaClass()->getMetaAttributeByDisplayName(name.c_str());
    if (!attribute) {
        throw Mistake(classOf(*current) + " has no attribute " + kit::quoted(name));
    }
    for (Setting const& setting : settings) {
        if (setting.attribute == attribute) {
            throw Mistake("the attribute " + kit::quoted(name) + " is repeated");
        }
    }
    checkKind(*attribute, value);
    settings.push_back({attribute, QORString(value.text.c_str()), position});
}

void GraphBuilder::addAttribute(QORMetaAttribute const& attribute, QORString const& value) {
    settings.push_back({&attribute, value, {}});
}

void GraphBuilder::checkKind(QORMetaAttribute const& attribute, Scalar const& value) const {
    std::string const name = kit::quoted(kit::view(attribute.getDisplayName()));
    if (value.kind != kindOf(attribute.getType())) {
        throw Mistake(name + " takes " + nameOf(attribute.getType()));
    }
    if (value.text.find('\0') != std::string::npos) {
        throw Mistake("the text of " + name + " holds a NUL");
    }
}

void GraphBuilder::endObject() {
    for (QORMetaAttribute const* attribute : inSettingOrder(*current->getMetaClass())) {
        for (Setting const& setting : settings) {
            if (setting.attribute == attribute && !setAttribute(*current, *attribute, setting.text)) {
                throw Mistake(classOf(*current) + " doesn't take " + kit::quoted(kit::view(setting.text)) +
                                  " as " + kit::quoted(kit::view(attribute->getDisplayName())),
                              setting.position);
            }
        }
    }
}

QORObject& GraphBuilder::object(std::uint64_t number) const {
    auto const found = byNumber.find(number);
    if (found == byNumber.end()) {
        throw Mistake("no object has the number " + std::to_string(number));
    }
    return *found->second.object;
}

void GraphBuilder::beginLinks(std::uint64_t from, std::string const& roleName) {
    current = &object(from);
    currentNumber = from;
    role = current->getMetaClass()->getMetaLinkByRoleName(roleName.c_str());
    if (!role) {
        throw Mistake(classOf(*current) + " has no role " + kit::quoted(roleName));
    }
    if (!kit::isNearEnd(*role)) {
        throw Mistake("the role " + kit::quoted(roleName) + " of " + classOf(*current) +
                      " must be at its other end");
    }
}

// What isn't of the classes that a link is between is no argument for it, nor is an object for itself.
QORObject& GraphBuilder::linkable(std::uint64_t number) {
    QORObject& other = object(number);
    std::string const roleName = kit::quoted(kit::view(role->getRoleName()));
    if (!other.isInstanceOf(role->getFarMetaClass()->getId())) {
        throw Mistake("the role " + roleName + " of " + classOf(*current) + " accepts no " + classOf(other));
    }
    if (current == &other) {
        throw Mistake("an object is linked with itself as " + roleName);
    }
    if (isLinked(*current, *role, other)) {
        refuse(number, "an end is already linked");
    }
    byNumber.at(representativeOf(number)).towards = representativeOf(currentNumber);
    return other;
}

/// The same number for all objects that links lead to from each other. The ways get shorter with each
/// question.
std::uint64_t GraphBuilder::representativeOf(std::uint64_t number) {
    for (;;) {
        Entry& entry = byNumber.at(number);
        if (entry.towards == number) {
            return number;
        }
        entry.towards = byNumber.at(entry.towards).towards;
        number = entry.towards;
    }
}

void GraphBuilder::refuse(std::uint64_t to, char const* reason) const {
    throw Mistake("the link " + kit::quoted(kit::view(role->getRoleName())) + " to the object " +
                  std::to_string(to) + " is refused: " + reason);
}

void GraphBuilder::addLink(std::uint64_t to) {
    if (!tryToLink(*current, *role, linkable(to))) {
        refuse(to, "it is already linked, or its name is taken");
    }
}

bool GraphBuilder::addLinkUnderFreeName(std::uint64_t to) {
    QORObject& other = linkable(to);
    if (tryToLink(*current, *role, other)) {
        return false;
    }
    QORString const name = other.getName();
    constexpr int mostTries = 1000;
    for (int i = 1; i <= mostTries; ++i) {
        other.setName(name + QORString("/") + QORString(i));
        if (tryToLink(*current, *role, other)) {
            return true;
        }
    }
    refuse(to, "its name is already taken");
}

kit::Graph GraphBuilder::take() {
    if (graph.objects().empty()) {
        throw Mistake("the graph has no object");
    }
    std::uint64_t const first = representativeOf(numbers.front());
    for (std::uint64_t const number : numbers) {
        if (representativeOf(number) != first) {
            throw Mistake("no links lead from the first object to the object " + std::to_string(number),
                          byNumber.at(number).position);
        }
    }
    return std::move(graph);
}

} // namespace exchange
