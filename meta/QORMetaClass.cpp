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

template <class Record>
Record* recordAt(QORVector const& records, std::size_t position) {
    return static_cast<Record*>(records[static_cast<int>(position)]);
}

template <class Record, class Signs>
Record* findByID(QORVector const& records, Signs const& signs, int id) {
    for (std::size_t i = 0; i < signs.size(); ++i) {
        if (signs[i].id == id)
            return recordAt<Record>(records, i);
    }
    return nullptr;
}

template <class Record, class Sign>
Record* findByText(QORVector const& records, std::vector<Sign> const& signs, std::uint32_t Sign::*signOfPart,
                   QORString const& (Record::*part)() const, char const* text) {
    if (!text)
        return nullptr;
    std::size_t const length = std::strlen(text);
    std::uint32_t const sign = signOfText(text, length);
    for (std::size_t i = 0; i < signs.size(); ++i) {
        if (signs[i].*signOfPart != sign)
            continue;
        Record* const record = recordAt<Record>(records, i);
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
void QORMetaClass::addRecord(QORVector& records, std::vector<Sign>& signs, void const* record, Sign sign) {
    int const known = records.containsElement(record);
    if (known >= 0) {
        signs[static_cast<std::size_t>(known)] = sign;
        return;
    }
    signs.reserve(signs.size() + 1);
    records.add(record, true, nullptr);
    signs.push_back(sign);
}

void QORMetaClass::addAttribute(QORMetaAttribute* attribute) {
    Sign const sign = {attribute->getId(), signOf(attribute->getName()), signOf(attribute->getDisplayName())};
    addRecord(metaAttributes, attributeSigns, attribute, sign);
}

void QORMetaClass::addLink(QORMetaLink* link) {
    Sign const sign = {link->getId(), signOf(link->getName()), signOf(link->getRoleName())};
    addRecord(metaLinks, linkSigns, link, sign);
}

QORMetaAttribute* QORMetaClass::getMetaAttributeByID(QORAttributeType attributeId) const {
    return findByID<QORMetaAttribute>(metaAttributes, attributeSigns, attributeId);
}

QORMetaAttribute* QORMetaClass::getMetaAttributeByName(char const* attributeName) const {
    return findByText(metaAttributes, attributeSigns, &Sign::name, &QORMetaAttribute::getName, attributeName);
}

QORMetaAttribute* QORMetaClass::getMetaAttributeByDisplayName(char const* attributeName) const {
    return findByText(metaAttributes, attributeSigns, &Sign::label, &QORMetaAttribute::getDisplayName,
                      attributeName);
}

QORMetaLink* QORMetaClass::getMetaLinkByID(QORAssociationType linkId) const {
    return findByID<QORMetaLink>(metaLinks, linkSigns, linkId);
}

QORMetaLink* QORMetaClass::getMetaLinkByName(char const* linkName) const {
    return findByText(metaLinks, linkSigns, &Sign::name, &QORMetaLink::getName, linkName);
}

QORMetaLink* QORMetaClass::getMetaLinkByRoleName(char const* roleName) const {
    return findByText(metaLinks, linkSigns, &Sign::label, &QORMetaLink::getRoleName, roleName);
}

QORObject* QORMetaClass::newInstance() const {
    return createQORObject(id);
}
