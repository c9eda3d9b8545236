#pragma once

#include <qor/QORDate.h>
#include <qor/QORMetaAttributeType.h>
#include <qor/QORString.h>

#include <algorithm>
#include <limits>
#include <type_traits>

class QORObject;

/// How a meta attribute reads the value of an object: a getter of any class through one plain function
/// pointer. The getter itself is only ever called through its own type.
class QORGetValueWrapper {
public:
    /// Wraps nothing.
    QORGetValueWrapper() = default;

    /// Wraps a getter: `QORGetValueWrapper::of<&QORClass::getCppScope>()`. It returns a bool, short, int,
    /// long or enumeration, or a const reference to a QORString or QORDate.
    template <auto getter>
    static constexpr QORGetValueWrapper of() {
        return wrap<getter>(getter);
    }

    /// Tells whether a getter is wrapped.
    bool isFilled() const { return filled; }
    /// The kind of the value; only for a filled wrapper.
    QORMetaAttributeType getType() const { return type; }

    /// The value of a bool, short, int, long or enumeration; only if a getter of that kind is wrapped.
    long getNumber(QORObject const* object) const { return number(object); }
    /// The value of a text; only if a getter of that kind is wrapped.
    QORString const& getString(QORObject const* object) const { return string(object); }
    /// The value of a date; only if a getter of that kind is wrapped.
    QORDate const& getDate(QORObject const* object) const { return date(object); }

private:
    using NumberFunction = long (*)(QORObject const*);
    using StringFunction = QORString const& (*)(QORObject const*);
    using DateFunction = QORDate const& (*)(QORObject const*);

    constexpr QORGetValueWrapper(QORMetaAttributeType kind, NumberFunction function)
        : filled(true), type(kind), number(function) {}
    explicit constexpr QORGetValueWrapper(StringFunction function)
        : filled(true), type(QORMetaAttributeType::STRING), string(function) {}
    explicit constexpr QORGetValueWrapper(DateFunction function)
        : filled(true), type(QORMetaAttributeType::DATE), date(function) {}

    template <auto getter, class Class, class Value>
    static constexpr QORGetValueWrapper wrap(Value (Class::*)() const) {
        using Plain = std::decay_t<Value>;
        if constexpr (std::is_same_v<Plain, QORString>) {
            static_assert(std::is_reference_v<Value>, "a text is returned by reference");
            return QORGetValueWrapper(call<getter, Class, QORString const&>);
        } else if constexpr (std::is_same_v<Plain, QORDate>) {
            static_assert(std::is_reference_v<Value>, "a date is returned by reference");
            return QORGetValueWrapper(call<getter, Class, QORDate const&>);
        } else {
            return QORGetValueWrapper(numberType<Plain>(), call<getter, Class, long>);
        }
    }

    template <auto getter, class Class, class Result>
    static Result call(QORObject const* object) {
        return static_cast<Result>((static_cast<Class const*>(object)->*getter)());
    }

    template <class Value>
    static constexpr QORMetaAttributeType numberType() {
        if constexpr (std::is_same_v<Value, bool>) {
            return QORMetaAttributeType::BOOL;
        } else if constexpr (std::is_same_v<Value, short>) {
            return QORMetaAttributeType::SHORT;
        } else if constexpr (std::is_enum_v<Value>) {
            static_assert(std::is_same_v<std::underlying_type_t<Value>, int>, "enumerations are ints");
            return QORMetaAttributeType::ENUM;
        } else {
            static_assert(std::is_same_v<Value, int> || std::is_same_v<Value, long>, "no kind of attribute");
            return QORMetaAttributeType::INT;
        }
    }

    friend class QORSetValueWrapper;

    bool filled = false;
    QORMetaAttributeType type = QORMetaAttributeType::BOOL;
    union {
        NumberFunction number = nullptr;
        StringFunction string;
        DateFunction date;
    };
};

/// How a meta attribute writes the value of an object: a setter of any class through one plain function
/// pointer. The setter itself is only ever called through its own type.
class QORSetValueWrapper {
public:
    /// Wraps nothing.
    QORSetValueWrapper() = default;

    /// Wraps a setter: `QORSetValueWrapper::of<&QORClass::setCppScope>()`. It takes a bool, short, int, long
    /// or enumeration, or a const reference to a QORString or QORDate.
    template <auto setter>
    static constexpr QORSetValueWrapper of() {
        return wrap<setter>(setter);
    }

    /// Tells whether a setter is wrapped.
    bool isFilled() const { return filled; }
    /// The kind of the value; only for a filled wrapper.
    QORMetaAttributeType getType() const { return type; }

    /// Sets a bool, short, int, long or enumeration; only if a setter of that kind is wrapped. A number
    /// that the setter's type can't hold becomes the nearest one that it can.
    void setNumber(QORObject* object, long value) const { number(object, value); }
    /// Sets a text; only if a setter of that kind is wrapped. Throws what the setter throws.
    void setString(QORObject* object, QORString const& value) const { string(object, value); }
    /// Sets a date; only if a setter of that kind is wrapped.
    void setDate(QORObject* object, QORDate const& value) const { date(object, value); }

private:
    using NumberFunction = void (*)(QORObject*, long);
    using StringFunction = void (*)(QORObject*, QORString const&);
    using DateFunction = void (*)(QORObject*, QORDate const&);

    constexpr QORSetValueWrapper(QORMetaAttributeType kind, NumberFunction function)
        : filled(true), type(kind), number(function) {}
    explicit constexpr QORSetValueWrapper(StringFunction function)
        : filled(true), type(QORMetaAttributeType::STRING), string(function) {}
    explicit constexpr QORSetValueWrapper(DateFunction function)
        : filled(true), type(QORMetaAttributeType::DATE), date(function) {}

