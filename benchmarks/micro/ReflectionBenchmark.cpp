// Looking up the records of classes, attributes and link ends, and using them.

#include "PerItem.h"

#include <qor/QOR.h>

#include <memory>
#include <vector>

namespace {

QORMetaRepository const& repository() {
    return *QORMetaRepository::getMetaRepository();
}

std::vector<QORMetaClass const*> allClasses() {
    std::vector<QORMetaClass const*> classes;
    for (int number = 0; number <= 150; ++number) {
        if (auto const* const metaClass = repository().getMetaClassByID(static_cast<QORElementType>(number)))
            classes.push_back(metaClass);
    }
    return classes;
}

void classByDisplayName(benchmark::State& state) {
    auto const classes = allClasses();
    for (auto _ : state) {
        for (auto const* const metaClass : classes)
            benchmark::DoNotOptimize(
                repository().getMetaClassByDisplayName(metaClass->getDisplayName().chars));
    }
    reportPerItem(state, static_cast<double>(classes.size()));
}
BENCHMARK(classByDisplayName);

void classOfObject(benchmark::State& state) {
    std::unique_ptr<QORObject> const object = std::make_unique<QORAttribute>();
    for (auto _ : state)
        benchmark::DoNotOptimize(object->getMetaClass());
}
BENCHMARK(classOfObject);

/// Looks up every record of the class of attributes through `find`.
template <class Record, class Find>
void lookUpAll(benchmark::State& state, QORVector const& records, Find find) {
    for (auto _ : state) {
        for (int position = 0; position < records.size; ++position)
            benchmark::DoNotOptimize(find(*static_cast<Record const*>(records[position])));
    }
    reportPerItem(state, records.size);
}

QORMetaClass const& attributeClass() {
    return *QORAttribute::getStaticMetaClass();
}

template <class Find>
void attribute(benchmark::State& state, Find find) {
    lookUpAll<QORMetaAttribute>(state, attributeClass().getMetaAttributes(), find);
}
BENCHMARK_CAPTURE(attribute, byID, [](QORMetaAttribute const& wanted) {
    return attributeClass().getMetaAttributeByID(wanted.getId());
});
BENCHMARK_CAPTURE(attribute, byName, [](QORMetaAttribute const& wanted) {
    return attributeClass().getMetaAttributeByName(wanted.getName().chars);
});
BENCHMARK_CAPTURE(attribute, byDisplayName, [](QORMetaAttribute const& wanted) {
    return attributeClass().getMetaAttributeByDisplayName(wanted.getDisplayName().chars);
});

template <class Find>
void linkEnd(benchmark::State& state, Find find) {
    lookUpAll<QORMetaLink>(state, attributeClass().getMetaLinks(), find);
}
BENCHMARK_CAPTURE(linkEnd, byID,
                  [](QORMetaLink const& wanted) { return attributeClass().getMetaLinkByID(wanted.getId()); });
BENCHMARK_CAPTURE(linkEnd, byName, [](QORMetaLink const& wanted) {
    return attributeClass().getMetaLinkByName(wanted.getName().chars);
});
BENCHMARK_CAPTURE(linkEnd, byRoleName, [](QORMetaLink const& wanted) {
    return attributeClass().getMetaLinkByRoleName(wanted.getRoleName().chars);
});

void getValue(benchmark::State& state, QORMetaClass* metaClass, char const* name) {
    std::unique_ptr<QORObject> const object(metaClass->newInstance());
    QORMetaAttribute const& record = *metaClass->getMetaAttributeByDisplayName(name);
    for (auto _ : state)
        benchmark::DoNotOptimize(record.getValue(object.get()).length);
}

void setValue(benchmark::State& state, QORMetaClass* metaClass, char const* name, char const* value) {
    std::unique_ptr<QORObject> const object(metaClass->newInstance());
    QORMetaAttribute const& record = *metaClass->getMetaAttributeByDisplayName(name);
    QORString text(value);
    for (auto _ : state)
        record.setValue(object.get(), text);
}

// One attribute of each kind.
#define QOR_VALUE(kind, type, name, value)                                                                   \
    BENCHMARK_CAPTURE(getValue, kind, type::getStaticMetaClass(), name);                                     \
    BENCHMARK_CAPTURE(setValue, kind, type::getStaticMetaClass(), name, value)

QOR_VALUE(text, QORAttribute, "comment", "a comment that is too long to lie in the string itself");
QOR_VALUE(flag, QORAttribute, "cppStatic", "true");
QOR_VALUE(number, QORAttribute, "position", "12345");
QOR_VALUE(enumeration, QORAttribute, "cppScope", "PRIVATE");
QOR_VALUE(date, QORModel, "creationTime", "12:34:56 2001-02-03");

/// Links through the record and unlinks through the class.
void addLink(benchmark::State& state) {
    QORClass owner;
    QORAttribute attributeOfOwner;
    QORMetaLink const& end = *owner.getMetaClass()->getMetaLinkByRoleName("feature");
    for (auto _ : state) {
        benchmark::DoNotOptimize(end.addLink(&owner, &attributeOfOwner));
        owner.removeFeature(static_cast<QORFeature*>(&attributeOfOwner));
    }
}
BENCHMARK(addLink);

void getLink(benchmark::State& state) {
    QORClass owner;
    auto* const attributeOfOwner = new QORAttribute;
    owner.addFeature(attributeOfOwner);
    QORMetaLink const& end = *owner.getMetaClass()->getMetaLinkByRoleName("feature");
    for (auto _ : state)
        benchmark::DoNotOptimize(end.getLink(&owner, 0));
}
BENCHMARK(getLink);

} // namespace
