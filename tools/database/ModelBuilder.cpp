#include "database/ModelBuilder.h"

#include "database/Enumerations.h"
#include "database/Extras.h"
#include "database/IndexText.h"
#include "database/KeyOrder.h"
#include "database/SelectClauses.h"
#include "kit/ToolError.h"

#include <qor/QORArgument.h>
#include <qor/QORAssociation.h>
#include <qor/QORAssociationRole.h>
#include <qor/QORAssociationRoleNameMap.h>
#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORBusinessRule.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORDataType.h>
#include <qor/QORDatabaseCatalog.h>
#include <qor/QORDatabaseSchema.h>
#include <qor/QORDerivedType.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORForeignKey.h>
#include <qor/QORGeneralization.h>
#include <qor/QORIndex.h>
#include <qor/QORIndexMember.h>
#include <qor/QORMetadataOrigin.h>
#include <qor/QORModel.h>
#include <qor/QORPropertyElementTypeScope.h>
#include <qor/QORPropertyType.h>
#include <qor/QORPropertyValue.h>
#include <qor/QORSQLViewAttribute.h>
#include <qor/QORSQLViewEntity.h>
#include <qor/QORStoredProcedure.h>
#include <qor/QORTrigger.h>
#include <qor/QORTypeValue.h>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <map>
#include <set>
#include <tuple>
#include <utility>

namespace database {
namespace {

/// An unknown version leaves its numbers at -1.
void setVersion(QORDatabaseCatalog& catalog, std::string const& version) {
    short major = -1;
    short minor = -1;
    short tertiary = -1;
    std::sscanf(version.c_str(), "%hd.%hd.%hd", &major, &minor, &tertiary);
    catalog.setNativeVersion(version.c_str());
    catalog.setMajorVersion(major);
    catalog.setMinorVersion(minor);
    catalog.setTertiaryVersion(tertiary);
}

QORViewSelectType selectType(std::string const& quantifier) {
    return quantifier == "DISTINCT" ? QORViewSelectType::DISTINCT
           : quantifier == "ALL"    ? QORViewSelectType::ALL
                                    : QORViewSelectType::UNSPECIFIED;
}

/// The numbers of records in the order of what `keyOf` gives for each.
template <class Records, class KeyOf>
std::vector<int> orderOf(Records const& records, KeyOf const& keyOf) {
    using SortKey = decltype(keyOf(records.front()));
    std::vector<std::pair<SortKey, int>> sorted;
    sorted.reserve(records.size());
    for (auto const& record : records) {
        sorted.emplace_back(keyOf(record), static_cast<int>(sorted.size()));
    }
    std::sort(sorted.begin(), sorted.end());
    std::vector<int> order;
    order.reserve(sorted.size());
    for (auto const& entry : sorted) {
        order.push_back(entry.second);
    }
    return order;
}

/// The place of each number in an order; a number that isn't there has none, which is -1.
class Ranks {
public:
    Ranks() = default;
    explicit Ranks(std::vector<int> const& order) : ranks(order.size()) {
        for (std::size_t i = 0; i < order.size(); ++i) {
            ranks[static_cast<std::size_t>(order[i])] = static_cast<int>(i);
        }
    }

    int operator[](int number) const {
        bool const known = number >= 0 && static_cast<std::size_t>(number) < ranks.size();
        return known ? ranks[static_cast<std::size_t>(number)] : -1;
    }

private:
    std::vector<int> ranks;
};

/// The places of records in their groups, for the groups whose order isn't the one that follows from names;
/// 0 for the others.
template <class Records, class GroupOf>
std::vector<int> placesOf(Records const& records, std::vector<int> const& order, GroupOf const& groupOf) {
    using Group = decltype(groupOf(records.front()));
    std::map<Group, std::vector<int>> asTold;
    std::map<Group, std::vector<int>> byName;
    for (std::size_t i = 0; i < records.size(); ++i) {
        asTold[groupOf(records[i])].push_back(static_cast<int>(i));
        byName[groupOf(records[static_cast<std::size_t>(order[i])])].push_back(order[i]);
    }
    std::vector<int> places(records.size());
    for (auto const& [group, numbers] : asTold) {
        for (std::size_t i = 0; numbers != byName[group] && i < numbers.size(); ++i) {
            places[static_cast<std::size_t>(numbers[i])] = static_cast<int>(i) + 1;
        }
    }
    return places;
}

/// The steps of `buildModel`. Each makes one kind of thing for the whole database, and finds by number what
/// the steps before it have made. Everything is made in an order that follows from names. The order of the
/// records matters only for the keys and checks of a table, and for these only if the structure says so.
class Builder {
public:
    explicit Builder(Structure const& toBuild) : structure(toBuild), model(std::make_unique<QORModel>()) {}

