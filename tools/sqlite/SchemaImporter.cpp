#include "sqlite/SchemaImporter.h"

#include "kit/ToolError.h"
#include "sqlite/DeclaredType.h"
#include "sqlite/SqliteDatabase.h"

#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORClass.h>
#include <qor/QORDataType.h>
#include <qor/QORDatabaseCatalog.h>
#include <qor/QORDatabaseSchema.h>
#include <qor/QORDerivedType.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORMetadataOrigin.h>
#include <qor/QORModel.h>

#include <cstdio>
#include <filesystem>

namespace sqlite {
namespace {

/// How a generated column and one that only a virtual table's own queries see are told by the database.
enum Hidden { ORDINARY = 0, HIDDEN = 1, GENERATED_VIRTUAL = 2, GENERATED_STORED = 3 };

/// The tables of the database, without SQLite's own, with what kind of table each is. `closed` is a virtual
/// table whose module isn't there, so that nothing but its name is known. `kinds` is materialized since each
/// use of the list makes it anew.
#define TABLES                                                                                               \
    "WITH kinds AS MATERIALIZED"                                                                             \
    " (SELECT name, type, wr, strict FROM pragma_table_list WHERE schema = 'main'),"                         \
    " tables AS (SELECT s.name, k.type, k.wr, k.strict, k.type = 'virtual' AND NOT EXISTS"                   \
    " (SELECT 1 FROM pragma_module_list AS m WHERE m.name = module_of(s.sql) COLLATE NOCASE) AS closed"      \
    " FROM main.sqlite_schema AS s LEFT JOIN kinds AS k ON k.name = s.name"                                  \
    " WHERE s.type = 'table' AND s.name NOT LIKE 'sqlite\\_%' ESCAPE '\\') "

constexpr char const* tablesQuery = TABLES "SELECT name, type, wr, strict, closed FROM tables ORDER BY name";

constexpr char const* columnsQuery =
    TABLES "SELECT t.name, c.name, c.type, c.\"notnull\", c.dflt_value, c.hidden"
           " FROM tables AS t JOIN pragma_table_xinfo(t.name, 'main') AS c"
           " WHERE t.closed IS NOT 1 ORDER BY t.name, c.cid";

#undef TABLES

std::string kindOf(std::string const& type, bool withoutRowid, bool strict) {
    std::string kind = type == "virtual" ? "VIRTUAL TABLE" : type == "shadow" ? "SHADOW TABLE" : "TABLE";
    kind += withoutRowid ? " WITHOUT ROWID" : "";
    kind += strict ? " STRICT" : "";
    return kind;
}

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

std::string stemOf(std::string const& path) {
    return std::filesystem::path(path).stem().string();
}

} // namespace

std::unique_ptr<QORModel> importSchema(Database& database) {
    return SchemaImporter(database).run();
}

SchemaImporter::SchemaImporter(Database& toRead) : database(toRead), model(std::make_unique<QORModel>()) {}

SchemaImporter::~SchemaImporter() = default;

std::unique_ptr<QORModel> SchemaImporter::run() {
    model->setName(stemOf(database.path()).c_str());
    importOrigin();
    importPackages();
    importTables();
    importColumns();
    return std::move(model);
}

void SchemaImporter::importOrigin() {
    Query encoding(database, "PRAGMA main.encoding");
    encoding.next();
    auto origin = std::make_unique<QORMetadataOrigin>();
    origin->setToolName("SQLite");
    origin->setToolVersion(database.writerVersion().c_str());
    origin->setSource(database.path().c_str());
    origin->setEncoding(encoding.text(0));
    origin->setFormatName("SQLite database");
    origin->setFormatVersion("3");
    origin->setBridgeName("qor import");
    origin->setBridgeVersion(QOR_TOOLS_VERSION);
    adopt(*model, &QORModel::addMetadataOrigin, std::move(origin));
}

void SchemaImporter::importPackages() {
    auto catalog = std::make_unique<QORDatabaseCatalog>();
    catalog->setName(model->getName());
    catalog->setSystemType("SQLite");
    setVersion(*catalog, database.writerVersion());
    auto ofCatalog = std::make_unique<QORDatabaseSchema>();
    ofCatalog->setName("main");
    schema = &adopt(*catalog, &QORPackage::addChildPackage, std::move(ofCatalog));
    adopt(*model, &QORPackage::addChildPackage, std::move(catalog));

    auto tablesPackage = std::make_unique<QORDesignPackage>();
    tablesPackage->setName(model->getName());
    package = &adopt(*model, &QORPackage::addChildPackage, std::move(tablesPackage));
}

void SchemaImporter::importTables() {
    Query rows(database, tablesQuery);
    while (rows.next()) {
        std::string const name = rows.text(0);
        auto made = std::make_unique<QORClass>();
        made->setName(name.c_str());
        made->setPhysicalName(name.c_str());
        made->setNativeType(kindOf(rows.text(1), rows.number(2), rows.number(3)).c_str());
        made->setCppClassType(QORClassCategoryType::ENTITY);
        made->setCppMultiplicity("MUL_UNSPECIFIED");
        if (rows.number(4)) {
            made->setComment("The columns are unknown: the module of this virtual table isn't available.");
        }
        QORClass& added = adopt(*package, &QORDesignPackage::addModelElement, std::move(made));
        schema->addModelObject(&added);
        tables.emplace(name, &added);
    }
}

void SchemaImporter::importColumns() {
    Query rows(database, columnsQuery);
    while (rows.next()) {
        int const hidden = rows.number(5);
        if (hidden == HIDDEN) {
            continue;
        }
        QORClass& owner = table(rows.text(0));
        auto column = std::make_unique<QORAttribute>();
        column->setName(rows.text(1));
        column->setPhysicalName(rows.text(1));
        column->setPosition(static_cast<short>(owner.getFeatureCount() + 1));
        column->setOptional(!rows.number(3));
        column->setInitialValue(rows.text(4));
        column->setCppDerived(hidden == GENERATED_VIRTUAL || hidden == GENERATED_STORED);
        QORDerivedType& type = declaredType(rows.text(2));
        adopt(owner, &QORClass::addAttribute, std::move(column)).addType(&type);
    }
}

QORClass& SchemaImporter::table(std::string const& name) const {
    auto const known = tables.find(name);
    if (known == tables.end()) {
        throw kit::ToolError(database.path(), "is damaged: no table " + name);
    }
    return *known->second;
}

QORDerivedType& SchemaImporter::declaredType(std::string const& declared) {
    auto const known = declaredTypes.find(declared);
    if (known != declaredTypes.end()) {
        return *known->second;
    }
    DeclaredType const read = readDeclaredType(declared);
    auto made = std::make_unique<QORDerivedType>();
    made->setName(declared.empty() ? read.dataType : declared.c_str());
    made->setNativeDataType(declared.c_str());
    made->setDataType(read.dataType);
    made->setLength(read.length);
    made->setScale(read.scale);
    QORDerivedType& type = adopt(*model, &QORModel::addType, std::move(made));
    type.addDerivedFromConcreteType(&baseType(read.dataType));
    declaredTypes.emplace(declared, &type);
    return type;
}

QORBaseType& SchemaImporter::baseType(std::string const& dataType) {
    auto const known = baseTypes.find(dataType);
    if (known != baseTypes.end()) {
        return *known->second;
    }
    auto made = std::make_unique<QORBaseType>();
    made->setName(getDataTypeName(dataType.c_str()));
    made->setDataType(dataType.c_str());
    QORBaseType& type = adopt(*model, &QORModel::addType, std::move(made));
    baseTypes.emplace(dataType, &type);
    return type;
}

/// Hands a new object over to its owner. A refusal means that the owner has an object of that name, which
/// only a schema that was tampered with can lead to.
template <class Owner, class Declaring, class Far, class Child>
Child& SchemaImporter::adopt(Owner& owner, bool (Declaring::*add)(Far*), std::unique_ptr<Child> child) const {
    if (!(owner.*add)(child.get())) {
        throw kit::ToolError(database.path(),
                             std::string("is damaged: more than one ") + child->getName().chars);
    }
    return *child.release();
}

} // namespace sqlite
