#include <qor/QORString.h>

#include <charconv>
#include <climits>
#include <cstdarg>
#include <cstdint>
#include <functional>
#include <stdexcept>

namespace {

// Read-only on purpose: a write through the shared empty text would change every empty string at once.
// As long as the part of a text that is compared at once.
constexpr char emptyText[sizeof(std::uint64_t)] = {};

int checkedLength(std::uint64_t count) {
    if (count > static_cast<std::uint64_t>(INT_MAX)) {
        throw std::length_error("QORString: the text is too long");
    }
    return static_cast<int>(count);
}

int checkedSum(int left, int right) {
    if (right > INT_MAX - left) {
        throw std::length_error("QORString: the text is too long");
    }
    return left + right;
}

char* allocate(int capacity) {
    return new char[static_cast<std::size_t>(capacity) + 1];
}

void copyCharacters(char* target, char const* text, int count) noexcept {
    std::memmove(target, text, static_cast<std::size_t>(count));
}

/// Copies from sizeof(Word) to twice as many characters as two words, which may overlap; so may the texts.
template <class Word>
void copyAsWords(char* target, char const* text, int count) noexcept {
    Word first;
    Word last;
    std::memcpy(&first, text, sizeof first);
    std::memcpy(&last, text + count - sizeof last, sizeof last);
    std::memcpy(target, &first, sizeof first);
    std::memcpy(target + count - sizeof last, &last, sizeof last);
}

/// `copyCharacters` for texts of which most are shorter than two words of 64 bits.
void copyShortText(char* target, char const* text, int count) noexcept {
    if (count > 16)
        copyCharacters(target, text, count);
    else if (count >= 8)
        copyAsWords<std::uint64_t>(target, text, count);
    else if (count >= 4)
        copyAsWords<std::uint32_t>(target, text, count);
    else if (count >= 2)
        copyAsWords<std::uint16_t>(target, text, count);
    else
        *target = *text;
}

} // namespace

struct QORString::ConstantTag {};

struct QORStringConstants {
    static constexpr QORString::ConstantTag tag{};
};

char* const QORString::emptyPtr = const_cast<char*>(emptyText);

QORString const emptyString(QORStringConstants::tag, const_cast<char*>(emptyText));

/// An append under way: the place for the whole text is found before the string changes.
struct QORString::Appending {
    QORString& string;
    int capacity;
    char* target;
    int end;

    Appending(QORString& changed, int total)
        : string(changed), capacity(changed.capacity()), target(changed.heapBuffer()), end(changed.length) {
        if (total > capacity) {
            capacity = changed.grownCapacity(total);
            target = allocate(capacity);
            copyCharacters(target, changed.chars, end);
        } else if (target == nullptr) {
            target = changed.store;
        }
    }

    void append(char const* text, int count) noexcept {
        copyCharacters(target + end, text, count);
        end += count;
    }

    void finish() noexcept { string.adopt(target, capacity, end); }
};

QORString::QORString(char character) : QORString() {
    assign(&character, character == '\0' ? 0 : 1);
}

QORString::QORString(int number) : QORString() {
    char digits[32];
    std::to_chars_result const result = std::to_chars(digits, digits + sizeof digits, number);
    assign(digits, static_cast<int>(result.ptr - digits));
}

QORString& QORString::operator+=(QORString const& other) {
    if (other.length == 0) {
        return *this;
    }
    Appending appending(*this, checkedSum(length, other.length));
    appending.append(other.chars, other.length);
    appending.finish();
    return *this;
}

QORString& QORString::add(char const* text, ...) {
    std::va_list pieces;
    std::uint64_t total = static_cast<std::uint64_t>(length);
    va_start(pieces, text);
    for (char const* piece = text; piece != nullptr; piece = va_arg(pieces, char const*)) {
        total += pieceLength(piece);
    }
    va_end(pieces);
    if (total == static_cast<std::uint64_t>(length)) {
        return *this;
    }
    Appending appending(*this, checkedLength(total));
    va_start(pieces, text);
    for (char const* piece = text; piece != nullptr; piece = va_arg(pieces, char const*)) {
        appending.append(piece, static_cast<int>(pieceLength(piece)));
    }
    va_end(pieces);
    appending.finish();
    return *this;
}