    std::unique_ptr<QORModel> run() {
        model->setName(structure.catalog.name.c_str());
        buildOrigin();
        buildCatalog();
        buildTypes();
        buildTables();
        buildGeneralizations();
        buildKeys();
        buildChecks();
        buildIndexes();
        buildTriggers();
        buildRoutines();
        buildSequences();
        return std::move(model);
    }

private:
    // ---- what all steps use --------------------------------------------------------------------------

    /// The far object, by an index that may come from anywhere.
    template <class Vector>
    auto& at(Vector& vector, int index, char const* what) const {
        if (index < 0 || static_cast<std::size_t>(index) >= vector.size()) {
            throw kit::ToolError(structure.origin.source, std::string("is damaged: no such ") + what);
        }
        return vector[static_cast<std::size_t>(index)];
    }

    /// Hands a new object over to its owner. A refusal means that the owner has an object of that name, which
    /// only a schema that was tampered with can lead to.
    template <class Owner, class Declaring, class Far, class Child>
    Child& adopt(Owner& owner, bool (Declaring::*add)(Far*), std::unique_ptr<Child> child) const {
        if (!(owner.*add)(child.get())) {
            throw kit::ToolError(structure.origin.source,
                                 std::string("is damaged: more than one ") + child->getName().chars);
        }
        return *child.release();
    }

    template <class Object>
    static std::unique_ptr<Object> named(Named const& record) {
        auto made = std::make_unique<Object>();
        made->setName(record.name.c_str());
        made->setPhysicalName(record.name.c_str());
        made->setComment(record.comment.c_str());
        return made;
    }

    static short positionOf(std::size_t index) {
        constexpr auto highest = static_cast<std::size_t>(std::numeric_limits<short>::max());
        return static_cast<short>(index < highest ? index + 1 : highest);
    }

    void addExtras(QORElement& element, Extras const& extras) {
        for (std::size_t i = 0; i < extras.size(); ++i) {
            addProperty(element, extras[i].name, extras[i].value, positionOf(i));
        }
    }

    void addProperty(QORElement& element, std::string const& name, std::string const& text, short position) {
        auto value = std::make_unique<QORPropertyValue>();
        value->setValue(text.c_str());
        value->setPosition(position);
        value->addPropertyType(&propertyType(element.getElementType(), name));
        adopt(element, &QORElement::addPropertyValue, std::move(value));
    }

    void addPlace(QORElement& element, std::vector<int> const& places, std::size_t number) {
        if (number < places.size() && places[number] > 0) {
            addProperty(element, extra::position, std::to_string(places[number]), 0);
        }
    }

    QORPropertyType& propertyType(QORElementType elementType, std::string const& name) {
        QORPropertyType*& known = propertyTypes[{elementType, name}];
        if (!known) {
            auto made = std::make_unique<QORPropertyType>();
            made->setName(name.c_str());
            made->setGroup(extrasGroup);
            made->setDataType("SQL_VARCHAR");
            known =
                &adopt(scopeOf(elementType), &QORPropertyElementTypeScope::addPropertyType, std::move(made));
        }
        return *known;
    }

    QORPropertyElementTypeScope& scopeOf(QORElementType elementType) {
        QORPropertyElementTypeScope*& known = scopes[elementType];
        if (!known) {
            auto made = std::make_unique<QORPropertyElementTypeScope>();
            made->setScope(elementType);
            known = &adopt(*model, &QORModel::addPropertyElementTypeScope, std::move(made));
        }
        return *known;
    }

