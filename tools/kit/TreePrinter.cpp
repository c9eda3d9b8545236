#include "kit/TreePrinter.h"

#include "kit/Numbering.h"
#include "kit/Reflection.h"
#include "kit/Text.h"

#include <cstdio>
#include <ostream>
#include <unordered_set>

namespace kit {
namespace {

std::string hexadecimal(unsigned char character) {
    char text[8];
    std::snprintf(text, sizeof text, "\\x%02x", static_cast<unsigned>(character));
    return text;
}

/// Texts are quoted, since they may hold blanks; numbers, truth values and the words of enumerations aren't.
std::string valueText(QORMetaAttribute const& attribute, QORString const& value) {
    bool const isText = attribute.getType() == QORMetaAttributeType::STRING ||
                        attribute.getType() == QORMetaAttributeType::DATE;
    return isText ? quoted(view(value)) : std::string(view(value));
}

/// The object at the far end of a link to one object; null without one.
QORObject const* farEnd(QORObject const& object, char const* role) {
    QORMetaLink const* link = object.getMetaClass()->getMetaLinkByRoleName(role);
    return link ? link->getLink(&const_cast<QORObject&>(object), 0) : nullptr;
}

/// The display name of an alias is that of its type, which must exist and must not lead to an alias in the
/// end; that of a projection is the one of its subject.
bool hasDisplayName(QORObject const& object) {
    QORObject const* each = &object;
    if (object.isInstanceOf(QORElementType::PRESENTATION_ELEMENT)) {
        each = farEnd(object, "subjectModelObject");
        if (!each || each->getName().length) {
            return true;
        }
    }
    constexpr int longestChain = 100;
    for (int i = 0; each && each->getElementType() == QORElementType::ALIAS_TYPE && i < longestChain; ++i) {
        each = farEnd(*each, "aliasOfType");
    }
    return each && each->getElementType() != QORElementType::ALIAS_TYPE &&
           (each == &object || !each->isInstanceOf(QORElementType::PRESENTATION_ELEMENT));
}

/// The name, or else the display name; the name of the class if there is neither.
std::string labelOf(QORObject const& object) {
    if (object.getName().length) {
        return quoted(view(object.getName()));
    }
    return quoted(
        view(hasDisplayName(object) ? object.getDisplayName() : object.getMetaClass()->getDisplayName()));
}

void appendAttributes(std::string& line, QORObject& object) {
    QORString room;
    for (QORMetaAttribute const* attribute : attributesOf(object)) {
        QORString const& value = attribute->getValue(&object, room);
        if (attribute->getId() == QORAttributeType::OBJECT__NAME || value == attribute->getDefaultValue()) {
            continue;
        }
        line.append(" ").append(view(attribute->getDisplayName())).append("=");
        line.append(valueText(*attribute, value));
    }
}

void appendReferences(std::string& line, QORObject& object) {
    for (QORMetaLink const* link : linksOf(object)) {
        if (!link->isUnary() || link->getType() != QORMetaLinkType::REF) {
            continue;
        }
        if (QORObject const* far = link->getLink(&object, 0)) {
            line.append(" ").append(view(link->getRoleName())).append("->").append(labelOf(*far));
        }
    }
}

/// Two blanks for each owner above. Below many owners the number of owners replaces further indentation, so
/// that the lines of a deep tree are short.
std::string indentation(std::size_t depth) {
    constexpr std::size_t deepest = 100;
    return depth <= deepest ? std::string(2 * depth, ' ')
                            : std::string(2 * deepest, ' ') + "(" + std::to_string(depth) + ") ";
}

struct Entry {
    QORObject* object;
    std::size_t depth;
};

} // namespace

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (char const character : text) {
        if (character == '"' || character == '\\') {
            result += '\\';
            result += character;
        } else if (character == '\n') {
            result += "\\n";
        } else if (character == '\t') {
            result += "\\t";
        } else if (isControl(character)) {
            result += hexadecimal(static_cast<unsigned char>(character));
        } else {
            result += character;
        }
    }
    return result += '"';
}

std::string lineOf(QORObject& object) {
    std::string line(view(object.getMetaClass()->getDisplayName()));
    if (object.getName().length) {
        line.append(" ").append(quoted(view(object.getName())));
    }
    appendAttributes(line, object);
    appendReferences(line, object);
    return line;
}

void printTree(QORObject& root, std::ostream& out) {
    OwnedOrder order;
    std::unordered_set<QORObject const*> printed;
    // An explicit stack: a graph can be deeper than the program's.
    std::vector<Entry> pending{{&root, 0}};
    while (!pending.empty()) {
        Entry const entry = pending.back();
        pending.pop_back();
        bool const first = printed.insert(entry.object).second;
        out << indentation(entry.depth) << lineOf(*entry.object) << (first ? "\n" : " (above)\n");
        if (!first) {
            continue;
        }
        std::vector<QORObject*> const children = order.children(*entry.object);
        for (auto child = children.rbegin(); child != children.rend(); ++child) {
            pending.push_back({*child, entry.depth + 1});
        }
    }
}

} // namespace kit
