#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace kit {

/// A kind of output, and how a file of this kind is recognised.
struct FileKind {
    char const* name;                     ///< with its article, such as "a graph in JSON"
    bool (*recognises)(std::istream& in); ///< of a text without NUL that isn't empty
};

/// The destination of a result: a file, which is written whole or not at all, or something other than an
/// ordinary file, to which nothing is written before the whole result is ready. A link remains a link, and a
/// file that is replaced keeps its permissions. All members throw ToolError.
class Output {
public:
    /// An empty path, or "-", means the standard output, which is `standard`. Refuses an output that is one
    /// of the sources, by whatever path or descriptor it is reached, and a file with a content of another
    /// kind. Changes nothing yet.
    Output(std::string path, FileKind const& kind, std::vector<std::string> sources, std::ostream& standard);

    /// Writes the result. Refuses whatever the constructor refuses if it has arisen since.
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