    // ---- packages and types --------------------------------------------------------------------------

    void buildOrigin() {
        Origin const& from = structure.origin;
        auto origin = std::make_unique<QORMetadataOrigin>();
        origin->setToolName(from.system.c_str());
        origin->setToolVersion(from.version.c_str());
        origin->setSource(from.source.c_str());
        origin->setEncoding(from.encoding.c_str());
        origin->setFormatName(from.formatName.c_str());
        origin->setFormatVersion(from.formatVersion.c_str());
        origin->setBridgeName("qor import");
        origin->setBridgeVersion(QOR_TOOLS_VERSION);
        adopt(*model, &QORModel::addMetadataOrigin, std::move(origin));
    }

    void buildCatalog() {
        auto made = std::make_unique<QORDatabaseCatalog>();
        made->setName(structure.catalog.name.c_str());
        made->setComment(structure.catalog.comment.c_str());
        made->setSystemType(structure.origin.system.c_str());
        setVersion(*made, structure.origin.version);
        addExtras(*made, structure.catalog.extras);
        QORDatabaseCatalog& catalog = adopt(*model, &QORPackage::addChildPackage, std::move(made));
        schemas.resize(structure.schemas.size());
        packages.resize(structure.schemas.size());
        auto const order = orderOf(structure.schemas, [](Schema const& record) { return record.name; });
        schemaRanks = Ranks(order);
        for (int const number : order) {
            buildSchema(static_cast<std::size_t>(number), catalog);
        }
    }

    /// What the tables of the only schema become goes by the name of the database; those of several are told
    /// apart by the names of these.
    void buildSchema(std::size_t number, QORDatabaseCatalog& catalog) {
        Schema const& record = structure.schemas[number];
        auto schema = std::make_unique<QORDatabaseSchema>();
        schema->setName(record.name.c_str());
        schema->setComment(record.comment.c_str());
        addExtras(*schema, record.extras);
        schemas[number] = &adopt(catalog, &QORPackage::addChildPackage, std::move(schema));
        auto package = std::make_unique<QORDesignPackage>();
        bool const single = structure.schemas.size() == 1;
        package->setName((single ? structure.catalog.name : record.name).c_str());
        packages[number] = &adopt(*model, &QORPackage::addChildPackage, std::move(package));
    }

    void buildTypes() {
        auto const order = orderOf(structure.types, [this](Type const& record) {
            return std::make_tuple(schemaRanks[record.schema], record.name, record.declaration);
        });
        typeRanks = Ranks(order);
        types.resize(structure.types.size());
        for (int const number : order) {
            types[static_cast<std::size_t>(number)] =
                &buildType(structure.types[static_cast<std::size_t>(number)]);
        }
        for (int const number : order) {
            Type const& record = structure.types[static_cast<std::size_t>(number)];
            QORConcreteType* const base = record.base >= 0
                                              ? static_cast<QORConcreteType*>(at(types, record.base, "type"))
                                              : &baseType(record.dataType);
            types[static_cast<std::size_t>(number)]->addDerivedFromConcreteType(base);
        }
    }

    QORDerivedType& buildType(Type const& record) {
        auto made = std::make_unique<QORDerivedType>();
        made->setName(record.name.c_str());
        made->setComment(record.comment.c_str());
        made->setNativeDataType(record.declaration.c_str());
        made->setNativeType(nativeKindOf(record.kind));
        made->setDataType(record.dataType.c_str());
        made->setLength(record.length);
        made->setScale(record.scale);
        made->setInitialValue(record.defaultValue.c_str());
        made->setUserDefined(record.kind != TypeKind::BUILT_IN);
        for (std::size_t i = 0; i < record.values.size(); ++i) {
            auto value = std::make_unique<QORTypeValue>();
            value->setName(record.values[i].c_str());
            value->setValue(record.values[i].c_str());
            value->setPosition(positionOf(i));
            adopt(*made, &QORDerivedType::addTypeValue, std::move(value));
        }
        addExtras(*made, record.extras);
        if (record.notNull) {
            addProperty(*made, extra::notNull, "true", 0);
        }
        if (record.schema >= 0) {
            at(schemas, record.schema, "schema")->addModelObject(made.get());
        }
        return adopt(*model, &QORModel::addType, std::move(made));
    }

