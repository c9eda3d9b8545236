#include "database/ModelReader.h"

#include "database/Enumerations.h"
#include "database/Extras.h"
#include "database/IndexText.h"
#include "database/KeyOrder.h"
#include "database/ModelBuilder.h"
#include "kit/Reflection.h"

#include <qor/QORAliasType.h>
#include <qor/QORArgument.h>
#include <qor/QORAssociationRole.h>
#include <qor/QORAssociationRoleNameMap.h>
#include <qor/QORAttribute.h>
#include <qor/QORBusinessRule.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORDataPackage.h>
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
#include <qor/QORPropertyType.h>
#include <qor/QORPropertyValue.h>
#include <qor/QORSQLViewAttribute.h>
#include <qor/QORSQLViewEntity.h>
#include <qor/QORStoredProcedure.h>
#include <qor/QORTrigger.h>
#include <qor/QORTypeValue.h>

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>

namespace database {
namespace {

std::string text(QORString const& from) {
    return std::string(kit::view(from));
}

/// An enumeration may be one of a model that names no native kinds.
TypeKind kindOf(QORType const& type) {
    TypeKind const kind = typeKindOf(kit::view(type.getNativeType()));
    bool const hasValues = kind == TypeKind::BUILT_IN && type.getTypeValueCount() > 0;
    return hasValues ? TypeKind::ENUMERATION : kind;
}

template <class Object>
std::string nativeKindOf(Object const& object, TableKind kind) {
    return object.getNativeType().length ? text(object.getNativeType()) : database::nativeKindOf(kind);
}

/// The value of an extra, which is then taken out of them; empty if there is none.
std::string takeExtra(Extras& extras, std::string_view name) {
    for (auto extra = extras.begin(); extra != extras.end(); ++extra) {
        if (extra->name == name) {
            std::string value = extra->value;
            extras.erase(extra);
            return value;
        }
    }
    return "";
}

/// Takes the places that records have in their groups, and moves each record, and its object, to where its
/// group has this place. Records without a place are sorted by their names and the like.
template <class Records, class GroupOf>
bool sortByPlace(Structure const& structure, Records& records, std::vector<QORObject*>& objects,
                 GroupOf const& groupOf) {
    std::map<decltype(groupOf(records.front())), std::vector<std::size_t>> groups;
    std::vector<int> places;
    for (std::size_t i = 0; i < records.size(); ++i) {
        groups[groupOf(records[i])].push_back(i);
        places.push_back(std::atoi(takeExtra(records[i].extras, extra::position).c_str()));
    }
    Records const before = records;
    std::vector<QORObject*> const objectsBefore = objects;
    for (auto const& entry : groups) {
        std::vector<std::size_t> sorted = entry.second;
        std::stable_sort(sorted.begin(), sorted.end(), [&](std::size_t a, std::size_t b) {
            return places[a] != places[b] ? places[a] < places[b]
                                          : sortKeyOf(structure, before[a]) < sortKeyOf(structure, before[b]);
        });
        for (std::size_t i = 0; i < sorted.size(); ++i) {
            records[entry.second[i]] = before[sorted[i]];
            objects[entry.second[i]] = objectsBefore[sorted[i]];
        }
    }
    return std::any_of(places.begin(), places.end(), [](int place) { return place > 0; });
}

/// What a graph is read for.
enum class Purpose { DATABASE, DOCUMENT };

/// Reads one kind of thing after the other, each for the whole graph; what refers to something is read after
/// that.
class Reader {
public:
    Reader(kit::Numbering const& ofGraph, Purpose toReadFor) : numbering(ofGraph), purpose(toReadFor) {}

