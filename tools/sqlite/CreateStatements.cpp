#include "sqlite/CreateStatements.h"

#include "database/Enumerations.h"
#include "database/SqlTokens.h"
#include "sqlite/Extras.h"

namespace sqlite {
namespace {

using database::Action;
using database::closingParenthesis;
using database::KeyKind;
using database::textBetween;
using database::Token;
using database::TokenKind;

/// Walks over the tokens of a statement. Behind the last one stands an empty symbol.
class Cursor {
public:
    explicit Cursor(std::string_view sql) : tokens(database::tokenize(sql)) {}
    Cursor(std::vector<Token> part) : tokens(std::move(part)) {}

    bool atEnd() const { return position >= tokens.size(); }
    Token peek(std::size_t ahead = 0) const {
        return position + ahead < tokens.size() ? tokens[position + ahead] : Token{TokenKind::SYMBOL, {}};
    }
    Token next() {
        Token const token = peek();
        ++position;
        return token;
    }
    /// Takes a keyword if it stands here.
    bool take(std::string_view keyword) {
        bool const stands = peek().is(keyword);
        position += stands;
        return stands;
    }
    bool takeSymbol(char symbol) {
        bool const stands = peek().isSymbol(symbol);
        position += stands;
        return stands;
    }
    bool take(std::string_view first, std::string_view second) {
        bool const stand = peek().is(first) && peek(1).is(second);
        position += stand ? 2 : 0;
        return stand;
    }
    /// Passes a token, or all that stands in parentheses.
    void skip() {
        if (peek().isSymbol('(')) {
            position = closingParenthesis(tokens, position);
        }
        ++position;
    }
    /// The tokens inside of the parentheses that open here.
    std::vector<Token> inside() {
        if (!peek().isSymbol('(')) {
            return {};
        }
        std::size_t const open = position;
        std::size_t const close = closingParenthesis(tokens, open);
        position = close + 1;
        return open + 1 < close ? std::vector<Token>(tokens.begin() + static_cast<std::ptrdiff_t>(open) + 1,
                                                     tokens.begin() + static_cast<std::ptrdiff_t>(close))
                                : std::vector<Token>();
    }
    /// The tokens from here to the end.
    std::vector<Token> rest() const {
        return atEnd()
                   ? std::vector<Token>()
                   : std::vector<Token>(tokens.begin() + static_cast<std::ptrdiff_t>(position), tokens.end());
    }

private:
    std::vector<Token> tokens;
    std::size_t position = 0;
};

std::string textOf(std::vector<Token> const& tokens) {
    return tokens.empty() ? "" : std::string(textBetween(tokens.front(), tokens.back()));
}

/// What stands between the commas that aren't in parentheses.
std::vector<std::vector<Token>> splitAtCommas(std::vector<Token> const& tokens) {
    std::vector<std::vector<Token>> parts;
    int depth = 0;
    for (Token const& token : tokens) {
        depth += token.isSymbol('(') - token.isSymbol(')');
        if (parts.empty()) {
            parts.emplace_back();
        }
        if (depth == 0 && token.isSymbol(',')) {
            parts.emplace_back();
        } else {
            parts.back().push_back(token);
        }
    }
    return parts;
}

bool isName(Token const& token) {
    return token.kind == TokenKind::WORD || token.kind == TokenKind::QUOTED_NAME ||
           (token.kind == TokenKind::STRING && token.text.front() == '\'');
}

/// Takes COLLATE from the end of a member, and its name unless another one stands further outside.
bool takeCollation(std::vector<Token>& tokens, std::string& collation) {
    if (tokens.size() < 3 || !tokens[tokens.size() - 2].is("COLLATE")) {
        return false;
    }
    collation = collation.empty() ? tokens.back().name() : collation;
    tokens.resize(tokens.size() - 2);
    return true;
}

bool takeParentheses(std::vector<Token>& tokens) {
    if (tokens.size() < 3 || !tokens[0].isSymbol('(') || closingParenthesis(tokens, 0) != tokens.size() - 1) {
        return false;
    }
    tokens = {tokens.begin() + 1, tokens.end() - 1};
    return true;
}

/// A member of an index: a column or an expression, with COLLATE and a direction behind.
MemberText readMember(std::vector<Token> tokens) {
    MemberText member;
    if (tokens.size() > 1 && (tokens.back().is("ASC") || tokens.back().is("DESC"))) {
        member.descending = tokens.back().is("DESC");
        tokens.pop_back();
    }
    takeCollation(tokens, member.collation);
    member.expression = textOf(tokens);
    // A column in parentheses is a column, also with a collation inside of these.
    std::string collation = member.collation;
    while (takeParentheses(tokens) || takeCollation(tokens, collation)) {
    }
    if (tokens.size() == 1 && isName(tokens[0])) {
        member.column = tokens[0].name();
        member.collation = collation;
    }
    return member;
}

/// Passes CREATE with what may stand between it and the name, and the name with its schema.
void skipHead(Cursor& cursor, std::string_view kind) {
    while (!cursor.atEnd() && !cursor.take(kind)) {
        cursor.skip();
    }
    if (cursor.take("IF", "NOT")) {
        cursor.take("EXISTS");
    }
    cursor.next();
    if (cursor.takeSymbol('.')) {
        cursor.next();
    }
}

class TableReader {
public:
    explicit TableReader(std::vector<Token> body) : cursor(std::move(body)) {}

