#pragma once

#include "kit/Graph.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kit {

/// What a source is recognised by.
struct SourceHint {
    std::string name;  ///< as the user wrote it: a path, an address, or "-"
    std::string start; ///< the first 64 KiB of an ordinary file, without blanks in front; else empty
};

SourceHint hintOf(std::string const& source);

/// What the reader of a source may call. A member more for all kinds changes none of those that don't use it.
struct Loading {
    std::function<void(std::string const& line)> remark; ///< takes a remark on an object of the source
    std::function<std::string(std::string_view text)> withoutSecrets;
};

/// A kind of source that a graph is read from.
struct SourceKind {
    char const* name;    ///< such as "graph in JSON"
    char const* knownBy; ///< what distinguishes it, for users
    bool (*recognises)(SourceHint const& hint);
    /// Throws ToolError.
    Graph (*load)(std::string const& source, Loading const& loading);
    /// The files that a source consists of or may consist of, whether they exist or not.
    std::vector<std::string> (*filesOf)(std::string const& source);
    /// An address of this kind without its secrets; null for a kind that is no address.
    std::string (*shown)(std::string const& address) = nullptr;
};

} // namespace kit