    Structure readDatabase() {
        readOrigin(static_cast<QORModel&>(*numbering.objects().front()));
        ofClass<QORDatabaseSchema>(QORElementType::DATABASE_SCHEMA,
                                   [this](auto& schema) { readSchema(schema); });
        ofClass<QORDerivedType>(QORElementType::DERIVED_TYPE, [this](auto& type) {
            if (!type.isInstanceOf(QORElementType::PROPERTY_TYPE)) {
                typeOf(&type);
            }
        });
        readBases();
        ofClass<QORClass>(QORElementType::CLASS, [this](auto& table) { readClass(table); });
        ofClass<QORSQLViewEntity>(QORElementType::SQL_VIEW_ENTITY, [this](auto& view) { readView(view); });
        ofClass<QORGeneralization>(QORElementType::GENERALIZATION,
                                   [this](auto& link) { readGeneralization(link); });
        bool const keysHavePlaces = readKeys();
        ofClass<QORBusinessRule>(QORElementType::BUSINESS_RULE, [this](auto& rule) { readRule(rule); });
        ofClass<QORIndex>(QORElementType::INDEX, [this](auto& index) { readIndex(index); });
        ofClass<QORTrigger>(QORElementType::TRIGGER, [this](auto& trigger) { readTrigger(trigger); });
        ofClass<QORStoredProcedure>(QORElementType::STORED_PROCEDURE,
                                    [this](auto& routine) { readRoutine(routine); });
        std::vector<QORObject*> rules(structure.checks.size());
        bool const checksHavePlaces = sortByPlace(structure, structure.checks, rules, [](Check const& check) {
            return std::make_pair(check.table, check.type);
        });
        structure.keepsKeyOrder = keysHavePlaces || checksHavePlaces;
        return std::move(structure);
    }

    DocumentStructure readDocument() {
        structure.catalog.name = text(numbering.objects().front()->getName());
        ofClass<QORClassifier>(QORElementType::CLASSIFIER, [this](auto& object) {
            Table record;
            readNamed(object, record);
            addTable(object, record);
            tableObjects.push_back(&object);
        });
        readKeys();
        ofClass<QORIndex>(QORElementType::INDEX, [this](auto& index) { readIndex(index); });
        return {std::move(structure), std::move(tableObjects), std::move(keyObjects)};
    }

private:
    // ---- what all steps use --------------------------------------------------------------------------

    template <class Object, class Read>
    void ofClass(QORElementType type, Read const& read) {
        for (QORObject* object : numbering.objects()) {
            if (object->isInstanceOf(type)) {
                read(static_cast<Object&>(*object));
            }
        }
    }

    /// The objects of an end, by their positions if they have such, or else by name.
    template <class Far>
    std::vector<Far*> elements(QORObject& object, char const* role) const {
        std::vector<Far*> result;
        for (QORObject* far :
             numbering.elements(object, *object.getMetaClass()->getMetaLinkByRoleName(role))) {
            result.push_back(static_cast<Far*>(far));
        }
        return result;
    }

    static int indexIn(std::unordered_map<QORObject const*, int> const& known, QORObject const* object) {
        auto const found = known.find(object);
        return found == known.end() ? -1 : found->second;
    }

    template <class Records>
    static int lastIndex(Records const& records) {
        return static_cast<int>(records.size()) - 1;
    }

    static Extras extrasOf(QORElement const& element) {
        Extras extras;
        for (int i = 0; i < element.getPropertyValueCount(); ++i) {
            QORPropertyValue const* value = element.getPropertyValue(i);
            QORPropertyType const* type = value->getPropertyType();
            if (type && text(type->getGroup()) == extrasGroup) {
                extras.push_back({text(type->getName()), text(value->getValue())});
            }
        }
        return extras;
    }

    /// A database has the physical names, if there are any, a document the logical ones.
    void readNamed(QORModelObject const& object, Named& record) const {
        QORString const& physical = object.getPhysicalName();
        bool const isPhysical = purpose == Purpose::DATABASE && physical.length;
        record.name = text(isPhysical ? physical : object.getName());
        record.comment = text(object.getComment());
        record.extras = extrasOf(object);
    }

    // ---- packages and types --------------------------------------------------------------------------

