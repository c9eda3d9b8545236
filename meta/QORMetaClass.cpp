#include <qor/QORMetaClass.h>

#include <qor/QORAllClasses.h>
#include <qor/QORMetaAttribute.h>
#include <qor/QORMetaLink.h>
#include <qor/QORMetaRepository.h>

#include <cstring>

namespace {

// Equal texts have equal signs; that of different ones mostly differs.
std::uint32_t signOfText(char const* text, std::size_t length) {
    if (length == 0)
        return 0;
    auto const byte = [text](std::size_t at) { return std::uint32_t{static_cast<unsigned char>(text[at])}; };
    return static_cast<std::uint32_t>(length) << 24 ^ byte(0) << 16 ^ byte(length / 2) << 8 ^
           byte(length - 1);
}

template <class Record, class Signs>
Record* findByID(Signs const& signs, int id) {
    for (auto const& sign : signs) {
        if (sign.id == id)
            return static_cast<Record*>(sign.record);
    }
    return nullptr;
}

template <class Record, class Sign>
Record* findByText(std::vector<Sign> const& signs, std::uint32_t Sign::*signOfPart,
                   QORString const& (Record::*part)() const, char const* text) {
    if (!text)
        return nullptr;
    std::size_t const length = std::strlen(text);
    std::uint32_t const wanted = signOfText(text, length);
    for (Sign const& sign : signs) {
        if (sign.*signOfPart != wanted)
            continue;
        auto* const record = static_cast<Record*>(sign.record);
        QORString const& candidate = (record->*part)();
        if (static_cast<std::size_t>(candidate.length) == length &&
            std::memcmp(candidate.chars, text, length) == 0)
            return record;
    }
    return nullptr;
}

} // namespace

QORMetaClass::QORMetaClass(QORMetaClass* ofParent, QORElementType ofId, char const* label,
                           bool isAbstractClass)
    : id(ofId), name(getElementTypeName(ofId)), displayName(label), abstract(isAbstractClass),
      parent(ofParent) {
    if (parent) {
        parent->subclasses.add(this, true, nullptr);
        metaAttributes = parent->metaAttributes;
        metaLinks = parent->metaLinks;
        attributeSigns = parent->attributeSigns;
        linkSigns = parent->linkSigns;
    }
    QORMetaRepository::getMetaRepository()->addMetaClass(this);
}

std::uint32_t QORMetaClass::signOf(QORString const& text) {
    return signOfText(text.chars, static_cast<std::size_t>(text.length));
}

// A record in the place of one that has died is in the vector already; its sign may be another.
void QORMetaClass::addRecord(QORVector& records, std::vector<Sign>& signs, Sign sign) {
    int const known = records.containsElement(sign.record);
    if (known >= 0) {
        signs[static_cast<std::size_t>(known)] = sign;
        return;
    }
    signs.reserve(signs.size() + 1);
    records.add(sign.record, true, nullptr);
    signs.push_back(sign);
}

void QORMetaClass::addAttribute(QORMetaAttribute* attribute) {
    addRecord(
        metaAttributes, attributeSigns,
        {attribute, attribute->getId(), signOf(attribute->getName()), signOf(attribute->getDisplayName())});
}

void QORMetaClass::addLink(QORMetaLink* link) {
    addRecord(metaLinks, linkSigns,
              {link, link->getId(), signOf(link->getName()), signOf(link->getRoleName())});
}

QORMetaAttribute* QORMetaClass::getMetaAttributeByID(QORAttributeType attributeId) const {
    return findByID<QORMetaAttribute>(attributeSigns, attributeId);
}

QORMetaAttribute* QORMetaClass::getMetaAttributeByName(char const* attributeName) const {
    return findByText<QORMetaAttribute>(attributeSigns, &Sign::name, &QORMetaAttribute::getName,
                                        attributeName);
}

QORMetaAttribute* QORMetaClass::getMetaAttributeByDisplayName(char const* attributeName) const {
    return findByText<QORMetaAttribute>(attributeSigns, &Sign::label, &QORMetaAttribute::getDisplayName,
                                        attributeName);
}

QORMetaLink* QORMetaClass::getMetaLinkByID(QORAssociationType linkId) const {
    return findByID<QORMetaLink>(linkSigns, linkId);
}

QORMetaLink* QORMetaClass::getMetaLinkByName(char const* linkName) const {
    return findByText<QORMetaLink>(linkSigns, &Sign::name, &QORMetaLink::getName, linkName);
}

QORMetaLink* QORMetaClass::getMetaLinkByRoleName(char const* roleName) const {
    return findByText<QORMetaLink>(linkSigns, &Sign::label, &QORMetaLink::getRoleName, roleName);
}

QORObject* QORMetaClass::newInstance() const {
    return createQORObject(id);
}
