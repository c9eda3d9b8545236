#include "exchange/JsonReader.h"

#include "exchange/GraphBuilder.h"
#include "exchange/JsonWriter.h"
#include "kit/Progress.h"
#include "kit/ToolError.h"
#include "kit/TreePrinter.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <istream>
#include <iterator>
#include <nlohmann/json.hpp>

namespace exchange {
namespace {

/// The characters of a stream, with the line of the one read last.
class Source {
public:
    explicit Source(std::istream& stream) : buffer(*stream.rdbuf()) {}

    bool atEnd() { return buffer.sgetc() == std::char_traits<char>::eof(); }
    char peek() { return std::char_traits<char>::to_char_type(buffer.sgetc()); }
    void next() {
        lines += last == '\n';
        last = std::char_traits<char>::to_char_type(buffer.sbumpc());
    }
    std::size_t line() const { return lines; }

private:
    std::streambuf& buffer;
    std::size_t lines = 1;
    char last = ' ';
};

/// An input iterator, as the parser asks for; one without a source stands for the end.
class Position {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = char const*;
    using reference = char;

    explicit Position(Source* from = nullptr) : source(from) {}

    char operator*() const { return source->peek(); }
    Position& operator++() {
        source->next();
        return *this;
    }
    Position operator++(int) {
        Position const before = *this;
        source->next();
        return before;
    }
    bool operator==(Position const& other) const { return ended() == other.ended(); }
    bool operator!=(Position const& other) const { return !(*this == other); }

private:
    bool ended() const { return !source || source->atEnd(); }

    Source* source;
};

/// Where in the format the reader stands: what it has read last that is open.
enum class Place {
    START,
    DOCUMENT,
    FORMAT,
    VERSION,
    OBJECTS,
    OBJECT_LIST,
    OBJECT,
    NUMBER,
    CLASS,
    ATTRIBUTES,
    ATTRIBUTE_LIST,
    ATTRIBUTE,
    BYTES,
    HEX,
    LINKS,
    LINK_LIST,
    LINK,
    FROM,
    ROLE,
    TO,
    TO_LIST,
    END
};

/// A key and the place of its value.
struct Key {
    char const* name;
    Place place;
    bool required;
};

constexpr Key documentKeys[] = {{"format", Place::FORMAT, true},
                                {"version", Place::VERSION, true},
                                {"objects", Place::OBJECTS, true},
                                {"links", Place::LINKS, true}};
constexpr Key objectKeys[] = {
    {"number", Place::NUMBER, true}, {"class", Place::CLASS, true}, {"attributes", Place::ATTRIBUTES, false}};
constexpr Key linkKeys[] = {
    {"from", Place::FROM, true}, {"role", Place::ROLE, true}, {"to", Place::TO, true}};
constexpr Key bytesKeys[] = {{"hex", Place::HEX, true}};

/// The keys of an object of which the order is given.
class Keys {
public:
    Keys() = default;
    template <std::size_t count>
    explicit Keys(Key const (&keys)[count]) : next(keys), last(keys + count) {}

    Place take(std::string const& name) {
        if (next == last) {
            throw Mistake(kit::quoted(name) + " isn't a key here");
        }
        if (name != next->name) {
            throw Mistake(kit::quoted(name) + " stands where " + kit::quoted(next->name) + " is due");
        }
        return next++->place;
    }

    void end() const {
        if (next != last && next->required) {
            throw Mistake(kit::quoted(next->name) + " is missing");
        }
    }

private:
    Key const* next = nullptr;
    Key const* last = nullptr;
};

int digitOf(char character) {
    if ('0' <= character && character <= '9') {
        return character - '0';
    }
    return 'a' <= character && character <= 'f' ? character - 'a' + 10 : -1;
}

std::string bytesOf(std::string const& hexadecimal) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hexadecimal.size(); i += 2) {
        int const high = digitOf(hexadecimal[i]);
        int const low = digitOf(hexadecimal[i + 1]);
        if (high < 0 || low < 0) {
            throw Mistake("\"hex\" takes pairs of hexadecimal digits in lower case");
        }
        bytes += static_cast<char>(high * 16 + low);
    }
    if (hexadecimal.size() % 2) {
        throw Mistake("\"hex\" takes pairs of hexadecimal digits in lower case");
    }
    return bytes;
}

