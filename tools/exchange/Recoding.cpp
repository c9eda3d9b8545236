#include "exchange/Recoding.h"

#include "exchange/Attributes.h"
#include "exchange/GraphBuilder.h"
#include "exchange/LinkSequence.h"
#include "kit/JsonText.h"
#include "kit/Numbering.h"
#include "kit/ObjectPaths.h"
#include "kit/Reflection.h"
#include "kit/ToolError.h"

#include <qor/QOREncodingConverter.h>

namespace exchange {
namespace {

class Recoder {
public:
    Recoder(QORObject& root, QOREncodingConverter& source, QOREncodingConverter& target)
        : numbering(root), from(source), to(target) {}

    Recoded run() {
        for (QORObject* object : numbering.objects()) {
            copyObject(*object);
        }
        for (Link const& link : linkSequence(numbering)) {
            builder.beginLinks(numberOf(*link.from), std::string(kit::view(link.role->getRoleName())));
            result.renamed += builder.addLinkUnderFreeName(numberOf(*link.to));
        }
        result.graph = builder.take();
        return std::move(result);
    }

private:
    std::uint64_t numberOf(QORObject const& object) const { return numbering.numberOf(object) + 1; }

    void copyObject(QORObject& object) {
        builder.beginObject(numberOf(object),
                            std::string(kit::view(object.getMetaClass()->getDisplayName())));
        for (QORMetaAttribute const* attribute : attributesToWrite(object)) {
            QORString const value = attribute->getValue(&object);
            bool const isText = attribute->getType() == QORMetaAttributeType::STRING;
            builder.addAttribute(*attribute, isText ? recoded(object, *attribute, value) : value);
        }
        builder.endObject();
    }

    QORString recoded(QORObject const& object, QORMetaAttribute const& attribute, QORString const& text) {
        int converted = 0;
        int failed = 0;
        QORString const other = convertEncoding(text, &from, &to, converted, failed);
        if (failed) {
            noteFailure(object, attribute);
        } else {
            ++(other == text ? result.unchanged : result.converted);
        }
        return other;
    }

    void noteFailure(QORObject const& object, QORMetaAttribute const& attribute) {
        if (++result.failed == 1) {
            result.firstFailed = kit::printable(kit::ObjectPaths(numbering).pathOf(object)) + ", " +
                                 std::string(kit::view(attribute.getDisplayName()));
        }
    }

    kit::Numbering numbering;
    QOREncodingConverter& from;
    QOREncodingConverter& to;
    GraphBuilder builder;
    Recoded result;
};

} // namespace

Recoded recode(QORObject& root, QOREncodingConverter& from, QOREncodingConverter& to) {
    try {
        return Recoder(root, from, to).run();
    } catch (Mistake const& mistake) {
        throw kit::ToolError("graph", mistake.what());
    }
}

} // namespace exchange
