#include <qor/QORString.h>

#include "AllocationControl.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <type_traits>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

static_assert(sizeof(QORString) == 4 * sizeof(void*), "four words");
static_assert(std::is_nothrow_move_constructible<QORString>::value, "moves never throw");
static_assert(std::is_nothrow_move_assignable<QORString>::value, "moves never throw");
static_assert(std::is_nothrow_default_constructible<QORString>::value, "an empty string never throws");
static_assert(std::is_nothrow_swappable<QORString>::value, "an exchange never throws");
static_assert(std::is_convertible<char const*, QORString>::value, "implicit");
static_assert(std::is_convertible<char, QORString>::value, "implicit");
static_assert(std::is_convertible<int, QORString>::value, "implicit");

constexpr int inlineCapacity = static_cast<int>(4 * sizeof(void*) - sizeof(char*) - sizeof(int)) - 1;
constexpr int boundaryLengths[] = {
    0,   1, inlineCapacity - 1, inlineCapacity, inlineCapacity + 1, inlineCapacity + 2, 2 * inlineCapacity,
    1000};

std::string textOf(int length, char first = 'a') {
    std::string text;
    for (int i = 0; i < length; ++i) {
        text += static_cast<char>('a' + (first - 'a' + i) % 26);
    }
    return text;
}

void expectText(QORString const& string, std::string const& text) {
    ASSERT_NE(string.chars, nullptr);
    EXPECT_EQ(string.length, static_cast<int>(text.size()));
    EXPECT_EQ(std::strlen(string.chars), text.size());
    EXPECT_STREQ(string.chars, text.c_str());
    EXPECT_EQ(string.chars == QORString::emptyPtr, text.empty());
}

bool privateBytesAreZero(QORString const& string) {
    unsigned char bytes[sizeof string];
    std::memcpy(bytes, static_cast<void const*>(&string), sizeof string);
    for (std::size_t i = sizeof(char*) + sizeof(int); i < sizeof string; ++i) {
        if (bytes[i] != 0) {
            return false;
        }
    }
    return true;
}

bool liesInside(QORString const& string) {
    char const* const object = reinterpret_cast<char const*>(&string);
    return string.chars >= object && string.chars < object + sizeof string;
}

QORString const* volatile seenByInitialiser = nullptr;
struct EarlyReader {
    EarlyReader() : length(emptyString.length), text(emptyString.chars), shared(QORString::emptyPtr) {
        seenByInitialiser = &emptyString;
    }
    int length;
    char const* text;
    char const* shared;
};
EarlyReader const earlyReader __attribute__((init_priority(101)));

bool checkAtUnload = false;
__attribute__((destructor)) void readAfterStaticDestruction() {
    if (checkAtUnload) {
        bool const intact = emptyString.length == 0 && emptyString.chars == QORString::emptyPtr &&
                            *QORString::emptyPtr == '\0' && QORString(emptyString).length == 0;
        _exit(intact ? 77 : 1);
    }
}

} // namespace

TEST(QORString, DefaultIsEmptyAndAllOtherWordsAreZero) {
    QORString string;
    expectText(string, "");
    EXPECT_TRUE(privateBytesAreZero(string));
    EXPECT_EQ(*string.chars, '\0');
}

TEST(QORString, FieldsLieInTheFirstTwoWords) {
    QORString const string("abc");
    char const* const object = reinterpret_cast<char const*>(&string);
    EXPECT_EQ(reinterpret_cast<char const*>(&string.chars), object);
    EXPECT_EQ(reinterpret_cast<char const*>(&string.length), object + sizeof(char*));
}

TEST(QORString, SharedEmptyStringCanBeReadByTheEarliestStaticInitialiser) {
    EXPECT_EQ(earlyReader.length, 0);
    EXPECT_EQ(earlyReader.text, QORString::emptyPtr);
    EXPECT_EQ(earlyReader.shared, QORString::emptyPtr);
    EXPECT_EQ(seenByInitialiser, &emptyString);
    expectText(emptyString, "");
    EXPECT_TRUE(privateBytesAreZero(emptyString));
}

TEST(QORStringDeathTest, SharedEmptyStringCanBeReadAfterStaticDestruction) {
    EXPECT_EXIT(
        {
            checkAtUnload = true;
            std::exit(0);
        },
        testing::ExitedWithCode(77), "");
}

