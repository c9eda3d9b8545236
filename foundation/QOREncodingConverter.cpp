#include <qor/QOREncodingConverter.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <iconv.h>
#include <link.h>
#include <memory>
#include <new>
#include <strings.h>
#include <sys/mman.h>
#include <unistd.h>

namespace {

char const* const utf8Names[] = {"UTF-8", "UTF8"};
char const* const latin1Names[] = {"ISO-8859-1", "ISO8859-1", "ISO_8859-1", "ISO88591", "8859_1",
                                   "LATIN1",     "L1",        "CP819",      "IBM819",   "ISO-IR-100"};
char const* const namesWithParentheses[] = {"NF_Z_62-010_(1973)"};

template <std::size_t count>
bool isOneOf(char const* name, char const* const (&names)[count]) {
    for (char const* known : names) {
        if (::strcasecmp(name, known) == 0) {
            return true;
        }
    }
    return false;
}

// A suffix such as //TRANSLIT names a way to convert, not an encoding; it would hide lost characters.
bool hasSuffix(char const* name) {
    char const* const suffix = std::strstr(name, "//");
    return suffix != nullptr && suffix[2] != '\0';
}

bool isAlphanumeric(char character) {
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z');
}

// The C library passes over what no name holds, and takes what is left empty for the encoding of the locale.
bool mayBeName(char const* name) {
    if (!isAlphanumeric(*name) || hasSuffix(name)) {
        return false;
    }
    auto const isOfName = [](char character) {
        return isAlphanumeric(character) || std::strchr("-_.:/", character) != nullptr;
    };
    return std::all_of(name, name + std::strlen(name), isOfName) || isOneOf(name, namesWithParentheses);
}

// ---- opening --------------------------------------------------------------------------------------------
//
// The C library reports an encoding as unknown, too, if it fails to load the module of that encoding.

/// Throws if the system has no file or no memory left with which a module could be loaded.
void requireRoomForModule() {
    constexpr std::size_t size = std::size_t{4} << 20; // bytes; some times the largest module
    int const file = ::open("/", O_PATH | O_CLOEXEC);
    if (file == -1 && (errno == EMFILE || errno == ENFILE || errno == ENOMEM)) {
        throw std::bad_alloc();
    }
    if (file != -1) {
        ::close(file);
    }
    void* const area =
        ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (area == MAP_FAILED) {
        throw std::bad_alloc();
    }
    ::munmap(area, size);
}

/// How many modules and libraries the process has begun to load so far.
unsigned long long loadsSoFar() {
    unsigned long long loads = 0;
    auto const read = [](dl_phdr_info* info, std::size_t, void* result) {
        *static_cast<unsigned long long*>(result) = info->dlpi_adds;
        return 1;
    };
    ::dl_iterate_phdr(read, &loads);
    return loads;
}

void closeDescriptor(void* descriptor) {
    if (descriptor != nullptr) {
        ::iconv_close(descriptor);
    }
}

/// Null if the name is reported as unknown; `loaded` is whether a module was loaded nevertheless.
void* tryToOpen(char const* to, char const* from, bool& loaded) {
    requireRoomForModule();
    unsigned long long const before = loadsSoFar();
    iconv_t const descriptor = ::iconv_open(to, from);
    if (descriptor != reinterpret_cast<iconv_t>(-1)) {
        return descriptor;
    }
    if (errno != EINVAL) {
        throw std::bad_alloc();
    }
    loaded = loadsSoFar() != before;
    return nullptr;
}

/// Where loading has failed for lack of memory, the dynamic loader may refuse a module for as long as another
/// one stays that shares a part with it. The C library drops what nobody uses as others come and go.
void dropIdleModules() {
    bool loaded;
    for (int i = 0; i < 4; ++i) {
        closeDescriptor(tryToOpen("UTF-8", "ISO-8859-1", loaded));
    }
}

/// Null if the C library doesn't know the names. Throws std::bad_alloc if it fails otherwise.
void* openDescriptor(char const* to, char const* from) {
    constexpr int attempts = 3;
    bool loaded = false;
    for (int i = 0; i < attempts; ++i) {
        if (void* const descriptor = tryToOpen(to, from, loaded)) {
            return descriptor;
        }
        if (loaded) {
            dropIdleModules();
        }
    }
    if (loaded) {
        throw std::bad_alloc();
    }
    return nullptr;
}

/// Runs one text through a descriptor; false if the text can't be converted without loss.
class Run {
public:
    Run(void* used, std::string& target) : descriptor(used), result(target) {
        ::iconv(descriptor, nullptr, nullptr, nullptr, nullptr);
    }

