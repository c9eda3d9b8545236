#include "ModelOperations.h"

#include "kit/Numbering.h"
#include "kit/Reflection.h"

#include <qor/QORAllClasses.h>
#include <qor/QORElement.h>
#include <qor/QORException.h>
#include <qor/QORModel.h>
#include <qor/QORPropertyType.h>
#include <qor/QORPropertyValue.h>

#include <algorithm>
#include <iterator>

namespace {

constexpr std::size_t mostObjects = 2000;

/// What databases become, the more often the more there is of it.
constexpr QORElementTypes::Type usual[] = {
    QORElementType::CLASS,
    QORElementType::CLASS,
    QORElementType::CLASS,
    QORElementType::ATTRIBUTE,
    QORElementType::ATTRIBUTE,
    QORElementType::ATTRIBUTE,
    QORElementType::ATTRIBUTE,
    QORElementType::ATTRIBUTE,
    QORElementType::CANDIDATE_KEY,
    QORElementType::CANDIDATE_KEY,
    QORElementType::FOREIGN_KEY,
    QORElementType::FOREIGN_KEY,
    QORElementType::INDEX,
    QORElementType::INDEX,
    QORElementType::INDEX_MEMBER,
    QORElementType::INDEX_MEMBER,
    QORElementType::DERIVED_TYPE,
    QORElementType::DERIVED_TYPE,
    QORElementType::BASE_TYPE,
    QORElementType::ALIAS_TYPE,
    QORElementType::TYPE_VALUE,
    QORElementType::DESIGN_PACKAGE,
    QORElementType::DATABASE_CATALOG,
    QORElementType::DATABASE_SCHEMA,
    QORElementType::SQL_VIEW_ENTITY,
    QORElementType::SQL_VIEW_ATTRIBUTE,
    QORElementType::TRIGGER,
    QORElementType::STORED_PROCEDURE,
    QORElementType::OPERATION,
    QORElementType::ARGUMENT,
    QORElementType::ARGUMENT,
    QORElementType::ASSOCIATION,
    QORElementType::ASSOCIATION_ROLE,
    QORElementType::ASSOCIATION_ROLE_NAME_MAP,
    QORElementType::BUSINESS_RULE,
    QORElementType::GENERALIZATION,
    QORElementType::METADATA_ORIGIN,
};

/// Names that meet, and such as SQL trips over.
constexpr char const* names[] = {"a",     "b",   "c",    "d",    "A",        "",
                                 "order", "x y", "q\"q", "it's", "\xc3\xa9", "\xff"};

constexpr char const* expressions[] = {"1",      "'x'", "a", "a > 1", "b IS NOT NULL", "",
                                       "zz > 1", "(",   "'", "--",    "1; 2"};

constexpr char const* statements[] = {
    "SELECT 1 AS a",
    "SELECT a FROM b",
    "",
    "nonsense",
    "CREATE TRIGGER a AFTER INSERT ON b BEGIN SELECT 1; END",
    "CREATE FUNCTION a.b(integer) RETURNS integer LANGUAGE sql AS 'SELECT 1'"};

constexpr char const* others[] = {"",
                                  "TABLE",
                                  "SEQUENCE",
                                  "DOMAIN",
                                  "ENUMERATION",
                                  "COMPOSITE",
                                  "RANGE",
                                  "TABLE WITHOUT ROWID",
                                  "VIRTUAL TABLE",
                                  "SHADOW TABLE",
                                  "PROCEDURE",
                                  "VARIADIC",
                                  "integer",
                                  "text",
                                  "character varying(10)",
                                  "SQL_INTEGER",
                                  "SQL_VARCHAR",
                                  "undefined",
                                  "SQLite",
                                  "PostgreSQL",
                                  "a"};

/// The texts of enumerations that make a difference to a database.
constexpr char const* values[] = {"DESCENDING", "BEFORE",      "AFTER",    "OUT_MODE",
                                  "INOUT_MODE", "RETURN_MODE", "VIEW",     "CASCADE",
                                  "SET_NULL",   "SET_DEFAULT", "RESTRICT", "TEXT_PHYSICAL"};

constexpr char const* numbers[] = {"0", "1", "2", "3", "-1", "40000"};

constexpr char const* extras[][2] = {{"references", "b(a)"},  {"references", "zz(a, b)"},
                                     {"references", "("},     {"where", "a > 1"},
                                     {"where", ""},           {"expression", "a + 1"},
                                     {"expression", "zz"},    {"columns", "a COLLATE NOCASE"},
                                     {"columns", "zz"},       {"position", "2"},
                                     {"generated", "STORED"}, {"collation", "NOCASE"},
                                     {"match", "FULL"},       {"match", "x y"},
                                     {"not null", "true"},    {"autoincrement", "true"},
                                     {"order", "DESC"},       {"conflict", "IGNORE"},
                                     {"conflict", "x"},       {"deferrable", "INITIALLY DEFERRED"},
                                     {"deferrable", "x"},     {"index", "{"},
                                     {"index", "{}"},         {"not null constraint", "a"}};

template <std::size_t count>
char const* oneOf(char const* const (&texts)[count], Bytes& bytes) {
    return texts[bytes.below(count)];
}

bool endsLike(std::string_view name, std::string_view end) {
    return name.size() >= end.size() && name.substr(name.size() - end.size()) == end;
}

/// A text that an attribute could have.
QORString textFor(QORMetaAttribute const& attribute, Bytes& bytes) {
    std::string_view const name = kit::view(attribute.getDisplayName());
    switch (attribute.getType()) {
    case QORMetaAttributeType::BOOL:
        return bytes.byte() % 2 ? "true" : "false";
    case QORMetaAttributeType::INT:
    case QORMetaAttributeType::SHORT:
        return oneOf(numbers, bytes);
    case QORMetaAttributeType::ENUM:
        return oneOf(values, bytes);
    default:
        break;
    }
    if (name == "name" || name == "physicalName") {
        return oneOf(names, bytes);
    }
    if (name == "initialValue" || name == "defaultValue" || name == "value") {
        return oneOf(expressions, bytes);
    }
    return endsLike(name, "tatement") || name == "semantics" ? oneOf(statements, bytes)
                                                             : oneOf(others, bytes);
}

template <class Operation>
void attempt(Operation operation) {
    try {
        operation();
    } catch (QORException const&) {
    } catch (int) {
    }
}

/// The end on which an object can be owned by another one, chosen by the bytes; null if there is none.
QORMetaLink const* owningEnd(QORObject const& owner, QORObject const& object, Bytes& bytes) {
    std::vector<QORMetaLink const*> ends;
    for (QORMetaLink const* link : kit::linksOf(owner)) {
        if (link->getType() == QORMetaLinkType::CHILD &&
            object.isInstanceOf(link->getFarMetaClass()->getId())) {
            ends.push_back(link);
        }
    }
    return ends.empty() ? nullptr : ends[bytes.below(ends.size())];
}

} // namespace