    QORBaseType& baseType(std::string const& dataType) {
        QORBaseType*& known = baseTypes[dataType];
        if (!known) {
            auto made = std::make_unique<QORBaseType>();
            made->setName(getDataTypeName(dataType.c_str()));
            made->setDataType(dataType.c_str());
            known = &adopt(*model, &QORModel::addType, std::move(made));
        }
        return *known;
    }

    // ---- tables and views ----------------------------------------------------------------------------

    void buildTables() {
        tableOrder = orderOf(structure.tables, [this](Table const& record) {
            return std::make_tuple(schemaRanks[record.schema], record.name);
        });
        tableRanks = Ranks(tableOrder);
        classes.resize(structure.tables.size());
        views.resize(structure.tables.size());
        attributes.resize(structure.tables.size());
        for (int const number : tableOrder) {
            auto const index = static_cast<std::size_t>(number);
            if (structure.tables[index].kind == TableKind::TABLE) {
                classes[index] = &buildClass(structure.tables[index], attributes[index]);
            } else {
                views[index] = &buildView(structure.tables[index]);
            }
        }
    }

    template <class Classifier>
    Classifier& addClassifier(Named const& record, int schema, std::unique_ptr<Classifier> made) {
        addExtras(*made, record.extras);
        Classifier& added =
            adopt(*at(packages, schema, "schema"), &QORDesignPackage::addModelElement, std::move(made));
        schemas[static_cast<std::size_t>(schema)]->addModelObject(&added);
        return added;
    }

    QORClass& buildClass(Table const& record, std::vector<QORAttribute*>& columns) {
        auto made = named<QORClass>(record);
        made->setNativeType(record.nativeKind.c_str());
        made->setCppClassType(QORClassCategoryType::ENTITY);
        made->setCppMultiplicity("MUL_UNSPECIFIED");
        QORClass& added = addClassifier(record, record.schema, std::move(made));
        for (Column const& column : record.columns) {
            auto attribute = namedColumn<QORAttribute>(column);
            attribute->setCppDerived(column.generated);
            columns.push_back(&addColumn(added, column, std::move(attribute)));
        }
        return added;
    }

    QORSQLViewEntity& buildView(Table const& record) {
        auto made = named<QORSQLViewEntity>(record);
        made->setNativeType(record.nativeKind.c_str());
        made->setViewType(modelViewType(record.kind));
        made->setViewStatement(record.statement.c_str());
        made->setViewStatementType(QORViewStatementType::SELECT);
        if (auto const clauses = splitSelect(record.statement)) {
            made->setSelectType(selectType(clauses->quantifier));
            made->setWhereClause(clauses->where.c_str());
            made->setGroupByClause(clauses->groupBy.c_str());
            made->setHavingClause(clauses->having.c_str());
            made->setOrderByClause(clauses->orderBy.c_str());
        }
        QORSQLViewEntity& added = addClassifier(record, record.schema, std::move(made));
        for (Column const& column : record.columns) {
            addColumn(added, column, namedColumn<QORSQLViewAttribute>(column));
        }
        return added;
    }

    template <class Feature>
    std::unique_ptr<Feature> namedColumn(Column const& record) {
        auto made = named<Feature>(record);
        made->setOptional(!record.notNull);
        made->setInitialValue(record.defaultValue.c_str());
        addExtras(*made, record.extras);
        return made;
    }

    template <class Owner, class Feature>
    Feature& addColumn(Owner& owner, Column const& record, std::unique_ptr<Feature> made) {
        made->setPosition(positionOf(static_cast<std::size_t>(owner.getFeatureCount())));
        Feature& added = adopt(owner, &QORClassifier::addFeature, std::move(made));
        if (record.type >= 0) {
            added.addType(at(types, record.type, "type"));
        }
        return added;
    }

