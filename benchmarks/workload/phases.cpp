#include "phases.h"

#include <algorithm>
#include <memory>

Workload::Workload(WorkloadSize const& ofSize) : size(ofSize) {
    types.reserve(WorkloadSize::types);
    classes.reserve(size.classCount());
    victims.reserve(size.victimCount());
    for (unsigned ofClass = 0; ofClass < static_cast<unsigned>(size.attributes); ++ofClass) {
        QORString name;
        attributeNames.push_back(values::attributeName(ofClass).into(name));
    }
}

// ---- 1: build -------------------------------------------------------------------------------------------

namespace {

/// Builds the graph as a loader would that reads one record after the other.
class Builder {
public:
    explicit Builder(Workload& toFill) : workload(toFill) {}

    unsigned build() {
        QORModel* const model = workload.model = new QORModel;
        model->setName(values::modelName().into(text));
        comment(*model);
        for (unsigned type = 0; type < unsigned{WorkloadSize::types}; ++type)
            addType(type);
        for (unsigned package = 0; package < static_cast<unsigned>(workload.size.packages); ++package)
            addPackage(package);
        return objectCount;
    }

private:
    void comment(QORModelObject& object) { object.setComment(values::comment(objectCount++).into(text)); }

    void addType(unsigned number) {
        auto* const type = new QORDerivedType;
        type->setName(values::typeName(number).into(text));
        WORKLOAD_REQUIRE(workload.model->addType(type));
        comment(*type);
        workload.types.push_back(type);
    }

    void addPackage(unsigned number) {
        auto* const package = new QORDesignPackage;
        package->setName(values::packageName(number).into(text));
        WORKLOAD_REQUIRE(workload.model->addChildPackage(package));
        comment(*package);
        for (unsigned ofPackage = 0; ofPackage < static_cast<unsigned>(workload.size.classes); ++ofPackage)
            addClass(*package, ofPackage);
    }

    void addClass(QORDesignPackage& package, unsigned number) {
        auto* const classifier = new QORClass;
        classifier->setName(values::className(number).into(text));
        WORKLOAD_REQUIRE(package.addModelElement(classifier));
        comment(*classifier);
        workload.classes.push_back(classifier);
        for (unsigned ofClass = 0; ofClass < static_cast<unsigned>(workload.size.attributes); ++ofClass)
            addAttribute(*classifier, ofClass);
    }

    void addAttribute(QORClass& owner, unsigned ofClass) {
        unsigned const number = attributeCount++;
        auto* const attribute = new QORAttribute;
        attribute->setName(values::attributeName(ofClass).into(text));
        WORKLOAD_REQUIRE(owner.addFeature(attribute));
        comment(*attribute);
        attribute->setPhysicalName(values::alias(number).into(text));
        attribute->setInitialValue(values::initialValue(number).into(text));
        attribute->setCppScope(static_cast<QORVisibilityType>(values::visibility(number)));
        attribute->setPosition(static_cast<short>(values::multiplicity(number)));
        WORKLOAD_REQUIRE(attribute->addType(workload.types[values::typeOf(number)]));
        if (values::isVictim(number))
            workload.victims.push_back(attribute);
    }

    Workload& workload;
    QORString text; ///< lends its memory to each text on the way from the input to an object
    unsigned objectCount = 0;
    unsigned attributeCount = 0;
};

} // namespace

std::uint64_t phaseBuild(Workload& workload) {
    return Builder(workload).build();
}

// ---- 2: find --------------------------------------------------------------------------------------------

std::uint64_t phaseFind(Workload& workload) {
    std::uint64_t found = 0;
    for (QORClass* const classifier : workload.classes) {
        for (QORString const& name : workload.attributeNames)
            found += classifier->getAttribute(name, nullptr) != nullptr;
    }
    return found;
}

// ---- 3: walk --------------------------------------------------------------------------------------------

namespace {

struct Counter : QORTraversalOperation {
    bool pre_process(QORObject* object, void*&) override {
        ++byClass[static_cast<unsigned>(object->getElementType()) % classNumbers];
        return true;
    }

    static constexpr unsigned classNumbers = 256;
    std::uint64_t byClass[classNumbers] = {};
};

} // namespace

std::uint64_t phaseWalk(Workload& workload) {
    Counter counter;
    workload.model->depthTraversal(counter, nullptr);
    WORKLOAD_REQUIRE(counter.byClass[QORElementType::ATTRIBUTE] == workload.size.attributeCount());
    WORKLOAD_REQUIRE(counter.byClass[QORElementType::CLASS] == workload.size.classCount());
    std::uint64_t sum = 0;
    for (std::uint64_t const count : counter.byClass)
        sum += count;
    return sum;
}