TEST(QORString, HoldsTextsOfEveryLength) {
    for (int length = 0; length < 3 * inlineCapacity; ++length) {
        std::string const text = textOf(length);
        QORString const string(text.c_str());
        expectText(string, text);
        EXPECT_EQ(liesInside(string), length > 0 && length <= inlineCapacity) << length;
    }
}

TEST(QORString, NullTextCountsAsEmpty) {
    char const* const none = nullptr;
    QORString string(none);
    expectText(string, "");
    string = "something";
    string.init(nullptr, -1);
    expectText(string, "");
    string.init(nullptr, 5);
    expectText(string, "");
}

TEST(QORString, ShortTextsAreNeverAllocated) {
    std::string const text = textOf(inlineCapacity);
    long const before = madeAllocations();
    {
        QORString string(text.c_str());
        QORString copy(string);
        QORString assigned;
        assigned = copy;
        QORString moved(std::move(copy));
        moved = emptyString;
        moved += string;
        QORString part = string.mid(1, 2);
        part.add("x", "y", nullptr);
        part.swap(moved);
        part.reserve(inlineCapacity);
        QORString sum = QORString('a') + QORString('b');
        QORString digits(12345);
        digits.init(string.chars, -1);
    }
    EXPECT_EQ(madeAllocations(), before);
}

TEST(QORString, LongTextsTakeOneBlockAndGiveItBack) {
    std::string const text = textOf(inlineCapacity + 1);
    long const before = liveAllocations();
    {
        QORString const string(text.c_str());
        EXPECT_EQ(liveAllocations(), before + 1);
        QORString const copy(string);
        EXPECT_EQ(liveAllocations(), before + 2);
        EXPECT_NE(copy.chars, string.chars);
    }
    EXPECT_EQ(liveAllocations(), before);
}

TEST(QORString, IsMadeOfOneCharacter) {
    expectText(QORString('x'), "x");
    expectText(QORString('\0'), "");
    expectText(QORString('\xE4'), "\xE4");
}

TEST(QORString, IsMadeOfTheDigitsOfANumber) {
    expectText(QORString(12), "12");
    expectText(QORString(0), "0");
    expectText(QORString(-7), "-7");
    expectText(QORString(INT_MAX), "2147483647");
    expectText(QORString(INT_MIN), "-2147483648");
}

TEST(QORString, InitTakesTheWholeTextOrItsBeginning) {
    QORString string;
    string.init("abcdef", -1);
    expectText(string, "abcdef");
    string.init("abcdef", 3);
    expectText(string, "abc");
    string.init("abcdef", 0);
    expectText(string, "");
    string.init("ab", 50);
    expectText(string, "ab");
}

TEST(QORString, InitDoesNotReadBehindTheGivenLength) {
    char const letters[] = {'x', 'y', 'z'};
    QORString string;
    string.init(letters, 3);
    expectText(string, "xyz");
}

TEST(QORString, InitOfAFilledStringLosesNoMemory) {
    long const before = liveAllocations();
    {
        QORString string(textOf(100).c_str());
        string.init(textOf(500, 'd').c_str(), -1);
        expectText(string, textOf(500, 'd'));
        string.init("", -1);
        EXPECT_EQ(liveAllocations(), before);
        EXPECT_TRUE(privateBytesAreZero(string));
    }
    EXPECT_EQ(liveAllocations(), before);
}

TEST(QORString, InitTakesAPartOfItsOwnText) {
    for (int length : boundaryLengths) {
        for (int start = 0; start <= length; start += 1 + length / 7) {
            std::string const text = textOf(length);
            QORString string(text.c_str());
            string.init(string.chars + start, -1);
            expectText(string, text.substr(static_cast<std::size_t>(start)));
        }
    }
}

TEST(QORString, CopiesAssignsAndMovesAcrossEveryPairOfLengths) {
    for (int from : boundaryLengths) {
        for (int to : boundaryLengths) {
            std::string const source = textOf(from);
            std::string const target = textOf(to, 'k');
            QORString const original(source.c_str());
            QORString copied(original);
            expectText(copied, source);

            QORString assigned(target.c_str());
            EXPECT_EQ(&(assigned = original), &assigned);
            expectText(assigned, source);
            expectText(original, source);

            QORString moved(target.c_str());
            EXPECT_EQ(&(moved = std::move(copied)), &moved);
            expectText(moved, source);
            EXPECT_EQ(copied.chars, QORString::emptyPtr); // NOLINT: the state after a move is promised
            EXPECT_TRUE(privateBytesAreZero(copied));

            QORString constructed(std::move(moved));
            expectText(constructed, source);
            expectText(moved, ""); // NOLINT: the state after a move is promised

            QORString other(target.c_str());
            swap(constructed, other);
            expectText(constructed, target);
            expectText(other, source);
        }
    }
}

