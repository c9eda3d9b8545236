#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

namespace kit {

/// A new file beside another, whose place it takes when it is complete. It goes when the object does, and
/// when a signal ends the program; what a killed program left in the folder goes with the next draft there,
/// while a lock keeps the drafts of programs that run. Throws std::system_error.
class Draft {
public:
    /// Begins a draft of a file, which may exist; nothing but the folder is touched.
    explicit Draft(std::string const& target);
    Draft(Draft const&) = delete;
    Draft& operator=(Draft const&) = delete;
    ~Draft();

    /// Writes the whole content.
    void write(std::function<void(std::ostream&)> const& write);

    /// Gives the draft the target's place, and its rights if it replaces something. `mayReplace` looks at
    /// what is there now: it returns false for nothing, and throws for what must stay.
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