// ---- 4: read by reflection ------------------------------------------------------------------------------

namespace {

/// Reads of each object what the workload fills in its class, through records that are chosen by their
/// display names when the class is first met. Visibilities come as the library's own texts, PUBLIC and so on.
class Reader : public QORTraversalOperation {
public:
    bool pre_process(QORObject* object, void*&) override {
        for (QORMetaAttribute const* const attribute : attributesOf(*object->getMetaClass()))
            sum += static_cast<unsigned>(attribute->getValue(object, room).length);
        return true;
    }

    std::uint64_t sum = 0;

private:
    QORString room;

    using Attributes = std::vector<QORMetaAttribute const*>;

    Attributes const& attributesOf(QORMetaClass const& metaClass) {
        std::unique_ptr<Attributes>& known = byClass[static_cast<unsigned>(metaClass.getId()) % classNumbers];
        if (!known)
            known = std::make_unique<Attributes>(choose(metaClass));
        return *known;
    }

    static Attributes choose(QORMetaClass const& metaClass) {
        Attributes chosen;
        auto const add = [&](char const* name) {
            QORMetaAttribute const* const attribute = metaClass.getMetaAttributeByDisplayName(name);
            WORKLOAD_REQUIRE(attribute);
            chosen.push_back(attribute);
        };
        for (char const* const name : {"name", "comment"})
            add(name);
        if (metaClass.getId() == QORElementType::ATTRIBUTE) {
            for (char const* const name : {"physicalName", "initialValue", "cppScope", "position"})
                add(name);
        }
        return chosen;
    }

    static constexpr unsigned classNumbers = 256;
    std::unique_ptr<Attributes> byClass[classNumbers];
};

} // namespace

std::uint64_t phaseReflectRead(Workload& workload) {
    Reader reader;
    workload.model->depthTraversal(reader, nullptr);
    return reader.sum;
}

// ---- 5: write by reflection -----------------------------------------------------------------------------

namespace {

struct Writer : QORTraversalOperation {
    bool pre_process(QORObject* object, void*&) override {
        QORMetaAttribute const* const comment =
            object->getMetaClass()->getMetaAttributeByDisplayName("comment");
        WORKLOAD_REQUIRE(comment);
        comment->setValue(object, values::newComment(count++).into(text));
        return true;
    }

    QORString text;
    unsigned count = 0;
};

} // namespace

std::uint64_t phaseReflectWrite(Workload& workload) {
    Writer writer;
    workload.model->depthTraversal(writer, nullptr);
    return writer.count;
}

// ---- 6 to 10 --------------------------------------------------------------------------------------------

std::uint64_t phaseRename(Workload& workload) {
    std::uint64_t renamed = 0;
    unsigned ofPackage = 0;
    QORString text;
    for (QORClass* const classifier : workload.classes) {
        classifier->setName(values::newClassName(ofPackage).into(text)); // throws if the name is taken
        ++renamed;
        if (++ofPackage == static_cast<unsigned>(workload.size.classes))
            ofPackage = 0;
    }
    return renamed;
}

std::uint64_t phaseCopy(Workload& workload) {
    std::uint64_t equal = 0;
    for (QORClass* const classifier : workload.classes) {
        for (int position = 0, count = classifier->getAttributeCount(); position < count; ++position) {
            QORAttribute const* const attribute = classifier->getAttribute(position);
            std::unique_ptr<QORAttribute> const copy = std::make_unique<QORAttribute>(*attribute);
            equal += *copy == *attribute;
        }
    }
    return equal;
}

std::uint64_t phaseRecode(Workload& workload) {
    std::unique_ptr<QOREncodingConverter> const from(QOREncodingConverter::create("ISO-8859-1"));
    std::unique_ptr<QOREncodingConverter> const to(QOREncodingConverter::create("UTF-8"));
    int converted = 0;
    int errors = 0;
    workload.model->transcode(from.get(), to.get(), converted, errors);
    WORKLOAD_REQUIRE(errors == 0);
    return static_cast<std::uint64_t>(converted);
}

std::uint64_t phaseUnlinkDelete(Workload& workload) {
    for (QORAttribute* const victim : workload.victims)
        delete victim;
    return workload.victims.size();
}

std::uint64_t phaseTeardown(Workload& workload) {
    delete workload.model;
    workload.model = nullptr;
    return 0;
}