    QORClass& tableAt(int index) const {
        QORClass* const table = at(classes, index, "table");
        if (!table) {
            throw kit::ToolError(structure.origin.source, "is damaged: a view where a table must be");
        }
        return *table;
    }

    QORAttribute& columnAt(int table, int column) const {
        return *at(at(attributes, table, "table"), column, "column");
    }

    void buildGeneralizations() {
        for (int const number : tableOrder) {
            Table const& table = structure.tables[static_cast<std::size_t>(number)];
            if (table.parents.empty()) {
                continue;
            }
            auto made = std::make_unique<QORGeneralization>();
            for (int const parent : table.parents) {
                made->addSupertypeClass(&tableAt(parent));
            }
            made->addSubtypeClass(&tableAt(number));
            adopt(packageOf(number), &QORDesignPackage::addModelElement, std::move(made));
        }
    }

    QORDesignPackage& packageOf(int table) const {
        return *at(packages, at(structure.tables, table, "table").schema, "schema");
    }

    // ---- keys ----------------------------------------------------------------------------------------

    void buildKeys() {
        std::vector<int> const order = orderOf(structure.keys, [this](Key const& record) {
            return std::make_tuple(tableRanks[record.table], sortKeyOf(structure, record));
        });
        for (Index const& index : structure.indexes) {
            noteUniqueIndex(index);
        }
        if (structure.keepsKeyOrder) {
            keyPlaces = placesOf(structure.keys, order, [](Key const& record) {
                return std::make_pair(record.table, record.kind == KeyKind::FOREIGN);
            });
        }
        std::vector<Key const*> foreign;
        for (int const number : order) {
            Key const& key = structure.keys[static_cast<std::size_t>(number)];
            if (key.kind == KeyKind::FOREIGN) {
                foreign.push_back(&key);
            } else {
                buildCandidateKey(key);
            }
        }
        for (Key const* key : foreign) {
            buildForeignKey(*key);
        }
    }

    void buildCandidateKey(Key const& record) {
        QORClass& table = tableAt(record.table);
        auto made = named<QORCandidateKey>(record);
        made->setUniqueKey(record.kind == KeyKind::UNIQUE);
        QORCandidateKey& key = addKey(table, record, std::move(made));
        if (record.kind == KeyKind::PRIMARY && !table.addPrimaryCandidateKey(&key)) {
            throw kit::ToolError(structure.origin.source, "is damaged: more than one primary key of " +
                                                              at(structure.tables, record.table, "").name);
        }
        candidateKeys[record.table].emplace(std::set<int>(record.columns.begin(), record.columns.end()),
                                            &key);
        uniqueColumns[record.table].emplace_back(record.columns.begin(), record.columns.end());
        if (record.columns.size() > 1) {
            buildKeyIndex(table, record, key);
        }
    }

    template <class KeyClass>
    KeyClass& addKey(QORClass& table, Key const& record, std::unique_ptr<KeyClass> made) {
        addExtras(*made, record.extras);
        addPlace(*made, keyPlaces, static_cast<std::size_t>(&record - structure.keys.data()));
        KeyClass& key = adopt(table, &QORClass::addKey, std::move(made));
        for (int const column : record.columns) {
            key.addAttribute(&columnAt(record.table, column));
        }
        return key;
    }

    /// A key is a set; in which order its columns stand tells the index that the database makes for it by
    /// itself.
    void buildKeyIndex(QORClass& table, Key const& record, QORCandidateKey& key) {
        auto made = std::make_unique<QORIndex>();
        made->setGenerate(false);
        made->setUnique(true);
        QORIndex& index = adopt(table, &QORClass::addIndex, std::move(made));
        index.addKey(&key);
        for (std::size_t i = 0; i < record.columns.size(); ++i) {
            auto member = std::make_unique<QORIndexMember>();
            member->setPosition(positionOf(i));
            adopt(index, &QORIndex::addIndexMember, std::move(member))
                .addAttribute(&columnAt(record.table, record.columns[i]));
        }
    }