    bool convert(char const* text, std::size_t count) {
        result.resize(count + count / 2 + 16);
        char* input = const_cast<char*>(text);
        // The last step lets a stateful encoding give what it holds back.
        bool const converted = step(&input, &count) && step(nullptr, nullptr);
        result.resize(done);
        return converted;
    }

private:
    bool step(char** input, std::size_t* left) {
        for (;;) {
            char* output = &result[done];
            std::size_t room = result.size() - done;
            std::size_t const lossy = ::iconv(descriptor, input, left, &output, &room);
            int const error = errno;
            done = result.size() - room;
            if (lossy != static_cast<std::size_t>(-1)) {
                return lossy == 0;
            }
            if (error != E2BIG) {
                return false;
            }
            result.resize(result.size() * 2);
        }
    }

    void* descriptor;
    std::string& result;
    std::size_t done = 0;
};

// Escape and shift characters don't count: in a stateful encoding they change what follows.
bool isPlainAscii(char const* text, std::size_t count) {
    if (std::memchr(text, '\x1B', count) != nullptr || std::memchr(text, '\x0E', count) != nullptr ||
        std::memchr(text, '\x0F', count) != nullptr) {
        return false;
    }
    constexpr std::uint64_t highBits = 0x8080808080808080U;
    std::uint64_t seen = 0;
    for (; count >= sizeof seen; text += sizeof seen, count -= sizeof seen) {
        std::uint64_t part;
        std::memcpy(&part, text, sizeof part);
        seen |= part;
    }
    for (; count != 0; ++text, --count) {
        seen |= static_cast<unsigned char>(*text);
    }
    return (seen & highBits) == 0;
}

/// One character of a UTF-8 text: its code and the number of its bytes, which is 0 if the text is invalid
/// here.
struct Utf8Character {
    std::uint32_t code;
    std::size_t size;
};

Utf8Character utf8Character(char const* text, std::size_t left) {
    constexpr std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    std::uint32_t const lead = static_cast<unsigned char>(*text);
    if (lead < 0x80) {
        return {lead, 1};
    }
    std::size_t const size = lead < 0xC0 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF8 ? 4 : 0;
    if (size == 0 || size > left) {
        return {0, 0};
    }
    std::uint32_t code = lead & (0x7FU >> size);
    for (std::size_t i = 1; i < size; ++i) {
        std::uint32_t const next = static_cast<unsigned char>(text[i]);
        if ((next & 0xC0U) != 0x80) {
            return {0, 0};
        }
        code = code << 6 | (next & 0x3FU);
    }
    bool const valid = code >= smallest[size] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
    return {code, valid ? size : 0};
}

bool isUtf8(char const* text, std::size_t count) {
    for (std::size_t at = 0; at < count;) {
        std::size_t const size = utf8Character(text + at, count - at).size;
        if (size == 0) {
            return false;
        }
        at += size;
    }
    return true;
}

// The C library's encoders drop these characters without a word if the target lacks them.
bool hasTags(std::string const& utf8) {
    return utf8.find("\xF3\xA0\x80") != std::string::npos || utf8.find("\xF3\xA0\x81") != std::string::npos;
}

void latin1ToUtf8(char const* text, std::size_t count, std::string& result) {
    result.clear();
    result.reserve(count * 2);
    for (std::size_t i = 0; i < count; ++i) {
        unsigned const code = static_cast<unsigned char>(text[i]);
        if (code < 0x80) {
            result += static_cast<char>(code);
        } else {
            result += static_cast<char>(0xC0U | code >> 6);
            result += static_cast<char>(0x80U | (code & 0x3FU));
        }
    }
}

/// The same for the commonest conversion, which is done without a detour.
QORString latin1ToUtf8(QORString const& text) {
    char small[512];
    std::string large;
    char* bytes = small;
    if (static_cast<std::size_t>(text.length) * 2 >= sizeof small) {
        large.resize(static_cast<std::size_t>(text.length) * 2 + 1);
        bytes = large.data();
    }
    char* end = bytes;
    for (int i = 0; i < text.length; ++i) {
        unsigned const code = static_cast<unsigned char>(text.chars[i]);
        if (code >= 0x80)
            *end++ = static_cast<char>(0xC0U | code >> 6);
        *end++ = static_cast<char>(code < 0x80 ? code : 0x80U | (code & 0x3FU));
    }
    *end = '\0';
    return QORString(bytes);
}

bool utf8ToLatin1(std::string const& text, std::string& result) {
    result.clear();
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        Utf8Character const character = utf8Character(text.data() + at, text.size() - at);
        if (character.size == 0 || character.code > 0xFF) {
            return false;
        }
        result += static_cast<char>(character.code);
        at += character.size;
    }
    return true;
}

} // namespace

