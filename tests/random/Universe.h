#pragma once

#include "Model.h"

#include <qor/QORAssociationType.h>
#include <qor/QORElementType.h>

#include <array>
#include <string>
#include <type_traits>
#include <vector>

namespace model {

enum class Kind {
    CREATE,
    LINK,
    UNLINK,
    REMOVE,
    REMOVE_AT,
    REMOVE_NAMED,
    REMOVE_ALL,
    SET_NAME,
    SET_UNIQUE_NAME,
    SET_VALUE,
    COPY,
    ASSIGN,
    COMPARE,
    ISOLATE,
    TAKE_APART,
    LEAVE_OWNER,
    DESTROY,
    TRANSCODE,
    WALK,
    DESTROY_BELOW,
    FIND,
    VIEW,
    COUNT
};

/// One operation. Objects are named by the step that made them; where they have gone or never came, the step
/// does nothing. So any steps can be left out.
struct Step {
    int number;
    Kind kind;
    Key object;
    Key other;
    int what;   ///< number of the class, end or attribute
    int detail; ///< position, cursor or variant
    int form;   ///< which of several equal forms is called
    std::array<char, 48> text;
};

char const* describe(Kind kind);
/// Whether the operation is one on a link end.
bool concernsEnd(Kind kind);
std::string describe(Step const& step);

/// The number of texts in a vocabulary's array, which a null pointer closes.
template <class Texts>
constexpr std::size_t placesIn = std::extent_v<Texts> - 1;

/// How often each thing was done, over many universes, in memory that processes share.
struct Coverage {
    std::array<long, static_cast<std::size_t>(Kind::COUNT)> steps;              ///< that did something
    std::array<long, placesIn<decltype(QorElementTypeStringArray)>> created;    ///< objects by class
    std::array<long, placesIn<decltype(QorAssociationTypeStringArray)>> linked; ///< links made by end
    /// Removals by end and form.
    std::array<std::array<long, 4>, placesIn<decltype(QorAssociationTypeStringArray)>> removed;
    std::array<long, static_cast<std::size_t>(Container::NAME_VECTOR) + 1> elements; ///< added, by container
    long largestTree;
    long largestVector;
    long foreseen;
    long unforeseen;
    long refused;
    long unforeseeable;
    long deaths;
    long selfLinks;
    long failedAllocations;
};

/// Faults put in on purpose, for the test of the test.
enum class Plant { NONE, WRONG_RULE, CRASH };

/// Objects of the library beside their model. Every operation is done on both and compared.
class Universe {
public:
    Universe(Coverage& whatIsDone, Plant plant, bool memoryEnds);
    Universe(Universe const&) = delete;
    Universe& operator=(Universe const&) = delete;

    /// Makes what is made once only, so that it doesn't count as what an operation allocates.
    static void prepare();
    /// Throws a Mismatch where the library does otherwise than the rules say.
    void perform(Step const& step);
    /// Compares everything.
    void checkAll();
    /// Deletes all objects, one after the other.
    void clear();

    World world;

private:
    void run(Step const& step, Object* object, Object* other);
    void create(Step const& step);
    void link(Step const& step, End const& end, Object& object, Object& other);
    void unlink(Step const& step, End const& end, Object& object, Object& other);
    void remove(Step const& step, End const& end, Object& object);
    void removeNamed(Step const& step, End const& end, Object& object);
    bool removeNamedOnce(End const& end, Object& object, QORString const& name, int* cursor);
    void setName(Step const& step, Object& object);
    void setUniqueName(Step const& step, Object& object);
    void setValue(Step const& step, Object& object);
    void copy(Step const& step, Object& object);
    void assign(Step const& step, Object& object, Object& other);
    void compare(Object& object, Object& other);
    void transcode(Step const& step, Object& object);
    void walk(Object& object);
    void find(Step const& step, End const& end, Object& object, Object* other);
    void view(End const& end, Object& object);

    /// Does an operation on the library's objects. Where memory is to end, does it with each allocation
    /// failing in turn until it succeeds; after each failure, everything must be as before.
    template <class Operation>
    auto onLibrary(Operation operation) -> decltype(operation());
    void checkUnchanged();

    void checkDeaths();
    void checkTouched();
    void check(Object const& object, bool values);
    void checkEnd(Object const& object, End const& end, Side const& side);
    void watchNew();
    bool soundForVerify() const;

    Coverage& coverage;
    Plant planted;
    bool memoryEnds;
    int stepsDone = 0;
    unsigned reading = 0; ///< changes how ends are read, so that cursors come to stand anywhere
};

} // namespace model