    void readOrigin(QORModel const& model) {
        structure.catalog.name = text(model.getName());
        for (int i = 0; i < model.getChildPackageCount(); ++i) {
            if (QORPackage* const package = model.getChildPackage(i);
                package->isInstanceOf(QORElementType::DATABASE_CATALOG)) {
                auto const& catalog = static_cast<QORDatabaseCatalog const&>(*package);
                readNamed(catalog, structure.catalog);
                structure.origin.system = text(catalog.getSystemType());
                structure.origin.version = text(catalog.getNativeVersion());
                break;
            }
        }
        if (QORMetadataOrigin const* from = model.getMetadataOrigin()) {
            structure.origin.source = text(from->getSource());
            structure.origin.encoding = text(from->getEncoding());
            structure.origin.formatName = text(from->getFormatName());
            structure.origin.formatVersion = text(from->getFormatVersion());
        }
    }

    void readSchema(QORDatabaseSchema const& object) {
        Schema record;
        readNamed(object, record);
        structure.schemas.push_back(record);
        schemas.emplace(&object, lastIndex(structure.schemas));
    }

    /// The schema that lists an object; without one, its design package is read as a schema.
    int schemaOf(QORModelObject const& object, QORDesignPackage const* package) {
        QORObject const* const owner = schemas.count(object.getDataPackage())
                                           ? static_cast<QORObject const*>(object.getDataPackage())
                                           : package;
        auto const [known, isNew] = schemas.emplace(owner, static_cast<int>(structure.schemas.size()));
        if (isNew) {
            structure.schemas.emplace_back();
            structure.schemas.back().name = package ? text(package->getName()) : "";
        }
        return known->second;
    }

    /// The number of a type, which is read if it hasn't been; -1 for none. A database has the types that
    /// aliases lead to; aliases in a circle lead to none.
    int typeOf(QORType* type) {
        std::set<QORType const*> aliases;
        while (purpose == Purpose::DATABASE && type && type->isInstanceOf(QORElementType::ALIAS_TYPE)) {
            bool const isNew = aliases.insert(type).second;
            type = isNew ? static_cast<QORAliasType*>(type)->getAliasOfType() : nullptr;
        }
        if (!type) {
            return -1;
        }
        auto const [known, isNew] = types.emplace(type, static_cast<int>(structure.types.size()));
        if (isNew) {
            structure.types.push_back(readType(*type));
        }
        return known->second;
    }

    /// Types derived from each other in a circle lose the base at which it closes.
    void readBases() {
        ofClass<QORDerivedType>(QORElementType::DERIVED_TYPE, [this](auto& type) {
            int const number = indexIn(types, &type);
            if (number >= 0) {
                typeAt(number).base = indexIn(types, type.getDerivedFromConcreteType());
            }
        });
        std::vector<int> walk(structure.types.size(), -1); // in which a type was met first
        for (int start = 0; start < static_cast<int>(walk.size()); ++start) {
            int number = start;
            while (number >= 0 && walk[static_cast<std::size_t>(number)] < 0) {
                walk[static_cast<std::size_t>(number)] = start;
                int const base = typeAt(number).base;
                if (base >= 0 && walk[static_cast<std::size_t>(base)] == start) {
                    typeAt(number).base = -1;
                }
                number = typeAt(number).base;
            }
        }
    }

    Type& typeAt(int number) { return structure.types[static_cast<std::size_t>(number)]; }

    Type readType(QORType& object) {
        Type record;
        record.name = text(object.getName());
        record.comment = text(object.getComment());
        if (purpose == Purpose::DOCUMENT) {
            return record; // an alias has the rest from its type, which it may lack
        }
        record.extras = extrasOf(object);
        record.kind = kindOf(object);
        record.declaration = text(object.getNativeDataType());
        record.dataType = text(object.getDataType());
        record.length = object.getLength();
        record.scale = object.getScale();
        record.defaultValue = text(object.getInitialValue());
        record.notNull = takeExtra(record.extras, extra::notNull) == "true";
        if (schemas.count(object.getDataPackage())) {
            record.schema = indexIn(schemas, object.getDataPackage());
        }
        if (object.isInstanceOf(QORElementType::DERIVED_TYPE)) {
            for (QORTypeValue const* value : elements<QORTypeValue>(object, "typeValue")) {
                record.values.push_back(text(value->getValue()));
            }
        }
        return record;
    }

