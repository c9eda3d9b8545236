#include <qor/QORPool.h>

#include "QORPrefetch.h"

#include <atomic>
#include <cstdint>
#include <mutex>
#include <new>
#include <pthread.h>
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

void* QORPool::allocateApart(std::size_t size) {
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

/// The pages of one sort have blocks of one size; the second half of the sorts are those of `allocateApart`.
constexpr int sortCount = 2 * sizeCount;

int sizeIndex(std::size_t size) {
    if (size <= smallLimit)
        return size == 0 ? 0 : static_cast<int>((size - 1) / smallStep);
    return smallSizes + static_cast<int>((size - smallLimit - 1) / largeStep);
}

std::size_t blockSize(int sort) {
    int const index = sort % sizeCount;
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
    Page* next;      ///< among the pages of one sort that have room
    Page* previous;  ///< likewise
    int used;        ///< blocks given out
    int sort;        ///< -1: the page is unused
    unsigned block;  ///< size of each block, in bytes
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

/// Puts an entry behind the last one of a list, which is null if there is none.
template <class Entry>
void enlistBehind(Entry*& head, Entry* last, Entry& entry) {
    if (!last) {
        enlist(head, entry);
        return;
    }
    entry.previous = last;
    entry.next = nullptr;
    last->next = &entry;
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
    int touchedPages; ///< the system has provided their memory, or shall provide it as it is used
    Page pages[pagesPerChunk];
};

Chunk* chunkOf(void const* block) {
    return reinterpret_cast<Chunk*>(reinterpret_cast<std::uintptr_t>(block) & ~(chunkSize - 1));
}

Page& pageOf(Chunk& chunk, void const* block) {
    auto const offset = reinterpret_cast<std::uintptr_t>(block) & (chunkSize - 1);
    return chunk.pages[offset / pageSize];
}

/// Fresh memory, at `wish` if there is room; null if there is none at all.
char* map(std::uintptr_t wish, std::size_t size) {
    void* const area = mmap(reinterpret_cast<void*>(wish), size, PROT_READ | PROT_WRITE,
                            MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    return area == MAP_FAILED ? nullptr : static_cast<char*>(area);
}

bool isAligned(char const* area) {
    return (reinterpret_cast<std::uintptr_t>(area) & (chunkSize - 1)) == 0;
}

/// Where the next chunk goes if there is room: above the one before, so that later objects have higher
/// addresses and ends that are sorted by address grow at their end. 0, which leaves the choice to the system,
/// where addresses are short.
std::uintptr_t nextPlace() {
    static std::atomic<std::uintptr_t> chunks{0};
    if constexpr (sizeof(void*) < 8)
        return 0;
    // From far below the library on, as the system puts what it maps below that. What isn't free it passes
    // over.
    constexpr std::uint64_t room = std::uint64_t{1} << 38; // bytes, after which it begins anew
    std::uint64_t const bottom = (reinterpret_cast<std::uintptr_t>(&chunks) - room) & ~(chunkSize - 1);
    std::uint64_t const chunk = chunks.fetch_add(1, std::memory_order_relaxed);
    return static_cast<std::uintptr_t>(bottom + chunk * chunkSize % room);
}

/// A chunk of fresh memory at an address that is a multiple of its size; null if there is none.
char* mapChunk(bool huge) {
    char* chunk = map(nextPlace(), chunkSize);
    if (chunk && !isAligned(chunk)) {
        munmap(chunk, chunkSize);
        char* const area = map(0, chunkSize * 2);
        if (!area)
            return nullptr;
        auto const over = static_cast<std::size_t>(reinterpret_cast<std::uintptr_t>(area) & (chunkSize - 1));
        std::size_t const before = chunkSize - over;
        chunk = area + before;
        munmap(area, before);
        munmap(chunk + chunkSize, over); // refused, without harm, where nothing is over
    }
    if (chunk && huge)
        madvise(chunk, chunkSize, MADV_HUGEPAGE);
    return chunk;
}

/// Has the system provide memory at once, which takes it less time than one page after the other. Where it
/// refuses, each page comes when it is first used.
void touch(void* memory, std::size_t size) {
#ifdef MADV_POPULATE_WRITE // Linux 5.14
    madvise(memory, size, MADV_POPULATE_WRITE);
#else
    static_cast<void>(memory);
    static_cast<void>(size);
#endif
}

std::atomic<bool> hugePages{false};

/// What is larger comes from operator new: everything, while the pool is bypassed.
std::size_t largestPooled = largestBlock; // bytes

/// The memory of one thread at a time. A pool outlives its thread, since others may hold its blocks, and then
/// serves the next thread that comes.
struct Pool {
    Page* withRoom[sortCount] = {};
    Page* spare[sortCount] = {}; ///< the page of each sort that was empty last
    Chunk* chunksWithRoom = nullptr;
    int chunkCount = 0;
    std::atomic<FreeBlock*> returned{nullptr}; ///< blocks that other threads have given back
    Pool* nextIdle = nullptr;

    void* take(int sort) {
        for (;;) {
            Page* const page = withRoom[sort];
            if (!page) {
                if (!collectReturned() && !addPage(sort))
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
                page->fresh += page->block;
                ++page->used;
                prefetchNext(*page);
                return block;
            }
            unlist(withRoom[sort], *page);
            page->listed = false;
        }
    }

    /// Prefetches the block that will most likely be returned next and written from end to end.
    static void prefetchNext(Page const& page) {
        constexpr unsigned line = 64; // bytes; that of the usual caches
        if (page.block <= smallLimit || page.fresh == page.end)
            return;
        for (unsigned offset = 0; offset < page.block; offset += line)
            qorPrefetchForWriting(page.fresh + offset);
    }

    void giveBack(Chunk& chunk, void* block) {
        Page& page = pageOf(chunk, block);
        auto* const freed = static_cast<FreeBlock*>(block);
        freed->next = page.free;
        page.free = freed;
        if (!page.listed) {
            page.listed = true;
            enlist(withRoom[page.sort], page);
        }
        if (--page.used == 0)
            keepAsSpare(page);
    }

    /// Keeps one empty page a sort, so that taking and giving back one block doesn't map and unmap; drops the
    /// other.
    void keepAsSpare(Page& page) {
        Page* const other = spare[page.sort];
        spare[page.sort] = &page;
        if (other && other != &page && other->used == 0)
            dropPage(*chunkOf(other), *other);
    }

    [[gnu::noinline]] bool addPage(int sort) {
        if (!chunksWithRoom && !addChunk(nullptr, false))
            return false;
        Chunk& chunk = *chunksWithRoom;
        int index = 0;
        while (chunk.pages[index].sort >= 0)
            ++index;
        std::size_t const bytes = blockSize(sort);
        std::size_t const header = index == 0 ? (sizeof(Chunk) + largeStep - 1) / largeStep * largeStep : 0;
        Page& page = chunk.pages[index];
        char* const start = reinterpret_cast<char*>(&chunk) + pageSize * static_cast<std::size_t>(index);
        if (index == chunk.touchedPages) {
            constexpr int pages = 4; // more would drive what is in use out of the cache
            touch(start, pages * pageSize);
            chunk.touchedPages += pages;
        }
        page.fresh = start + header;
        page.end = page.fresh + (pageSize - header) / bytes * bytes;
        page.free = nullptr;
        page.used = 0;
        page.sort = sort;
        page.block = static_cast<unsigned>(bytes);
        page.listed = true;
        enlist(withRoom[sort], page);
        if (++chunk.usedPages == pagesPerChunk)
            unlist(chunksWithRoom, chunk);
        return true;
    }

    /// A chunk behind the last one with room; `forSoon` touches all of it at once. Null if there is no
    /// memory.
    Chunk* addChunk(Chunk* last, bool forSoon) {
        char* const memory = mapChunk(hugePages.load(std::memory_order_relaxed));
        if (!memory)
            return nullptr;
        if (forSoon)
            touch(memory, chunkSize);
        auto* const chunk = reinterpret_cast<Chunk*>(memory);
        chunk->owner = this;
        chunk->usedPages = 0;
        // A small graph leaves most of its only chunk untouched.
        chunk->touchedPages = forSoon || chunkCount == 0 ? pagesPerChunk : 0;
        for (Page& page : chunk->pages)
            page.sort = -1;
        enlistBehind(chunksWithRoom, last, *chunk);
        ++chunkCount;
        return chunk;
    }

    bool reserve(std::size_t bytes) {
        Chunk* last = nullptr;
        for (Chunk* chunk = chunksWithRoom; chunk; chunk = chunk->next) {
            touch(chunk, chunkSize); // what comes first will be used first
            chunk->touchedPages = pagesPerChunk;
            last = chunk;
        }
        for (std::size_t reserved = 0; reserved < bytes; reserved += chunkSize) {
            last = addChunk(last, true);
            if (!last)
                return false;
        }
        return true;
    }

    /// Makes an empty page free for any size. The spare page of its size stays, so the pool keeps a chunk.
    void dropPage(Chunk& chunk, Page& page) {
        unlist(withRoom[page.sort], page);
        page.listed = false;
        page.sort = -1;
        if (chunk.usedPages-- == pagesPerChunk)
            enlist(chunksWithRoom, chunk);
        if (chunk.usedPages > 0)
            return;
        unlist(chunksWithRoom, chunk);
        --chunkCount;
        munmap(&chunk, chunkSize);
    }

    [[gnu::noinline]] bool collectReturned() {
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

void makeIdle(Pool& pool) {
    std::lock_guard<std::mutex> const lock(idleMutex);
    pool.nextIdle = idlePools;
    idlePools = &pool;
}

/// Passes a thread's pool on when the thread ends. A thread-local object with a destructor would do the same,
/// but where memory ends the C library can't register one and ends the process.
class ThreadEnd {
public:
    ThreadEnd() { watching = pthread_key_create(&key, passOn) == 0; }
    ThreadEnd(ThreadEnd const&) = delete;
    ThreadEnd& operator=(ThreadEnd const&) = delete;
    ~ThreadEnd() {
        if (watching.exchange(false))
            pthread_key_delete(key);
    }

    /// False if there is no memory for it. Where the system has no key, and once the program ends, the pool
    /// stays with the thread for good.
    static bool watch(Pool& pool) { return !watching || pthread_setspecific(key, &pool) == 0; }

private:
    static void passOn(void* pool) {
        poolOfThread = nullptr;
        makeIdle(*static_cast<Pool*>(pool));
    }

    // Apart from the object, as threads may outlive it.
    static inline pthread_key_t key{};
    static inline std::atomic<bool> watching{false};
};

Pool* takeIdle() {
    std::lock_guard<std::mutex> const lock(idleMutex);
    Pool* const pool = idlePools;
    if (pool)
        idlePools = pool->nextIdle;
    return pool;
}

Pool& makePool() {
    void* const memory =
        mmap(nullptr, sizeof(Pool), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        throw std::bad_alloc();
    return *new (memory) Pool;
}

[[gnu::noinline]] Pool& leasePool() {
    static ThreadEnd const atThreadEnd;
    Pool* const idle = takeIdle();
    Pool& pool = idle ? *idle : makePool();
    if (!ThreadEnd::watch(pool)) {
        makeIdle(pool);
        throw std::bad_alloc();
    }
    poolOfThread = &pool;
    return pool;
}

/// Blocks of the sorts from `firstSort` on.
void* allocateFrom(int firstSort, std::size_t size) {
    if (size > largestPooled)
        return ::operator new(size);
    Pool& pool = poolOfThread ? *poolOfThread : leasePool();
    if (void* const block = pool.take(firstSort + sizeIndex(size)))
        return block;
    throw std::bad_alloc();
}

} // namespace

void* QORPool::allocate(std::size_t size) {
    return allocateFrom(0, size);
}

void* QORPool::allocateApart(std::size_t size) {
    return allocateFrom(sizeCount, size);
}

void QORPool::reserve(std::size_t bytes) {
    if (largestPooled == 0)
        return;
    Pool& pool = poolOfThread ? *poolOfThread : leasePool();
    if (!pool.reserve(bytes))
        throw std::bad_alloc();
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