TEST(QORString, CopyIsIndependentOfTheOriginal) {
    for (int length : boundaryLengths) {
        std::string const text = textOf(length);
        QORString original(text.c_str());
        QORString const copy(original);
        original += "more";
        expectText(copy, text);
        expectText(original, text + "more");
    }
}

TEST(QORString, SelfOperationsAreHarmless) {
    for (int length : boundaryLengths) {
        std::string const text = textOf(length);
        QORString string(text.c_str());
        QORString& self = string;
        string = self;
        expectText(string, text);
        string = std::move(self);
        expectText(string, text);
        string.swap(self);
        expectText(string, text);
        string += self;
        expectText(string, text + text);
        string = text.c_str();
        string.add(string.chars, nullptr);
        expectText(string, text + text);
        string = text.c_str();
        string.add("<", string.chars, ">", string.chars + length / 2, nullptr);
        expectText(string, text + "<" + text + ">" + text.substr(static_cast<std::size_t>(length / 2)));
    }
}

TEST(QORString, AddsTheEndOfItsOwnTextAsAnEmptyText) {
    for (int length : boundaryLengths) {
        std::string const text = textOf(length);
        for (int reserved : {0, 5000}) {
            QORString string(text.c_str());
            string.reserve(reserved);
            string.add("zz", string.chars + string.length, "y", nullptr);
            expectText(string, text + "zzy");
        }
    }
}

TEST(QORString, AddsItsOwnTextWithinReservedMemory) {
    for (int length : boundaryLengths) {
        std::string const text = textOf(length);
        QORString string(text.c_str());
        string.reserve(5000);
        string.add(string.chars, "-", string.chars, nullptr);
        expectText(string, text + text + "-" + text);
        string += string;
        expectText(string, text + text + "-" + text + text + text + "-" + text);
    }
}

TEST(QORString, AppendsAcrossTheEndOfTheInlineText) {
    for (int left : boundaryLengths) {
        for (int right : boundaryLengths) {
            std::string const first = textOf(left);
            std::string const second = textOf(right, 'q');
            QORString string(first.c_str());
            QORString const tail(second.c_str());
            EXPECT_EQ(&(string += tail), &string);
            expectText(string, first + second);
            expectText(tail, second);
            expectText(QORString(first.c_str()) + tail, first + second);
        }
    }
}

TEST(QORString, AddTakesTextsUpToTheNullPointer) {
    QORString string("a");
    string.add("b", "", "cd", nullptr, "not this", nullptr);
    expectText(string, "abcd");
    string.add(nullptr);
    expectText(string, "abcd");
    QORString empty;
    empty.add("", "", nullptr);
    expectText(empty, "");
    EXPECT_TRUE(privateBytesAreZero(empty));
}

TEST(QORString, PlusJoinsWithTextsCharactersAndNumbers) {
    QORString const name("Name");
    expectText(name + "/" + 12, "Name/12");
    expectText("x" + name, "xName");
    expectText(name + 'y', "Namey");
    expectText(emptyString + emptyString, "");
    expectText(name, "Name");
}

TEST(QORString, MidGivesWhatLiesWithinTheText) {
    QORString const string("abcdef");
    expectText(string.mid(0, 6), "abcdef");
    expectText(string.mid(2, 3), "cde");
    expectText(string.mid(2, 0), "");
    expectText(string.mid(4, 100), "ef");
    expectText(string.mid(6, 1), "");
    expectText(string.mid(7, 1), "");
    expectText(string.mid(UINT_MAX, UINT_MAX), "");
    expectText(string.mid(1, UINT_MAX), "bcdef");
    expectText(emptyString.mid(0, 3), "");
}

TEST(QORString, HashesAgreeForEqualTextsAndSpread) {
    for (int length : boundaryLengths) {
        std::string const text = textOf(length);
        QORString const string(text.c_str());
        EXPECT_EQ(string.hashCode(), stringHashCode(string.chars));
        EXPECT_EQ(string.hashCode(), stringHashCode(text.c_str()));
        EXPECT_GE(string.hashCode(), 0);
    }
    EXPECT_EQ(QORString("\xFF\x80").hashCode(), stringHashCode("\xFF\x80"));
    EXPECT_EQ(stringHashCode(nullptr), emptyString.hashCode());
    EXPECT_NE(stringHashCode("ab"), stringHashCode("ba"));
    EXPECT_NE(stringHashCode("a"), stringHashCode("b"));
}

