#include "GraphOperations.h"

#include "kit/Reflection.h"
#include "kit/Verify.h"

#include <qor/QORAllClasses.h>
#include <qor/QORException.h>
#include <qor/QORMetaRepository.h>
#include <qor/QORTraversalDelete.h>
#include <qor/QORTraversalOperation.h>

#include <algorithm>
#include <memory>
#include <unordered_map>
#include <unordered_set>

namespace {

constexpr std::size_t mostObjects = 300;

/// Whether `object` is `owner` or owned by it over any number of steps.
bool isBelow(QORObject& object, QORObject const& owner) {
    std::vector<QORObject*> pending{&object};
    std::unordered_set<QORObject const*> met{&object};
    while (!pending.empty()) {
        QORObject* const each = pending.back();
        pending.pop_back();
        if (each == &owner)
            return true;
        for (QORMetaLink const* link : kit::linksOf(*each)) {
            QORObject* const far =
                link->getType() == QORMetaLinkType::PARENT ? link->getLink(each, 0) : nullptr;
            if (far && met.insert(far).second)
                pending.push_back(far);
        }
    }
    return false;
}

/// Does what the library may refuse with one of its exceptions.
template <class Operation>
void attempt(Operation operation) {
    try {
        operation();
    } catch (QORException const&) { // refused with a message
    } catch (int) {                 // refused with a number
    }
}

/// A text out of few letters, so that names meet.
QORString shortText(Bytes& bytes) {
    static char const* const texts[] = {"",
                                        "a",
                                        "b",
                                        "c",
                                        "A",
                                        "a/1",
                                        "a_1",
                                        "\xc3\xa9",
                                        "\xe9",
                                        "\xff",
                                        "-1",
                                        "7",
                                        "true",
                                        "00:00:00 2000-02-29",
                                        "longer than what a text holds inside",
                                        "longer than what a text holds inside \xc3\xa9"};
    return QORString(texts[bytes.below(std::size(texts))]);
}

/// Reads everything of the objects met, and goes on or turns back as a number's bits say.
class Reading : public QORTraversalOperation {
public:
    explicit Reading(unsigned char turnBack) : bits(turnBack) {}

    bool pre_process(QORObject* object, void*&) override {
        length += object->getParentCount();
        // An alias asks its type, which must be there and no alias of this one; a projection asks what it
        // shows.
        if (object->getElementType() != QORElementType::ALIAS_TYPE &&
            !object->isInstanceOf(QORElementType::PRESENTATION_ELEMENT))
            length += object->getDisplayName().length;
        return (bits >> (met++ % 8) & 1) == 0;
    }

    int length = 0;

private:
    unsigned bits;
    unsigned met = 0;
};

std::unique_ptr<QOREncodingConverter> converter(Bytes& bytes) {
    static char const* const names[] = {"UTF-8", "ISO-8859-1", "CP1252", "ASCII", "UTF-16LE", "EBCDIC-US"};
    return std::unique_ptr<QOREncodingConverter>(
        QOREncodingConverter::create(names[bytes.below(std::size(names))]));
}

} // namespace

std::vector<QORElementType> const& GraphOperations::concreteTypes() {
    static std::vector<QORElementType> const types = [] {
        std::vector<QORElementType> found;
        QORMetaRepository const& repository = *QORMetaRepository::getMetaRepository();
        for (int id = 0; QorElementTypeStringArray[id]; ++id) {
            auto const type = static_cast<QORElementTypes::Type>(id);
            QORMetaClass const* const metaClass = repository.getMetaClassByID(type);
            if (metaClass && !metaClass->isAbstract() && type != QORElementType::OBJECT)
                found.push_back(type);
        }
        return found;
    }();
    return types;
}

GraphOperations::~GraphOperations() {
    std::vector<QORObject*> const left = objects();
    for (QORObject* object : left)
        object->isolate(false);
    for (QORObject* object : left)
        delete object;
}

void GraphOperations::run(Bytes& bytes) {
    while (!bytes.atEnd())
        step(bytes);
}