    void buildForeignKey(Key const& record) {
        QORForeignKey& key = addKey(tableAt(record.table), record, named<QORForeignKey>(record));
        if (record.referredTable >= 0) {
            linkCandidateKey(record, key);
        }
        for (std::size_t i = 0; i < record.columns.size(); ++i) {
            auto pair = std::make_unique<QORAssociationRoleNameMap>();
            pair->addSourceAttribute(&columnAt(record.table, record.columns[i]));
            if (i < record.referredColumns.size()) {
                pair->addDestinationAttribute(&columnAt(record.referredTable, record.referredColumns[i]));
            }
            if (record.columns.size() > 1) {
                addProperty(*pair, extra::position, std::to_string(i + 1), 1);
            }
            adopt(key, &QORForeignKey::addAssociationRoleNameMap, std::move(pair));
        }
        buildAssociation(record, key);
    }

    void linkCandidateKey(Key const& record, QORForeignKey& key) {
        auto const keys = candidateKeys.find(record.referredTable);
        if (keys == candidateKeys.end()) {
            return;
        }
        auto const known =
            keys->second.find(std::set<int>(record.referredColumns.begin(), record.referredColumns.end()));
        if (known != keys->second.end()) {
            key.addCandidateKey(known->second);
        }
    }

    bool isMandatory(Key const& record) const {
        for (int const column : record.columns) {
            if (!at(structure.tables, record.table, "table")
                     .columns[static_cast<std::size_t>(column)]
                     .notNull) {
                return false;
            }
        }
        return true;
    }

    bool isUnique(Key const& record) const {
        auto const known = uniqueColumns.find(record.table);
        if (known == uniqueColumns.end()) {
            return false;
        }
        std::set<int> const columns(record.columns.begin(), record.columns.end());
        return std::any_of(known->second.begin(), known->second.end(), [&](std::set<int> const& unique) {
            return std::includes(columns.begin(), columns.end(), unique.begin(), unique.end());
        });
    }

    /// Columns that a unique index keeps apart, unless it leaves rows out or is one of expressions.
    void noteUniqueIndex(Index const& record) {
        std::set<int> columns;
        for (IndexMember const& member : record.members) {
            columns.insert(member.column);
        }
        if (record.unique && !columns.count(-1) && !findExtra(record.extras, extra::where)) {
            uniqueColumns[record.table].push_back(columns);
        }
    }

    /// The association starts at the table with the foreign key, which implements the end at the table
    /// referred to.
    void buildAssociation(Key const& record, QORForeignKey& key) {
        auto made = std::make_unique<QORAssociation>();
        made->setName(record.name.c_str());
        made->setUserDefined(false);
        QORAssociation& association =
            adopt(packageOf(record.table), &QORDesignPackage::addModelElement, std::move(made));

        auto source = std::make_unique<QORAssociationRole>();
        source->setSource(true);
        source->setPosition(1);
        source->setNavigable(false);
        source->setMultiplicity(isUnique(record) ? "0..1" : "0..*");
        adopt(association, &QORAssociation::addAssociationRole, std::move(source))
            .addAssociatedClass(&tableAt(record.table));

        auto destination = std::make_unique<QORAssociationRole>();
        destination->setPosition(2);
        destination->setMultiplicity(isMandatory(record) ? "1" : "0..1");
        destination->setOnUpdate(modelAction(record.onUpdate));
        destination->setOnDelete(modelAction(record.onDelete));
        QORAssociationRole& end =
            adopt(association, &QORAssociation::addAssociationRole, std::move(destination));
        end.addForeignKey(&key);
        if (record.referredTable >= 0) {
            end.addAssociatedClass(&tableAt(record.referredTable));
        }
    }

    // ---- what goes with tables and types -------------------------------------------------------------

    void buildChecks() {
        auto const order = orderOf(structure.checks, [this](Check const& record) {
            return std::make_tuple(tableRanks[record.table], typeRanks[record.type],
                                   sortKeyOf(structure, record));
        });
        if (structure.keepsKeyOrder) {
            checkPlaces = placesOf(structure.checks, order, [](Check const& record) {
                return std::make_pair(record.table, record.type);
            });
        }
        for (int const number : order) {
            buildCheck(structure.checks[static_cast<std::size_t>(number)]);
        }
    }

