#include "LiveObjects.h"

#include <qor/QORPool.h>

#include <cstdlib>
#include <dlfcn.h>

namespace {

thread_local LiveObjects* watching = nullptr;

constexpr bool sizesAreLong = sizeof(void*) == 8;

template <class Function>
Function ofLibrary(char const* symbol) {
    void* const found = dlsym(RTLD_NEXT, symbol);
    if (!found)
        std::abort();
    return reinterpret_cast<Function>(found);
}

void* watched(void* block) {
    if (watching)
        watching->add(block);
    return block;
}

} // namespace

LiveObjects::LiveObjects() {
    watching = this;
}

LiveObjects::~LiveObjects() {
    watching = nullptr;
}

// These definitions stand before those of the library, and pass on to them.

void* QORPool::allocate(std::size_t size) {
    static auto const allocate =
        ofLibrary<void* (*)(std::size_t)>(sizesAreLong ? "_ZN7QORPool8allocateEm" : "_ZN7QORPool8allocateEj");
    return watched(allocate(size));
}

void* QORPool::allocateApart(std::size_t size) {
    static auto const allocate = ofLibrary<void* (*)(std::size_t)>(
        sizesAreLong ? "_ZN7QORPool13allocateApartEm" : "_ZN7QORPool13allocateApartEj");
    return watched(allocate(size));
}

void QORPool::release(void* block, std::size_t size) noexcept {
    static auto const release = ofLibrary<void (*)(void*, std::size_t)>(
        sizesAreLong ? "_ZN7QORPool7releaseEPvm" : "_ZN7QORPool7releaseEPvj");
    if (watching)
        watching->forget(block);
    release(block, size);
}
