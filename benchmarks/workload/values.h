#pragma once

#include <qor/QORString.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

/// How many packages, classes a package and attributes a class the workload's model has.
struct WorkloadSize {
    char const* name;
    int packages;
    int classes;
    int attributes;

    static constexpr int types = 50;

    std::size_t classCount() const {
        return static_cast<std::size_t>(packages) * static_cast<std::size_t>(classes);
    }
    std::size_t attributeCount() const { return classCount() * static_cast<std::size_t>(attributes); }
    std::size_t objectCount() const {
        return 1 + types + static_cast<std::size_t>(packages) + classCount() + attributeCount();
    }
    /// Every tenth attribute is deleted on its own.
    std::size_t victimCount() const { return (attributeCount() + 9) / 10; }

    /// The size with that first letter (T, S, M or L), null for another one.
    static WorkloadSize const* find(char const* letter);
};

/// A text that is put together in place, as a loader has it in its input buffer. The byte E9, which isn't
/// ASCII, stands in most texts, so that the change of encoding has something to do.
class Text {
public:
    /// The parts, literals and numbers, one after the other.
    template <class... Parts>
    explicit Text(Parts const&... parts) {
        (add(parts), ...);
    }

    /// Hands the bytes and their number over to `target`, which keeps the memory that it has.
    QORString& into(QORString& target) const {
        target.init(bytes, length);
        return target;
    }

    unsigned size() const { return static_cast<unsigned>(length); }

private:
    template <std::size_t size>
    void add(char const (&literal)[size]) {
        std::memcpy(bytes + length, literal, size - 1);
        length += static_cast<int>(size - 1);
    }

    void add(unsigned number) {
        char digits[10];
        int count = 0;
        do
            digits[count++] = static_cast<char>('0' + number % 10);
        while (number /= 10);
        while (count)
            bytes[length++] = digits[--count];
    }

    char bytes[64];
    int length = 0;
};

/// What the model's objects hold. `object` numbers all objects in the order of the build, `attribute` all
/// attributes of the model.
namespace values {

inline Text modelName() {
    return Text("Model");
}
inline Text typeName(unsigned type) {
    return Text("Type_", type);
}
inline Text packageName(unsigned package) {
    return Text("Package_", package);
}
inline Text className(unsigned classOfPackage) {
    return Text("Class_", classOfPackage);
}
inline Text attributeName(unsigned attributeOfClass) {
    return Text("attr_", attributeOfClass);
}
inline Text comment(unsigned object) {
    return Text("comment \xE9 of element no ", object);
}
inline Text alias(unsigned attribute) {
    return Text("al\xE9_", attribute % 1000);
}
inline Text initialValue(unsigned attribute) {
    return Text("init\xE9_", attribute);
}
inline Text newComment(unsigned object) {
    return Text("rewritten \xE9 comment no ", object);
}
inline Text newClassName(unsigned classOfPackage) {
    return Text("Renam\xE9", "d_", classOfPackage);
}
/// The same name in UTF-8.
inline Text recodedClassName(unsigned classOfPackage) {
    return Text("Renam\xC3\xA9", "d_", classOfPackage);
}
inline unsigned visibility(unsigned attribute) {
    return attribute % 4;
}
inline unsigned multiplicity(unsigned attribute) {
    return attribute % 100;
}
/// The type that an attribute refers to, spread over all of them.
inline unsigned typeOf(unsigned attribute) {
    return (static_cast<std::uint32_t>(attribute * 2654435761U) >> 16) % WorkloadSize::types;
}
inline bool isVictim(unsigned attribute) {
    return attribute % 10 == 0;
}

/// The number of characters of all texts that reading all attributes gives right after the build.
std::uint64_t expectedTextLength(WorkloadSize const& size);
/// The number of bytes of all strings after the rename, the new comments and the change to UTF-8.
std::uint64_t expectedRecodedLength(WorkloadSize const& size);

} // namespace values