    void buildCheck(Check const& record) {
        auto made = named<QORBusinessRule>(record);
        made->setNativeType("CHECK");
        made->setType(QORBusinessRuleType::TEXT_PHYSICAL);
        made->setValue(record.expression.c_str());
        addExtras(*made, record.extras);
        addPlace(*made, checkPlaces, static_cast<std::size_t>(&record - structure.checks.data()));
        QORBusinessRule& rule = adopt(*model, &QORModel::addBusinessRule, std::move(made));
        if (record.table >= 0) {
            rule.addModelObject(&tableAt(record.table));
        } else {
            rule.addModelObject(at(types, record.type, "type"));
        }
    }

    void buildIndexes() {
        auto const order = orderOf(structure.indexes, [this](Index const& record) {
            return std::make_tuple(tableRanks[record.table], record.name);
        });
        for (int const number : order) {
            buildIndex(structure.indexes[static_cast<std::size_t>(number)]);
        }
    }

    /// Views own no indexes, so that those of a materialized view become texts.
    void buildIndex(Index const& record) {
        if (QORSQLViewEntity* const view = at(views, record.table, "table")) {
            addProperty(*view, extra::index,
                        writeIndexText(record, structure.tables[static_cast<std::size_t>(record.table)]),
                        positionOf(static_cast<std::size_t>(view->getPropertyValueCount())));
            return;
        }
        auto made = named<QORIndex>(record);
        made->setUnique(record.unique);
        made->setClustered(record.clustered);
        addExtras(*made, record.extras);
        QORIndex& index = adopt(tableAt(record.table), &QORClass::addIndex, std::move(made));
        for (std::size_t i = 0; i < record.members.size(); ++i) {
            IndexMember const& from = record.members[i];
            auto member = std::make_unique<QORIndexMember>();
            member->setPosition(positionOf(i));
            member->setSortOrder(from.descending ? QORSortOrderType::DESCENDING
                                                 : QORSortOrderType::ASCENDING);
            if (from.column < 0) {
                addProperty(*member, extra::expression, from.expression, 0);
            }
            addExtras(*member, from.extras);
            QORIndexMember& added = adopt(index, &QORIndex::addIndexMember, std::move(member));
            if (from.column >= 0) {
                added.addAttribute(&columnAt(record.table, from.column));
            }
        }
    }

    void buildTriggers() {
        auto const order = orderOf(structure.triggers, [this](Trigger const& record) {
            return std::make_tuple(tableRanks[record.table], record.name);
        });
        for (int const number : order) {
            buildTrigger(structure.triggers[static_cast<std::size_t>(number)]);
        }
    }

    template <class Owner>
    void addTrigger(Owner& owner, Trigger const& record) {
        auto made = named<QORTrigger>(record);
        made->setTriggerType(modelTime(record.time));
        made->setFireOnInsert(record.onInsert);
        made->setFireOnUpdate(record.onUpdate);
        made->setFireOnDelete(record.onDelete);
        made->setSemantics(record.statement.c_str());
        made->setPosition(positionOf(static_cast<std::size_t>(owner.getOperationCount())));
        addExtras(*made, record.extras);
        adopt(owner, &Owner::addOperation, std::move(made));
    }

    void buildTrigger(Trigger const& record) {
        if (QORSQLViewEntity* const view = at(views, record.table, "table")) {
            addTrigger(*view, record);
        } else {
            addTrigger(tableAt(record.table), record);
        }
    }

    void buildSequences() {
        auto const order = orderOf(structure.sequences, [this](Sequence const& record) {
            return std::make_tuple(schemaRanks[record.schema], record.name);
        });
        for (int const number : order) {
            buildSequence(structure.sequences[static_cast<std::size_t>(number)]);
        }
    }

    void buildSequence(Sequence const& record) {
        auto made = named<QORClass>(record);
        made->setNativeType(sequenceKind);
        made->setCppMultiplicity("MUL_UNSPECIFIED");
        addClassifier(record, record.schema, std::move(made));
    }

    // ---- routines ------------------------------------------------------------------------------------

