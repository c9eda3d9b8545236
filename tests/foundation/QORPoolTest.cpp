#include <qor/QORPool.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <new>
#include <random>
#include <sys/mman.h>
#include <sys/resource.h>
#include <thread>
#include <vector>

namespace {

/// A block filled with a byte of its own, so that an overlap with another one shows.
struct Block {
    unsigned char* bytes;
    std::size_t size;
    unsigned char fill;

    Block(std::size_t count, unsigned char mark)
        : bytes(static_cast<unsigned char*>(QORPool::allocate(count))), size(count), fill(mark) {
        std::memset(bytes, fill, size);
    }

    bool intact() const {
        return std::all_of(bytes, bytes + size, [this](unsigned char byte) { return byte == fill; });
    }

    void release() { QORPool::release(bytes, size); }
};

} // namespace

TEST(QORPool, NullIsTakenBack) {
    QORPool::release(nullptr, 40);
}

TEST(QORPool, BlocksAreAlignedForAnyScalar) {
    for (std::size_t size = 1; size <= 5000; size += 7) {
        Block block(size, 1);
        std::size_t const alignment = size < sizeof(void*) ? 1 : sizeof(void*);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block.bytes) % alignment, 0U) << size;
        block.release();
    }
}

TEST(QORPool, BlocksNeverOverlapWhateverTheOrderOfTheirComingAndGoing) {
    std::mt19937 random(20260704);
    std::size_t const sizes[] = {0, 1, 8, 20, 24, 40, 41, 127, 128, 129, 700, 1536, 2024, 4096, 4097, 20000};
    std::vector<Block> blocks;
    for (int step = 0; step < 60000; ++step) {
        bool const grow = blocks.size() < 200 || (blocks.size() < 6000 && random() % 100 < 55);
        if (grow) {
            blocks.emplace_back(sizes[random() % std::size(sizes)], static_cast<unsigned char>(random()));
        } else {
            std::size_t const which = random() % blocks.size();
            ASSERT_TRUE(blocks[which].intact()) << "step " << step;
            blocks[which].release();
            blocks[which] = blocks.back();
            blocks.pop_back();
        }
    }
    for (Block& block : blocks) {
        EXPECT_TRUE(block.intact());
        block.release();
    }
}

TEST(QORPool, PagesThatEmptyAgainAndAgainServeWhicheverSizeComesNext) {
    std::mt19937 random(20260705);
    constexpr std::size_t sorts = 24; // of large blocks, so that few fill a page
    std::vector<Block> blocks[sorts];
    for (int step = 0; step < 40000; ++step) {
        std::size_t const sort = random() % sorts;
        std::size_t const size = 4096 - sort * 64;
        if (random() % 2 == 0) {
            for (std::size_t count = 1 + random() % 20; count > 0; --count)
                blocks[sort].emplace_back(size, static_cast<unsigned char>(random()));
            continue;
        }
        for (Block& block : blocks[sort]) {
            ASSERT_TRUE(block.intact()) << "step " << step;
            block.release();
        }
        blocks[sort].clear();
    }
    for (auto& ofSort : blocks)
        for (Block& block : ofSort)
            block.release();
}

TEST(QORPool, MemoryThatCameBackServesAgain) {
    std::vector<void*> first;
    for (int i = 0; i < 100000; ++i)
        first.push_back(QORPool::allocate(40));
    for (void* block : first)
        QORPool::release(block, 40);
    std::vector<void*> second;
    for (int i = 0; i < 100000; ++i)
        second.push_back(QORPool::allocate(40));
    std::sort(second.begin(), second.end());
    EXPECT_EQ(std::adjacent_find(second.begin(), second.end()), second.end())
        << "a block was given out twice";
    for (void* block : second)
        QORPool::release(block, 40);
}

