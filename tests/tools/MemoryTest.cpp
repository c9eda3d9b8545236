// What each verb takes for deep and wide graphs: no more than by the number of objects.

#include "RunProgram.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sys/resource.h>

namespace {

/// Sanitizers take address space and memory of their own.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isPlainBuild = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(memory_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool isPlainBuild = false;
#else
constexpr bool isPlainBuild = true;
#endif
#else
constexpr bool isPlainBuild = true;
#endif

/// A graph as JSON, of which the objects and links can be added in any order.
class GraphText {
public:
    GraphText() { add("Model", "shop"); }

    std::size_t add(std::string const& className, std::string const& name) {
        objects += objects.empty() ? "" : ",\n";
        objects += "{\"number\": " + std::to_string(++count) + ", \"class\": \"" + className +
                   "\", \"attributes\": {\"name\": \"" + name + "\"}}";
        return count;
    }

    void link(std::size_t from, char const* role, std::size_t to) {
        links += (links.empty() ? "" : ",\n") + std::string("{\"from\": ") + std::to_string(from) +
                 ", \"role\": \"" + role + "\", \"to\": [" + std::to_string(to) + "]}";
    }

    std::string text() const {
        return "{\n\"format\": \"qor-graph\",\n\"version\": 1,\n\"objects\": [\n" + objects +
               "\n],\n\"links\": [\n" + links + "\n]\n}\n";
    }

private:
    std::size_t count = 0;
    std::string objects;
    std::string links;
};

/// Packages, each in the one before.
std::string chain(std::size_t size, std::string const& name) {
    GraphText graph;
    for (std::size_t i = 0; i < size; ++i) {
        std::size_t const made = graph.add("DesignPackage", name + std::to_string(i));
        graph.link(made - 1, "childPackage", made);
    }
    return graph.text();
}

/// Classes in one package.
std::string star(std::size_t size, std::string const& name) {
    GraphText graph;
    std::size_t const package = graph.add("DesignPackage", "p");
    graph.link(1, "childPackage", package);
    for (std::size_t i = 0; i < size; ++i) {
        graph.link(package, "modelElement", graph.add("Class", name + std::to_string(i)));
    }
    return graph.text();
}

/// Classes of two attributes each.
std::string owners(std::size_t size, std::string const& name) {
    GraphText graph;
    std::size_t const package = graph.add("DesignPackage", "p");
    graph.link(1, "childPackage", package);
    for (std::size_t i = 0; i < size / 3; ++i) {
        std::size_t const owner = graph.add("Class", name + std::to_string(i));
        graph.link(package, "modelElement", owner);
        for (char const* column : {"a", "b"}) {
            graph.link(owner, "feature", graph.add("Attribute", column));
        }
    }
    return graph.text();
}

/// Notes of one package that are all alike.
std::string alike(std::size_t size, std::string const&) {
    GraphText graph;
    for (std::size_t i = 0; i < size; ++i) {
        graph.link(1, "note", graph.add("Note", ""));
    }
    return graph.text();
}

struct Shape {
    char const* name;
    std::string (*make)(std::size_t size, std::string const& name);
};

class Memory : public testing::TestWithParam<Shape> {
protected:
    void SetUp() override {
        if (!isPlainBuild) {
            GTEST_SKIP() << "sanitizers take memory of their own";
        }
    }

    std::string graphOf(std::size_t size, std::string const& name) const {
        std::string path = folder.file(name + std::to_string(size) + ".json");
        std::ofstream(path) << GetParam().make(size, name);
        return path;
    }

    /// Runs the program with less memory than anything that grows faster than the graph would take.
    static ProgramResult run(std::vector<std::string> command) {
        command.insert(command.begin(), QOR_TOOL);
        ProgramResult result = runProgram(command, [] {
            rlimit const most = {rlim_t{512} << 20, rlim_t{512} << 20};
            setrlimit(RLIMIT_DATA, &most);
        });
        EXPECT_LT(result.exitCode, 2) << result.err;
        return result;
    }

    TemporaryFolder folder;
};

std::vector<std::vector<std::string>> commandsFor(std::string const& graph, std::string const& other) {
    return {{"import", graph},
            {"show", graph, "--stats"},
            {"show", graph, "--path", "/"},
            {"export", graph, "--format", "json"},
            {"export", graph, "--format", "dot"},
            {"export", graph, "--format", "markdown"},
            {"export", graph, "--format", "sql", "--dialect", "sqlite"},
            {"export", graph, "--format", "sql", "--dialect", "postgresql"},
            {"diff", graph, graph},
            {"diff", graph, other},
            {"diff", graph, other, "--format", "json"},
            {"recode", graph, "--from", "ISO-8859-1", "--to", "UTF-8"}};
}

TEST_P(Memory, GrowsWithTheNumberOfObjectsAndNoFaster) {
    constexpr std::size_t size = 5000;
    auto const few = commandsFor(graphOf(size, "a"), graphOf(size, "b"));
    auto const many = commandsFor(graphOf(2 * size, "a"), graphOf(2 * size, "b"));
    for (std::size_t i = 0; i < few.size(); ++i) {
        std::string const command = testing::PrintToString(few[i]);
        ProgramResult const half = run(few[i]);
        ProgramResult const whole = run(many[i]);
        // By the square it would be four times as much.
        EXPECT_LT(static_cast<double>(whole.peakMemory), 2.5 * static_cast<double>(half.peakMemory))
            << command;
        EXPECT_LT(static_cast<double>(whole.out.size()), 2.5 * static_cast<double>(half.out.size()) + 1000)
            << command;
    }
}

INSTANTIATE_TEST_SUITE_P(Shapes, Memory,
                         testing::Values(Shape{"Chain", chain}, Shape{"Star", star}, Shape{"Owners", owners},
                                         Shape{"Alike", alike}),
                         [](testing::TestParamInfo<Shape> const& shape) { return shape.param.name; });

} // namespace
