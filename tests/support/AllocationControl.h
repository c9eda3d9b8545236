#pragma once

#include <new>

/// Number of blocks that operator new has given and operator delete hasn't taken back.
long liveAllocations();

/// Number of blocks that operator new has given so far.
long madeAllocations();

/// Whether this program was told to do without the pool, in builds where that isn't so anyway.
bool poolIsBypassed();

/// While it lives, the allocation after `spared` further ones fails once.
class FailingAllocation {
public:
    explicit FailingAllocation(long spared);
    FailingAllocation(FailingAllocation const&) = delete;
    FailingAllocation& operator=(FailingAllocation const&) = delete;
    ~FailingAllocation();
};

/// Runs the operation with its first allocation failing, then the second and so on, until it succeeds;
/// `verify` runs after each failure. Gives the number of failures.
template <class Operation, class Verify>
int failEachAllocation(Operation operation, Verify verify) {
    for (int spared = 0;; ++spared) {
        try {
            FailingAllocation const failing(spared);
            operation();
            return spared;
        } catch (std::bad_alloc const&) {
        }
        verify();
    }
}