std::uint64_t numberOf(Scalar const& value) {
    constexpr std::size_t mostDigits = 18;
    if (value.kind != Scalar::NUMBER || value.text[0] == '-' || value.text == "0" ||
        value.text.size() > mostDigits) {
        throw Mistake("the number of an object is due here, a whole number from 1 on");
    }
    return std::stoull(value.text);
}

/// Follows the parser through the file; knows at each moment what may come next.
class Handler : public nlohmann::json_sax<nlohmann::json> {
public:
    explicit Handler(Source& from) : source(from) {}

    bool null() override { throw Mistake("null has no meaning here"); }
    bool boolean(bool truth) override { return value({Scalar::TRUTH, truth ? "true" : "false"}); }
    bool number_integer(number_integer_t number) override {
        return value({Scalar::NUMBER, std::to_string(number)});
    }
    bool number_unsigned(number_unsigned_t number) override {
        return value({Scalar::NUMBER, std::to_string(number)});
    }
    bool number_float(number_float_t, string_t const& text) override {
        throw Mistake(text + " isn't a whole number, or too large a one");
    }
    bool string(string_t& text) override { return value({Scalar::TEXT, std::move(text)}); }
    bool binary(binary_t&) override { throw Mistake("binary data has no meaning here"); }

    bool start_object(std::size_t) override {
        switch (place) {
        case Place::START:
            return enter(Place::DOCUMENT, documentKeyState = Keys(documentKeys));
        case Place::OBJECT_LIST:
            return enter(Place::OBJECT, keys = Keys(objectKeys));
        case Place::ATTRIBUTES:
            place = Place::ATTRIBUTE_LIST;
            return true;
        case Place::ATTRIBUTE:
            return enter(Place::BYTES, bytesKeyState = Keys(bytesKeys));
        case Place::LINK_LIST:
            return enter(Place::LINK, keys = Keys(linkKeys));
        default:
            throw unexpected("{");
        }
    }

    bool key(string_t& name) override {
        if (place == Place::DOCUMENT) {
            place = documentKeyState.take(name);
        } else if (place == Place::BYTES) {
            place = bytesKeyState.take(name);
        } else if (place == Place::ATTRIBUTE_LIST) {
            attributeName = std::move(name);
            place = Place::ATTRIBUTE;
        } else {
            place = keys.take(name);
        }
        return true;
    }

    bool end_object() override {
        switch (place) {
        case Place::DOCUMENT:
            documentKeyState.end();
            place = Place::END;
            return true;
        case Place::OBJECT:
            keys.end();
            builder.endObject();
            place = Place::OBJECT_LIST;
            return true;
        case Place::ATTRIBUTE_LIST:
            place = Place::OBJECT;
            return true;
        case Place::BYTES:
            bytesKeyState.end();
            place = Place::ATTRIBUTE_LIST;
            return true;
        default:
            keys.end();
            place = Place::LINK_LIST;
            return true;
        }
    }

    bool start_array(std::size_t) override {
        switch (place) {
        case Place::OBJECTS:
            place = Place::OBJECT_LIST;
            return true;
        case Place::LINKS:
            place = Place::LINK_LIST;
            return true;
        case Place::TO:
            builder.beginLinks(objectNumber, word);
            place = Place::TO_LIST;
            return true;
        default:
            throw unexpected("[");
        }
    }

    bool end_array() override {
        place = place == Place::TO_LIST ? Place::LINK : Place::DOCUMENT;
        return true;
    }

