#include "SystemCalls.h"

#include <qor/QOREncodingConverter.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <fcntl.h>
#include <memory>
#include <new>
#include <string>
#include <sys/resource.h>
#include <utility>
#include <vector>

namespace {

using Converter = std::unique_ptr<QOREncodingConverter>;

// Those of the library itself, those with a module of their own, and those whose modules share others.
char const* const known[] = {"UTF-8",  "ISO-8859-1",  "KOI8-R",       "UTF-16",         "UTF-7",
                             "EUC-JP", "ISO-2022-JP", "ISO-2022-CN",  "EUC-KR",         "BIG5",
                             "IBM037", "UCS-2",       "EUC-JISX0213", "SHIFT_JISX0213", "EUC-TW"};

constexpr char made = 'm';
constexpr char unknown = 'u';
constexpr char memoryEnded = 'e';

/// What comes of making a converter.
char make(char const* name) {
    try {
        return Converter(QOREncodingConverter::create(name)) ? made : unknown;
    } catch (std::bad_alloc const&) {
        return memoryEnded;
    }
}

/// The same while memory fails; `hit` becomes whether it did.
char makeFailing(char const* name, long spared, bool lasting, bool& hit) {
    FailingCalls const failing(SystemCall::MALLOC, spared, lasting);
    char const outcome = make(name);
    hit = failing.hit();
    return outcome;
}

/// What comes of it with one failure and then without, in a process of its own, for each allocation in turn.
std::vector<std::string> makeFailingEach(char const* name, bool lasting, char const* before, bool held) {
    std::vector<std::string> outcomes;
    for (long spared = 0; spared < 1000; ++spared) {
        std::string const outcome = inChild([&] {
            Converter other(before ? QOREncodingConverter::create(before) : nullptr);
            if (!held)
                other.reset();
            bool hit;
            char const first = makeFailing(name, spared, lasting, hit);
            return std::string{first, make(name)} + (hit ? "" : "!");
        });
        if (outcome.back() == '!')
            return outcomes;
        outcomes.push_back(outcome);
    }
    ADD_FAILURE() << name << " takes memory without end";
    return outcomes;
}

/// Sets a limit of the process, at most to what its parent allows; to be called in a child.
void limit(decltype(RLIMIT_AS) resource, rlim_t to) {
    rlimit limits{};
    getrlimit(resource, &limits);
    limits.rlim_cur = std::min(to, limits.rlim_max);
    setrlimit(resource, &limits);
}

/// The lowest limit of files with which none can be opened.
rlim_t filesInUse() {
    int const next = open("/", O_PATH | O_CLOEXEC);
    close(next);
    return static_cast<rlim_t>(next);
}

} // namespace

TEST(EncodingShortage, AKnownEncodingIsMadeOrMemoryEndsWhicheverAllocationFails) {
    for (char const* name : known) {
        for (bool const lasting : {false, true}) {
            auto const outcomes = makeFailingEach(name, lasting, nullptr, false);
            EXPECT_FALSE(outcomes.empty());
            for (std::size_t i = 0; i < outcomes.size(); ++i)
                EXPECT_TRUE(outcomes[i] == "em" || (!lasting && outcomes[i] == "mm"))
                    << name << ", allocation " << i << ": " << outcomes[i];
        }
    }
}

TEST(EncodingShortage, AnUnknownEncodingIsUnknownOrMemoryEnds) {
    for (char const* name : {"NO-SUCH-ENCODING", "KOI8-R-X"}) {
        auto const outcomes = makeFailingEach(name, false, nullptr, false);
        EXPECT_FALSE(outcomes.empty());
        for (std::string const& outcome : outcomes)
            EXPECT_TRUE(outcome == "eu" || outcome == "uu") << name << ": " << outcome;
    }
}

// The dynamic loader mistakes what is shared, once memory ends at certain places, until that is unloaded.
TEST(EncodingShortage, ModulesThatShareOthersStayKnown) {
    std::pair<char const*, char const*> const pairs[] = {
        {"EUC-JP", "ISO-2022-JP"}, {"ISO-2022-JP", "EUC-JP"}, {"ISO-2022-KR", "EUC-KR"}, {"EUC-KR", "UHC"}};
    for (auto const& [before, name] : pairs) {
        for (std::string const& outcome : makeFailingEach(name, false, before, false))
            EXPECT_TRUE(outcome == "em" || outcome == "mm") << before << ", " << name << ": " << outcome;
        // As long as the other converter lives, nothing can be unloaded.
        for (std::string const& outcome : makeFailingEach(name, false, before, true))
            EXPECT_TRUE(outcome == "em" || outcome == "mm" || outcome == "ee")
                << before << " held, " << name << ": " << outcome;
    }
}

TEST(EncodingShortage, MemoryMayEndAgainAndAgainInOneProcess) {
    for (char const* name : known) {
        bool hit = true;
        for (long spared = 0; hit; ++spared) {
            ASSERT_NE(unknown, makeFailing(name, spared, false, hit)) << name << ", allocation " << spared;
            ASSERT_EQ(made, make(name)) << name << ", after allocation " << spared;
        }
    }
}

TEST(EncodingShortage, AKnownEncodingIsNotUnknownForLackOfFiles) {
    rlim_t const files = filesInUse();
    for (char const* name : {"KOI8-R", "EUC-JP", "UTF-16"}) {
        for (rlim_t more = 0; more < 4; ++more) {
            std::string const outcome = inChild([&] {
                limit(RLIMIT_NOFILE, files + more);
                char const first = make(name);
                limit(RLIMIT_NOFILE, files + 50);
                return std::string{first, make(name)};
            });
            EXPECT_TRUE(outcome == "em" || outcome == "mm") << name << ": " << outcome;
            EXPECT_TRUE(more > 0 || outcome == "em") << name << ": " << outcome;
        }
    }
}

TEST(EncodingShortage, AKnownEncodingIsNotUnknownForLackOfAddressSpace) {
    for (char const* name : {"KOI8-R", "EUC-JP", "UTF-16"}) {
        EXPECT_EQ("em", inChild([&] {
                      limit(RLIMIT_AS, 1);
                      char const first = make(name);
                      limit(RLIMIT_AS, RLIM_INFINITY);
                      return std::string{first, make(name)};
                  }))
            << name;
    }
}

TEST(EncodingShortage, AConversionIsDoneOrMemoryEnds) {
    QORString const text("a text with \xC3\xA9 that is longer than a short one");
    for (char const* name : {"KOI8-T", "ISO-2022-JP-2", "CP1252", "UTF-7"}) {
        Converter const from(QOREncodingConverter::create("UTF-8"));
        Converter const to(QOREncodingConverter::create(name));
        ASSERT_NE(nullptr, to);
        int first = 0;
        int errors = 0;
        QORString const usual = convertEncoding(text, from.get(), to.get(), first, errors);
        bool hit = true;
        for (long spared = 0; hit; ++spared) {
            int failedFirst = 0;
            int failedErrors = 0;
            FailingCalls const failing(SystemCall::MALLOC, spared, false);
            try {
                EXPECT_EQ(usual, convertEncoding(text, from.get(), to.get(), failedFirst, failedErrors));
                EXPECT_EQ(first, failedFirst);
                EXPECT_EQ(errors, failedErrors);
            } catch (std::bad_alloc const&) {
                EXPECT_EQ(0, failedFirst + failedErrors);
            }
            hit = failing.hit();
        }
    }
}
