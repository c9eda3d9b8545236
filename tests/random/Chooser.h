#pragma once

#include "Universe.h"

#include <random>
#include <vector>

namespace model {

/// Chooses steps at random, all from a seed: first a few classes that are linked with each other, so that
/// their objects meet, then operations on what there is.
class Chooser {
public:
    Chooser(unsigned long seed, bool withLongTexts);

    Step next(World const& world);

    bool bypassesPool() const { return withoutPool; }

private:
    int below(int limit);
    bool oneIn(int chances) { return below(chances) == 0; }
    template <class List>
    auto const& oneOf(List const& list) {
        return list[static_cast<std::size_t>(below(static_cast<int>(list.size())))];
    }
    void chooseClasses(unsigned long seed);
    void chooseChildren();
    void addClass(int classId);
    int concreteClass(int classId);
    bool isSpared(Kind kind);
    Kind chooseKind(int objects);
    void chooseEnd(Step& step, Object const& object, World const& world, std::vector<Object*> const& objects);
    void chooseValue(Step& step, Object const& object);
    void setText(Step& step, std::string const& text);
    std::string nameText();

    std::mt19937 random;
    std::vector<int> chosen;       ///< classes
    std::vector<End const*> focus; ///< ends that most links are made over, if any
    int elementClass;              ///< in a large universe, most objects are of this class
    int fewest;
    int most;
    int names;
    bool large;
    bool calm;
    bool longTexts;
    bool withoutPool;
    bool watched;
    int number = 0;
};

} // namespace model