TEST(QORString, EqualityComparesTexts) {
    for (int length : boundaryLengths) {
        QORString const string(textOf(length).c_str());
        EXPECT_TRUE(string == QORString(string));
        EXPECT_FALSE(string != QORString(string));
        EXPECT_TRUE(string != string + "x");
        EXPECT_FALSE(string == string + "x");
    }
    EXPECT_TRUE(QORString("abc") != QORString("abd"));
    EXPECT_TRUE(QORString("abc") == "abc");
}

TEST(QORString, AssignmentUsesMemoryAtHand) {
    QORString string(textOf(200).c_str());
    QORString const other(textOf(200, 'x').c_str());
    QORString const shorter(textOf(inlineCapacity, 'm').c_str());
    char* const buffer = string.chars;
    long const before = madeAllocations();
    string = other;
    string = shorter;
    string = other;
    EXPECT_EQ(madeAllocations(), before);
    EXPECT_EQ(string.chars, buffer);
    expectText(string, textOf(200, 'x'));
}

TEST(QORString, ComparesAsTheCStandardDoes) {
    // Around the number of characters that are compared at once, with characters beyond ASCII and with memory
    // that held a longer text before.
    std::vector<std::string> texts = {""};
    for (std::size_t length = 1; length <= 20; ++length) {
        for (char const last : {'\x01', 'a', '\x7f', '\x80', '\xff'}) {
            std::string text(length - 1, 'm');
            texts.push_back(text + last);
            if (length > 1)
                texts.push_back(last + text);
        }
    }
    auto const sign = [](int order) { return (order > 0) - (order < 0); };
    for (std::string const& left : texts) {
        QORString shrunk("a text that was longer than any of these before");
        shrunk.init(left.c_str(), -1);
        for (std::string const& right : texts) {
            int const expected = sign(std::strcmp(left.c_str(), right.c_str()));
            QORString const other(right.c_str());
            ASSERT_EQ(sign(QORString(left.c_str()).compare(other)), expected) << left << '|' << right;
            ASSERT_EQ(sign(shrunk.compare(other)), expected) << left << '|' << right;
            ASSERT_EQ(sign(other.compare(shrunk)), -expected) << left << '|' << right;
        }
    }
}

TEST(QORString, RepeatedAppendsAllocateSeldom) {
    QORString string;
    std::string expected;
    long const before = madeAllocations();
    for (int i = 0; i < 10000; ++i) {
        string += 'z';
    }
    EXPECT_LT(madeAllocations() - before, 40);
    expectText(string, std::string(10000, 'z'));
}

TEST(QORString, ReserveKeepsTheTextAndSparesTheNextAllocation) {
    std::string const target = textOf(1000, 'r');
    QORString const source(target.c_str());
    for (int length : boundaryLengths) {
        std::string const text = textOf(length);
        QORString string(text.c_str());
        string.reserve(1000);
        expectText(string, text);
        long const before = madeAllocations();
        string = source;
        EXPECT_EQ(madeAllocations(), before) << length;
        expectText(string, target);
    }
}

TEST(QORString, ReservedMemoryOfAnEmptyStringIsMovedAndFreed) {
    long const before = liveAllocations();
    {
        QORString string;
        string.reserve(100);
        EXPECT_EQ(liveAllocations(), before + 1);
        string.reserve(50);
        string.reserve(-1);
        EXPECT_EQ(liveAllocations(), before + 1);
        string.reserve(200);
        EXPECT_EQ(liveAllocations(), before + 1);
        QORString const copy(string);
        EXPECT_EQ(liveAllocations(), before + 1);
        QORString moved(std::move(string));
        expectText(moved, "");
        EXPECT_EQ(liveAllocations(), before + 1);
        moved += "short";
        expectText(moved, "short");
        moved = emptyString;
        EXPECT_EQ(liveAllocations(), before);
        EXPECT_TRUE(privateBytesAreZero(moved));
        moved.reserve(300);
        moved = QORString("moved");
        EXPECT_EQ(liveAllocations(), before);
        expectText(moved, "moved");
    }
    EXPECT_EQ(liveAllocations(), before);
}