TEST(QORPool, TakesNoMoreMemoryWhenTheSameBlocksComeAndGoAgain) {
    auto const mapped = [] {
        std::size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        return pages;
    };
    std::vector<void*> blocks(20000); // of 20 MB
    for (void*& block : blocks)
        block = QORPool::allocate(1000);
    std::size_t const before = mapped();
    for (int round = 0; round < 10; ++round) {
        for (std::size_t i = 0; i < blocks.size(); ++i)
            if (i % 10) // some stay on each page
                QORPool::release(blocks[i], 1000);
        for (std::size_t i = 0; i < blocks.size(); ++i)
            if (i % 10)
                blocks[i] = QORPool::allocate(1000);
    }
    EXPECT_LT(mapped(), before + 1000);
    for (void* const block : blocks)
        QORPool::release(block, 1000);
}

TEST(QORPool, BlocksApartAreGivenBackLikeTheOthers) {
    std::vector<void*> blocks;
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 5000; ++i) {
            blocks.push_back(QORPool::allocateApart(40));
            blocks.push_back(QORPool::allocate(40));
        }
        std::sort(blocks.begin(), blocks.end());
        EXPECT_EQ(std::adjacent_find(blocks.begin(), blocks.end()), blocks.end())
            << "a block was given out twice";
        for (void* const block : blocks) {
            std::memset(block, round, 40);
            QORPool::release(block, 40);
        }
        blocks.clear();
    }
}

#ifndef __SANITIZE_ADDRESS__ // which has the pool bypassed

TEST(QORPool, BlocksApartLieSideBySide) {
    constexpr std::size_t size = 3000; // one that nobody else has taken yet
    std::vector<char*> apart;
    std::vector<char*> others;
    for (int i = 0; i < 10; ++i) {
        apart.push_back(static_cast<char*>(QORPool::allocateApart(size)));
        others.push_back(static_cast<char*>(QORPool::allocate(size)));
    }
    EXPECT_LT(apart.back() - apart.front(), 11 * static_cast<long>(size));
    EXPECT_LT(others.back() - others.front(), 11 * static_cast<long>(size));
    for (char* const block : apart)
        QORPool::release(block, size);
    for (char* const block : others)
        QORPool::release(block, size);
}

#if __SIZEOF_POINTER__ == 8

TEST(QORPool, LaterBlocksOfASizeHaveHigherAddresses) {
    constexpr std::size_t size = 3500; // one that nobody else has taken yet
    std::thread([] {
        std::vector<void*> blocks;
        for (int i = 0; i < 10000; ++i)
            blocks.push_back(QORPool::allocate(size));
        std::ptrdiff_t down = 0;
        for (std::size_t i = 1; i < blocks.size(); ++i)
            down += std::less<>()(blocks[i], blocks[i - 1]);
        // What the thread's pool had at hand may lie higher.
        EXPECT_LE(down, 1);
        for (void* const block : blocks)
            QORPool::release(block, size);
    }).join();
}

TEST(QORPool, GoesElsewhereWhereTheNextPlaceIsTaken) {
    constexpr std::size_t size = 4000; // one that nobody else has taken yet
    constexpr std::size_t chunk = std::size_t{2} << 20;
    std::vector<Block> blocks;
    auto const chunkOf = [](Block const& block) {
        return reinterpret_cast<std::uintptr_t>(block.bytes) / chunk;
    };
    auto const take = [&] { blocks.emplace_back(size, static_cast<unsigned char>(blocks.size())); };
    take();
    do
        take();
    while (chunkOf(blocks.back()) == chunkOf(blocks[blocks.size() - 2]));
    std::uintptr_t const behind = (chunkOf(blocks.back()) + 1) * chunk;
    std::vector<void*> walls;
    for (std::size_t i = 0; i < 64; ++i) {
        void* const wall = mmap(reinterpret_cast<void*>(behind + i * chunk), chunk, PROT_NONE,
                                MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_FIXED_NOREPLACE, -1, 0);
        if (wall != MAP_FAILED)
            walls.push_back(wall);
    }
    ASSERT_FALSE(walls.empty());
    for (int i = 0; i < 5000; ++i) // ten chunks
        take();
    for (Block& block : blocks) {
        EXPECT_TRUE(block.intact());
        block.release();
    }
    for (void* const wall : walls)
        munmap(wall, chunk);
}

