// How the cost of an operation on a link end grows with the number of its elements: for each container class
// one end of the metamodel with up to 1,000,000 elements. Prints a table for each, in nanoseconds of
// processor time per element.
//
//   qor-growth [largest number of elements] [part of a container's name]

#include <qor/QOR.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

namespace {

/// The processor time of this process, so that others on the machine don't count.
struct Clock {
    using duration = std::chrono::nanoseconds;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<Clock>;
    static constexpr bool is_steady = true;

    static time_point now() {
        timespec spent{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &spent);
        return time_point(std::chrono::seconds(spent.tv_sec) + std::chrono::nanoseconds(spent.tv_nsec));
    }
};

bool failed = false;

/// Reports a result that isn't the expected one; the program then ends with status 3.
void require(bool holds, char const* container, char const* what) {
    if (holds)
        return;
    std::fprintf(stderr, "%s: %s\n", container, what);
    failed = true;
}

/// What an operation cost; `whole` tells whether it reached all elements before its time was up.
struct Cost {
    double nanoseconds = 0;
    bool whole = true;
};

/// How long an operation may take that looks at all elements each time, and any other one.
constexpr std::chrono::seconds scanLimit(1);
constexpr std::chrono::seconds usualLimit(60);

/// Calls `step` for 0 to `count` - 1 and gives the mean cost. Stops when the time is up, so that an operation
/// that grows too fast doesn't hold up the rest.
template <class Step>
Cost timeSteps(std::size_t count, std::chrono::seconds allowed, Step step) {
    constexpr std::size_t stepsBetweenLooks = 16;
    auto const start = Clock::now();
    auto const limit = start + allowed;
    std::size_t done = 0;
    while (done < count) {
        step(done);
        if (++done % stepsBetweenLooks == 0 && Clock::now() > limit)
            break;
    }
    std::chrono::duration<double, std::nano> const spent = Clock::now() - start;
    return {spent.count() / static_cast<double>(done), done == count};
}

/// Rows of operations, columns of sizes.
class Table {
public:
    void add(std::string const& operation, std::size_t size, Cost cost) {
        if (costs.find(operation) == costs.end())
            operations.push_back(operation);
        costs[operation][size] = cost;
    }

    void print(std::vector<std::size_t> const& sizes) const {
        std::printf("| operation |");
        for (std::size_t const size : sizes)
            std::printf(" %zu |", size);
        std::printf("\n|---|");
        for (std::size_t i = 0; i < sizes.size(); ++i)
            std::printf("---:|");
        std::printf("\n");
        for (std::string const& operation : operations) {
            std::printf("| %s |", operation.c_str());
            for (std::size_t const size : sizes) {
                Cost const& cost = costs.at(operation).at(size);
                std::printf(" %.0f%s |", cost.nanoseconds, cost.whole ? "" : " *");
            }
            std::printf("\n");
        }
        std::printf("\n");
        std::fflush(stdout);
    }

private:
    std::vector<std::string> operations;
    std::map<std::string, std::map<std::size_t, Cost>> costs;
};

/// The operations on one end of `End::Owner`. Elements come and go in random order unless an operation says
/// otherwise; those that aren't linked are deleted by this.
template <class End>
class Growth {
public:
    Growth(std::size_t count, Table& toFill) : table(toFill), owner(new typename End::Owner) {
        owner->setName("owner");
        for (std::size_t number = 0; number < count; ++number) {
            elements.push_back(new typename End::Element);
            elements.back()->setName(nameOf("element_", number));
        }
        shuffle(elements);
    }
    Growth(Growth const&) = delete;
    Growth& operator=(Growth const&) = delete;

    ~Growth() {
        for (Element* const element : elements) {
            if (!End::isLinked(*element))
                delete element;
        }
        delete owner;
    }

    void measure() {
        addAll("add");
        findAll();
        iterate();
        readByPosition();
        walk();
        rename();
        std::vector<Element*> order = inOrder();
        removeAll("remove in ascending order", order);
        addBack();
        std::reverse(order.begin(), order.end());
        removeAll("remove in descending order", order);
        addBack();
        shuffle(order);
        removeAll("remove in random order", order);
        addBack();
        deleteElements();
        deleteOwner();
    }

private:
    using Element = typename End::Element;

    static QORString nameOf(char const* prefix, std::size_t number) {
        char text[32];
        std::snprintf(text, sizeof text, "%s%07zu", prefix, number);
        return QORString(text);
    }