    // ---- tables and views ----------------------------------------------------------------------------

    void readClass(QORClass& object) {
        if (text(object.getNativeType()) == sequenceKind) {
            Sequence record;
            readNamed(object, record);
            record.schema = schemaOf(object, object.getDesignPackage());
            structure.sequences.push_back(record);
            return;
        }
        Table record;
        readNamed(object, record);
        record.kind = TableKind::TABLE;
        record.nativeKind = nativeKindOf(object, record.kind);
        addTable(object, record);
    }

    void readView(QORSQLViewEntity& object) {
        Table record;
        readNamed(object, record);
        record.kind = viewKindOf(object.getViewType());
        record.nativeKind = nativeKindOf(object, record.kind);
        record.statement = text(object.getViewStatement());
        int const index = addTable(object, record);
        Table& added = structure.tables[static_cast<std::size_t>(index)];
        for (std::string indexText = takeExtra(added.extras, extra::index); !indexText.empty();
             indexText = takeExtra(added.extras, extra::index)) {
            if (auto ofView = readIndexText(indexText, added)) {
                ofView->table = index;
                structure.indexes.push_back(*ofView);
            }
        }
    }

    int addTable(QORClassifier& object, Table& record) {
        record.schema = schemaOf(object, object.getDesignPackage());
        int const index = static_cast<int>(structure.tables.size());
        for (QORFeature* feature : elements<QORFeature>(object, "feature")) {
            columns.emplace(feature, Place{index, static_cast<int>(record.columns.size())});
            record.columns.push_back(readColumn(*feature));
        }
        tables.emplace(&object, index);
        structure.tables.push_back(record);
        return index;
    }

    Column readColumn(QORFeature& object) {
        Column record;
        readNamed(object, record);
        record.type = typeOf(object.getType());
        if (object.isInstanceOf(QORElementType::STRUCTURAL_FEATURE)) {
            auto const& feature = static_cast<QORStructuralFeature const&>(object);
            record.notNull = !feature.getOptional();
            record.defaultValue = text(feature.getInitialValue());
        }
        if (purpose == Purpose::DOCUMENT && !object.isInstanceOf(QORElementType::STRUCTURAL_FEATURE)) {
            record.extras.push_back({withoutValue, ""});
        }
        if (object.isInstanceOf(QORElementType::ATTRIBUTE)) {
            record.generated = static_cast<QORAttribute const&>(object).getCppDerived();
        }
        return record;
    }

    void readGeneralization(QORGeneralization& object) {
        for (QORClass const* subtype : elements<QORClass>(object, "subtypeClass")) {
            int const table = indexIn(tables, subtype);
            for (QORClass const* supertype : elements<QORClass>(object, "supertypeClass")) {
                int const parent = indexIn(tables, supertype);
                if (table >= 0 && parent >= 0) {
                    structure.tables[static_cast<std::size_t>(table)].parents.push_back(parent);
                }
            }
        }
    }

    // ---- keys ----------------------------------------------------------------------------------------

    /// Reads the candidate keys first, which foreign keys refer to. Returns whether any key has a place.
    bool readKeys() {
        ofClass<QORCandidateKey>(QORElementType::CANDIDATE_KEY, [this](auto& key) { readCandidateKey(key); });
        ofClass<QORForeignKey>(QORElementType::FOREIGN_KEY, [this](auto& key) { readForeignKey(key); });
        return sortByPlace(structure, structure.keys, keyObjects, [](Key const& key) {
            return std::make_pair(key.table, key.kind == KeyKind::FOREIGN);
        });
    }

    void addKey(QORKey& object, Key const& record) {
        if (record.table >= 0) {
            structure.keys.push_back(record);
            keyObjects.push_back(&object);
        }
    }

