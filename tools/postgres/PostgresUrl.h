#pragma once

#include <string>
#include <string_view>

namespace postgres {

/// True for `postgresql://...` and `postgres://...`, whatever the case of these letters.
bool isPostgresUrl(std::string_view text);

/// What may be shown of the address of a database: the URL without user and password and without every
/// parameter that isn't known to be harmless. An address that can be read in more than one way, or that isn't
/// wholly a URL of this kind, is hidden as "postgresql://***"; so is one of keywords (`host=...
/// password=...`). Never throws for what the address holds.
std::string withoutPassword(std::string_view url);

/// What `withoutPassword` returns for an address of which nothing may be shown.
constexpr std::string_view hiddenUrl = "postgresql://***";

} // namespace postgres
