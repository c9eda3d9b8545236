#include "exchange/MarkdownWriter.h"

#include "exchange/TableKeys.h"
#include "kit/GraphOrder.h"
#include "kit/JsonText.h"
#include "kit/Numbering.h"
#include "kit/Reflection.h"

#include <qor/QORAttribute.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORClassifier.h>
#include <qor/QORForeignKey.h>
#include <qor/QORIndex.h>
#include <qor/QORIndexMember.h>
#include <qor/QORStructuralFeature.h>
#include <qor/QORType.h>

#include <ostream>
#include <string>

namespace exchange {
namespace {

/// A text on one line, in which nothing has a meaning in Markdown.
std::string plain(QORString const& text) {
    std::string result;
    for (char const character : kit::printable(kit::view(text))) {
        if (std::string_view("\\`*_{}[]<>()#+-.!|~&").find(character) != std::string_view::npos) {
            result += '\\';
        }
        result += character;
    }
    return result;
}

void writeColumn(QORObject& object, std::ostream& out) {
    auto const& feature = static_cast<QORFeature const&>(object);
    QORType const* const type = feature.getType();
    out << "| " << plain(feature.getName()) << " | " << (type ? plain(type->getName()) : "") << " | ";
    if (object.isInstanceOf(QORElementType::STRUCTURAL_FEATURE)) {
        auto const& column = static_cast<QORStructuralFeature const&>(object);
        out << (column.getOptional() ? "yes" : "no") << " | " << plain(column.getInitialValue());
    } else {
        out << " | ";
    }
    out << " | " << plain(feature.getComment()) << " |\n";
}

class Page {
public:
    Page(QORObject& top, std::ostream& stream) : root(top), numbering(top), out(stream) {}

    void write() {
        out << "# " << plain(root.getName()) << '\n';
        for (QORObject* object : numbering.objects()) {
            if (object->isInstanceOf(QORElementType::CLASSIFIER)) {
                writeChapter(static_cast<QORClassifier&>(*object));
            }
        }
    }

private:
    std::vector<QORObject*> elements(QORObject& object, char const* role) {
        return order.elements(object, *object.getMetaClass()->getMetaLinkByRoleName(role));
    }

    void writeChapter(QORClassifier& classifier) {
        out << "\n## " << plain(classifier.getName()) << "\n";
        if (classifier.getComment().length) {
            out << '\n' << plain(classifier.getComment()) << '\n';
        }
        std::vector<QORObject*> const columns = elements(classifier, "feature");
        if (!columns.empty()) {
            out << "\n| Column | Type | Optional | Default | Comment |\n| --- | --- | --- | --- | --- |\n";
        }
        for (QORObject* column : columns) {
            writeColumn(*column, out);
        }
        if (classifier.isInstanceOf(QORElementType::CLASS)) {
            writeKeys(static_cast<QORClass&>(classifier));
        }
    }

    /// A list of the keys, the primary one first, and the indexes that aren't just there for a key.
    void writeKeys(QORClass& table) {
        std::vector<std::string> primary;
        std::vector<std::string> others;
        std::vector<std::string> foreign;
        for (QORObject* object : elements(table, "key")) {
            if (object->isInstanceOf(QORElementType::FOREIGN_KEY)) {
                foreign.push_back(foreignKey(static_cast<QORForeignKey&>(*object)));
            } else if (object->isInstanceOf(QORElementType::CANDIDATE_KEY)) {
                auto& key = static_cast<QORCandidateKey&>(*object);
                bool const isPrimary = key.getPrimaryOfClass() != nullptr;
                (isPrimary ? primary : others)
                    .push_back((isPrimary ? "Primary key" : "Unique key") + named(key) + ": " +
                               names(columnsOf(key, order)));
            }
        }
        char const* before = "\n";
        for (auto const& list : {primary, others, foreign, indexes(table)}) {
            for (std::string const& line : list) {
                out << before << "- " << line << '\n';
                before = "";
            }
        }
    }

    std::string foreignKey(QORForeignKey& key) {
        Reference const reference = referenceOf(key, order);
        std::vector<QORAttribute*> near;
        std::vector<QORAttribute*> far;
        for (auto const& [column, referred] : reference.columns) {
            near.push_back(column);
            if (referred) {
                far.push_back(referred);
            }
        }
        std::string line = "Foreign key" + named(key) + ": " + names(near);
        if (reference.table) {
            line += " to " + plain(reference.table->getName());
            line += far.empty() ? "" : " (" + names(far) + ")";
        }
        return line;
    }

    std::vector<std::string> indexes(QORClass& table) {
        std::vector<std::string> lines;
        for (QORObject* object : elements(table, "index")) {
            auto& index = static_cast<QORIndex&>(*object);
            if (index.getKey()) {
                continue;
            }
            std::vector<QORAttribute*> columns;
            for (QORObject* member : elements(index, "indexMember")) {
                columns.push_back(static_cast<QORIndexMember*>(member)->getAttribute());
            }
            lines.push_back((index.getUnique() ? "Unique index" : "Index") + named(index) + ": " +
                            names(columns));
        }
        return lines;
    }

    static std::string named(QORObject const& object) {
        return object.getName().length ? " " + plain(object.getName()) : "";
    }

    static std::string names(std::vector<QORAttribute*> const& columns) {
        std::string text;
        for (QORAttribute const* column : columns) {
            text += (text.empty() ? "" : ", ") + (column ? plain(column->getName()) : "an expression");
        }
        return text;
    }

    QORObject& root;
    kit::Numbering numbering;
    kit::GraphOrder order;
    std::ostream& out;
};

} // namespace

void writeMarkdown(QORObject& root, std::ostream& out) {
    Page(root, out).write();
}

} // namespace exchange
