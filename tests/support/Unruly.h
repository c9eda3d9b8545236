#pragma once

#include <qor/QORObject.h>

#include <functional>
#include <utility>

/// What the overrides of callers' classes throw in tests.
struct OverrideError {};

/// While it lives, the call of an override after `spared` further ones throws once.
class FailingOverride {
public:
    explicit FailingOverride(int spared) { left = spared; }
    FailingOverride(FailingOverride const&) = delete;
    FailingOverride& operator=(FailingOverride const&) = delete;
    ~FailingOverride() { left = -1; }

    static void call() {
        if (left >= 0 && left-- == 0)
            throw OverrideError();
    }

private:
    inline static int left = -1;
};

/// Runs the operation with the first call of an override throwing, then the second and so on, until none
/// throws; `verify` runs after each failure. Returns the number of failures.
template <class Operation, class Verify>
int failEachOverride(Operation operation, Verify verify) {
    for (int spared = 0;; ++spared) {
        try {
            FailingOverride const failing(spared);
            operation();
            return spared;
        } catch (OverrideError const&) {
        }
        verify();
    }
}

/// A caller's class over one of the library, whose overrides may throw.
template <class Base>
class Unruly : public Base {
public:
    QORString const& getName() const override {
        FailingOverride::call();
        return Base::getName();
    }
    bool isReferenced() const override {
        FailingOverride::call();
        return Base::isReferenced();
    }
    bool recursiveDelete() override {
        FailingOverride::call();
        return Base::recursiveDelete();
    }
};

/// A new object of a caller's class whose overrides may throw.
template <class Base>
Unruly<Base>* unruly(char const* name) {
    auto* const object = new Unruly<Base>;
    object->setName(name);
    return object;
}

/// A caller's class over one of the library, whose destructor does something first.
template <class Base>
class Parting : public Base {
public:
    explicit Parting(std::function<void()> action) : whenDying(std::move(action)) {}
    Parting(Parting const&) = delete;
    Parting& operator=(Parting const&) = delete;
    ~Parting() override { whenDying(); }

private:
    std::function<void()> whenDying;
};