    TableText run() {
        bool constraints = false;
        while (!cursor.atEnd()) {
            constraints = constraints || startsConstraint(cursor.peek());
            constraints ? readTableConstraint() : readColumn();
            cursor.takeSymbol(',');
        }
        return std::move(table);
    }

private:
    static bool startsConstraint(Token const& token) {
        return token.is("CONSTRAINT") || token.is("PRIMARY") || token.is("UNIQUE") || token.is("CHECK") ||
               token.is("FOREIGN");
    }

    void readColumn() {
        table.columns.emplace_back();
        table.columns.back().name = cursor.next().name();
        std::string constraintName;
        while (!cursor.atEnd() && !cursor.peek().isSymbol(',')) {
            if (cursor.take("CONSTRAINT")) {
                constraintName = cursor.next().name();
            } else if (readColumnConstraint(table.columns.back(), constraintName)) {
                constraintName.clear();
            } else {
                cursor.skip();
            }
        }
    }

    /// False if there is none, but a word of the type for example.
    bool readColumnConstraint(ColumnText& column, std::string const& name) {
        if (cursor.take("PRIMARY", "KEY")) {
            readPrimaryKeyOfColumn(column, name);
        } else if (cursor.take("UNIQUE")) {
            KeyText& key = addKey(KeyKind::UNIQUE, name);
            key.columns = {column.name};
            readConflict(key.extras);
        } else if (cursor.take("CHECK")) {
            readCheck(name);
        } else if (cursor.peek().is("REFERENCES")) {
            KeyText& key = addKey(KeyKind::FOREIGN, name);
            key.columns = {column.name};
            readReference(key);
        } else if (cursor.take("NOT", "NULL")) {
            readConflict(column.extras);
            addName(column.extras, extra::notNullConstraint, name);
        } else if (cursor.take("COLLATE")) {
            column.extras.push_back({extra::collation, cursor.next().name()});
        } else if (cursor.take("DEFAULT")) {
            skipDefault();
            addName(column.extras, extra::defaultConstraint, name);
        } else if (cursor.take("GENERATED", "ALWAYS") || cursor.peek().is("AS")) {
            readGenerated(column);
        } else if (cursor.take("NULL")) {
            readConflict(ignored);
        } else {
            return false;
        }
        return true;
    }

    static void addName(database::Extras& extras, char const* what, std::string const& name) {
        if (!name.empty()) {
            extras.push_back({what, name});
        }
    }

    KeyText& addKey(KeyKind kind, std::string const& name) {
        table.keys.emplace_back();
        table.keys.back().kind = kind;
        table.keys.back().name = name;
        return table.keys.back();
    }

    void readPrimaryKeyOfColumn(ColumnText const& column, std::string const& name) {
        KeyText& key = addKey(KeyKind::PRIMARY, name);
        key.columns = {column.name};
        cursor.take("ASC");
        if (cursor.take("DESC")) {
            key.extras.push_back({extra::order, "DESC"});
        }
        readConflict(key.extras);
        if (cursor.take("AUTOINCREMENT")) {
            key.extras.push_back({extra::autoincrement, "true"});
        }
    }

    /// ABORT is what happens without the clause.
    void readConflict(database::Extras& extras) {
        if (cursor.take("ON", "CONFLICT")) {
            std::string const action = database::upperCase(cursor.next().text);
            if (action != "ABORT") {
                extras.push_back({extra::conflict, action});
            }
        }
    }

    void readCheck(std::string const& name) {
        table.checks.push_back({name, textOf(cursor.inside())});
        readConflict(ignored);
    }

    /// A number, with a sign or without, a text, a keyword, or an expression in parentheses.
    void skipDefault() {
        if (!cursor.takeSymbol('+')) {
            cursor.takeSymbol('-');
        }
        cursor.skip();
    }

    void readGenerated(ColumnText& column) {
        cursor.take("AS");
        column.generated = textOf(cursor.inside());
        bool const stored = cursor.take("STORED");
        cursor.take("VIRTUAL");
        column.extras.push_back({extra::generated, stored ? "STORED" : "VIRTUAL"});
    }

    void readTableConstraint() {
        std::string name;
        while (cursor.take("CONSTRAINT")) {
            name = cursor.next().name();
        }
        if (cursor.take("PRIMARY", "KEY")) {
            readKeyOfTable(KeyKind::PRIMARY, name);
        } else if (cursor.take("UNIQUE")) {
            readKeyOfTable(KeyKind::UNIQUE, name);
        } else if (cursor.take("CHECK")) {
            readCheck(name);
        } else if (cursor.take("FOREIGN", "KEY")) {
            KeyText& key = addKey(KeyKind::FOREIGN, name);
            key.columns = readNames();
            readReference(key);
        } else if (!cursor.peek().isSymbol(',')) {
            cursor.skip();
        }
    }

