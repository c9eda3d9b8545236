#include "documents/DotWriter.h"

#include "database/ModelReader.h"
#include "kit/JsonText.h"
#include "kit/Owners.h"
#include "kit/Reflection.h"

#include <algorithm>
#include <ostream>
#include <string>

namespace documents {
namespace {

/// How the objects of a class become arrows: the ways over link ends to the boxes at both ends.
struct Relation {
    QORElementType type;
    char const* tail;
    char const* head;
    char const* style;
};

constexpr Relation relations[] = {
    {QORElementType::GENERALIZATION, "subtypeClass", "supertypeClass", "arrowhead=empty"},
    {QORElementType::DEPENDENCY, "clientClass", "supplierClass", "arrowhead=vee, style=dashed"},
    {QORElementType::REALIZATION, "realizationClass", "specificationClass", "arrowhead=empty, style=dashed"},
    {QORElementType::SQL_VIEW_ASSOCIATION, "destinationSQLViewEntity", "sourceClassifier",
     "arrowhead=vee, style=dotted"},
    {QORElementType::CLASSIFIER_MAP, "sourceClassifier", "destinationClassifier",
     "arrowhead=vee, style=bold"},
};

/// A text as a quoted string, in which the drawing program interprets "\l" and the like.
std::string quotedText(std::string const& text) {
    return '"' + text + '"';
}

/// A name as part of a label: characters that would have a meaning there are escaped.
std::string label(std::string_view name) {
    std::string text;
    for (char const character : kit::printable(name)) {
        if (std::string_view("\"\\{}|<>").find(character) != std::string_view::npos) {
            text += '\\';
        }
        text += character;
    }
    return text;
}

class Drawing {
public:
    Drawing(QORObject& root, std::ostream& stream)
        : numbering(root), owners(numbering), read(database::readDocument(numbering)),
          records(numbering.objects().size(), -1), out(stream) {
        note(read.tables);
        note(read.keys);
    }

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
    void note(std::vector<QORObject*> const& objects) {
        for (std::size_t i = 0; i < objects.size(); ++i) {
            records[numbering.numberOf(*objects[i])] = static_cast<int>(i);
        }
    }

    /// The number of the table or key that an object is in the structure; -1 for none.
    int recordOf(QORObject const& object) const { return records[numbering.numberOf(object)]; }

    /// Writes the boxes of an object and of what it owns. A null object closes the frame of a package.
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
                    << " {\nlabel=" << quotedText(label(kit::view(object->getName()))) << ";\n";
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

    void writeBox(QORObject const& classifier) {
        database::Structure const& structure = read.structure;
        database::Table const& table = structure.tables[static_cast<std::size_t>(recordOf(classifier))];
        std::string text = "{" + label(table.name) + "|";
        for (database::Column const& column : table.columns) {
            text += label(column.name);
            if (column.type >= 0) {
                text += " : " + label(structure.types[static_cast<std::size_t>(column.type)].name);
            }
            text += "\\l";
        }
        out << nodeOf(classifier) << " [label=" << quotedText(text + "}") << "];\n";
    }

    std::string nodeOf(QORObject const& object) const {
        return "n" + std::to_string(numbering.numberOf(object));
    }

    void writeArrows(QORObject& object) {
        if (database::Key const* const key = drawnKey(object)) {
            writeArrow(tableAt(key->table), tableAt(key->referredTable), object.getName(),
                       "arrowhead=normal");
        }
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

    /// The foreign key that an object is, if both of its tables are known.
    database::Key const* drawnKey(QORObject const& object) const {
        if (!object.isInstanceOf(QORElementType::FOREIGN_KEY) || recordOf(object) < 0) {
            return nullptr;
        }
        database::Key const& key = read.structure.keys[static_cast<std::size_t>(recordOf(object))];
        return key.referredTable < 0 ? nullptr : &key;
    }

    QORObject const& tableAt(int number) const { return *read.tables[static_cast<std::size_t>(number)]; }

    /// Whether a foreign key that carries out the association has an arrow already.
    bool isDrawnAsKey(QORObject& association) const {
        std::vector<QORObject*> const keys = follow(association, "associationRole.foreignKey");
        return std::any_of(keys.begin(), keys.end(),
                           [this](QORObject const* key) { return drawnKey(*key) != nullptr; });
    }

    void writeArrow(QORObject const& tail, QORObject const& head, QORString const& name, char const* style) {
        out << nodeOf(tail) << " -> " << nodeOf(head) << " [label=" << quotedText(label(kit::view(name)))
            << ", " << style << "];\n";
    }

    /// The objects at the end of a way, which is written as roles with dots between them.
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
    database::DocumentStructure read;
    std::vector<int> records; ///< by the number of the object
    std::ostream& out;
};

} // namespace

void writeDot(QORObject& root, std::ostream& out) {
    Drawing(root, out).write();
}

} // namespace documents