    void buildRoutines() {
        std::map<std::pair<int, std::string>, int> count;
        for (Routine const& record : structure.routines) {
            ++count[{record.schema, record.name}];
        }
        auto const order = orderOf(structure.routines, [this](Routine const& record) {
            return std::make_tuple(schemaRanks[record.schema], record.name, signature(record));
        });
        for (int const number : order) {
            Routine const& record = structure.routines[static_cast<std::size_t>(number)];
            buildRoutine(record, count[{record.schema, record.name}] > 1);
        }
    }

    /// A package holds one procedure of a name, so overloads are named with the types of their arguments.
    std::string signature(Routine const& record) const {
        std::string text;
        for (Argument const& argument : record.arguments) {
            if (argument.mode == ArgumentMode::RESULT_COLUMN || argument.mode == ArgumentMode::OUT) {
                continue;
            }
            text += text.empty() ? "" : ", ";
            text += argument.type < 0 ? "" : at(structure.types, argument.type, "type").name;
        }
        return record.name + "(" + text + ")";
    }

    void buildRoutine(Routine const& record, bool overloaded) {
        auto made = named<QORStoredProcedure>(record);
        if (overloaded) {
            made->setName(signature(record).c_str());
        }
        made->setNativeType(record.procedure ? procedureKind : functionKind);
        made->setSemantics(record.statement.c_str());
        addExtras(*made, record.extras);
        QORDesignPackage& package = *at(packages, record.schema, "schema");
        made->setPosition(positionOf(static_cast<std::size_t>(package.getStoredProcedureCount())));
        QORStoredProcedure& routine = adopt(package, &QORDesignPackage::addStoredProcedure, std::move(made));
        schemas[static_cast<std::size_t>(record.schema)]->addModelObject(&routine);
        if (record.returnType >= 0) {
            routine.addReturnType(at(types, record.returnType, "type"));
        }
        std::set<std::string> argumentNames;
        for (std::size_t i = 0; i < record.arguments.size(); ++i) {
            buildArgument(routine, record.arguments[i], positionOf(i), argumentNames);
        }
    }

    /// An output column may bear the name of an argument. Then its name goes without, and stays the physical
    /// one.
    void buildArgument(QORStoredProcedure& routine, Argument const& record, short position,
                       std::set<std::string>& argumentNames) {
        auto made = named<QORArgument>(record);
        made->setPosition(position);
        made->setKind(modelMode(record.mode));
        made->setDefaultValue(record.defaultValue.c_str());
        made->setNativeType(nativeKindOf(record.mode));
        addExtras(*made, record.extras);
        if (!argumentNames.insert(record.name).second) {
            made->setName("");
        }
        QORArgument& argument = adopt(routine, &QOROperation::addArgument, std::move(made));
        if (record.type >= 0) {
            argument.addType(at(types, record.type, "type"));
        }
    }

    Structure const& structure;
    std::unique_ptr<QORModel> model;
    Ranks schemaRanks;
    Ranks typeRanks;
    Ranks tableRanks;
    std::vector<int> tableOrder;
    std::vector<int> keyPlaces;
    std::vector<int> checkPlaces;
    std::vector<QORDatabaseSchema*> schemas;
    std::vector<QORDesignPackage*> packages; ///< one for each schema
    std::vector<QORDerivedType*> types;
    std::map<std::string, QORBaseType*> baseTypes;
    std::vector<QORClass*> classes;       ///< null where the structure has a view
    std::vector<QORSQLViewEntity*> views; ///< null where it has a table
    std::vector<std::vector<QORAttribute*>> attributes;
    std::map<int, std::map<std::set<int>, QORCandidateKey*>> candidateKeys;
    std::map<int, std::vector<std::set<int>>>
        uniqueColumns; ///< of which no two rows of a table have equal values
    std::map<std::pair<QORElementType, std::string>, QORPropertyType*> propertyTypes;
    std::map<QORElementType, QORPropertyElementTypeScope*> scopes;
};

} // namespace

std::unique_ptr<QORModel> buildModel(Structure const& structure) {
    return Builder(structure).run();
}

} // namespace database