void QORString::init(char const* text, int count) {
    if (text == nullptr) {
        assign(emptyText, 0);
    } else if (count < 0) {
        assign(text, checkedLength(std::strlen(text)));
    } else {
        assign(text, static_cast<int>(::strnlen(text, static_cast<std::size_t>(count))));
    }
}

void QORString::reserve(int count) {
    if (count <= capacity()) {
        return;
    }
    char* buffer = allocate(count);
    std::memset(buffer, 0, headSize); // a short text leaves these as they are
    if (length != 0) {
        copyCharacters(buffer, chars, length);
        adopt(buffer, count, length);
        return;
    }
    // The empty text stays the shared one; the buffer waits in the private bytes.
    delete[] heapBuffer();
    std::memcpy(store, &count, sizeof count);
    std::memcpy(store + sizeof count, &buffer, sizeof buffer);
}

QORString QORString::mid(unsigned int start, unsigned int count) const {
    QORString part;
    unsigned int const whole = static_cast<unsigned int>(length);
    if (start < whole) {
        unsigned int const rest = whole - start;
        part.assign(chars + start, static_cast<int>(count < rest ? count : rest));
    }
    return part;
}

int QORString::hashCode() const noexcept {
    return stringHashCode(chars);
}

int QORString::capacity() const noexcept {
    if (heapBuffer() == nullptr) {
        return inlineCapacity;
    }
    int count;
    std::memcpy(&count, store, sizeof count);
    return count;
}

// Growing by half keeps repeated appends linear.
int QORString::grownCapacity(int needed) const noexcept {
    int const now = capacity();
    int const grown = now > INT_MAX - now / 2 ? INT_MAX : now + now / 2;
    return needed > grown ? needed : grown;
}

// The length of a text that may be a tail of this string: an append under way may have overwritten its NUL.
std::size_t QORString::pieceLength(char const* text) const noexcept {
    std::less<char const*> const before;
    if (!before(text, chars) && !before(chars + length, text)) {
        return static_cast<std::size_t>(chars + length - text);
    }
    return std::strlen(text);
}

// Makes `count` characters in the buffer the text; the buffer is the store, the one at hand, or a new one.
void QORString::adopt(char* buffer, int bufferCapacity, int count) noexcept {
    buffer[count] = '\0';
    if (buffer != store) {
        char* old = heapBuffer();
        if (old != buffer) {
            delete[] old;
        }
        std::memcpy(store, &bufferCapacity, sizeof bufferCapacity);
    }
    chars = buffer;
    length = count;
}

void QORString::assign(char const* text, int count) {
    char* target = heapBuffer();
    if (target == nullptr && count <= inlineCapacity) {
        if (count == 0) {
            becomeEmpty();
            return;
        }
        copyShortText(store, text, count);
        store[count] = '\0';
        chars = store;
        length = count;
        return;
    }
    if (count == 0) {
        delete[] target;
        becomeEmpty();
        return;
    }
    int size = capacity();
    if (count > size) {
        target = allocate(count);
        size = count;
    }
    copyCharacters(target, text, count);
    adopt(target, size, count);
}

// A copy of a text that doesn't fit into `store`, for a string that has no memory yet.
void QORString::copyToHeap(QORString const& other) {
    char* const buffer = allocate(other.length);
    std::memcpy(buffer, other.chars, static_cast<std::size_t>(other.length) + 1);
    std::memcpy(store, &other.length, sizeof other.length);
    chars = buffer;
    length = other.length;
}

QORString operator+(QORString const& left, QORString const& right) {
    QORString sum;
    sum.reserve(checkedSum(left.length, right.length));
    sum += left;
    sum += right;
    return sum;
}

// FNV-1a, with the sign bit dropped so that a caller may take a remainder.
int stringHashCode(char const* text) noexcept {
    std::uint32_t hash = 2166136261U;
    for (; text != nullptr && *text != '\0'; ++text) {
        hash = (hash ^ static_cast<unsigned char>(*text)) * 16777619U;
    }
    return static_cast<int>(hash & 0x7fffffffU);
}