QOREncodingConverter::QOREncodingConverter(char const* encodingName, Kind encodingKind)
    : name(encodingName), kind(encodingKind), decoder(nullptr), encoder(nullptr) {}

QOREncodingConverter::~QOREncodingConverter() {
    closeDescriptor(decoder);
    closeDescriptor(encoder);
}

QOREncodingConverter* QOREncodingConverter::create(char const* encodingName) {
    if (encodingName == nullptr || !mayBeName(encodingName)) {
        return nullptr;
    }
    Kind const kind = isOneOf(encodingName, utf8Names)     ? Kind::UTF_8
                      : isOneOf(encodingName, latin1Names) ? Kind::ISO_8859_1
                                                           : Kind::OTHER;
    std::unique_ptr<QOREncodingConverter> converter(new QOREncodingConverter(encodingName, kind));
    return kind != Kind::OTHER || converter->open() ? converter.release() : nullptr;
}

bool QOREncodingConverter::open() {
    decoder = openDescriptor("UTF-8", name.chars);
    encoder = decoder == nullptr ? nullptr : openDescriptor(name.chars, "UTF-8");
    if (encoder == nullptr) {
        return false;
    }
    probe();
    return true;
}

// What holds for the encoding is found out once, so that most texts need no conversion at all.
void QOREncodingConverter::probe() {
    std::string ascii;
    for (char character = 1; character != 127; ++character) {
        ascii += character;
    }
    ascii += '\x7F';
    std::string converted;
    extendsAscii = toUtf8(ascii.data(), ascii.size(), converted) && converted == ascii &&
                   fromUtf8(ascii, converted) && converted == ascii;
    std::string const tag = "\xF3\xA0\x81\x81";
    std::string restored;
    bool const kept = Run(encoder, converted).convert(tag.data(), tag.size()) &&
                      toUtf8(converted.data(), converted.size(), restored) && restored == tag;
    dropsTags = !kept;
}

bool QOREncodingConverter::toUtf8(char const* text, std::size_t count, std::string& result) const {
    switch (kind) {
    case Kind::UTF_8:
        result.assign(text, count);
        return isUtf8(text, count);
    case Kind::ISO_8859_1:
        latin1ToUtf8(text, count, result);
        return true;
    case Kind::OTHER:
        break;
    }
    // The C library lets through codes that lie beyond those of Unicode.
    return Run(decoder, result).convert(text, count) && isUtf8(result.data(), result.size());
}

bool QOREncodingConverter::fromUtf8(std::string const& text, std::string& result) const {
    switch (kind) {
    case Kind::UTF_8:
        result = text;
        return true;
    case Kind::ISO_8859_1:
        return utf8ToLatin1(text, result);
    case Kind::OTHER:
        break;
    }
    if ((dropsTags && hasTags(text)) || !Run(encoder, result).convert(text.data(), text.size())) {
        return false;
    }
    // A control character may have become one that shifts, a mark may have merged with its letter.
    std::string restored;
    return Run(decoder, restored).convert(result.data(), result.size()) && restored == text;
}

bool isUnchangedByEncoding(QORString const& text, QOREncodingConverter const* from,
                           QOREncodingConverter const* to, int& firstCounter) {
    if (from == nullptr || to == nullptr) {
        return true;
    }
    bool const unchanged =
        text.length == 0 || (from->extendsAscii && to->extendsAscii &&
                             isPlainAscii(text.chars, static_cast<std::size_t>(text.length)));
    firstCounter += unchanged;
    return unchanged;
}

QORString convertEncoding(QORString const& text, QOREncodingConverter* from, QOREncodingConverter* to,
                          int& firstCounter, int& errorCounter) {
    int counted = firstCounter;
    if (isUnchangedByEncoding(text, from, to, counted)) {
        QORString same(text);
        firstCounter = counted;
        return same;
    }
    std::size_t const count = static_cast<std::size_t>(text.length);
    if (from->kind == QOREncodingConverter::Kind::ISO_8859_1 &&
        to->kind == QOREncodingConverter::Kind::UTF_8) {
        QORString result = latin1ToUtf8(text);
        ++firstCounter;
        return result;
    }
    std::string utf8;
    std::string converted;
    if (!(from->toUtf8(text.chars, count, utf8) && to->fromUtf8(utf8, converted) &&
          converted.find('\0') == std::string::npos)) {
        QORString same(text);
        ++errorCounter;
        return same;
    }
    QORString result(converted.c_str());
    ++firstCounter;
    return result;
}
