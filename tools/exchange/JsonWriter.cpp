#include "exchange/JsonWriter.h"

#include "exchange/Attributes.h"
#include "exchange/LinkSequence.h"
#include "kit/JsonText.h"
#include "kit/Numbering.h"
#include "kit/Progress.h"
#include "kit/Reflection.h"

#include <ostream>

namespace exchange {
namespace {

std::string valueOf(QORMetaAttribute const& attribute, QORString const& value) {
    switch (attribute.getType()) {
    case QORMetaAttributeType::BOOL:
    case QORMetaAttributeType::INT:
    case QORMetaAttributeType::SHORT:
        return std::string(kit::view(value));
    default:
        return kit::jsonValue(kit::view(value));
    }
}

void writeObject(QORObject& object, std::size_t number, std::ostream& out) {
    out << "{\"number\": " << number << ", \"class\": \"" << object.getMetaClass()->getDisplayName().chars
        << '"';
    std::vector<QORMetaAttribute const*> const written = attributesToWrite(object);
    QORString room;
    char const* before = ", \"attributes\": {";
    for (QORMetaAttribute const* attribute : written) {
        out << before << '"' << attribute->getDisplayName().chars
            << "\": " << valueOf(*attribute, attribute->getValue(&object, room));
        before = ", ";
    }
    out << (written.empty() ? "}" : "}}");
}

void writeLinks(std::vector<Link> const& links, kit::Numbering const& numbering, std::ostream& out) {
    for (std::size_t i = 0; i < links.size(); ++i) {
        Link const& link = links[i];
        if (i > 0 && links[i - 1].from == link.from && links[i - 1].role == link.role) {
            out << ", " << numbering.numberOf(*link.to) + 1;
            continue;
        }
        out << (i > 0 ? "]},\n" : "\n") << "{\"from\": " << numbering.numberOf(*link.from) + 1
            << ", \"role\": \"" << link.role->getRoleName().chars << "\", \"to\": ["
            << numbering.numberOf(*link.to) + 1;
    }
    out << (links.empty() ? "" : "]}\n");
}

} // namespace

void writeJson(QORObject& root, std::ostream& out) {
    kit::Numbering const numbering(root);
    std::vector<Link> const links = linkSequence(numbering);
    out << "{\n\"format\": \"" << formatName << "\",\n\"version\": " << formatVersion << ",\n\"objects\": [";
    for (std::size_t i = 0; i < numbering.objects().size(); ++i) {
        out << (i > 0 ? ",\n" : "\n");
        writeObject(*numbering.objects()[i], i + 1, out);
        kit::Progress::count(i + 1);
    }
    out << "\n],\n\"links\": [";
    writeLinks(links, numbering, out);
    out << "]\n}\n";
}

} // namespace exchange
