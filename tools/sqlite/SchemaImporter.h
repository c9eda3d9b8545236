#pragma once

#include <map>
#include <memory>
#include <string>

class QORBaseType;
class QORClass;
class QORDatabaseSchema;
class QORDerivedType;
class QORDesignPackage;
class QORModel;

namespace sqlite {

class Database;

/// Reads the schema of a database into a model that the caller owns: where it comes from, the catalog with
/// the schema that lists the tables, a design package that owns a class for each table with an attribute for
/// each column, and the types of the columns, each declared type once. Throws kit::ToolError, and then gives
/// nothing, when the database turns out to be damaged.
std::unique_ptr<QORModel> importSchema(Database& database);

/// The steps of `importSchema`. Each reads one kind of thing for the whole database with one query, and finds
/// by name what the steps before it have made.
class SchemaImporter {
public:
    explicit SchemaImporter(Database& database);
    ~SchemaImporter();

    std::unique_ptr<QORModel> run();

private:
    void importOrigin();
    void importPackages();
    void importTables();
    void importColumns();

    QORClass& table(std::string const& name) const;
    QORDerivedType& declaredType(std::string const& declared);
    QORBaseType& baseType(std::string const& dataType);
    template <class Owner, class Declaring, class Far, class Child>
    Child& adopt(Owner& owner, bool (Declaring::*add)(Far*), std::unique_ptr<Child> child) const;

    Database& database;
    std::unique_ptr<QORModel> model;
    QORDatabaseSchema* schema = nullptr;
    QORDesignPackage* package = nullptr;
    std::map<std::string, QORClass*> tables;
    std::map<std::string, QORDerivedType*> declaredTypes;
    std::map<std::string, QORBaseType*> baseTypes;
};

} // namespace sqlite
