// Builds a model of packages, classes and attributes, takes it through ten phases and prints what each one
// took. Phases and lines are those of the programs that the library is measured beside.

#include "phases.h"
#include "report.h"

#include <cstdio>
#include <cstring>
#include <gnu/libc-version.h>
#include <memory>

namespace {

/// Counts the bytes of all texts that the workload sets.
struct TextBytes : QORTraversalOperation {
    bool pre_process(QORObject* object, void*&) override {
        auto const& element = static_cast<QORModelObject const&>(*object);
        bytes += lengthOf(element.getName()) + lengthOf(element.getComment());
        if (element.getElementType() == QORElementType::ATTRIBUTE) {
            auto const& attribute = static_cast<QORAttribute const&>(element);
            bytes += lengthOf(attribute.getPhysicalName()) + lengthOf(attribute.getInitialValue());
        }
        return true;
    }

    static std::uint64_t lengthOf(QORString const& text) { return std::strlen(text.chars); }

    std::uint64_t bytes = 0;
};

void checkThatNamesakeIsRefused(QORClass& owner, QORString const& taken) {
    QORAttribute namesake;
    namesake.setName(taken);
    WORKLOAD_REQUIRE(!owner.addFeature(&namesake));
}

bool isRenamed(QORObject& object, QORString const& name) {
    try {
        object.setName(name);
        return true;
    } catch (...) {
        return false;
    }
}

/// Opens the elements of a package to a search by name.
struct PackageElements : QORDesignPackage {
    static QORObject* find(QORDesignPackage const& package, QORString const& name) {
        QORModelElementLinkTree const& elements = *(package.*(&PackageElements::modelElement_));
        return static_cast<QORObject*>(elements.findFirst(&name, nullptr));
    }
};

void checkRenamed(Workload& workload) {
    QORString name;
    QORClass& first = *workload.classes.front();
    QORDesignPackage& package = *first.getDesignPackage();
    WORKLOAD_REQUIRE(PackageElements::find(package, values::newClassName(0).into(name)) == &first);
    WORKLOAD_REQUIRE(!isRenamed(first, values::newClassName(1).into(name)));
}

void checkThatCopiesCount(QORAttribute const& attribute) {
    QORAttribute copy(attribute);
    copy.setInitialValue(attribute.getInitialValue() + QORString("x"));
    WORKLOAD_REQUIRE(copy != attribute);
    WORKLOAD_REQUIRE(!copy.getParent() && !copy.getType());
}

void checkRecoded(Workload& workload) {
    TextBytes counter;
    workload.model->depthTraversal(counter, nullptr);
    WORKLOAD_REQUIRE(counter.bytes == values::expectedRecodedLength(workload.size));
    unsigned ofPackage = 0;
    QORString name;
    for (QORClass* const classifier : workload.classes) {
        values::recodedClassName(ofPackage).into(name);
        WORKLOAD_REQUIRE(PackageElements::find(*classifier->getDesignPackage(), name) == classifier);
        if (++ofPackage == static_cast<unsigned>(workload.size.classes))
            ofPackage = 0;
    }
}

void checkLinksLeft(Workload const& workload) {
    std::uint64_t owned = 0;
    std::uint64_t typed = 0;
    for (QORClass const* const classifier : workload.classes)
        owned += static_cast<unsigned>(classifier->getFeatureCount());
    for (QORDerivedType const* const type : workload.types)
        typed += static_cast<unsigned>(type->getFeatureCount());
    WORKLOAD_REQUIRE(owned == workload.size.attributeCount() - workload.size.victimCount());
    WORKLOAD_REQUIRE(typed == owned);
}

void run(WorkloadSize const& size, char const* program) {
    Report report(program, size);
    Workload workload(size);
    auto const phase = [&](char const* name, std::size_t count, std::uint64_t (*what)(Workload&)) {
        return report.phase(name, count, [&] { return what(workload); });
    };

    WORKLOAD_REQUIRE(phase("1-build", size.objectCount(), phaseBuild) == size.objectCount());
    checkThatNamesakeIsRefused(*workload.classes.front(), workload.attributeNames.front());
    WORKLOAD_REQUIRE(phase("2-find", size.attributeCount(), phaseFind) == size.attributeCount());
    WORKLOAD_REQUIRE(phase("3-walk", size.objectCount(), phaseWalk) == size.objectCount());
    WORKLOAD_REQUIRE(phase("4-reflect-read", size.objectCount(), phaseReflectRead) ==
                     values::expectedTextLength(size));
    WORKLOAD_REQUIRE(phase("5-reflect-write", size.objectCount(), phaseReflectWrite) == size.objectCount());
    WORKLOAD_REQUIRE(phase("6-rename", size.classCount(), phaseRename) == size.classCount());
    checkRenamed(workload);
    WORKLOAD_REQUIRE(phase("7-copy", size.attributeCount(), phaseCopy) == size.attributeCount());
    checkThatCopiesCount(*workload.victims.front());
    phase("8-recode", size.objectCount(), phaseRecode);
    checkRecoded(workload);
    WORKLOAD_REQUIRE(phase("9-unlink-delete", size.victimCount(), phaseUnlinkDelete) == size.victimCount());
    checkLinksLeft(workload);
    phase("10-teardown", size.objectCount() - size.victimCount(), phaseTeardown);
    report.peak();
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 1 && std::strcmp(argv[1], "--toolchain") == 0) {
        std::printf("compiler %s, C library %s, %d bits\n", __VERSION__, gnu_get_libc_version(),
                    static_cast<int>(sizeof(void*) * 8));
        return 0;
    }
    WorkloadSize const* const size = WorkloadSize::find(argc > 1 ? argv[1] : "S");
    if (!size) {
        std::fprintf(stderr, "usage: %s [T|S|M|L [name]] | --toolchain\n", argv[0]);
        return 2;
    }
    run(*size, argc > 2 ? argv[2] : "qor");
}