std::vector<QORObject*> GraphOperations::objects() {
    made.erase(
        std::remove_if(made.begin(), made.end(), [this](QORObject* each) { return !live.contains(each); }),
        made.end());
    return made;
}

std::vector<QORObject*> GraphOperations::release() {
    std::vector<QORObject*> const left = objects();
    made.clear();
    return left;
}

std::vector<std::string> GraphOperations::faults() {
    std::vector<std::string> all;
    std::unordered_set<QORObject const*> checked;
    for (QORObject* object : objects()) {
        if (!object->isReferenced() || checked.count(object) != 0)
            continue;
        std::vector<QORObject*> part{object};
        checked.insert(object);
        for (std::size_t i = 0; i < part.size(); ++i) {
            for (QORMetaLink const* link : kit::linksOf(*part[i])) {
                int const count = link->isUnary() ? 1 : link->getLinkCount(part[i]);
                for (int at = 0; at < count; ++at) {
                    QORObject* const far = link->getLink(part[i], at);
                    if (!far)
                        continue;
                    if (!live.contains(far)) {
                        all.emplace_back("a link leads to an object that has died");
                        return all;
                    }
                    if (checked.insert(far).second)
                        part.push_back(far);
                }
            }
        }
        std::vector<std::string> const found = kit::verify(*object);
        all.insert(all.end(), found.begin(), found.end());
    }
    return all;
}

std::string GraphOperations::dump() {
    std::vector<QORObject*> const all = objects();
    std::unordered_map<QORObject const*, std::size_t> numbers;
    for (QORObject const* object : all)
        numbers.emplace(object, numbers.size());
    std::string text;
    for (QORObject* object : all) {
        text.append(object->getMetaClass()->getDisplayName().chars)
            .append(" ")
            .append(object->getName().chars);
        text.append(" ").append(std::to_string(object->getID())).append("\n");
        for (QORMetaAttribute const* attribute : kit::attributesOf(*object)) {
            text.append("  ").append(attribute->getName().chars).append("=");
            text.append(attribute->getValue(object).chars).append("\n");
        }
        for (QORMetaLink const* link : kit::linksOf(*object)) {
            std::vector<std::size_t> far;
            int const count = link->isUnary() ? 1 : link->getLinkCount(object);
            for (int at = 0; at < count; ++at) {
                if (QORObject const* const each = link->getLink(object, at))
                    far.push_back(numbers.at(each));
            }
            // Many ends are sorted by address.
            std::sort(far.begin(), far.end());
            for (std::size_t const number : far)
                text.append("  ")
                    .append(link->getName().chars)
                    .append(" ")
                    .append(std::to_string(number))
                    .append("\n");
        }
    }
    return text;
}

void GraphOperations::take(QORObject* object) {
    // Memory of one that has died may be that of a new one.
    made.erase(std::remove(made.begin(), made.end(), object), made.end());
    made.push_back(object);
}

QORObject* GraphOperations::pick(Bytes& bytes) {
    return made.empty() ? nullptr : made[bytes.below(made.size())];
}

void GraphOperations::step(Bytes& bytes) {
    objects();
    std::uint8_t const operation = bytes.byte() % 24;
    if (operation < 6)
        return create(bytes);
    if (made.empty())
        return;
    if (operation < 14)
        return link(bytes);
    switch (operation) {
    case 14:
        return rename(bytes);
    case 15:
        return set(bytes);
    case 16:
        return copy(bytes);
    case 17:
        return assign(bytes);
    case 18:
        return transcode(bytes);
    case 19:
        return read(bytes);
    case 20:
        delete pick(bytes);
        return;
    case 21:
        pick(bytes)->isolate(bytes.byte() % 2 != 0);
        return;
    case 22:
        pick(bytes)->removeAggregationAssembly();
        return;
    default:
        QORObject* const object = pick(bytes);
        if (object->recursiveDelete())
            delete object;
        return;
    }
}