    bool parse_error(std::size_t, std::string const& token, nlohmann::json::exception const& error) override {
        std::string_view const reason = error.what();
        bool const cutOff = source.atEnd() && (reason.find("unexpected end of input") != reason.npos ||
                                               reason.find("closing quote") != reason.npos);
        if (place == Place::END) {
            throw Mistake("something follows the graph");
        }
        throw Mistake(cutOff ? "the text ends too early" : "this isn't JSON: " + endOf(token));
    }

    kit::Graph take() { return builder.take(); }

private:
    bool enter(Place into, Keys const&) {
        place = into;
        return true;
    }

    bool value(Scalar const& scalar) {
        switch (place) {
        case Place::FORMAT:
            require(scalar.kind == Scalar::TEXT && scalar.text == formatName,
                    std::string("\"format\" is due to be \"") + formatName + "\"");
            place = Place::DOCUMENT;
            break;
        case Place::VERSION:
            require(scalar.kind == Scalar::NUMBER && scalar.text == std::to_string(formatVersion),
                    "\"version\" is one that this program doesn't know");
            place = Place::DOCUMENT;
            break;
        case Place::NUMBER:
            objectNumber = numberOf(scalar);
            place = Place::OBJECT;
            break;
        case Place::CLASS:
            takeText(scalar, "the name of a class");
            builder.beginObject(objectNumber, word);
            place = Place::OBJECT;
            break;
        case Place::ATTRIBUTE:
            builder.addAttribute(attributeName, scalar, source.line());
            place = Place::ATTRIBUTE_LIST;
            break;
        case Place::HEX:
            require(scalar.kind == Scalar::TEXT, "\"hex\" takes a text");
            builder.addAttribute(attributeName, {Scalar::TEXT, bytesOf(scalar.text)}, source.line());
            place = Place::BYTES;
            break;
        case Place::FROM:
            objectNumber = numberOf(scalar);
            place = Place::LINK;
            break;
        case Place::ROLE:
            takeText(scalar, "the name of a role");
            place = Place::LINK;
            break;
        case Place::TO_LIST:
            builder.addLink(numberOf(scalar));
            break;
        default:
            throw unexpected(scalar.kind == Scalar::TEXT ? kit::quoted(scalar.text) : scalar.text);
        }
        return true;
    }

    /// The last characters of a text that could be as long as the file.
    static std::string endOf(std::string const& text) {
        constexpr std::size_t longest = 40;
        if (text.size() <= longest) {
            return text;
        }
        std::size_t begin = text.size() - longest;
        while (begin < text.size() && (static_cast<unsigned char>(text[begin]) & 0xc0) == 0x80) {
            ++begin;
        }
        return "..." + text.substr(begin);
    }

    void takeText(Scalar const& scalar, char const* what) {
        require(scalar.kind == Scalar::TEXT, std::string(what) + " is due here");
        word = scalar.text;
    }

    static void require(bool holds, std::string const& problem) {
        if (!holds) {
            throw Mistake(problem);
        }
    }

    static Mistake unexpected(std::string const& what) { return Mistake(what + " has no meaning here"); }

    Source& source;
    GraphBuilder builder;
    Place place = Place::START;
    Keys documentKeyState;
    Keys keys;
    Keys bytesKeyState;
    std::uint64_t objectNumber = 0;
    std::string word; ///< the class or the role read last
    std::string attributeName;
};

} // namespace

kit::Graph readJson(std::istream& in, std::string const& subject) {
    kit::Progress::phase("reading");
    Source source(in);
    try {
        Handler handler(source);
        nlohmann::json::sax_parse(Position(&source), Position(), &handler);
        return handler.take();
    } catch (Mistake const& mistake) {
        std::size_t const line = mistake.line ? mistake.line : source.line();
        throw kit::ToolError(subject, "line " + std::to_string(line) + ": " + mistake.what());
    }
}

kit::Graph readJsonFile(std::string const& path) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
        throw kit::ToolError(path, "is a folder");
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        throw kit::ToolError(path, std::string("can't be read: ") + std::strerror(errno));
    }
    return readJson(in, path);
}

} // namespace exchange
