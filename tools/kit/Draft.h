#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

namespace kit {

/// A new file beside another, which it replaces when it is complete. It is removed with the object, and when
/// a signal ends the program. The next draft in the same folder removes drafts of killed programs; a lock
/// protects the drafts of running programs. Throws std::system_error.
class Draft {
public:
    /// Begins a draft of a file, which may exist; nothing but the folder is touched.
    explicit Draft(std::string const& target);
    Draft(Draft const&) = delete;
    Draft& operator=(Draft const&) = delete;
    ~Draft();

    /// Writes the whole content.
    void write(std::function<void(std::ostream&)> const& write);

    /// Renames the draft to the target, with the target's permissions if it replaces something. `mayReplace`
    /// checks the current file: it returns false for none, and throws for one that must stay.
    void place(std::function<bool()> const& mayReplace);

private:
    class Catching;

    bool tryToPlace(bool replacing);

    std::string path;
    std::string name;
    int file = -1; ///< holds the lock
    bool placed = false;
    std::unique_ptr<Catching> catching;
};

} // namespace kit