    template <auto setter, class Class, class Value>
    static constexpr QORSetValueWrapper wrap(void (Class::*)(Value)) {
        using Plain = std::decay_t<Value>;
        if constexpr (std::is_same_v<Plain, QORString>) {
            return QORSetValueWrapper(call<setter, Class, QORString>);
        } else if constexpr (std::is_same_v<Plain, QORDate>) {
            return QORSetValueWrapper(call<setter, Class, QORDate>);
        } else {
            return QORSetValueWrapper(QORGetValueWrapper::numberType<Plain>(),
                                      callNumber<setter, Class, Plain>);
        }
    }

    template <auto setter, class Class, class Value>
    static void call(QORObject* object, Value const& value) {
        (static_cast<Class*>(object)->*setter)(value);
    }

    template <auto setter, class Class, class Value>
    static void callNumber(QORObject* object, long value) {
        (static_cast<Class*>(object)->*setter)(held<Value>(value));
    }

    template <class Value>
    static Value held(long value) {
        if constexpr (std::is_enum_v<Value>) {
            return static_cast<Value>(held<int>(value));
        } else {
            long const lowest = std::numeric_limits<Value>::min();
            long const highest = std::numeric_limits<Value>::max();
            return static_cast<Value>(std::clamp(value, lowest, highest));
        }
    }

    bool filled = false;
    QORMetaAttributeType type = QORMetaAttributeType::BOOL;
    union {
        NumberFunction number = nullptr;
        StringFunction string;
        DateFunction date;
    };
};

/// The function that returns the value of an enumeration for its text, for any enumeration.
class QORGetEnumIDByNameWrapper {
public:
    /// Wraps nothing.
    QORGetEnumIDByNameWrapper() = default;

    /// Wraps a function: `QORGetEnumIDByNameWrapper::of<&getSortOrderTypeByName>()`.
    template <auto function>
    static constexpr QORGetEnumIDByNameWrapper of() {
        QORGetEnumIDByNameWrapper wrapper;
        wrapper.filled = true;
        wrapper.pointer = call<function>;
        return wrapper;
    }

    /// Tells whether a function is wrapped.
    bool isFilled() const { return filled; }
    /// What the function returns for a text; -1 if none is wrapped.
    int getID(char const* name) const { return filled ? pointer(name) : -1; }

private:
    template <auto function>
    static int call(char const* name) {
        return static_cast<int>(function(name));
    }

    bool filled = false;
    int (*pointer)(char const*) = nullptr;
};

/// The function that returns the text of an enumeration's value, for any enumeration.
class QORGetEnumNameByIDWrapper {
public:
    /// Wraps nothing.
    QORGetEnumNameByIDWrapper() = default;

    /// Wraps a function: `QORGetEnumNameByIDWrapper::of<&getSortOrderTypeName>()`.
    template <auto function>
    static constexpr QORGetEnumNameByIDWrapper of() {
        return wrap<function>(function);
    }

    /// Tells whether a function is wrapped.
    bool isFilled() const { return filled; }
    /// What the function returns for a value; null if none is wrapped.
    char const* getName(int id) const { return filled ? pointer(id) : nullptr; }
    /// Whether both wrap the same function, and were made in the same library or program.
    bool operator==(QORGetEnumNameByIDWrapper const& other) const { return pointer == other.pointer; }
    bool operator!=(QORGetEnumNameByIDWrapper const& other) const { return !(*this == other); }

private:
    template <auto function, class Enumeration>
    static constexpr QORGetEnumNameByIDWrapper wrap(char const* (*)(Enumeration)) {
        QORGetEnumNameByIDWrapper wrapper;
        wrapper.filled = true;
        wrapper.pointer = call<function, Enumeration>;
        return wrapper;
    }

    template <auto function, class Enumeration>
    static char const* call(int id) {
        return function(static_cast<Enumeration>(id));
    }

    bool filled = false;
    char const* (*pointer)(int) = nullptr;
};

/// How a meta link reads one far object of an end: a function and what it needs to know of the end.
class QORGetLinkWrapper {
public:
    /// Returns the far object at a position, or null; a unary end ignores the position.
    using Function = QORObject* (*)(QORObject const* object, void const* end, int index);

    /// Wraps nothing.
    QORGetLinkWrapper() = default;
    /// Wraps a function, which is called with `end`.
    constexpr QORGetLinkWrapper(Function function, void const* ofEnd)
        : filled(function != nullptr), pointer(function), end(ofEnd) {}

    /// Tells whether a function is wrapped.
    bool isFilled() const { return filled; }
    /// What the function returns; null if none is wrapped.
    QORObject* getLink(QORObject const* object, int index) const {
        return filled ? pointer(object, end, index) : nullptr;
    }
    /// What the function is called with.
    void const* getEnd() const { return end; }

private:
    bool filled = false;
    Function pointer = nullptr;
    void const* end = nullptr;
};

/// How a meta link counts the far objects of an end: a function and what it needs to know of the end.
class QORGetLinkCountWrapper {
public:
    /// Returns the number of far objects.
    using Function = int (*)(QORObject const* object, void const* end);

    /// Wraps nothing.
    QORGetLinkCountWrapper() = default;
    /// Wraps a function, which is called with `end`.
    constexpr QORGetLinkCountWrapper(Function function, void const* ofEnd)
        : filled(function != nullptr), pointer(function), end(ofEnd) {}

    /// Tells whether a function is wrapped.
    bool isFilled() const { return filled; }
    /// What the function returns; 0 if none is wrapped.
    int getLinkCount(QORObject const* object) const { return filled ? pointer(object, end) : 0; }

private:
    bool filled = false;
    Function pointer = nullptr;
    void const* end = nullptr;
};
