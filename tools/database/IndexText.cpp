#include "database/IndexText.h"

#include <nlohmann/json.hpp>

namespace database {
namespace {

using Json = nlohmann::ordered_json;

Json jsonOf(Extras const& extras) {
    Json result = Json::array();
    for (Extra const& extra : extras) {
        result.push_back({extra.name, extra.value});
    }
    return result;
}

Extras extrasOf(Json const& json) {
    Extras extras;
    for (Json const& pair : json) {
        extras.push_back({pair.at(0).get<std::string>(), pair.at(1).get<std::string>()});
    }
    return extras;
}

int columnOf(Table const& table, std::string const& name) {
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        if (table.columns[i].name == name) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

Json jsonOf(IndexMember const& member, Table const& table) {
    Json json;
    if (member.column >= 0) {
        json["column"] = table.columns.at(static_cast<std::size_t>(member.column)).name;
    } else {
        json["expression"] = member.expression;
    }
    json["descending"] = member.descending;
    json["extras"] = jsonOf(member.extras);
    return json;
}

IndexMember memberOf(Json const& json, Table const& table) {
    IndexMember member;
    if (json.contains("column")) {
        member.column = columnOf(table, json.at("column").get<std::string>());
    } else {
        member.expression = json.at("expression").get<std::string>();
    }
    member.descending = json.at("descending").get<bool>();
    member.extras = extrasOf(json.at("extras"));
    return member;
}

bool isWhole(IndexMember const& member) {
    return member.column >= 0 || !member.expression.empty();
}

} // namespace

std::string writeIndexText(Index const& index, Table const& table) {
    Json json = {{"name", index.name},
                 {"comment", index.comment},
                 {"unique", index.unique},
                 {"clustered", index.clustered},
                 {"extras", jsonOf(index.extras)}};
    json["members"] = Json::array();
    for (IndexMember const& member : index.members) {
        json["members"].push_back(jsonOf(member, table));
    }
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::optional<Index> readIndexText(std::string const& text, Table const& table) {
    try {
        Json const json = Json::parse(text);
        Index index;
        index.name = json.at("name").get<std::string>();
        index.comment = json.at("comment").get<std::string>();
        index.unique = json.at("unique").get<bool>();
        index.clustered = json.at("clustered").get<bool>();
        index.extras = extrasOf(json.at("extras"));
        for (Json const& member : json.at("members")) {
            index.members.push_back(memberOf(member, table));
            if (!isWhole(index.members.back())) {
                return std::nullopt;
            }
        }
        return index;
    } catch (Json::exception const&) {
        return std::nullopt;
    }
}

} // namespace database
