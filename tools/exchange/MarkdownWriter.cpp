#include "exchange/MarkdownWriter.h"

#include "exchange/JsonText.h"
#include "kit/GraphOrder.h"
#include "kit/Numbering.h"
#include "kit/Reflection.h"

#include <qor/QORClassifier.h>
#include <qor/QORStructuralFeature.h>
#include <qor/QORType.h>

#include <ostream>
#include <string>

namespace exchange {
namespace {

/// A text on one line, in which nothing has a meaning in Markdown.
std::string plain(QORString const& text) {
    std::string result;
    for (char const character : printable(kit::view(text))) {
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

void writeChapter(QORObject& object, kit::GraphOrder& order, std::ostream& out) {
    auto const& classifier = static_cast<QORClassifier const&>(object);
    out << "\n## " << plain(classifier.getName()) << "\n";
    if (classifier.getComment().length) {
        out << '\n' << plain(classifier.getComment()) << '\n';
    }
    QORMetaLink const* const features = object.getMetaClass()->getMetaLinkByRoleName("feature");
    std::vector<QORObject*> const columns = order.elements(object, *features);
    if (columns.empty()) {
        return;
    }
    out << "\n| Column | Type | Optional | Default | Comment |\n| --- | --- | --- | --- | --- |\n";
    for (QORObject* column : columns) {
        writeColumn(*column, out);
    }
}

} // namespace

void writeMarkdown(QORObject& root, std::ostream& out) {
    kit::Numbering const numbering(root);
    kit::GraphOrder order;
    out << "# " << plain(root.getName()) << '\n';
    for (QORObject* object : numbering.objects()) {
        if (object->isInstanceOf(QORElementType::CLASSIFIER)) {
            writeChapter(*object, order, out);
        }
    }
}

} // namespace exchange
