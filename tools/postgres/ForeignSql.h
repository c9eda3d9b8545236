#pragma once

#include "database/SqlTokens.h"
#include "postgres/ForeignTypes.h"

#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace postgres {

/// Why a piece of another system's SQL can't be translated to PostgreSQL's.
class Untranslatable : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// An expression in PostgreSQL's words.
struct Value {
    std::string text;
    Kind kind = Kind::OTHER;
    std::optional<std::string> literal; ///< what stands between the apostrophes of a text
    bool isNull = false;                ///< the literal NULL
    bool isImmutable = true;            ///< the same whenever it is computed
    bool hasAggregate = false;
    std::string ungrouped; ///< a column outside of aggregates by which nothing is grouped
    /// The same moment as a date, time or timestamp, where `text` is a text that stands for one.
    std::string moment;
    Kind momentKind = Kind::OTHER;
};

struct SourceColumn {
    std::string name; ///< in the other system
    std::string text; ///< as SQL names it, without its table
    std::string type;
    Kind kind = Kind::OTHER;
    bool isGenerated = false;
    bool isHidden = false; ///< one that a join has merged with a column of another source
};

/// A table, view or subquery of which columns can be named.
struct Source {
    std::string name; ///< in the other system
    std::string text; ///< as SQL names it; empty where columns stand alone
    std::vector<SourceColumn> columns;
    std::vector<int> primaryKey;
    int rowNumber = -1; ///< the column that numbers the rows
};

/// What a SELECT or an expression can name.
struct Scope {
    std::vector<Source> sources;
    std::map<std::string, std::vector<database::Token>> aliases; ///< of columns of the result, in lower case
    std::string text;                                            ///< the sources and how they are joined
    std::vector<std::string> grouped;                            ///< the expressions that rows are grouped by
    Scope* outer = nullptr;
    int depth = 0; ///< how deep expressions are nested where they are read
    bool takesAggregates = false;
    bool namesOuter = false; ///< whether something of an outer scope has been named
    std::map<std::string, Source> const* commonTables = nullptr;
};

/// A SELECT in PostgreSQL's words, and the columns that it yields.
struct Selection {
    std::string text;
    std::vector<SourceColumn> columns;
};

/// Finds a table or view by its name, ready to be named in SQL; throws Untranslatable if there is none.
using FindSource = std::function<Source(std::string const& name)>;

/// Translates SQL of SQLite's kind, token by token. Everything is written in parentheses and with names that
/// include their table. Throws Untranslatable for what isn't known to mean the same in PostgreSQL, or isn't
/// certain to be accepted.
class SqlTranslator {
public:
    using Tokens = std::vector<database::Token>;

    /// The scope is that of the expression, or that around the SELECT and then may be without a source.
    SqlTranslator(Tokens toTranslate, Scope& inScope, FindSource const& findTable)
        : tokens(std::move(toTranslate)), scope(inScope), find(findTable) {}

    /// All tokens as one expression.
    Value expression();
    /// All tokens as a SELECT whose columns get these names.
    Selection selection(std::vector<std::string> const& names);

private:
    /// Keeps expressions from being nested more deeply than the stack is.
    class Level {
    public:
        explicit Level(Scope& in);
        Level(Level const&) = delete;
        Level& operator=(Level const&) = delete;
        ~Level() { --scope.depth; }

    private:
        Scope& scope;
    };

    // ---- expressions, from what binds least to what binds most
    Value disjunction();
    Value conjunction();
    Value negation();
    Value comparison();
    Value order();
    Value bits();
    Value sum();
    Value product();
    Value concatenation();
    Value collated();
    Value sign();
    Value operand();

    Value furtherComparison(Value left, bool& goesOn);
    Value nullTest(Value const& left, bool isNot);
    Value identity(Value const& left);
    Value betweenTest(Value const& left, bool isNot);
    Value membership(Value const& left, bool isNot);
    Value patternTest(Value const& left, bool isNot);
    Value globTest(Value const& left, bool isNot);
    Value caseDistinction();
    Value cast();
    Value parenthesis();
    Value subquery(bool isExists);
    Value number();
    Value text();
    Value name();
    Value currentMoment(std::string const& word);
    Value function(std::string const& name);
    Value called(std::string const& lower, std::vector<Tokens> const& arguments, bool isDistinct,
                 bool isStar);
    Value aggregate(std::string const& lower, std::vector<Tokens> const& arguments, bool isDistinct,
                    bool isStar);
    Value aggregateOf(std::string const& lower, std::vector<Value>& values, bool isDistinct);
    Value scalar(std::string const& lower, std::vector<Value>& values);
    Value textFunction(std::string const& lower, std::vector<Value>& values);
    Value choice(std::string const& lower, std::vector<Value>& values);
    Value dateFunction(std::string const& lower, std::vector<Value>& values);
    Value withWindow(Value function, bool needsWindow);
    std::string window();
    std::string partition(Tokens const& members);
    Value part(Tokens const& someTokens);

