#include "AllocationControl.h"

#include <qor/QORPool.h>

#include <cstdlib>

namespace {

/// QOR_TEST_WITHOUT_POOL makes each object and tree node a block of operator new, so that each can fail.
bool const withoutPool = [] {
    bool const wanted = std::getenv("QOR_TEST_WITHOUT_POOL") != nullptr;
    QORPool::bypass(wanted);
    return wanted;
}();

long live = 0;
long made = 0;
long left = -1;

void* obtain(std::size_t size) {
    if (left == 0) {
        left = -1;
        throw std::bad_alloc();
    }
    if (left > 0) {
        --left;
    }
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    ++live;
    ++made;
    return block;
}

void giveBack(void* block) noexcept {
    if (block != nullptr) {
        --live;
        std::free(block);
    }
}

} // namespace

long liveAllocations() {
    return live;
}

long madeAllocations() {
    return made;
}

bool poolIsBypassed() {
    return withoutPool;
}

FailingAllocation::FailingAllocation(long spared) {
    left = spared;
}

FailingAllocation::~FailingAllocation() {
    left = -1;
}

void* operator new(std::size_t size) {
    return obtain(size);
}
void* operator new[](std::size_t size) {
    return obtain(size);
}
void operator delete(void* block) noexcept {
    giveBack(block);
}
void operator delete[](void* block) noexcept {
    giveBack(block);
}
void operator delete(void* block, std::size_t) noexcept {
    giveBack(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    giveBack(block);
}

void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
    try {
        return obtain(size);
    } catch (std::bad_alloc const&) {
        return nullptr;
    }
}
void* operator new[](std::size_t size, std::nothrow_t const&) noexcept {
    return operator new(size, std::nothrow);
}
void operator delete(void* block, std::nothrow_t const&) noexcept {
    giveBack(block);
}
void operator delete[](void* block, std::nothrow_t const&) noexcept {
    giveBack(block);
}
