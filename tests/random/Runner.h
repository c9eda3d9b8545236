#pragma once

#include "Universe.h"

#include <string>
#include <vector>

namespace model {

/// What came of a run.
struct Finding {
    bool failed = false;
    std::string message;
    std::vector<Step> steps; ///< that were done, the failing one last
    bool withoutPool = true;
};

/// Runs universes in processes of their own, so that also a crash or an endless loop can be told and made
/// again from the same beginning.
class Runner {
public:
    Runner(Plant plant, bool memoryEnds);
    Runner(Runner const&) = delete;
    Runner& operator=(Runner const&) = delete;
    ~Runner();

    /// Chooses and does so many steps from a seed.
    Finding explore(unsigned long seed, int steps);
    /// Does the steps in a new universe.
    Finding replay(std::vector<Step> const& steps, bool withoutPool);
    /// The shortest sequence found that fails too: steps are left out for as long as one can be.
    Finding shrink(Finding finding);

    Coverage const& coverage() const;

private:
    struct Shared;

    template <class Body>
    Finding inChild(Body body);

    Shared* shared;
    Plant planted;
    bool memoryEnds;
};

std::string report(Finding const& finding);

} // namespace model
