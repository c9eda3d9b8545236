#include "SystemCalls.h"

#include <qor/QORAttribute.h>
#include <qor/QORClass.h>
#include <qor/QORPool.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <thread>
#include <vector>

namespace {

/// Blocks of several sizes, each filled with a byte of its own.
class Blocks {
public:
    ~Blocks() {
        for (Block const& block : blocks)
            QORPool::release(block.bytes, block.size);
    }

    void take(int count) {
        blocks.reserve(blocks.size() + static_cast<std::size_t>(count)); // not within the calls that fail
        for (int i = 0; i < count; ++i)
            takeOne(i);
    }

    bool areIntact() const {
        return std::all_of(blocks.begin(), blocks.end(), [](Block const& block) {
            return std::all_of(block.bytes, block.bytes + block.size,
                               [&](unsigned char byte) { return byte == block.fill; });
        });
    }

private:
    struct Block {
        unsigned char* bytes;
        std::size_t size;
        unsigned char fill;
    };

    void takeOne(int i) {
        constexpr std::size_t sizes[] = {24, 40, 144, 1472, 4096};
        std::size_t const size = sizes[static_cast<std::size_t>(i) % std::size(sizes)];
        void* const block = i % 2 ? QORPool::allocate(size) : QORPool::allocateApart(size);
        blocks.push_back({static_cast<unsigned char*>(block), size, static_cast<unsigned char>(i)});
        std::memset(block, static_cast<unsigned char>(i), size);
    }

    std::vector<Block> blocks;
};

constexpr int enough = 8000; // blocks, some chunks' worth

/// Takes blocks on a new thread of a new process while a call fails, then again when none does. Returns
/// "whole" or "ended", whether memory ended; "intact" if all blocks stayed apart; "hit" if a call failed.
std::string takeFailing(SystemCall call, long spared, bool lasting) {
    return inChild([&] {
        std::string outcome;
        std::thread([&] {
            Blocks blocks;
            bool hit;
            outcome = "whole";
            {
                FailingCalls const failing(call, spared, lasting);
                try {
                    QORPool::reserve(std::size_t{3} << 20);
                    blocks.take(enough);
                } catch (std::bad_alloc const&) {
                    outcome = "ended";
                }
                hit = failing.hit();
            }
            blocks.take(enough);
            outcome += blocks.areIntact() ? " intact" : " mixed up";
            outcome += hit ? " hit" : "";
        }).join();
        return outcome;
    });
}

/// Each call in turn, until none is left to fail; the outcomes of those that did.
std::vector<std::string> takeFailingEach(SystemCall call, bool lasting) {
    std::vector<std::string> outcomes;
    for (long spared = 0; spared < 1000; ++spared) {
        outcomes.push_back(takeFailing(call, spared, lasting));
        if (outcomes.back() == "whole intact") {
            outcomes.pop_back();
            break;
        }
    }
    return outcomes;
}

} // namespace

TEST(PoolShortage, MemoryEndsAtAnyMappingAndServesAgainAfterwards) {
    for (bool const lasting : {false, true}) {
        auto const outcomes = takeFailingEach(SystemCall::MMAP, lasting);
        EXPECT_LE(5U, outcomes.size());
        for (std::size_t i = 0; i < outcomes.size(); ++i)
            EXPECT_EQ("ended intact hit", outcomes[i]) << "mapping " << i;
    }
}

TEST(PoolShortage, WhatTheSystemIsAdvisedMayFail) {
    auto const outcomes = takeFailingEach(SystemCall::MADVISE, false);
    EXPECT_LE(5U, outcomes.size());
    for (std::string const& outcome : outcomes)
        EXPECT_EQ("whole intact hit", outcome);
    EXPECT_EQ("whole intact hit", takeFailing(SystemCall::MADVISE, 0, true));
}

TEST(PoolShortage, GivingBackToTheSystemMayFail) {
    EXPECT_EQ("intact", inChild([] {
                  for (bool const lasting : {false, true}) {
                      for (long spared = 0; spared < 10; ++spared) {
                          FailingCalls const failing(SystemCall::MUNMAP, spared, lasting);
                          Blocks blocks;
                          blocks.take(enough);
                          if (!blocks.areIntact())
                              return "mixed up";
                      }
                  }
                  return "intact";
              }));
}

TEST(PoolShortage, AThreadBeginsToTakeBlocksWhileTheHeapIsFull) {
    for (long spared = 0; spared < 3; ++spared) {
        EXPECT_EQ("done", inChild([&] {
                      std::string outcome = "not run";
                      std::thread([&] {
                          FailingCalls const failing(SystemCall::MALLOC, spared, true);
                          try {
                              QORPool::release(QORPool::allocate(40), 40);
                              outcome = "done";
                          } catch (std::bad_alloc const&) {
                              outcome = "ended";
                          }
                      }).join();
                      return outcome;
                  }));
    }
}

TEST(PoolShortage, AThreadsPoolServesTheNextThread) {
    std::vector<void*> firsts;
    for (int i = 0; i < 20; ++i) {
        std::thread([&] {
            firsts.push_back(QORPool::allocate(40));
            QORPool::release(firsts.back(), 40);
        }).join();
    }
    EXPECT_EQ(firsts.end(), std::find_if(firsts.begin() + 1, firsts.end(),
                                         [&](void* block) { return block != firsts.front(); }));
}

TEST(PoolShortage, AGraphStaysWholeWhereMappingEnds) {
    constexpr int attributes = 10000;
    for (long spared = 0; spared < 4; ++spared) {
        EXPECT_EQ("whole", inChild([&] {
                      QORClass owner;
                      int added = 0;
                      {
                          FailingCalls const failing(SystemCall::MMAP, spared, true);
                          try {
                              for (; added < attributes; ++added) {
                                  auto attribute = std::make_unique<QORAttribute>();
                                  attribute->setName(added);
                                  if (owner.addFeature(attribute.get()))
                                      attribute.release();
                              }
                          } catch (std::bad_alloc const&) {
                          }
                      }
                      return owner.getFeatureCount() != added ? "not counted"
                             : added == attributes            ? "never ended"
                                                              : "whole";
                  }))
            << "mapping " << spared;
    }
}
