#include "values.h"

WorkloadSize const* WorkloadSize::find(char const* letter) {
    static constexpr WorkloadSize sizes[] = {
        {"T", 2, 3, 20}, {"S", 10, 100, 20}, {"M", 100, 100, 20}, {"L", 100, 500, 20}};
    for (WorkloadSize const& size : sizes) {
        if (*size.name == *letter)
            return &size;
    }
    return nullptr;
}

namespace {

/// Calls the visitor on every object of the model in the order of the build.
template <class Visitor>
void eachObject(WorkloadSize const& size, Visitor& visitor) {
    unsigned object = 0;
    unsigned attribute = 0;
    visitor.element(values::modelName(), object++);
    for (unsigned type = 0; type < unsigned{WorkloadSize::types}; ++type)
        visitor.element(values::typeName(type), object++);
    for (unsigned package = 0; package < static_cast<unsigned>(size.packages); ++package) {
        visitor.element(values::packageName(package), object++);
        for (unsigned ofPackage = 0; ofPackage < static_cast<unsigned>(size.classes); ++ofPackage) {
            visitor.classifier(ofPackage, object++);
            for (unsigned ofClass = 0; ofClass < static_cast<unsigned>(size.attributes); ++ofClass)
                visitor.attribute(values::attributeName(ofClass), object++, attribute++);
        }
    }
}

struct BuiltLength {
    std::uint64_t sum = 0;

    void element(Text const& name, unsigned object) { sum += name.size() + values::comment(object).size(); }
    void classifier(unsigned ofPackage, unsigned object) { element(values::className(ofPackage), object); }
    void attribute(Text const& name, unsigned object, unsigned number) {
        // The visibilities read as PUBLIC, PROTECTED, PRIVATE and IMPLEMENTATION.
        static constexpr unsigned visibilityLength[] = {6, 9, 7, 14};
        element(name, object);
        sum += values::alias(number).size() + values::initialValue(number).size() +
               visibilityLength[values::visibility(number)] + Text(values::multiplicity(number)).size();
    }
};

/// Each text with the byte E9 has grown by one byte.
struct RecodedLength {
    std::uint64_t sum = 0;

    void element(Text const& name, unsigned object) {
        sum += name.size() + values::newComment(object).size() + 1;
    }
    void classifier(unsigned ofPackage, unsigned object) {
        element(values::newClassName(ofPackage), object);
        ++sum;
    }
    void attribute(Text const& name, unsigned object, unsigned number) {
        element(name, object);
        sum += values::alias(number).size() + 1 + values::initialValue(number).size() + 1;
    }
};

} // namespace

std::uint64_t values::expectedTextLength(WorkloadSize const& size) {
    BuiltLength visitor;
    eachObject(size, visitor);
    return visitor.sum;
}

std::uint64_t values::expectedRecodedLength(WorkloadSize const& size) {
    RecodedLength visitor;
    eachObject(size, visitor);
    return visitor.sum;
}
