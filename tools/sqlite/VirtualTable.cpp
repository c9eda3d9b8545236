#include "sqlite/VirtualTable.h"

#include "database/SqlTokens.h"

namespace sqlite {

std::string moduleOf(std::string_view createStatement) {
    auto const tokens = database::tokenize(createStatement);
    // CREATE VIRTUAL TABLE, the table's name, USING, the module
    constexpr std::size_t name = 3;
    constexpr std::size_t module = name + 2;
    bool const isVirtual = tokens.size() > module && tokens[0].is("CREATE") && tokens[1].is("VIRTUAL") &&
                           tokens[2].is("TABLE") && tokens[name + 1].is("USING");
    return isVirtual ? tokens[module].name() : "";
}

} // namespace sqlite
