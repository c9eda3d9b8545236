#pragma once

/// Prefetching: requests that the processor loads a cache line before the program needs it. It changes no
/// result, whatever the address. Defining QOR_NO_PREFETCH builds without it, for measurements and processors
/// that do worse with it.

inline void qorPrefetch([[maybe_unused]] void const* address) {
#ifndef QOR_NO_PREFETCH
    __builtin_prefetch(address);
#endif
}

/// The same for memory that is about to be written.
inline void qorPrefetchForWriting([[maybe_unused]] void const* address) {
#ifndef QOR_NO_PREFETCH
    __builtin_prefetch(address, 1);
#endif
}