    void shuffle(std::vector<Element*>& items) { std::shuffle(items.begin(), items.end(), random); }

    template <class Step>
    void time(char const* operation, std::size_t count, Step step) {
        table.add(operation, elements.size(), timeSteps(count, usualLimit, step));
    }

    template <class Step>
    void timeScan(char const* operation, Step step) {
        table.add(operation, elements.size(), timeSteps(elements.size(), scanLimit, step));
    }

    /// The elements in the order of the end.
    std::vector<Element*> inOrder() const {
        std::vector<Element*> order;
        auto const& end = End::end(*owner);
        typename std::decay_t<decltype(end)>::Iterator place(end, true);
        for (QORContainerItem* item = place.get(); item; item = place.next())
            order.push_back(static_cast<Element*>(static_cast<QORObject*>(item)));
        return order;
    }

    void addAll(char const* operation) {
        time(operation, elements.size(), [&](std::size_t at) { End::add(*owner, *elements[at]); });
        require(End::end(*owner).size == static_cast<int>(elements.size()), End::container,
                "elements aren't linked");
    }

    /// Adds, unmeasured, what a removal has taken out.
    void addBack() {
        for (Element* const element : elements) {
            if (!End::isLinked(*element))
                End::add(*owner, *element);
        }
    }

    void findAll() {
        auto const& end = End::end(*owner);
        std::vector<Element*> wanted = elements;
        shuffle(wanted);
        std::size_t found = 0;
        timeScan("find by name", [&](std::size_t at) {
            found += end.findFirst(&wanted[at]->getName(), nullptr) == static_cast<QORObject*>(wanted[at]);
        });
        int positions = 0;
        timeScan("find by name, with its position",
                 [&](std::size_t at) { positions |= end.findFirstElement(&wanted[at]->getName()); });
        require(found > 0 && positions >= 0, End::container, "elements aren't found");
    }

    void iterate() {
        auto const& end = End::end(*owner);
        typename std::decay_t<decltype(end)>::Iterator place(end, true);
        time("iterate", elements.size(), [&](std::size_t) { place.next(); });
    }

    void readByPosition() {
        std::size_t missing = 0;
        auto const read = [&](std::size_t at) { missing += !End::at(*owner, static_cast<int>(at)); };
        time("read by position, ascending", elements.size(), read);
        time("read by position, descending", elements.size(),
             [&](std::size_t at) { read(elements.size() - 1 - at); });
        std::vector<std::size_t> places(elements.size());
        for (std::size_t at = 0; at < places.size(); ++at)
            places[at] = at;
        std::shuffle(places.begin(), places.end(), random);
        timeScan("read by position, random", [&](std::size_t at) { read(places[at]); });
        require(missing == 0, End::container, "positions are empty");
    }

    void walk() {
        struct : QORTraversalOperation {
            bool pre_process(QORObject*, void*&) override {
                ++visited;
                return true;
            }
            std::size_t visited = 0;
        } operation;
        timeOnce("walk (depthTraversal)", elements.size(), elements.size(),
                 [&] { owner->depthTraversal(operation, nullptr); });
        require(operation.visited == elements.size() + 1, End::container, "the walk misses elements");
    }

    void rename() {
        time("rename", elements.size(),
             [&](std::size_t at) { elements[at]->setName(nameOf("renamed_", elements.size() - at)); });
    }

    void removeAll(char const* operation, std::vector<Element*> const& order) {
        time(operation, order.size(), [&](std::size_t at) { End::remove(*owner, *order[at]); });
    }

    /// Deletes every other element on its own.
    void deleteElements() {
        std::size_t const half = elements.size() / 2;
        std::size_t deleted = 0;
        time("delete half of them, one by one", half, [&](std::size_t at) {
            delete elements[at];
            ++deleted;
        });
        sizeBefore = elements.size();
        elements.erase(elements.begin(), elements.begin() + static_cast<std::ptrdiff_t>(deleted));
    }

    void deleteOwner() {
        auto const left = static_cast<std::size_t>(End::end(*owner).size);
        std::vector<Element*> unlinked;
        for (Element* const element : elements) {
            if (!End::isLinked(*element))
                unlinked.push_back(element);
        }
        timeOnce("delete the owner with the rest", sizeBefore, left, [&] { delete owner; });
        owner = nullptr;
        elements = unlinked;
    }

