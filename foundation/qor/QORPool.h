#pragma once

#include <qor/QORExport.h>

#include <cstddef>

/// Memory for the many small blocks of an object graph: objects and tree nodes. Blocks of one size lie side
/// by side, so that a walk touches few pages.
///
/// Each thread takes from a pool of its own; a block may be given back by any thread. Under AddressSanitizer
/// every block is one of `operator new`, so that its checks hold.
class QOR_API QORPool {
public:
    /// Returns a block of `size` bytes, aligned for any scalar type. Throws std::bad_alloc.
    static void* allocate(std::size_t size);
    /// Returns a block like `allocate`, from pages of its own: for blocks that are used together with each
    /// other rather than with the others of their size. Throws std::bad_alloc.
    static void* allocateApart(std::size_t size);
    /// Takes back a block that `allocate` or `allocateApart` returned for the same size; null is allowed.
    static void release(void* block, std::size_t size) noexcept;
    /// Takes memory for so many bytes of blocks from the system ahead of their use, for the calling thread: a
    /// large graph is then built without waiting for it. Throws std::bad_alloc; what came by then stays. Does
    /// nothing while the pool is bypassed.
    static void reserve(std::size_t bytes);
    /// Whether huge pages are asked of the system for memory that is taken from now on; at first they aren't.
    /// Large graphs are then walked faster, and their building takes less or more time, as the system has
    /// such pages at hand.
    static void useHugePages(bool use) noexcept;
    /// Whether each block is one of `operator new`, for tests that let memory end at every block or watch
    /// single ones. To be called only while no block is given out and no other thread uses the library. At
    /// first the pool isn't bypassed.
    static void bypass(bool use) noexcept;
};
