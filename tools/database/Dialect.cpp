#include "database/Dialect.h"

#include "database/SqlTokens.h"
#include "kit/ToolError.h"

#include <algorithm>

namespace database {
namespace {

template <class Matches>
Dialect const* firstOf(std::vector<Dialect const*> const& all, Matches const& matches) {
    auto const found = std::find_if(all.begin(), all.end(), matches);
    return found == all.end() ? nullptr : *found;
}

} // namespace

Omissions Dialect::write(Structure const& structure, Dialect const* from, std::ostream& out) const {
    return from == this ? writeOwn(structure, out)
                        : translate(structure, from ? from->habits() : Habits(), out);
}

std::vector<std::string> Dialects::names() const {
    std::vector<std::string> names;
    for (Dialect const* const dialect : all) {
        names.emplace_back(dialect->name());
    }
    return names;
}

Dialect const& Dialects::named(std::string const& name) const {
    Dialect const* const dialect = firstOf(all, [&](Dialect const* each) { return each->name() == name; });
    if (!dialect) {
        throw kit::ToolError(name, "is an unknown dialect");
    }
    return *dialect;
}

Dialect const* Dialects::nearest(Origin const& origin) const {
    return firstOf(all,
                   [&](Dialect const* each) { return equalIgnoringCase(each->system(), origin.system); });
}

Omissions Dialects::write(Structure const& structure, Dialect const& dialect, std::ostream& out) const {
    Dialect const* const from =
        firstOf(all, [&](Dialect const* each) { return each->system() == structure.origin.system; });
    return dialect.write(structure, from, out);
}

} // namespace database