    void readKeyOfTable(KeyKind kind, std::string const& name) {
        KeyText& key = addKey(kind, name);
        std::vector<Token> members = cursor.inside();
        if (!members.empty() && members.back().is("AUTOINCREMENT")) {
            members.pop_back();
            key.extras.push_back({extra::autoincrement, "true"});
        }
        bool plain = true;
        for (std::vector<Token> const& part : splitAtCommas(members)) {
            MemberText const member = readMember(part);
            key.columns.push_back(member.column);
            plain = plain && !member.descending && member.collation.empty();
        }
        if (!plain) {
            key.extras.push_back({extra::columns, textOf(members)});
        }
        readConflict(key.extras);
    }

    std::vector<std::string> readNames() {
        std::vector<std::string> names;
        for (std::vector<Token> const& part : splitAtCommas(cursor.inside())) {
            names.push_back(part.empty() ? "" : part.front().name());
        }
        return names;
    }

    void readReference(KeyText& key) {
        if (!cursor.take("REFERENCES")) {
            return;
        }
        key.referredTable = cursor.next().name();
        key.referredColumns = readNames();
        while (readReferenceOption(key)) {
        }
    }

    bool readReferenceOption(KeyText& key) {
        if (cursor.take("ON", "DELETE")) {
            key.onDelete = readAction();
        } else if (cursor.take("ON", "UPDATE")) {
            key.onUpdate = readAction();
        } else if (cursor.take("ON", "INSERT")) {
            readAction();
        } else if (cursor.take("MATCH")) {
            std::string const match = database::upperCase(cursor.next().name());
            if (match != "SIMPLE") {
                key.extras.push_back({extra::match, match});
            }
        } else if (cursor.take("NOT", "DEFERRABLE")) {
            readDeferral();
        } else if (cursor.take("DEFERRABLE")) {
            key.extras.push_back({extra::deferrable, readDeferral()});
        } else {
            return false;
        }
        return true;
    }

    std::string readDeferral() {
        bool const deferred = cursor.take("INITIALLY", "DEFERRED");
        cursor.take("INITIALLY", "IMMEDIATE");
        return deferred ? "INITIALLY DEFERRED" : "INITIALLY IMMEDIATE";
    }

    Action readAction() {
        for (Action const action :
             {Action::SET_NULL, Action::SET_DEFAULT, Action::CASCADE, Action::RESTRICT, Action::NO_ACTION}) {
            if (takeWords(database::textOf(action))) {
                return action;
            }
        }
        return Action::NO_ACTION;
    }

    /// Takes one or two keywords if they stand here.
    bool takeWords(std::string_view text) {
        std::size_t const blank = text.find(' ');
        return blank == std::string_view::npos ? cursor.take(text)
                                               : cursor.take(text.substr(0, blank), text.substr(blank + 1));
    }

    Cursor cursor;
    TableText table;
    database::Extras ignored;
};

} // namespace

TableText readCreateTable(std::string_view statement) {
    Cursor cursor(statement);
    skipHead(cursor, "TABLE");
    return TableReader(cursor.inside()).run();
}

IndexText readCreateIndex(std::string_view statement) {
    Cursor cursor(statement);
    skipHead(cursor, "INDEX");
    while (!cursor.atEnd() && !cursor.peek().isSymbol('(')) {
        cursor.next(); // ON and the table
    }
    IndexText index;
    index.all = textOf(cursor.rest());
    for (std::vector<Token> const& part : splitAtCommas(cursor.inside())) {
        index.members.push_back(readMember(part));
    }
    if (cursor.take("WHERE")) {
        index.where = textOf(cursor.rest());
    }
    return index;
}

ViewText readCreateView(std::string_view statement) {
    Cursor cursor(statement);
    skipHead(cursor, "VIEW");
    ViewText view;
    view.named = cursor.peek().isSymbol('(');
    while (!cursor.atEnd() && !cursor.take("AS")) {
        cursor.skip();
    }
    view.select = textOf(cursor.rest());
    return view;
}

TriggerText readCreateTrigger(std::string_view statement) {
    Cursor cursor(statement);
    skipHead(cursor, "TRIGGER");
    TriggerText trigger;
    if (cursor.take("AFTER")) {
        trigger.time = database::TriggerTime::AFTER;
    } else if (cursor.take("INSTEAD", "OF")) {
        trigger.time = database::TriggerTime::INSTEAD_OF;
    } else {
        cursor.take("BEFORE");
    }
    trigger.onInsert = cursor.take("INSERT");
    trigger.onDelete = cursor.take("DELETE");
    trigger.onUpdate = cursor.take("UPDATE");
    if (cursor.take("OF")) {
        while (!cursor.atEnd() && !cursor.peek().is("ON")) {
            trigger.columns.push_back(cursor.next().name());
            cursor.takeSymbol(',');
        }
    }
    trigger.body = textOf(cursor.rest());
    return trigger;
}

} // namespace sqlite