ModelOperations::ModelOperations(Kind ofOperations) : kind(ofOperations), root(new QORModel) {
    take(root);
}

void ModelOperations::adopt(QORModel& other) {
    kit::Numbering const numbering(other); // the same order in each run
    made.insert(made.end(), numbering.objects().begin(), numbering.objects().end());
    root = &other;
}

void ModelOperations::run(Bytes& bytes) {
    while (!bytes.atEnd()) {
        std::string const own = bytes.text(bytesOfOne);
        Bytes one(reinterpret_cast<std::uint8_t const*>(own.data()), own.size());
        step(one);
    }
}

QORModel& ModelOperations::model() {
    if (!live.contains(root) || !root->isInstanceOf(QORElementType::MODEL)) {
        root = new QORModel;
        take(root);
    }
    return static_cast<QORModel&>(*root);
}

void ModelOperations::step(Bytes& bytes) {
    objects();
    model();
    std::uint8_t const operation = bytes.byte() % 64;
    if (kind == Kind::TAKING)
        return remove(pick(bytes), operation % 2 != 0);
    if (operation < 26)
        return createOwned(bytes);
    if (operation < 46)
        return refer(bytes);
    if (operation < 56)
        return setText(bytes);
    if (operation < 60)
        return kind == Kind::ANY ? addExtra(bytes) : refer(bytes);
    switch (operation) {
    case 60:
        return link(bytes);
    case 61:
        return GraphOperations::step(bytes);
    case 62:
        return remove(pick(bytes), true);
    default:
        return remove(pick(bytes), false);
    }
}