    using Attributes = std::vector<QORAttribute*>;

    /// A key with a missing column is none of a database; a document shows its other columns.
    void addAttribute(QORAttribute* attribute, Attributes& attributes) const {
        if (attribute || purpose == Purpose::DATABASE) {
            attributes.push_back(attribute);
        }
    }

    /// The columns of a key: its index holds their order.
    Attributes attributesOf(QORKey& key) const {
        Attributes result;
        if (QORIndex* const index = key.getIndex()) {
            for (QORIndexMember const* member : elements<QORIndexMember>(*index, "indexMember")) {
                addAttribute(member->getAttribute(), result);
            }
        }
        return result.empty() ? elements<QORAttribute>(key, "attribute") : result;
    }

    std::vector<int> columnsIn(int table, Attributes const& attributes) const {
        std::vector<int> result;
        for (QORAttribute const* attribute : attributes) {
            result.push_back(columnIn(table, attribute));
        }
        return result;
    }

    void setColumns(Key& record, Attributes const& attributes) const {
        record.columns = columnsIn(record.table, attributes);
        bool const hasStray = std::count(record.columns.begin(), record.columns.end(), -1) > 0;
        for (QORAttribute const* attribute : attributes) {
            if (hasStray && purpose == Purpose::DOCUMENT) {
                record.extras.push_back({columnName, text(attribute->getName())});
            }
        }
    }

    /// A model can have a key or an index of columns of another table; -1 for these.
    int columnIn(int table, QORAttribute const* attribute) const {
        auto const found = columns.find(attribute);
        return found == columns.end() || found->second.table != table ? -1 : found->second.column;
    }

    void readCandidateKey(QORCandidateKey& object) {
        Key record;
        readNamed(object, record);
        record.table = indexIn(tables, object.getAssociatedClass());
        record.kind = object.getPrimaryOfClass() ? KeyKind::PRIMARY : KeyKind::UNIQUE;
        setColumns(record, attributesOf(object));
        addKey(object, record);
    }

    static int positionOf(QORAssociationRoleNameMap const& pair) {
        Extras const extras = extrasOf(pair);
        std::string const* const position = findExtra(extras, extra::position);
        return position ? std::atoi(position->c_str()) : 0;
    }

    std::vector<QORAssociationRoleNameMap*> pairsOf(QORForeignKey& key) const {
        auto pairs = elements<QORAssociationRoleNameMap>(key, "associationRoleNameMap");
        std::stable_sort(pairs.begin(), pairs.end(),
                         [](auto const* a, auto const* b) { return positionOf(*a) < positionOf(*b); });
        return pairs;
    }

    void readForeignKey(QORForeignKey& object) {
        Key record;
        readNamed(object, record);
        record.kind = KeyKind::FOREIGN;
        record.table = indexIn(tables, object.getAssociatedClass());
        if (QORAssociationRole const* role = object.getAssociationRole()) {
            record.onUpdate = actionOf(role->getOnUpdate());
            record.onDelete = actionOf(role->getOnDelete());
            record.referredTable = indexIn(tables, role->getAssociatedClass());
        }
        if (record.referredTable < 0 && object.getCandidateKey()) {
            record.referredTable = indexIn(tables, object.getCandidateKey()->getAssociatedClass());
        }
        readPairs(object, record);
        addKey(object, record);
    }

    void readPairs(QORForeignKey& object, Key& record) const {
        Attributes sources;
        for (QORAssociationRoleNameMap const* pair : pairsOf(object)) {
            addAttribute(pair->getSourceAttribute(), sources);
            if (int const column = columnIn(record.referredTable, pair->getDestinationAttribute());
                column >= 0) {
                record.referredColumns.push_back(column);
            }
        }
        if (sources.empty()) {
            sources = attributesOf(object);
            if (QORCandidateKey* const key = object.getCandidateKey()) {
                record.referredColumns = columnsIn(record.referredTable, attributesOf(*key));
            }
        }
        setColumns(record, sources);
        if (record.columns.size() != record.referredColumns.size()) {
            record.referredColumns.clear();
        }
    }

