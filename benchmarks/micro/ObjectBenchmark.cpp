// What single objects do: being made, linked, renamed, compared and copied.

#include "PerItem.h"

#include <qor/QOR.h>

#include <memory>

namespace {

void factory(benchmark::State& state) {
    auto const type = static_cast<QORElementType>(state.range(0));
    for (auto _ : state) {
        std::unique_ptr<QORObject> const object(createQORObject(type));
        benchmark::DoNotOptimize(object.get());
    }
    state.SetLabel(getElementTypeName(type));
}
BENCHMARK(factory)
    ->Arg(QORElementType::NOTE)
    ->Arg(QORElementType::ATTRIBUTE)
    ->Arg(QORElementType::CLASS)
    ->Arg(QORElementType::MODEL);

/// One object of each class that the factory makes.
void factoryOfAllClasses(benchmark::State& state) {
    QORMetaRepository const& records = *QORMetaRepository::getMetaRepository();
    std::vector<QORElementType> types;
    for (int number = 0; number <= 150; ++number) {
        QORMetaClass const* const metaClass = records.getMetaClassByID(static_cast<QORElementType>(number));
        if (metaClass && !metaClass->isAbstract() && std::unique_ptr<QORObject>(metaClass->newInstance()))
            types.push_back(metaClass->getId());
    }
    for (auto _ : state) {
        for (QORElementType const type : types)
            delete createQORObject(type);
    }
    reportPerItem(state, static_cast<double>(types.size()));
}
BENCHMARK(factoryOfAllClasses);

/// Opens the primitives of links, on ends of each shape.
class Linked : public QORObject {
public:
    bool linkUnary(Linked& other) { return _adduu(&one, &other.one, &other); }
    bool linkNaryUnary(Linked& other) { return _addnu(&many, &other.one, &other); }
    bool linkNary(Linked& other) { return _addnn(&many, &other.many, &other); }
    QORObject* find(QORString const& wanted) const {
        int cursor = 0;
        return _getn(&many, wanted, &cursor);
    }
    bool removeMany(Linked& other) { return _removen(&many, &other); }
    void clear() { one = nullptr; }

private:
    QORObject* one = nullptr;
    QORNameLinkTree many;
};

void linkUnaryEnds(benchmark::State& state) {
    Linked left;
    Linked right;
    for (auto _ : state) {
        benchmark::DoNotOptimize(left.linkUnary(right));
        left.clear();
        right.clear();
    }
}
BENCHMARK(linkUnaryEnds);

void linkNaryWithUnaryEnd(benchmark::State& state) {
    Linked left;
    Linked right;
    for (auto _ : state) {
        benchmark::DoNotOptimize(left.linkNaryUnary(right));
        left.removeMany(right);
        right.clear();
    }
}
BENCHMARK(linkNaryWithUnaryEnd);

void linkNaryEnds(benchmark::State& state) {
    Linked left;
    Linked right;
    for (auto _ : state) {
        benchmark::DoNotOptimize(left.linkNary(right));
        left.removeMany(right);
        right.removeMany(left);
    }
}
BENCHMARK(linkNaryEnds);

/// Finds elements with their positions, which a tree has to count.
void findByName(benchmark::State& state) {
    Linked left;
    std::vector<std::unique_ptr<Linked>> others;
    for (int i = 0; i < state.range(0); ++i) {
        others.push_back(std::make_unique<Linked>());
        others.back()->setName(QORString("element_") + QORString(i));
        left.linkNaryUnary(*others.back());
    }
    std::size_t const step = others.size() / 10;
    for (auto _ : state) {
        for (std::size_t at = 0; at < others.size(); at += step)
            benchmark::DoNotOptimize(left.find(others[at]->getName()));
    }
    reportPerItem(state, 10);
    for (auto const& other : others) {
        left.removeMany(*other);
        other->clear();
    }
}
BENCHMARK(findByName)->Arg(10)->Arg(1000)->Arg(100000);

/// A class with the given number of attributes.
std::unique_ptr<QORClass> classWith(std::int64_t attributes) {
    auto owner = std::make_unique<QORClass>();
    for (int i = 0; i < attributes; ++i) {
        auto* const attribute = new QORAttribute;
        attribute->setName(QORString("attribute_") + QORString(i));
        owner->addFeature(attribute);
    }
    return owner;
}

void addAndRemoveOwned(benchmark::State& state) {
    auto const owner = classWith(state.range(0));
    QORAttribute attribute;
    attribute.setName("newcomer");
    for (auto _ : state) {
        owner->addFeature(&attribute);
        owner->removeFeature(static_cast<QORFeature*>(&attribute));
    }
}
BENCHMARK(addAndRemoveOwned)->Arg(0)->Arg(1000);

void renameOwned(benchmark::State& state) {
    auto const owner = classWith(state.range(0));
    QORAttribute* const attribute = owner->getAttribute(0);
    QORString const names[] = {"attribute_0", "zzz"};
    int turn = 0;
    for (auto _ : state)
        attribute->setName(names[++turn % 2]);
}
BENCHMARK(renameOwned)->Arg(1)->Arg(1000);

void deleteWithOwned(benchmark::State& state) {
    for (auto _ : state) {
        std::unique_ptr<QORClass> owner = classWith(state.range(0));
        timeIteration(state, [&] { owner.reset(); });
    }
    reportPerItem(state, static_cast<double>(state.range(0) + 1));
}
BENCHMARK(deleteWithOwned)->Arg(20)->Arg(1000)->UseManualTime();

void walk(benchmark::State& state) {
    struct : QORTraversalOperation {
        bool pre_process(QORObject*, void*&) override {
            ++visited;
            return true;
        }
        std::int64_t visited = 0;
    } operation;
    auto const owner = classWith(state.range(0));
    for (auto _ : state)
        owner->depthTraversal(operation, nullptr);
    reportPerItem(state, static_cast<double>(state.range(0) + 1));
}
BENCHMARK(walk)->Arg(20)->Arg(100000);

void copy(benchmark::State& state) {
    QORAttribute attribute;
    attribute.setName("attribute");
    attribute.setComment("a comment that is too long to lie in the string itself");
    for (auto _ : state) {
        QORAttribute const copied(attribute);
        benchmark::DoNotOptimize(&copied);
    }
}
BENCHMARK(copy);

void compare(benchmark::State& state) {
    QORAttribute const attribute;
    QORAttribute const same;
    for (auto _ : state)
        benchmark::DoNotOptimize(attribute == same);
}
BENCHMARK(compare);

/// Questions that every class answers on its own.
template <class Question>
void ask(benchmark::State& state, Question question) {
    auto const owner = classWith(1);
    QORAttribute const& attribute = *owner->getAttribute(0);
    for (auto _ : state)
        benchmark::DoNotOptimize(question(attribute));
}
BENCHMARK_CAPTURE(ask, getParent, [](QORObject const& object) { return object.getParent(); });
BENCHMARK_CAPTURE(ask, getParentCount, [](QORObject const& object) { return object.getParentCount(); });
BENCHMARK_CAPTURE(ask, isReferenced, [](QORObject const& object) { return object.isReferenced(); });
BENCHMARK_CAPTURE(ask, isInstanceOf,
                  [](QORObject const& object) { return object.isInstanceOf(QORElementType::ELEMENT); });
BENCHMARK_CAPTURE(ask, getDisplayName, [](QORObject const& object) { return object.getDisplayName(); });

} // namespace
