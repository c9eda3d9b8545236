#pragma once

#include <string>
#include <string_view>

namespace postgres {

/// True for `postgresql://...` and `postgres://...`, whatever the case of these letters.
bool isPostgresUrl(std::string_view text);

/// What may be shown of the address of a database: the URL without its password and without every parameter
/// that isn't known to be harmless. An address that can be read in more than one way, or that isn't wholly a
/// URL of this kind, is hidden as "postgresql://***"; so is one of keywords (`host=... password=...`). Never
/// throws for what the address holds.
std::string withoutPassword(std::string_view url);

/// A text in which each PostgreSQL URL, up to the next blank, is shown as `withoutPassword` does.
std::string withoutPasswords(std::string_view text);

} // namespace postgres
