#include "Deaths.h"
#include "Universe.h"

#include <qor/QORException.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <list>
#include <memory>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

// Operations at random on objects of the library's classes and of callers' classes over all of them, whose
// overrides throw now and then and whose destructors do further operations. Whatever comes of it, each link
// has both its ends, nothing points to a dead object, and in the end nothing is left.
//
// What the destructors don't do, since the library can't know better: delete an object by `delete` while an
// operation is at work on it, or let the library come upon an object whose own destructor a `delete` has
// begun.

namespace {

using metamodel::Container;
using metamodel::End;
using model::Mismatch;
using model::Shape;

struct Thrown {};

struct Subject {
    QORObject* real;
    Shape const* shape;
    bool ofCaller;        ///< of a caller's class
    bool busy = false;    ///< an operation of this test is at work on it, or its destructor
    bool leaving = false; ///< its destructor was begun by `delete`, and the library's has yet to follow
};

class Zoo {
public:
    Zoo(unsigned long seed, bool throwing, bool reentrant);
    Zoo(Zoo const&) = delete;
    Zoo& operator=(Zoo const&) = delete;
    ~Zoo();

    /// One operation, then a check of everything.
    void step();
    /// Deletes what is left.
    void clear();

    struct Counts {
        long thrown = 0;
        long deaths = 0;
        long reentries = 0;
    } counts;

private:
    using Operation = void (Zoo::*)(Subject&, End const&);

    int below(std::size_t limit) { return static_cast<int>(random() % limit); }
    bool oneIn(std::size_t chances) { return below(chances) == 0; }
    QORString name();
    void chooseClasses();
    Subject& create();
    Subject* any();
    bool isWhole(Subject const& subject);
    void act();
    void guarded(std::function<void()> const& operation);
    void calmly(std::function<void()> const& operation);

    void link(Subject& subject, End const& end);
    void unlink(Subject& subject, End const& end);
    void removeOne(Subject& subject, End const& end);
    void removeAll(Subject& subject, End const& end);
    void rename(Subject& subject, End const& end);
    void search(Subject& subject, End const& end);
    void isolate(Subject& subject, End const& end);
    void takeApart(Subject& subject, End const& end);
    void leaveOwner(Subject& subject, End const& end);
    void destroy(Subject& subject, End const& end);

    void bury();
    void check();
    void checkEnd(Subject const& subject, End const& end);
    std::vector<QORObject*> contents(QORObject const& object, End const& end) const;

    static void dying(QORObject* object);
    static void asked(QORObject const* object);

