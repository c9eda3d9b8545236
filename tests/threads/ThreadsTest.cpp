#include "GraphOperations.h"

#include "kit/Verify.h"

#include <qor/QOR.h>

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <functional>
#include <memory>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

namespace {

/// Runs the work in that many threads, which all begin at the same moment; each gets its number.
void inThreads(int count, std::function<void(int)> const& work) {
    std::atomic<int> waiting{count};
    std::vector<std::thread> threads;
    for (int number = 0; number < count; ++number) {
        threads.emplace_back([&, number] {
            --waiting;
            while (waiting != 0)
                std::this_thread::yield();
            work(number);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

std::vector<std::uint8_t> randomBytes(unsigned seed, std::size_t count) {
    std::mt19937 random(seed);
    std::vector<std::uint8_t> bytes(count);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random());
    return bytes;
}

/// What the operations of a seed leave behind.
std::string graphOf(unsigned seed) {
    std::vector<std::uint8_t> const data = randomBytes(seed, 3000);
    GraphOperations operations;
    Bytes bytes(data.data(), data.size());
    operations.run(bytes);
    EXPECT_EQ(operations.faults(), std::vector<std::string>());
    return operations.dump();
}

QORModel* largeModel(int classes) {
    auto* const model = new QORModel;
    model->setName("M");
    auto* const package = new QORDesignPackage;
    package->setName("P");
    EXPECT_TRUE(model->addChildPackage(package));
    for (int i = 0; i < classes; ++i) {
        auto* const owner = new QORClass;
        owner->setName(QORString("caf\xe9_") + QORString(i));
        EXPECT_TRUE(package->addModelElement(owner));
        for (char const* name : {"x", "y", "a name that is too long for the object itself"}) {
            auto* const attribute = new QORAttribute;
            attribute->setName(name);
            EXPECT_TRUE(owner->addFeature(attribute));
        }
    }
    return model;
}

class Counting : public QORTraversalOperation {
public:
    bool pre_process(QORObject*, void*&) override {
        ++objects;
        return true;
    }

    int objects = 0;
};

int size(QORModel& model) {
    Counting counting;
    model.depthTraversal(counting, nullptr);
    return counting.objects;
}

/// Builds, walks, renames, copies, re-encodes and deletes, and counts what isn't as expected.
int workOnModel(int rounds) {
    int failures = 0;
    for (int round = 0; round < rounds; ++round) {
        std::unique_ptr<QORModel> const model(largeModel(50));
        failures += size(*model) != 2 + 50 * 4;
        std::unique_ptr<QOREncodingConverter> const from(QOREncodingConverter::create("ISO-8859-1"));
        std::unique_ptr<QOREncodingConverter> const to(QOREncodingConverter::create("UTF-8"));
        int texts = 0;
        int errors = 0;
        model->transcode(from.get(), to.get(), texts, errors);
        failures += errors;
        auto* const package = static_cast<QORDesignPackage*>(model->getChildPackage(0));
        failures += std::string(package->getModelElement(7)->getName().chars).find("caf\xc3\xa9_") != 0;
        for (int i = 0; i < 50; i += 2) {
            auto* const owner = static_cast<QORClass*>(package->getModelElement(0));
            owner->setName(QORString("renamed") + QORString(i));
            QORClass const copy(*owner);
            failures += copy != *owner;
            delete owner;
        }
        failures += size(*model) != 2 + 25 * 4;
    }
    return failures;
}

/// Asks everything that the process holds once and for all threads.
std::size_t askEverything(int number) {
    std::size_t found = 0;
    QORMetaRepository const& repository = *QORMetaRepository::getMetaRepository();
    int const types = static_cast<int>(std::size(QorElementTypeStringArray)) - 1;
    for (int i = 0; i < types; ++i) {
        // Each thread begins elsewhere.
        auto const type = static_cast<QORElementTypes::Type>((i + number * 37) % types);
        QORMetaClass* const metaClass = repository.getMetaClassByID(type);
        if (!metaClass)
            continue;
        found += repository.getMetaClassByDisplayName(metaClass->getDisplayName().chars) == metaClass;
        found += getElementTypeByName(QorElementTypeStringArray[type]) == type;
        std::unique_ptr<QORObject> const object(metaClass->newInstance());
        QORVector const& attributes = metaClass->getMetaAttributes();
        for (int at = 0; at < attributes.size; ++at) {
            auto* const attribute = static_cast<QORMetaAttribute*>(attributes[at]);
            found += metaClass->getMetaAttributeByName(attribute->getName().chars) != nullptr;
            found += getAttributeTypeByName(attribute->getName().chars) == attribute->getId();
            if (object)
                found += static_cast<std::size_t>(attribute->getValue(object.get()).length);
        }
        QORVector const& links = metaClass->getMetaLinks();
        for (int at = 0; at < links.size; ++at) {
            auto* const link = static_cast<QORMetaLink*>(links[at]);
            found += metaClass->getMetaLinkByRoleName(link->getRoleName().chars) != nullptr;
            found += getAssociationTypeByName(link->getName().chars) == link->getId();
        }
    }
    found += static_cast<std::size_t>(QORSDK::ILLEGAL_ARGUMENT.getMessage("Class", "Attribute").length);
    found += QORSDK::findTextLiteral("2") != nullptr;
    found += isNumeric("SQL_INTEGER") + isString("SQL_CHAR");
    found += getDataTypeName("SQL_VARCHAR") != nullptr;
    found += getMimeTypeName("application/vnd.msword") != nullptr;
    return found;
}

/// A refusal, which is a message as an exception.
bool refusesNamesake() {
    QORClass owner;
    auto* const first = new QORAttribute;
    first->setName("a");
    owner.addFeature(first);
    auto* const second = new QORAttribute;
    second->setName("b");
    owner.addFeature(second);
    try {
        second->setName("a");
    } catch (QORException const&) {
        return true;
    }
    return false;
}

/// Ends the process with 0 if the work, done in many threads at once, gives true in each of them.
[[noreturn]] void firstUse(std::function<bool(int)> const& work) {
    std::atomic<int> failures{0};
    inThreads(8, [&](int number) { failures += !work(number); });
    std::_Exit(failures == 0 ? 0 : 1);
}

/// Tests of what happens first in a process run in one of their own, which starts anew.
class FirstUse : public testing::Test {
protected:
    FirstUse() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

} // namespace

TEST_F(FirstUse, OfReflectionIsSafeFromManyThreads) {
    EXPECT_EXIT(firstUse([](int number) { return askEverything(number) > 5000; }), testing::ExitedWithCode(0),
                "");
}

TEST_F(FirstUse, OfEncodingsIsSafeFromManyThreads) {
    auto const work = [](int) {
        std::unique_ptr<QOREncodingConverter> const from(QOREncodingConverter::create("CP1252"));
        std::unique_ptr<QOREncodingConverter> const to(QOREncodingConverter::create("UTF-8"));
        int texts = 0;
        int errors = 0;
        return convertEncoding("\x80", from.get(), to.get(), texts, errors) == "\xe2\x82\xac" && errors == 0;
    };
    EXPECT_EXIT(firstUse(work), testing::ExitedWithCode(0), "");
}

TEST_F(FirstUse, OfGraphsIsSafeFromManyThreads) {
    EXPECT_EXIT(firstUse([](int) { return workOnModel(1) == 0; }), testing::ExitedWithCode(0), "");
}

TEST_F(FirstUse, OfMessagesIsSafeFromManyThreads) {
    EXPECT_EXIT(firstUse([](int) { return refusesNamesake(); }), testing::ExitedWithCode(0), "");
}

TEST_F(FirstUse, OfEveryClassIsSafeFromManyThreads) {
    EXPECT_EXIT(firstUse([](int number) { return !graphOf(static_cast<unsigned>(number)).empty(); }),
                testing::ExitedWithCode(0), "");
}

TEST(Threads, EachWorksOnItsOwnGraph) {
    std::atomic<int> failures{0};
    inThreads(4, [&](int) { failures += workOnModel(10); });
    EXPECT_EQ(failures, 0);
}

TEST(Threads, EachGetsTheGraphThatItWouldGetAlone) {
    std::vector<std::string> alone;
    for (unsigned seed = 0; seed < 12; ++seed)
        alone.push_back(graphOf(seed));
    std::vector<std::string> together(alone.size());
    inThreads(4, [&](int number) {
        for (std::size_t seed = static_cast<std::size_t>(number); seed < together.size(); seed += 4)
            together[seed] = graphOf(static_cast<unsigned>(seed));
    });
    EXPECT_EQ(together, alone);
}

TEST(Threads, ReadWhatAllShare) {
    std::size_t const alone = askEverything(0);
    std::atomic<int> failures{0};
    inThreads(4, [&](int number) { failures += askEverything(number) != alone; });
    EXPECT_EQ(failures, 0);
}

TEST(Threads, AGraphIsHandedOverAndDeletedElsewhere) {
    constexpr int graphs = 30;
    std::mutex mutex;
    std::condition_variable arrived;
    std::vector<QORModel*> queue;
    int failures = 0;
    std::thread builder([&] {
        for (int i = 0; i < graphs; ++i) {
            QORModel* const model = largeModel(30);
            std::lock_guard<std::mutex> const lock(mutex);
            queue.push_back(model);
            arrived.notify_one();
        }
    });
    std::thread user([&] {
        for (int i = 0; i < graphs; ++i) {
            std::unique_lock<std::mutex> lock(mutex);
            arrived.wait(lock, [&] { return !queue.empty(); });
            std::unique_ptr<QORModel> const model(queue.back());
            queue.pop_back();
            lock.unlock();
            failures += size(*model) != 2 + 30 * 4;
            auto* const late = new QORNote;
            failures += !model->addNote(late);
        }
    });
    builder.join();
    user.join();
    EXPECT_EQ(failures, 0);
}

TEST(Threads, AGraphOutlivesTheThreadThatBuiltItAndGrowsInAnother) {
    QORModel* model = nullptr;
    std::thread([&] { model = largeModel(40); }).join();
    for (int round = 0; round < 5; ++round) {
        std::thread([&] {
            auto* const package = static_cast<QORDesignPackage*>(model->getChildPackage(0));
            for (int i = 0; i < 5; ++i)
                delete package->getModelElement(0);
            auto* const added = new QORClass;
            added->setName(QORString("z") + QORString(round));
            EXPECT_TRUE(package->addModelElement(added));
        }).join();
    }
    EXPECT_EQ(size(*model), 2 + 15 * 4 + 5);
    EXPECT_EQ(kit::verify(*model), std::vector<std::string>());
    delete model;
}

TEST(Threads, BlocksOfThePoolGoRoundBetweenThreads) {
    constexpr int count = 4;
    constexpr int rounds = 200;
    struct Block {
        unsigned char* bytes;
        std::size_t size;
        unsigned char fill;
    };
    struct Box {
        std::mutex mutex;
        std::vector<Block> blocks;
    };
    std::vector<Box> boxes(count);
    std::atomic<int> failures{0};
    auto const drop = [&](Block const& block) {
        for (std::size_t i = 0; i < block.size; ++i)
            failures += block.bytes[i] != block.fill;
        QORPool::release(block.bytes, block.size);
    };
    inThreads(count, [&](int number) {
        std::mt19937 random(static_cast<unsigned>(number));
        for (int round = 0; round < rounds; ++round) {
            for (int i = 0; i < 20; ++i) {
                std::size_t const size = 1 + random() % 300;
                auto* const bytes = static_cast<unsigned char*>(QORPool::allocate(size));
                auto const fill = static_cast<unsigned char>(random());
                std::fill(bytes, bytes + size, fill);
                Box& next = boxes[random() % count];
                std::lock_guard<std::mutex> const lock(next.mutex);
                next.blocks.push_back({bytes, size, fill});
            }
            std::vector<Block> mine;
            Box& own = boxes[static_cast<std::size_t>(number)];
            {
                std::lock_guard<std::mutex> const lock(own.mutex);
                mine.swap(own.blocks);
            }
            for (Block const& block : mine)
                drop(block);
        }
    });
    for (Box const& box : boxes) {
        for (Block const& block : box.blocks)
            drop(block);
    }
    EXPECT_EQ(failures, 0);
}