TEST(QORString, FailedAllocationsLeaveEverythingAsItWas) {
    std::string const longText = textOf(300, 'f');
    QORString const source(longText.c_str());
    for (int length : boundaryLengths) {
        std::string const text = textOf(length > 200 ? 200 : length);
        QORString string(text.c_str());
        auto const unchanged = [&] { expectText(string, text); };
        long const before = liveAllocations();
        auto const nothingLost = [&] { EXPECT_EQ(liveAllocations(), before); };
        auto const both = [&] {
            unchanged();
            nothingLost();
        };
        EXPECT_EQ(failEachAllocation([&] { QORString copy(source); }, both), 1);
        EXPECT_EQ(failEachAllocation([&] { QORString copy(longText.c_str()); }, both), 1);
        EXPECT_EQ(failEachAllocation([&] { QORString sum = string + source; }, both), 1);
        EXPECT_EQ(failEachAllocation([&] { QORString part = source.mid(1, 250); }, both), 1);
        EXPECT_EQ(failEachAllocation([&] { string.reserve(250); }, both), 1);
        expectText(string, text);
        EXPECT_EQ(
            failEachAllocation([&] { string.add("a", source.chars, string.chars, nullptr); }, unchanged), 1);
        string = QORString(text.c_str());
        EXPECT_EQ(failEachAllocation([&] { string += source; }, unchanged), 1);
        string = QORString(text.c_str());
        EXPECT_EQ(failEachAllocation([&] { string = source; }, unchanged), 1);
        string = QORString(text.c_str());
        EXPECT_EQ(failEachAllocation([&] { string.init(longText.c_str(), -1); }, unchanged), 1);
        expectText(string, longText);
    }
}

TEST(QORString, BehavesLikeTheStandardStringInRandomOperations) {
    std::mt19937 random(20240611);
    constexpr int count = 6;
    QORString strings[count];
    std::string models[count];
    auto const pick = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    long const before = liveAllocations();
    for (int step = 0; step < 60000; ++step) {
        int const a = pick(count);
        int const b = pick(count);
        QORString& string = strings[a];
        std::string& model = models[a];
        std::string const fresh = textOf(pick(3) == 0 ? pick(120) : pick(inlineCapacity + 4), 'c');
        unsigned const start = static_cast<unsigned>(pick(60));
        unsigned const part = static_cast<unsigned>(pick(60));
        switch (pick(13)) {
        case 0:
            string = fresh.c_str();
            model = fresh;
            break;
        case 1:
            string = strings[b];
            model = models[b];
            break;
        case 2:
            string += strings[b];
            model += std::string(models[b]);
            break;
        case 3:
            string = strings[b] + string;
            model = models[b] + model;
            break;
        case 4:
            string.add(fresh.c_str(), strings[b].chars, string.chars, nullptr);
            model += fresh + std::string(models[b]) + std::string(model);
            break;
        case 5:
            string = strings[b].mid(start, part);
            model = start < models[b].size() ? models[b].substr(start, part) : "";
            break;
        case 6:
            string.init(fresh.c_str(), static_cast<int>(part));
            model = fresh.substr(0, part);
            break;
        case 7:
            string.reserve(pick(200));
            break;
        case 8:
            string.swap(strings[b]);
            std::swap(model, models[b]);
            break;
        case 9: {
            QORString taken(std::move(strings[b]));
            std::string const takenModel = models[b];
            models[b].clear();
            expectText(strings[b], "");
            string = std::move(taken);
            model = takenModel;
            break;
        }
        case 10:
            string += pick(100000) - 50000;
            model = string.chars;
            break;
        case 11: {
            std::size_t const from = model.empty() ? 0 : start % model.size();
            string.init(string.chars + from, -1);
            model.erase(0, from);
            break;
        }
        default:
            string = emptyString;
            model.clear();
        }
        if (model.size() > 2000) {
            string = QORString();
            model.clear();
        }
        ASSERT_EQ(string.length, static_cast<int>(model.size())) << step;
        ASSERT_EQ(std::memcmp(string.chars, model.c_str(), model.size() + 1), 0) << step;
        ASSERT_EQ(string.chars == QORString::emptyPtr, model.empty()) << step;
        ASSERT_EQ(strings[b].length, static_cast<int>(models[b].size())) << step;
        ASSERT_STREQ(strings[b].chars, models[b].c_str()) << step;
        ASSERT_EQ(string == strings[b], model == models[b]) << step;
    }
    for (int i = 0; i < count; ++i) {
        strings[i] = QORString();
        std::string().swap(models[i]);
    }
    EXPECT_EQ(liveAllocations(), before);
}