    // ---- what goes with tables and types -------------------------------------------------------------

    void readRule(QORBusinessRule& object) {
        if (object.getType() != QORBusinessRuleType::TEXT_PHYSICAL) {
            return;
        }
        for (QORModelObject* constrained : elements<QORModelObject>(object, "modelObject")) {
            Check record;
            readNamed(object, record);
            record.expression = text(object.getValue());
            record.table = indexIn(tables, constrained);
            record.type = indexIn(types, constrained);
            if (record.table >= 0 || record.type >= 0) {
                structure.checks.push_back(record);
            }
        }
    }

    void readIndex(QORIndex& object) {
        Index record;
        readNamed(object, record);
        record.table = indexIn(tables, object.getAssociatedClass());
        record.unique = object.getUnique();
        record.clustered = object.getClustered();
        for (QORIndexMember* member : elements<QORIndexMember>(object, "indexMember")) {
            record.members.push_back(readMember(*member, record.table));
        }
        if (record.table >= 0 && !object.getKey()) {
            structure.indexes.push_back(record);
        }
    }

    IndexMember readMember(QORIndexMember const& object, int table) const {
        IndexMember record;
        record.extras = extrasOf(object);
        record.expression = takeExtra(record.extras, extra::expression);
        record.column = columnIn(table, object.getAttribute());
        if (purpose == Purpose::DOCUMENT && record.column < 0 && object.getAttribute()) {
            record.extras.push_back({columnName, text(object.getAttribute()->getName())});
        }
        record.descending = object.getSortOrder() == QORSortOrderType::DESCENDING;
        return record;
    }

    void readTrigger(QORTrigger& object) {
        Trigger record;
        readNamed(object, record);
        record.table = indexIn(tables, object.getAssociatedClass()
                                           ? static_cast<QORObject const*>(object.getAssociatedClass())
                                           : object.getAssociatedSQLViewEntity());
        record.time = timeOf(object.getTriggerType());
        record.onInsert = object.getFireOnInsert();
        record.onUpdate = object.getFireOnUpdate();
        record.onDelete = object.getFireOnDelete();
        record.statement = text(object.getSemantics());
        if (record.table >= 0) {
            structure.triggers.push_back(record);
        }
    }

    void readRoutine(QORStoredProcedure& object) {
        Routine record;
        readNamed(object, record);
        record.schema = schemaOf(object, object.getDesignPackage());
        record.procedure = text(object.getNativeType()) == procedureKind;
        record.returnType = typeOf(object.getReturnType());
        record.statement = text(object.getSemantics());
        for (QORArgument* argument : elements<QORArgument>(object, "argument")) {
            record.arguments.push_back(readArgument(*argument));
        }
        structure.routines.push_back(record);
    }

    Argument readArgument(QORArgument const& object) {
        Argument record;
        readNamed(object, record);
        record.mode = modeOf(object.getKind(), kit::view(object.getNativeType()));
        record.type = typeOf(object.getType());
        record.defaultValue = text(object.getDefaultValue());
        return record;
    }

    /// Of a column: its table, and its place within it.
    struct Place {
        int table;
        int column;
    };

    kit::Numbering numbering;
    Purpose purpose;
    Structure structure;
    std::vector<QORObject*> tableObjects; ///< of the tables of a document
    std::vector<QORObject*> keyObjects;
    std::unordered_map<QORObject const*, int> schemas;
    std::unordered_map<QORObject const*, int> types;
    std::unordered_map<QORObject const*, int> tables;
    std::unordered_map<QORObject const*, Place> columns;
};

} // namespace

Structure readModel(QORModel& model) {
    return Reader(kit::Numbering(model), Purpose::DATABASE).readDatabase();
}

DocumentStructure readDocument(kit::Numbering const& graph) {
    return Reader(graph, Purpose::DOCUMENT).readDocument();
}

} // namespace database