    static Zoo* current;
    std::mt19937 random;
    std::vector<int> classes;
    std::list<Subject> subjects;
    bool throwing;
    bool reentrant;
    bool armed = false; ///< overrides may throw
    int calm = 30;      ///< one in so many overrides throws
    int depth = 0;
};

Zoo* Zoo::current = nullptr;

Zoo::Zoo(unsigned long seed, bool overridesThrow, bool destructorsAct)
    : random(static_cast<std::mt19937::result_type>(seed)), throwing(overridesThrow),
      reentrant(destructorsAct) {
    current = this;
    metamodel::whenWatchedDies = dying;
    metamodel::whenWatchedIsAsked = asked;
    constexpr std::array<int, 4> chances{1, 4, 12, 60};
    calm = chances[static_cast<std::size_t>(below(chances.size()))];
    chooseClasses();
}

Zoo::~Zoo() {
    current = nullptr;
}

QORString Zoo::name() {
    constexpr std::array<char const*, 6> names{"", "a", "b", "c", "d", "e"};
    return names[static_cast<std::size_t>(below(names.size()))];
}

/// A few classes that can be linked with each other.
void Zoo::chooseClasses() {
    auto const add = [this](int base) {
        std::vector<int> concrete;
        for (metamodel::Class const& each : metamodel::classes())
            if (each.make && model::shapeOf(each.id).isA(base))
                concrete.push_back(each.id);
        classes.push_back(concrete[static_cast<std::size_t>(below(concrete.size()))]);
    };
    while (classes.size() < 6) {
        End const& end = metamodel::ends()[static_cast<std::size_t>(below(metamodel::ends().size()))];
        if (!end.role)
            continue;
        add(end.ownerId);
        add(model::endOf(end.farId).ownerId);
    }
}

Subject& Zoo::create() {
    metamodel::Class const& type = metamodel::classes()[static_cast<std::size_t>(
        classes[static_cast<std::size_t>(below(classes.size()))])];
    bool const ofCaller = !oneIn(3);
    QORObject* const real = ofCaller ? type.makeWatched() : type.make();
    deaths::watch(real);
    subjects.push_back({real, &model::shapeOf(type.id), ofCaller});
    QORString const title = name();
    guarded([&] { real->setName(title); });
    return subjects.back();
}

/// Whether the destructors haven't yet come to the bases of the object's library class.
bool Zoo::isWhole(Subject const& subject) {
    bool whole = false;
    calmly([&] { whole = subject.real->isInstanceOf(static_cast<QORElementType>(subject.shape->type->id)); });
    return whole;
}

/// Does an operation whose overrides don't throw.
void Zoo::calmly(std::function<void()> const& operation) {
    bool const before = std::exchange(armed, false);
    operation();
    armed = before;
}

Subject* Zoo::any() {
    std::vector<Subject*> candidates;
    for (Subject& each : subjects)
        if (!each.leaving && isWhole(each))
            candidates.push_back(&each);
    return candidates.empty() ? nullptr : candidates[static_cast<std::size_t>(below(candidates.size()))];
}

/// Does an operation whose overrides may throw.
void Zoo::guarded(std::function<void()> const& operation) {
    bool const before = std::exchange(armed, throwing);
    try {
        operation();
    } catch (Thrown const&) {
    } catch (QORException const&) {
    } catch (int) {
    }
    armed = before;
}

void Zoo::asked(QORObject const*) {
    if (!current || !current->armed || !current->oneIn(static_cast<std::size_t>(current->calm)))
        return;
    ++current->counts.thrown;
    throw Thrown();
}

/// The body of each caller's destructor.
void Zoo::dying(QORObject* object) {
    if (!current || !current->reentrant)
        return;
    current->bury();
    auto& all = current->subjects;
    auto const self =
        std::find_if(all.begin(), all.end(), [=](Subject& each) { return each.real == object; });
    if (self == all.end())
        return;
    self->busy = true;
    if (self->leaving) { // nobody else may come upon it before the library knows that it dies
        self->leaving = current->oneIn(2);
        if (!self->leaving)
            return;
        current->calmly([=] { object->isolate(false); });
    }
    ++current->depth;
    for (int i = current->depth > 3 ? 0 : current->below(4); i > 0; --i) {
        ++current->counts.reentries;
        current->calmly([] { current->act(); });
    }
    --current->depth;
}

void Zoo::act() {
    struct Weighted {
        Operation operation;
        int weight;
    };
    constexpr std::array<Weighted, 10> operations{{{&Zoo::link, 40},
                                                   {&Zoo::unlink, 6},
                                                   {&Zoo::removeOne, 14},
                                                   {&Zoo::removeAll, 6},
                                                   {&Zoo::rename, 14},
                                                   {&Zoo::search, 3},
                                                   {&Zoo::isolate, 3},
                                                   {&Zoo::takeApart, 3},
                                                   {&Zoo::leaveOwner, 2},
                                                   {&Zoo::destroy, 5}}};
    bury();
    if (subjects.size() < 8 || (subjects.size() < 30 && oneIn(12)))
        create();
    int left = below(96);
    std::size_t which = 0;
    while ((left -= operations[which].weight) >= 0)
        ++which;
    Subject* const subject = any();
    if (!subject)
        return;
    auto const& ends = subject->shape->ends;
    End const* end = nullptr;
    for (int tries = 0; tries < 8 && (!end || contents(*subject->real, *end).empty()); ++tries)
        end = ends.empty() ? nullptr : ends[static_cast<std::size_t>(below(ends.size()))];
    if (end)
        (this->*operations[which].operation)(*subject, *end);
    bury();
}

// ---- operations -------------------------------------------------------------------------------------------

void Zoo::link(Subject& subject, End const&) {
    // Over any end that leads to another object.
    std::vector<std::pair<End const*, QORObject*>> ways;
    for (Subject const& far : subjects)
        if (&far != &subject && !far.leaving && isWhole(far))
            for (End const* end : subject.shape->ends)
                if (far.shape->isA(model::endOf(end->farId).ownerId))
                    ways.emplace_back(end, far.real);
    if (ways.empty())
        return;
    auto const [end, far] = ways[static_cast<std::size_t>(below(ways.size()))];
    guarded([&, chosen = end, other = far] { chosen->add(*subject.real, other); });
}

void Zoo::unlink(Subject& subject, End const& end) {
    std::vector<QORObject*> const held = contents(*subject.real, end);
    if (!held.empty())
        guarded([&] { end.unlink(*subject.real, held[static_cast<std::size_t>(below(held.size()))]); });
}

void Zoo::removeOne(Subject& subject, End const& end) {
    if (end.container == Container::NONE) {
        bool const before = std::exchange(subject.busy, true);
        guarded([&] { end.remove(*subject.real); });
        subject.busy = before;
        return;
    }
    int const form = below(3);
    QORString const title = name();
    int cursor = below(3);
    int const position = below(4);
    QORObject& real = *subject.real;
    guarded([&] {
        if (form == 0)
            end.removeAt(real, position);
        else
            end.removeNamed(real, title, form == 1 ? &cursor : nullptr);
    });
}

void Zoo::removeAll(Subject& subject, End const& end) {
    if (end.container == Container::NONE)
        return;
    bool const before = std::exchange(subject.busy, true);
    guarded([&] { end.removeAll(*subject.real); });
    subject.busy = before;
}

void Zoo::rename(Subject& subject, End const&) {
    QORString const title = name();
    guarded([&] { subject.real->setName(title); });
}

void Zoo::search(Subject& subject, End const& end) {
    QORString const title = name();
    int cursor = below(3);
    if (end.find)
        guarded([&] { end.find(*subject.real, title, &cursor); });
    if (end.byPosition)
        guarded([&] { end.byPosition(*subject.real); });
}

void Zoo::isolate(Subject& subject, End const&) {
    bool const deleting = oneIn(2);
    bool const before = std::exchange(subject.busy, true);
    guarded([&] { subject.real->isolate(deleting); });
    subject.busy = before;
}

void Zoo::takeApart(Subject& subject, End const&) {
    bool const before = std::exchange(subject.busy, true);
    guarded([&] { subject.real->recursiveDelete(); });
    subject.busy = before;
}

void Zoo::leaveOwner(Subject& subject, End const&) {
    guarded([&] { subject.real->removeAggregationAssembly(); });
}

/// Deletes an object as a caller does who doesn't know whether somebody is at work on it.
void Zoo::destroy(Subject& subject, End const&) {
    if (subject.busy)
        return;
    subject.busy = true;
    QORObject* const real = subject.real;
    bool free = depth == 0;
    if (!free)
        guarded([&] {
            while (real->removeAggregationAssembly()) {
            }
            free = real->recursiveDelete();
        });
    if (!free) {
        subject.busy = false;
        return;
    }
    subject.leaving = subject.ofCaller && reentrant;
    bool const before = std::exchange(armed, throwing);
    delete real;
    armed = before;
}

// ---- checks -----------------------------------------------------------------------------------------------

/// Forgets the objects whose memory has come back.
void Zoo::bury() {
    for (QORObject const* dead : deaths::take()) {
        ++counts.deaths;
        subjects.remove_if([=](Subject const& each) { return each.real == dead; });
    }
}

std::vector<QORObject*> Zoo::contents(QORObject const& object, End const& end) const {
    std::vector<QORObject*> held;
    if (end.container == Container::NONE) {
        if (QORObject* const far = end.get(object))
            held.push_back(far);
        return held;
    }
    for (int i = 0, count = end.count(object); i < count; ++i)
        if (QORObject* const element = end.at(object, i))
            held.push_back(element);
    return held;
}

void Zoo::checkEnd(Subject const& subject, End const& end) {
    std::string const what = std::string(subject.shape->type->name) + "::" + end.role;
    std::vector<QORObject*> const held = contents(*subject.real, end);
    if (end.container != Container::NONE && end.count(*subject.real) != static_cast<int>(held.size()))
        throw Mismatch(what + " counts more than it holds");
    if (std::set<QORObject*>(held.begin(), held.end()).size() != held.size())
        throw Mismatch(what + " holds an object twice");
    for (QORObject* far : held) {
        auto const other = std::find_if(subjects.begin(), subjects.end(),
                                        [=](Subject const& each) { return each.real == far; });
        if (other == subjects.end())
            throw Mismatch(what + " holds a dead object");
        std::vector<QORObject*> const back = contents(*far, model::endOf(end.farId));
        if (std::count(back.begin(), back.end(), subject.real) != 1)
            throw Mismatch(what + " has no answer at the far end");
    }
}

void Zoo::check() {
    for (Subject const& subject : subjects) {
        bool isSet = false;
        for (End const* end : subject.shape->ends) {
            checkEnd(subject, *end);
            isSet |= !contents(*subject.real, *end).empty();
        }
        if (isSet != subject.real->isReferenced())
            throw Mismatch(std::string(subject.shape->type->name) + " doesn't know whether it has links");
    }
}

void Zoo::step() {
    act();
    check();
}

void Zoo::clear() {
    reentrant = false;
    while (!subjects.empty()) {
        delete subjects.back().real;
        bury();
        check();
    }
}

// ---- runs -------------------------------------------------------------------------------------------------

constexpr int stepsOfARun = 250;
constexpr unsigned secondsForARun = 60;

#if defined(__SANITIZE_ADDRESS__)
constexpr long usualRuns = 60;
#else
constexpr long usualRuns = 500;
#endif

int runOne(unsigned long seed, bool throwing, bool reentrant, Zoo::Counts& counts) {
    try {
        deaths::watchAll(true);
        long const blocks = deaths::liveBlocks();
        {
            Zoo zoo(seed, throwing, reentrant);
            for (int i = 0; i < stepsOfARun; ++i)
                zoo.step();
            counts = zoo.counts;
            zoo.clear();
        }
        if (deaths::liveBlocks() - blocks > 8)
            throw Mismatch(std::to_string(deaths::liveBlocks() - blocks) + " blocks of memory are left");
        return 0;
    } catch (std::exception const& error) {
        std::cerr << error.what() << std::endl;
        return 1;
    }
}

/// Makes what is made once only, so that no run counts it as left.
void prepare() {
    metamodel::ends();
    for (metamodel::Class const& each : metamodel::classes())
        if (each.name)
            model::shapeOf(each.id);
    model::Universe::prepare();
}

/// Runs many zoos, each in a process of its own.
Zoo::Counts run(bool throwing, bool reentrant) {
    char const* const chosen = std::getenv("QOR_RANDOM_SEED");
    unsigned long const first = chosen ? std::strtoul(chosen, nullptr, 10) : 1;
    Zoo::Counts sum;
    prepare();
    for (unsigned long seed = first; seed < first + usualRuns; ++seed) {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0)
            throw std::runtime_error("no pipe can be made");
        pid_t const child = fork();
        if (child == 0) {
            alarm(secondsForARun);
            Zoo::Counts counts;
            int const code = runOne(seed, throwing, reentrant, counts);
            bool const told = write(ends[1], &counts, sizeof counts) == sizeof counts;
            _exit(told ? code : 2);
        }
        close(ends[1]);
        Zoo::Counts counts;
        bool const heard = read(ends[0], &counts, sizeof counts) == sizeof counts;
        close(ends[0]);
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(heard && status == 0) << "QOR_RANDOM_SEED=" << seed << ", status " << status;
        if (!heard || status != 0)
            break;
        sum.thrown += counts.thrown;
        sum.deaths += counts.deaths;
        sum.reentries += counts.reentries;
    }
    std::cout << sum.thrown << " overrides threw, " << sum.deaths << " deaths, " << sum.reentries
              << " operations in destructors\n";
    return sum;
}

} // namespace

TEST(UnrulyClasses, OverridesThatThrowLeaveBothEndsOfEachLinkInStep) {
    Zoo::Counts const counts = run(true, false);
    EXPECT_LT(10 * usualRuns, counts.thrown);
}

TEST(UnrulyClasses, DestructorsMayDoAnythingToWhatIsBeingTakenApart) {
    Zoo::Counts const counts = run(false, true);
    EXPECT_LT(10 * usualRuns, counts.reentries);
}

TEST(UnrulyClasses, BothTogether) {
    Zoo::Counts const counts = run(true, true);
    EXPECT_LT(10 * usualRuns, counts.thrown);
    EXPECT_LT(10 * usualRuns, counts.reentries);
}