#endif

TEST(QORPool, ReservedMemoryIsAtHandWithoutPageFaults) {
    auto const faults = [] {
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_minflt;
    };
    constexpr std::size_t size = 1024;
    constexpr std::size_t count = 12 << 10;
    std::vector<Block> blocks;
    blocks.reserve(count);
    std::memset(static_cast<void*>(blocks.data()), 0,
                count * sizeof(Block)); // so that the vector causes none
    QORPool::reserve(count * size + (std::size_t{4} << 20));
    long const before = faults();
    for (std::size_t i = 0; i < count; ++i)
        blocks.emplace_back(size, static_cast<unsigned char>(i));
    EXPECT_LT(faults() - before, 100) << "of " << count * size / 4096 << " pages";
    for (Block& block : blocks) {
        EXPECT_TRUE(block.intact());
        block.release();
    }
}

TEST(QORPool, ReservesNothingWhileItIsBypassed) {
    auto const mapped = [] {
        std::size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        return pages;
    };
    std::size_t const before = mapped();
    QORPool::bypass(true);
    QORPool::reserve(std::size_t{64} << 20);
    QORPool::bypass(false);
    EXPECT_LT(mapped(), before + 1000);
}

TEST(QORPool, HugePagesServeLikeOthers) {
    QORPool::useHugePages(true);
    QORPool::reserve(std::size_t{8} << 20);
    QORPool::useHugePages(false);
    std::vector<Block> blocks;
    for (std::size_t i = 0; i < 2000; ++i)
        blocks.emplace_back(4096, static_cast<unsigned char>(i));
    for (Block& block : blocks) {
        EXPECT_TRUE(block.intact());
        block.release();
    }
}

TEST(QORPool, SaysWhenTheSystemGivesNoMoreAndServesAgainAfterwards) {
    constexpr std::size_t size = 4096;
    std::vector<void*> blocks;
    blocks.reserve(std::size_t{1} << 16);
    rlimit usual{};
    ASSERT_EQ(getrlimit(RLIMIT_AS, &usual), 0);
    rlimit const none{0, usual.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_AS, &none), 0);
    bool reserved = true;
    bool ended = false;
    try {
        QORPool::reserve(1);
    } catch (std::bad_alloc const&) {
        reserved = false;
    }
    try {
        while (blocks.size() < blocks.capacity())
            blocks.push_back(QORPool::allocate(size));
    } catch (std::bad_alloc const&) {
        ended = true;
    }
    ASSERT_EQ(setrlimit(RLIMIT_AS, &usual), 0);
    EXPECT_FALSE(reserved);
    EXPECT_TRUE(ended);
    Block block(size, 7);
    EXPECT_TRUE(block.intact());
    block.release();
    for (void* const each : blocks)
        QORPool::release(each, size);
}

#endif

TEST(QORPool, AnyThreadMayGiveBackWhatAnotherTook) {
    for (int round = 0; round < 20; ++round) {
        std::vector<Block> blocks;
        std::thread([&blocks] {
            for (int i = 0; i < 3000; ++i)
                blocks.emplace_back(static_cast<std::size_t>(8 + i % 500), static_cast<unsigned char>(i));
        }).join();
        std::thread other([&blocks] {
            for (std::size_t i = 0; i < blocks.size(); i += 2) {
                EXPECT_TRUE(blocks[i].intact());
                blocks[i].release();
            }
        });
        std::vector<Block> own;
        for (int i = 0; i < 1000; ++i)
            own.emplace_back(static_cast<std::size_t>(8 + i % 500), static_cast<unsigned char>(i + 1));
        other.join();
        for (std::size_t i = 1; i < blocks.size(); i += 2) {
            EXPECT_TRUE(blocks[i].intact());
            blocks[i].release();
        }
        for (Block& block : own) {
            EXPECT_TRUE(block.intact());
            block.release();
        }
    }
}
