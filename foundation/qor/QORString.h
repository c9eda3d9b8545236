#pragma once

#include <qor/QORExport.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

/// A text value of four words: the characters, their number, and two words private to the string.
///
/// Short texts live inside the object and need no allocation, longer ones live on the heap. An operation that
/// can't get memory throws std::bad_alloc and leaves the string as it was; a text longer than an int can
/// count is refused with std::length_error. Embedded NULs aren't supported.
class QOR_API QORString {
    struct ConstantTag;
    friend struct QORStringConstants;

public:
    /// The text of every empty string; constant-initialised, so any static initialiser can use it.
    static char* const emptyPtr;

    /// The NUL-terminated characters; never null, and equal to `emptyPtr` if the string is empty.
    char* chars;
    /// Number of characters, without the NUL.
    int length;

    /// An empty string.
    QORString() noexcept : chars(emptyPtr), length(0), store{} {}

    /// A copy of the text; null counts as empty.
    QORString(char const* text) : QORString() { init(text, -1); }

    /// A string of that one character; empty for the NUL.
    QORString(char character);

    /// The decimal digits of the number.
    QORString(int number);

    /// A copy, which takes no more memory than its text needs.
    QORString(QORString const& other) : QORString() {
        if (other.isInline()) {
            copyInline(other);
        } else if (other.length > inlineCapacity) {
            copyToHeap(other);
        } else if (other.length != 0) {
            assign(other.chars, other.length);
        }
    }

    /// Takes the text and the memory of the other string, which is empty afterwards.
    QORString(QORString&& other) noexcept : QORString() { steal(other); }

    /// Builds the shared empty string at compile time; only this library can name the tag.
    constexpr QORString(ConstantTag const&, char* text) noexcept : chars(text), length(0), store{} {}

    ~QORString() {
        if (char* buffer = heapBuffer()) {
            delete[] buffer;
        }
    }

    /// Assigns the text; memory at hand is used again if it is large enough.
    QORString& operator=(QORString const& other) {
        if (this == &other) {
            return *this;
        }
        if (other.isInline() && heapBuffer() == nullptr) {
            copyInline(other);
        } else {
            assign(other.chars, other.length);
        }
        return *this;
    }

    /// Takes the text and the memory of the other string, which is empty afterwards.
    QORString& operator=(QORString&& other) noexcept {
        if (this != &other) {
            if (char* buffer = heapBuffer()) {
                delete[] buffer;
            }
            steal(other);
        }
        return *this;
    }

    /// Appends the text, which may be this string's own.
    QORString& operator+=(QORString const& other);

    /// Appends each text of the list up to the null pointer that ends it; all or, if it throws, none.
    /// The texts may lie within this string.
    QORString& add(char const* text, ...);

    /// Sets the string from the first `count` characters of the text, or from all up to the NUL if `count` is
    /// negative; a NUL before that ends the text as well. Null counts as empty; the text may lie within this
    /// string.
    void init(char const* text, int count);

    /// Makes sure that the next assignment of up to `count` characters needs no memory and so can't throw.
    /// The text stays. Assigning an empty text frees the memory.
    void reserve(int count);

    /// Exchanges the two texts.
    void swap(QORString& other) noexcept {
        QORString kept(static_cast<QORString&&>(other));
        other = static_cast<QORString&&>(*this);
        *this = static_cast<QORString&&>(kept);
    }

    /// A new string of `count` characters from position `start` on, cut down to what the text has there.
    QORString mid(unsigned int start, unsigned int count) const;

    /// A hash of the text, never negative; equal to `stringHashCode(chars)`.
    int hashCode() const noexcept;

    /// The order of two texts by their bytes, as `std::strcmp` returns it: negative, 0 or positive.
    int compare(QORString const& other) const noexcept {
        std::uint64_t const mine = head();
        std::uint64_t const theirs = other.head();
        if (mine == theirs) {
            return length < headSize ? 0 : std::strcmp(chars + headSize, other.chars + headSize);
        }
        // Where they first differ counts, unless it lies after the NUL that ends both.
        if (__builtin_clzll(mine ^ theirs) / 8 > length) {
            return 0;
        }
        return mine < theirs ? -1 : 1;
    }

    /// True if both texts are equal.
    friend bool operator==(QORString const& left, QORString const& right) noexcept {
        return left.length == right.length &&
               std::memcmp(left.chars, right.chars, static_cast<std::size_t>(left.length)) == 0;
    }

    /// True if the texts differ.
    friend bool operator!=(QORString const& left, QORString const& right) noexcept {
        return !(left == right);
    }

private:
    static constexpr std::size_t storeSize = 4 * sizeof(void*) - sizeof(char*) - sizeof(int);
    static constexpr int inlineCapacity = static_cast<int>(storeSize) - 1;

    // Three uses, distinguished by `chars`. It points to `store`: the text itself. It points to the heap: the
    // buffer's capacity. It is `emptyPtr`: zeros, or the capacity and then the address of a reserved buffer.
    char store[storeSize];

    bool isInline() const noexcept { return chars == store; }

    static constexpr int headSize = sizeof(std::uint64_t);

    /// The first characters as a number that is ordered as they are; anything may follow the NUL of a shorter
    /// text. The memory of every text reaches that far.
    std::uint64_t head() const noexcept {
        std::uint64_t bytes;
        std::memcpy(&bytes, chars, sizeof bytes);
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
        bytes = __builtin_bswap64(bytes);
#endif
        return bytes;
    }

    char* reservedBuffer() const noexcept {
        char* buffer;
        std::memcpy(&buffer, store + sizeof(int), sizeof buffer);
        return buffer;
    }

    char* heapBuffer() const noexcept {
        if (isInline()) {
            return nullptr;
        }
        return chars == emptyPtr ? reservedBuffer() : chars;
    }

    void copyInline(QORString const& other) noexcept {
        std::memcpy(store, other.store, storeSize);
        chars = store;
        length = other.length;
    }

    void becomeEmpty() noexcept {
        chars = emptyPtr;
        length = 0;
        std::memset(store, 0, storeSize);
    }

    void steal(QORString& other) noexcept {
        std::memcpy(store, other.store, storeSize);
        chars = other.isInline() ? store : other.chars;
        length = other.length;
        other.becomeEmpty();
    }

    int capacity() const noexcept;
    int grownCapacity(int needed) const noexcept;
    std::size_t pieceLength(char const* text) const noexcept;
    void adopt(char* buffer, int bufferCapacity, int count) noexcept;
    void assign(char const* text, int count);
    void copyToHeap(QORString const& other);
    struct Appending;
};

static_assert(sizeof(QORString) == 4 * sizeof(void*), "a string is four words");

/// Exchanges the two texts.
inline void swap(QORString& left, QORString& right) noexcept {
    left.swap(right);
}

/// A new string of both texts, one after the other.
QOR_API QORString operator+(QORString const& left, QORString const& right);

/// The hash that `QORString::hashCode` returns for the same text; null counts as empty.
QOR_API int stringHashCode(char const* text) noexcept;

/// The shared empty string; constant-initialised, so any static initialiser can use it.
extern QOR_API QORString const emptyString;
