#include "Deaths.h"

#include "Metamodel.h"

#include <qor/QORPool.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <malloc.h>
#include <new>

namespace {

/// Addresses of watched objects; nothing in here may allocate, as operator delete comes by.
class Table {
public:
    void insert(void* address) {
        std::size_t slot = slotOf(address);
        while (slots[slot] && slots[slot] != gone)
            slot = (slot + 1) % slots.size();
        slots[slot] = address;
    }

    bool erase(void const* address) {
        for (std::size_t slot = slotOf(address); slots[slot]; slot = (slot + 1) % slots.size())
            if (slots[slot] == address) {
                slots[slot] = gone;
                return true;
            }
        return false;
    }

private:
    static std::size_t slotOf(void const* address) {
        return (reinterpret_cast<std::uintptr_t>(address) >> 4) * 2654435761U % (1U << 16);
    }

    void* const gone = this;
    std::array<void*, 1U << 16> slots{};
};

Table table;
bool all = false;
std::array<QORObject*, 8192> dead;
std::size_t deadCount = 0;

void note(QORObject* object) {
    if (table.erase(object) && deadCount < dead.size())
        dead[deadCount++] = object;
}

long live = 0;
long left = -1; ///< allocations until one fails; -1: none does
bool failsForGood = false;

void* obtain(std::size_t size) noexcept {
    if (left == 0) {
        left = failsForGood ? 0 : -1;
        return nullptr;
    }
    if (left > 0)
        --left;
    void* const block = std::malloc(size ? size : 1);
    live += block != nullptr;
    return block;
}

void* obtainOrThrow(std::size_t size) {
    if (void* const block = obtain(size))
        return block;
    throw std::bad_alloc();
}

#if defined(__SANITIZE_ADDRESS__)
void bury(void* block) noexcept {
    std::free(block);
}
#else
std::array<void*, 16> kept{}; ///< blocks that aren't given out again at once
std::size_t nextKept = 0;

void bury(void* block) noexcept {
    std::memset(block, 0xD5, malloc_usable_size(block));
    std::free(kept[nextKept]);
    kept[nextKept] = block;
    nextKept = (nextKept + 1) % kept.size();
}
#endif

void giveBack(void* block) noexcept {
    live -= block != nullptr;
    if (!all || !table.erase(block)) {
        std::free(block);
        return;
    }
    if (deadCount < dead.size())
        dead[deadCount++] = static_cast<QORObject*>(block);
    bury(block);
}

} // namespace

namespace metamodel {

void (*whenWatchedDies)(QORObject* object) = [](QORObject* object) {
    if (!all)
        note(object);
};

void (*whenWatchedIsAsked)(QORObject const* object) = [](QORObject const*) {};

} // namespace metamodel

namespace deaths {

void watchAll(bool every) {
    QORPool::bypass(every);
    all = every;
}

bool allAreWatched() {
    return all;
}

void watch(QORObject* object) {
    table.insert(object);
}

std::vector<QORObject*> take() {
    std::vector<QORObject*> result(dead.begin(), dead.begin() + static_cast<std::ptrdiff_t>(deadCount));
    deadCount = 0;
    return result;
}

void failAfter(long spared, bool forGood) {
    left = spared;
    failsForGood = forGood;
}

void failNoMore() {
    left = -1;
}

long liveBlocks() {
    return live;
}

} // namespace deaths

void* operator new(std::size_t size) {
    return obtainOrThrow(size);
}
void* operator new[](std::size_t size) {
    return obtainOrThrow(size);
}
void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
    return obtain(size);
}
void* operator new[](std::size_t size, std::nothrow_t const&) noexcept {
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
void operator delete(void* block, std::nothrow_t const&) noexcept {
    giveBack(block);
}
void operator delete[](void* block, std::nothrow_t const&) noexcept {
    giveBack(block);
}
