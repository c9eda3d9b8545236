#include <qor/QORPool.h>

#include <atomic>
#include <cstdint>
#include <mutex>
#include <new>
#include <sys/mman.h>

#if defined(__SANITIZE_ADDRESS__)
#define QOR_POOL_BYPASSED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QOR_POOL_BYPASSED 1
#endif
#endif

#ifdef QOR_POOL_BYPASSED

void* QORPool::allocate(std::size_t size) {
    return ::operator new(size);
}

void QORPool::release(void* block, std::size_t) noexcept {
    ::operator delete(block);
}

void QORPool::reserve(std::size_t) {}

void QORPool::useHugePages(bool) noexcept {}

void QORPool::bypass(bool) noexcept {}

#else

namespace {

// A chunk is a stretch of address space that begins with a header and is cut into pages; the blocks of a page
// have one size. A block's chunk and page follow from its address.
constexpr std::size_t chunkSize = std::size_t{2} << 20; // bytes; that of a huge page on the usual machines
constexpr std::size_t pageSize = std::size_t{64} << 10; // bytes
constexpr int pagesPerChunk = static_cast<int>(chunkSize / pageSize);
constexpr std::size_t largestBlock = 4096; // bytes
constexpr std::size_t smallStep = 8;       // bytes between block sizes up to smallLimit
constexpr std::size_t smallLimit = 128;    // bytes
constexpr std::size_t largeStep = 64;      // bytes between block sizes above that
constexpr int smallSizes = static_cast<int>(smallLimit / smallStep);
constexpr int sizeCount = smallSizes + static_cast<int>((largestBlock - smallLimit) / largeStep);

int sizeIndex(std::size_t size) {
    if (size <= smallLimit)
        return size == 0 ? 0 : static_cast<int>((size - 1) / smallStep);
    return smallSizes + static_cast<int>((size - smallLimit - 1) / largeStep);
}

std::size_t blockSize(int index) {
    if (index < smallSizes)
        return static_cast<std::size_t>(index + 1) * smallStep;
    return smallLimit + static_cast<std::size_t>(index - smallSizes + 1) * largeStep;
}

struct FreeBlock {
    FreeBlock* next;
};

struct Pool;

struct Page {
    FreeBlock* free; ///< blocks given back
    char* fresh;     ///< where blocks that were never given out begin
    char* end;       ///< of the last whole block
    Page* next;      ///< among the pages of one size that have room
    Page* previous;  ///< likewise
    int used;        ///< blocks given out
    int size;        ///< index of the block size; -1: the page is unused
    bool listed;     ///< stands among the pages that have room
};

/// Puts an entry at the head of a list.
template <class Entry>
void enlist(Entry*& head, Entry& entry) {
    entry.previous = nullptr;
    entry.next = head;
    if (head)
        head->previous = &entry;
    head = &entry;
}

/// Takes an entry out of a list.
template <class Entry>
void unlist(Entry*& head, Entry& entry) {
    (entry.previous ? entry.previous->next : head) = entry.next;
    if (entry.next)
        entry.next->previous = entry.previous;
}

struct Chunk {
    Pool* owner;
    Chunk* next;
    Chunk* previous;
    int usedPages;
    Page pages[pagesPerChunk];
};

Chunk* chunkOf(void const* block) {
    return reinterpret_cast<Chunk*>(reinterpret_cast<std::uintptr_t>(block) & ~(chunkSize - 1));
}

Page& pageOf(Chunk& chunk, void const* block) {
    auto const offset = reinterpret_cast<std::uintptr_t>(block) & (chunkSize - 1);
    return chunk.pages[offset / pageSize];
}

/// A chunk of fresh memory at an address that is a multiple of its size; null if there is none. `touched` has
/// the system provide the memory at once, which takes it less time than one page after the other.
Chunk* mapChunk(bool huge, bool touched) {
    std::size_t const reserved = chunkSize * 2;
    void* const area =
        mmap(nullptr, reserved, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (area == MAP_FAILED)
        return nullptr;
    auto const start = reinterpret_cast<std::uintptr_t>(area);
    std::uintptr_t const aligned = (start + chunkSize - 1) & ~(chunkSize - 1);
    if (aligned != start)
        munmap(area, aligned - start);
    if (std::size_t const behind = start + reserved - (aligned + chunkSize))
        munmap(reinterpret_cast<void*>(aligned + chunkSize), behind);
    if (huge)
        madvise(reinterpret_cast<void*>(aligned), chunkSize, MADV_HUGEPAGE);
#ifdef MADV_POPULATE_WRITE // Linux 5.14; where it is refused, each page comes when it is first used
    if (touched)
        madvise(reinterpret_cast<void*>(aligned), chunkSize, MADV_POPULATE_WRITE);
#else
    static_cast<void>(touched);
#endif
    return reinterpret_cast<Chunk*>(aligned);
}

std::atomic<bool> hugePages{false};

/// What is larger comes from operator new: everything, while the pool is bypassed.
std::size_t largestPooled = largestBlock; // bytes

/// The memory of one thread at a time. A pool outlives its thread, since others may hold its blocks, and then
/// serves the next thread that comes.
struct Pool {
    Page* withRoom[sizeCount] = {};
    Page* spare[sizeCount] = {}; ///< the page of each size that was empty last
    Chunk* chunksWithRoom = nullptr;
    int chunkCount = 0;
    std::atomic<FreeBlock*> returned{nullptr}; ///< blocks that other threads have given back
    Pool* nextIdle = nullptr;

    void* take(int size) {
        for (;;) {
            Page* const page = withRoom[size];
            if (!page) {
                if (!collectReturned() && !addPage(size))
                    return nullptr;
                continue;
            }
            if (FreeBlock* const block = page->free) {
                page->free = block->next;
                ++page->used;
                return block;
            }
            if (page->fresh != page->end) {
                char* const block = page->fresh;
                page->fresh += blockSize(size);
                ++page->used;
                return block;
            }
            unlist(withRoom[size], *page);
            page->listed = false;
        }
    }

    void giveBack(Chunk& chunk, void* block) {
        Page& page = pageOf(chunk, block);
        auto* const freed = static_cast<FreeBlock*>(block);
        freed->next = page.free;
        page.free = freed;
        if (!page.listed) {
            page.listed = true;
            enlist(withRoom[page.size], page);
        }
        if (--page.used == 0)
            keepAsSpare(page);
    }

    /// Keeps one empty page a size, so that taking and giving back one block doesn't map and unmap; drops the
    /// other.
    void keepAsSpare(Page& page) {
        Page* const other = spare[page.size];
        spare[page.size] = &page;
        if (other && other != &page && other->used == 0)
            dropPage(*chunkOf(other), *other);
    }

    bool addPage(int size) {
        if (!chunksWithRoom && !addChunk())
            return false;
        Chunk& chunk = *chunksWithRoom;
        int index = 0;
        while (chunk.pages[index].size >= 0)
            ++index;
        std::size_t const bytes = blockSize(size);
        std::size_t const header = index == 0 ? (sizeof(Chunk) + largeStep - 1) / largeStep * largeStep : 0;
        Page& page = chunk.pages[index];
        page.fresh = reinterpret_cast<char*>(&chunk) + pageSize * static_cast<std::size_t>(index) + header;
        page.end = page.fresh + (pageSize - header) / bytes * bytes;
        page.free = nullptr;
        page.used = 0;
        page.size = size;
        page.listed = true;
        enlist(withRoom[size], page);
        if (++chunk.usedPages == pagesPerChunk)
            unlist(chunksWithRoom, chunk);
        return true;
    }

    bool addChunk() {
        bool const touched = chunkCount > 0; // a small graph leaves most of its chunk untouched
        Chunk* const chunk = mapChunk(hugePages.load(std::memory_order_relaxed), touched);
        if (!chunk)
            return false;
        chunk->owner = this;
        chunk->usedPages = 0;
        for (Page& page : chunk->pages)
            page.size = -1;
        enlist(chunksWithRoom, *chunk);
        ++chunkCount;
        return true;
    }

    void dropPage(Chunk& chunk, Page& page) {
        unlist(withRoom[page.size], page);
        page.listed = false;
        page.size = -1;
        if (chunk.usedPages-- == pagesPerChunk)
            enlist(chunksWithRoom, chunk);
        if (chunk.usedPages > 0 || chunkCount == 1)
            return;
        unlist(chunksWithRoom, chunk);
        --chunkCount;
        munmap(&chunk, chunkSize);
    }

    bool collectReturned() {
        FreeBlock* block = returned.exchange(nullptr, std::memory_order_acquire);
        if (!block)
            return false;
        while (block) {
            FreeBlock* const next = block->next;
            giveBack(*chunkOf(block), block);
            block = next;
        }
        return true;
    }

    void giveBackFromElsewhere(void* block) {
        auto* const freed = static_cast<FreeBlock*>(block);
        freed->next = returned.load(std::memory_order_relaxed);
        while (!returned.compare_exchange_weak(freed->next, freed, std::memory_order_release,
                                               std::memory_order_relaxed)) {
        }
    }
};

std::mutex idleMutex;
Pool* idlePools = nullptr;

/// The thread's pool; set back to null when the thread ends.
[[gnu::tls_model("initial-exec")]] thread_local Pool* poolOfThread = nullptr;

/// Passes the thread's pool on when the thread ends.
struct Lease {
    bool held = false;

    ~Lease() {
        if (!held || !poolOfThread)
            return;
        std::lock_guard<std::mutex> const lock(idleMutex);
        poolOfThread->nextIdle = idlePools;
        idlePools = poolOfThread;
        poolOfThread = nullptr;
    }
};

thread_local Lease lease;

Pool& leasePool() {
    {
        std::lock_guard<std::mutex> const lock(idleMutex);
        if (idlePools) {
            poolOfThread = idlePools;
            idlePools = idlePools->nextIdle;
        }
    }
    if (!poolOfThread) {
        void* const memory =
            mmap(nullptr, sizeof(Pool), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED)
            throw std::bad_alloc();
        poolOfThread = new (memory) Pool;
    }
    lease.held = true;
    return *poolOfThread;
}

} // namespace

void* QORPool::allocate(std::size_t size) {
    if (size > largestPooled)
        return ::operator new(size);
    Pool& pool = poolOfThread ? *poolOfThread : leasePool();
    if (void* const block = pool.take(sizeIndex(size)))
        return block;
    throw std::bad_alloc();
}

void QORPool::reserve(std::size_t bytes) {
    Pool& pool = poolOfThread ? *poolOfThread : leasePool();
    for (std::size_t reserved = 0; reserved < bytes; reserved += chunkSize) {
        if (!pool.addChunk())
            throw std::bad_alloc();
    }
}

void QORPool::useHugePages(bool use) noexcept {
    hugePages.store(use, std::memory_order_relaxed);
}

void QORPool::bypass(bool use) noexcept {
    largestPooled = use ? 0 : largestBlock;
}

void QORPool::release(void* block, std::size_t size) noexcept {
    if (!block)
        return;
    if (size > largestPooled) {
        ::operator delete(block);
        return;
    }
    Chunk& chunk = *chunkOf(block);
    if (chunk.owner == poolOfThread)
        poolOfThread->giveBack(chunk, block);
    else
        chunk.owner->giveBackFromElsewhere(block);
}

#endif
