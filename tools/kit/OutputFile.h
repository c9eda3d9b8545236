#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace kit {

/// What a program writes, and how a file that holds such is known.
struct FileKind {
    char const* name;                     ///< with its article, such as "a graph in JSON"
    bool (*recognises)(std::istream& in); ///< of a text without NUL that isn't empty
};

/// Where a result goes: a file, which is written whole or not at all, or what isn't an ordinary file, which
/// gets nothing before the whole result is ready. A link stays one, and a file that is replaced keeps its
/// rights. All members throw ToolError.
class Output {
public:
    /// An empty path, or "-", means the standard output, for which `standard` stands. Refuses what is one of
    /// the sources, by whatever path or descriptor it is reached, and a file with a content of another kind.
    /// Nothing is changed yet.
    Output(std::string path, FileKind const& kind, std::vector<std::string> sources, std::ostream& standard);

    /// Writes the result. What the constructor refuses is refused again if it has come up since.
    void write(std::function<void(std::ostream&)> const& write) const;

private:
    struct Place;

    Place findPlace() const;
    void refuseSources(Place const& place) const;
    bool mayReplace(std::string const& file) const;
    void writeFile(std::string const& target, std::function<void(std::ostream&)> const& write) const;
    void writeWhole(Place const& place, std::string const& text) const;
    [[noreturn]] void fail(int code) const;

    std::string path;
    FileKind kind;
    std::vector<std::string> sources;
    std::ostream& standard;
};

} // namespace kit
