#include "exchange/DotWriter.h"

#include "kit/JsonText.h"
#include "kit/Numbering.h"
#include "kit/Owners.h"
#include "kit/Reflection.h"

#include <qor/QORFeature.h>
#include <qor/QORType.h>

#include <ostream>
#include <string>

namespace exchange {
namespace {

/// How objects of a class stand for arrows: the way over link ends to the boxes at either end.
struct Relation {
    QORElementType type;
    char const* tail;
    char const* head;
    char const* style;
};

constexpr Relation relations[] = {
    {QORElementType::FOREIGN_KEY, "associatedClass", "candidateKey.associatedClass", "arrowhead=normal"},
    {QORElementType::GENERALIZATION, "subtypeClass", "supertypeClass", "arrowhead=empty"},
    {QORElementType::DEPENDENCY, "clientClass", "supplierClass", "arrowhead=vee, style=dashed"},
    {QORElementType::REALIZATION, "realizationClass", "specificationClass", "arrowhead=empty, style=dashed"},
    {QORElementType::SQL_VIEW_ASSOCIATION, "destinationSQLViewEntity", "sourceClassifier",
     "arrowhead=vee, style=dotted"},
    {QORElementType::CLASSIFIER_MAP, "sourceClassifier", "destinationClassifier",
     "arrowhead=vee, style=bold"},
};

/// A text as a quoted string, in which "\l" and the like are what the drawing program makes of them.
std::string quotedText(std::string const& text) {
    return '"' + text + '"';
}

/// A name as part of a label: nothing in it has a meaning of its own.
std::string label(QORString const& name) {
    std::string text;
    for (char const character : kit::printable(kit::view(name))) {
        if (std::string_view("\"\\{}|<>").find(character) != std::string_view::npos) {
            text += '\\';
        }
        text += character;
    }
    return text;
}

class Drawing {
public:
    Drawing(QORObject& root, std::ostream& stream) : numbering(root), owners(numbering), out(stream) {}

    void write() {
        out << "digraph {\nrankdir=LR;\nnode [shape=record];\n";
        for (QORObject* top : owners.tops()) {
            writeBoxes(*top);
        }
        for (QORObject* object : numbering.objects()) {
            writeArrows(*object);
        }
        out << "}\n";
    }

private:
    /// A package's frame is closed after all that it owns; a null object stands for that.
    void writeBoxes(QORObject& top) {
        std::vector<QORObject*> pending{&top};
        while (!pending.empty()) {
            QORObject* const object = pending.back();
            pending.pop_back();
            if (!object) {
                out << "}\n";
                continue;
            }
            if (object->isInstanceOf(QORElementType::CLASSIFIER)) {
                writeBox(*object);
            } else if (object->isInstanceOf(QORElementType::PACKAGE)) {
                out << "subgraph cluster_" << numbering.numberOf(*object)
                    << " {\nlabel=" << quotedText(label(object->getName())) << ";\n";
                pending.push_back(nullptr);
            }
            pushChildren(*object, pending);
        }
    }

    void pushChildren(QORObject& object, std::vector<QORObject*>& pending) const {
        std::vector<QORObject*> children;
        for (QORMetaLink const* link : kit::linksOf(object)) {
            if (link->getType() != QORMetaLinkType::CHILD) {
                continue;
            }
            for (QORObject* child : numbering.elements(object, *link)) {
                if (owners.of(*child) == &object) {
                    children.push_back(child);
                }
            }
        }
        pending.insert(pending.end(), children.rbegin(), children.rend());
    }

    void writeBox(QORObject& classifier) {
        std::string text = "{" + label(classifier.getName()) + "|";
        QORMetaLink const* const features = classifier.getMetaClass()->getMetaLinkByRoleName("feature");
        for (QORObject const* object : numbering.elements(classifier, *features)) {
            text += label(object->getName());
            if (QORType const* type = static_cast<QORFeature const*>(object)->getType()) {
                text += " : " + label(type->getName());
            }
            text += "\\l";
        }
        out << nodeOf(classifier) << " [label=" << quotedText(text + "}") << "];\n";
    }

    std::string nodeOf(QORObject const& object) const {
        return "n" + std::to_string(numbering.numberOf(object));
    }

    void writeArrows(QORObject& object) {
        for (Relation const& relation : relations) {
            if (!object.isInstanceOf(relation.type)) {
                continue;
            }
            for (QORObject const* tail : follow(object, relation.tail)) {
                for (QORObject const* head : follow(object, relation.head)) {
                    writeArrow(*tail, *head, object.getName(), relation.style);
                }
            }
        }
        if (object.isInstanceOf(QORElementType::ASSOCIATION) && !isDrawnAsKey(object)) {
            std::vector<QORObject*> const ends = follow(object, "associationRole.associatedClass");
            for (std::size_t i = 1; i < ends.size(); ++i) {
                writeArrow(*ends.front(), *ends[i], object.getName(), "dir=none");
            }
        }
    }

    /// Whether a foreign key that carries out the association has an arrow already.
    bool isDrawnAsKey(QORObject& association) const {
        return !follow(association, "associationRole.foreignKey.candidateKey.associatedClass").empty();
    }

    void writeArrow(QORObject const& tail, QORObject const& head, QORString const& name, char const* style) {
        out << nodeOf(tail) << " -> " << nodeOf(head) << " [label=" << quotedText(label(name)) << ", "
            << style << "];\n";
    }

    /// What lies at the end of a way, told as roles with dots between.
    std::vector<QORObject*> follow(QORObject& start, std::string way) const {
        std::vector<QORObject*> reached{&start};
        while (!way.empty()) {
            std::size_t const dot = way.find('.');
            std::string const role = way.substr(0, dot);
            way = dot == std::string::npos ? "" : way.substr(dot + 1);
            std::vector<QORObject*> next;
            for (QORObject* object : reached) {
                QORMetaLink const* const link = object->getMetaClass()->getMetaLinkByRoleName(role.c_str());
                std::vector<QORObject*> const far = numbering.elements(*object, *link);
                next.insert(next.end(), far.begin(), far.end());
            }
            reached = std::move(next);
        }
        return reached;
    }

    kit::Numbering numbering;
    kit::Owners owners;
    std::ostream& out;
};

} // namespace

void writeDot(QORObject& root, std::ostream& out) {
    Drawing(root, out).write();
}

} // namespace exchange