    // ---- names
    Value column(std::string const& name, bool isQuoted);
    Value columnOf(std::string const& table, std::string const& name);
    Value columnValue(Source const& source, SourceColumn const& column, Scope& owner);
    std::optional<Value> columnIn(Scope& owner, std::string const& name);
    SourceColumn const* rowNumberOf(Source const& source, std::string const& name) const;
    bool isGroupedByKey(Source const& source, Scope const& owner) const;

    // ---- statements
    struct Item {
        Tokens tokens;
        std::string name;
        Value value;
        bool isKnown = false; ///< whether `value` is there, as for what `*` stands for
    };
    struct Core {
        std::vector<Item> items;
        bool isDistinct = false;
        std::string tail; ///< what stands after the items
    };
    void commonTables(std::map<std::string, Source>& known, std::string& text);
    std::vector<Tokens> cores(std::vector<std::string>& operators);
    Core core(Scope& within, Tokens const& some, Tokens const& order, bool isCompound);
    void coreValues(Scope& within, Core& result, Tokens const& having, Tokens const& order, bool isCompound);
    void from();
    void source(std::string const& joining, bool isNatural, bool mayMerge);
    Source parsedSource(std::string& text);
    std::string alias();
    std::string merged(std::vector<std::string> const& names, Source& right);
    std::vector<std::string> commonNames(Source const& right) const;
    std::vector<Item> items();
    void expandStar(std::string const& table, std::vector<Item>& into);
    std::string ordering(Tokens const& clause, std::vector<Item> const& items, bool isDistinct,
                         bool isCompound);
    std::string orderingMember(Tokens part, std::vector<Item> const& items, bool isDistinct, bool isCompound);
    std::string limit();
    std::string grouping(Tokens const& clause, std::vector<Item> const& items);
    static void unify(std::vector<Core>& cores);
    static void unifyColumn(std::vector<Core>& cores, std::size_t number);
    Selection written(std::vector<Core> const& cores, std::vector<std::string> const& operators,
                      std::vector<std::string> const& names) const;

    // ---- tokens
    bool atEnd() const { return position >= tokens.size(); }
    database::Token peek(std::size_t ahead = 0) const;
    bool at(std::string_view keyword, std::size_t ahead = 0) const { return peek(ahead).is(keyword); }
    bool atSymbol(char symbol, std::size_t ahead = 0) const { return peek(ahead).isSymbol(symbol); }
    bool take(std::string_view keyword);
    bool takeSymbol(char symbol);
    /// Takes a symbol of two characters, such as "<=".
    bool takePair(std::string_view pair);
    bool atPair(std::string_view pair) const;
    void require(bool holds, char const* what) const;
    /// The tokens inside of the parentheses that open here.
    Tokens inside();
    [[noreturn]] void fail(std::string const& reason) const { throw Untranslatable(reason); }

    Tokens tokens;
    std::size_t position = 0;
    Scope& scope;
    FindSource const& find;
};

/// The tokens between the commas that stand in no parentheses.
std::vector<SqlTranslator::Tokens> splitAtCommas(SqlTranslator::Tokens const& tokens);

// ---- conversions, which throw Untranslatable where PostgreSQL has none -------------------------------

/// As a condition.
Value asCondition(Value const& value);
/// As a number.
Value asNumber(Value const& value);
/// As a text.
Value asText(Value const& value);
/// Brings two values that are compared, or that stand for each other, to kinds that PostgreSQL compares.
void makeComparable(Value& left, Value& right);
/// As what a column of a type takes.
Value asColumn(Value const& value, std::string const& type);
/// One value made of others: immutable if they all are, and with their aggregates.
Value combined(std::string const& text, Kind kind, std::vector<Value> const& parts);

} // namespace postgres