void GraphOperations::create(Bytes& bytes) {
    if (made.size() >= mostObjects)
        return;
    std::vector<QORElementType> const& types = concreteTypes();
    QORObject* const object = createQORObject(types[bytes.below(types.size())]);
    take(object);
    attempt([&] { object->setName(shortText(bytes)); });
}

void GraphOperations::copy(Bytes& bytes) {
    QORObject* const original = pick(bytes);
    if (made.size() >= mostObjects)
        return;
    QORObject* const object = original->getMetaClass()->newInstance();
    take(object);
    setFrom(*object, *original);
}

// An assignment can make objects of its own, copies of what the other one owns.
void GraphOperations::setFrom(QORObject& target, QORObject const& source) {
    attempt([&] { target.setFrom(source); });
    for (QORMetaLink const* link : kit::linksOf(target)) {
        for (int at = 0; at < link->getLinkCount(&target); ++at) {
            QORObject* const far = link->getLink(&target, at);
            if (far && std::find(made.begin(), made.end(), far) == made.end())
                take(far);
        }
    }
}

void GraphOperations::assign(Bytes& bytes) {
    QORObject* const target = pick(bytes);
    for (QORObject const* source : made) {
        if (source != target && source->getElementType() == target->getElementType()) {
            setFrom(*target, *source);
            return;
        }
    }
}

void GraphOperations::link(Bytes& bytes) {
    QORObject* const near = pick(bytes);
    std::vector<QORMetaLink*> const links = kit::linksOf(*near);
    if (links.empty())
        return;
    QORMetaLink const& link = *links[bytes.below(links.size())];
    QORElementType const farClass = link.getFarMetaClass()->getId();
    std::size_t const start = bytes.below(made.size());
    for (std::size_t i = 0; i < made.size(); ++i) {
        QORObject* const far = made[(start + i) % made.size()];
        if (far == near || !far->isInstanceOf(farClass))
            continue;
        // Walks of a ring of owners wouldn't end.
        bool const ring = (link.getType() == QORMetaLinkType::CHILD && isBelow(*near, *far)) ||
                          (link.getType() == QORMetaLinkType::PARENT && isBelow(*far, *near));
        if (!ring)
            link.addLink(near, far);
        return;
    }
}

void GraphOperations::rename(Bytes& bytes) {
    QORObject* const object = pick(bytes);
    QORString const name = shortText(bytes);
    // A property value refuses all names, and so there is no unique one.
    if (bytes.byte() % 4 == 0 && object->getElementType() != QORElementType::PROPERTY_VALUE)
        object->setUniqueName(name, '_');
    else
        attempt([&] { object->setName(name); });
}

void GraphOperations::set(Bytes& bytes) {
    QORObject* const object = pick(bytes);
    std::vector<QORMetaAttribute*> const attributes = kit::attributesOf(*object);
    if (attributes.empty())
        return;
    QORMetaAttribute const& attribute = *attributes[bytes.below(attributes.size())];
    QORString text = shortText(bytes);
    // Its values are element types, and the text of an unknown one is looked up.
    if (attribute.getId() == QORAttributeType::PROPERTY_ELEMENT_TYPE_SCOPE__SCOPE)
        text = "CLASS";
    attempt([&] { attribute.setValue(object, text); });
}

void GraphOperations::transcode(Bytes& bytes) {
    QORObject* const object = pick(bytes);
    std::unique_ptr<QOREncodingConverter> const from = converter(bytes);
    std::unique_ptr<QOREncodingConverter> const to = converter(bytes);
    int first = 0;
    int errors = 0;
    object->transcode(from.get(), to.get(), first, errors);
}

void GraphOperations::read(Bytes& bytes) {
    QORObject* const object = pick(bytes);
    Reading reading(bytes.byte());
    object->depthTraversal(reading, nullptr);
    QORObject const* const other = pick(bytes);
    if (other->getElementType() == object->getElementType())
        object->equals(*other);
    for (QORMetaLink const* link : kit::linksOf(*object)) {
        int const position = static_cast<int>(bytes.byte()) - 2;
        link->getLink(object, position);
        if (bytes.atEnd())
            return;
    }
}