    /// Times what reaches all elements at once.
    template <class Run>
    void timeOnce(char const* operation, std::size_t size, std::size_t count, Run run) {
        auto const start = Clock::now();
        run();
        std::chrono::duration<double, std::nano> const spent = Clock::now() - start;
        table.add(operation, size, {spent.count() / static_cast<double>(count), true});
    }

    Table& table;
    typename End::Owner* owner;
    std::vector<Element*> elements; ///< in random order
    std::size_t sizeBefore = 0;
    std::mt19937 random{12345};
};

// One end of each container class: the class that has it, the role, and the class of the elements.
#define QOR_END(containerClass, ownerClass, field, role, back, elementClass)                                 \
    struct containerClass##End {                                                                             \
        using Owner = ownerClass;                                                                            \
        using Element = elementClass;                                                                        \
        static constexpr char const* container = #containerClass;                                            \
        static constexpr char const* place = #ownerClass "." #field;                                         \
        struct Opened : Owner {                                                                              \
            static containerClass const& end(Owner const& owner) { return owner.*(&Opened::field##_); }      \
        };                                                                                                   \
        static containerClass const& end(Owner const& owner) { return Opened::end(owner); }                  \
        static bool add(Owner& owner, Element& element) { return owner.add##role(&element); }                \
        static bool remove(Owner& owner, Element& element) { return owner.remove##role(&element); }          \
        static bool at(Owner const& owner, int position) { return owner.get##role(position) != nullptr; }    \
        static bool isLinked(Element const& element) { return element.get##back() != nullptr; }              \
    }

QOR_END(QORNameLinkTree, QORTransformationActivity, transformationStep, TransformationStep,
        TransformationActivity, QORTransformationStep);
QOR_END(QORNamePtrLinkTree, QORMappingModel, transformation, Transformation, MappingModel, QORTransformation);
QOR_END(QORNameElementTypeLinkTree, QORDesignPackage, childPackage, ChildPackage, ParentPackage,
        QORDesignPackage);
QOR_END(QOROptionalNameLinkTree, QORClassifierMap, featureMap, FeatureMap, ClassifierMap, QORFeatureMap);
QOR_END(QORModelElementLinkTree, QORDesignPackage, modelElement, ModelElement, DesignPackage, QORDependency);
QOR_END(QORFormatLinkTree, QORVersion, format, Format, Version, QORFileFormat);
QOR_END(QORTypeValueLinkTree, QORDerivedType, typeValue, TypeValue, DerivedType, QORTypeValue);
QOR_END(QORPtrLinkTree, QORModelFormat, note, Note, Element, QORNote);
QOR_END(QORPtrLinkVector, QORGrouping, childGrouping, ChildGrouping, ParentGrouping, QORGrouping);

template <class End>
void measure(std::vector<std::size_t> const& sizes, std::string const& wanted) {
    if (std::string(End::container).find(wanted) == std::string::npos)
        return;
    Table table;
    for (std::size_t const size : sizes)
        Growth<End>(size, table).measure();
    std::printf("#### %s (%s)\n\n", End::container, End::place);
    table.print(sizes);
}

} // namespace

int main(int argc, char** argv) {
    std::size_t const largest = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 1000000;
    std::string const wanted = argc > 2 ? argv[2] : "";
    std::vector<std::size_t> sizes;
    for (std::size_t size = 10000; size <= std::min<std::size_t>(largest, 1000000); size *= 10)
        sizes.push_back(size);
    if (sizes.empty()) {
        std::fprintf(stderr, "usage: %s [10000 to 1000000 elements] [part of a container's name]\n", argv[0]);
        return 2;
    }
    measure<QORNameLinkTreeEnd>(sizes, wanted);
    measure<QORNamePtrLinkTreeEnd>(sizes, wanted);
    measure<QORNameElementTypeLinkTreeEnd>(sizes, wanted);
    measure<QOROptionalNameLinkTreeEnd>(sizes, wanted);
    measure<QORModelElementLinkTreeEnd>(sizes, wanted);
    measure<QORFormatLinkTreeEnd>(sizes, wanted);
    measure<QORTypeValueLinkTreeEnd>(sizes, wanted);
    measure<QORPtrLinkTreeEnd>(sizes, wanted);
    measure<QORPtrLinkVectorEnd>(sizes, wanted);
    std::printf("\\* stopped after a second, with the mean of what was done by then\n");
    return failed ? 3 : 0;
}