void ModelOperations::createOwned(Bytes& bytes) {
    if (made.size() >= mostObjects)
        return;
    bool const isUsual = bytes.byte() % 8 != 0;
    QORObject* const object = createQORObject(isUsual ? QORElementType(usual[bytes.below(std::size(usual))])
                                                      : concreteTypes()[bytes.below(concreteTypes().size())]);
    take(object);
    attempt([&] { object->setName(oneOf(names, bytes)); });
    if (!own(*object, bytes))
        delete object;
}

/// Below any of the others, the last ones first: what is made together belongs together.
bool ModelOperations::own(QORObject& object, Bytes& bytes) {
    std::size_t const start = made.size() - 1 - bytes.below(std::min<std::size_t>(made.size() - 1, 4));
    for (std::size_t i = 0; i < made.size(); ++i) {
        QORObject* const owner = made[(start + made.size() - i) % made.size()];
        QORMetaLink const* const end = owner == &object ? nullptr : owningEnd(*owner, object, bytes);
        if (end && end->addLink(owner, &object))
            return true;
    }
    return false;
}

/// Lets an object refer to another one, mostly to one that has its owner or is owned by what that refers to.
void ModelOperations::refer(Bytes& bytes) {
    QORObject* const near = pick(bytes);
    std::vector<QORMetaLink const*> ends;
    for (QORMetaLink const* link : kit::linksOf(*near)) {
        if (link->getType() == QORMetaLinkType::REF && (!link->isUnary() || !link->getLink(near, 0)))
            ends.push_back(link);
    }
    if (ends.empty())
        return;
    QORMetaLink const& end = *ends[bytes.below(ends.size())];
    std::vector<QORObject*> all;
    std::vector<QORObject*> related;
    for (QORObject* object : made) {
        if (object == near || !object->isInstanceOf(end.getFarMetaClass()->getId()))
            continue;
        all.push_back(object);
        if (object->getParent() && object->getParent() == near->getParent())
            related.push_back(object);
    }
    std::vector<QORObject*> const& among = related.empty() || bytes.byte() % 8 == 0 ? all : related;
    if (!among.empty())
        end.addLink(near, among[bytes.below(among.size())]);
}

void ModelOperations::setText(Bytes& bytes) {
    QORObject* const object = pick(bytes);
    std::vector<QORMetaAttribute*> const attributes = kit::attributesOf(*object);
    QORMetaAttribute const& attribute = *attributes[bytes.below(attributes.size())];
    QORString text = textFor(attribute, bytes);
    bool const isName = attribute.getId() == QORAttributeType::OBJECT__NAME;
    if (kind == Kind::PLAIN && attribute.getType() == QORMetaAttributeType::STRING && !isName)
        return;
    if (attribute.getId() != QORAttributeType::PROPERTY_ELEMENT_TYPE_SCOPE__SCOPE)
        attempt([&] { attribute.setValue(object, text); });
}

/// A property that stands for what a database has and the classes don't.
void ModelOperations::addExtra(Bytes& bytes) {
    QORObject* const object = pick(bytes);
    if (!object->isInstanceOf(QORElementType::ELEMENT))
        return;
    auto* const type = new QORPropertyType;
    take(type);
    auto const& [name, text] = extras[bytes.below(std::size(extras))];
    type->setName(name);
    type->setGroup("database");
    auto* const value = new QORPropertyValue;
    take(value);
    value->setValue(text);
    value->addPropertyType(type);
    static_cast<QORElement*>(object)->addPropertyValue(value);
}

void ModelOperations::remove(QORObject* object, bool all) {
    if (object == root)
        return;
    if (all)
        object->isolate(false);
    delete object;
}
