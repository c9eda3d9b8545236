#include "exchange/JsonReader.h"

#include "exchange/GraphBuilder.h"
#include "exchange/JsonSource.h"
#include "exchange/JsonWriter.h"
#include "kit/Progress.h"
#include "kit/ToolError.h"
#include "kit/TreePrinter.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <istream>
#include <iterator>
#include <nlohmann/json.hpp>

namespace exchange {
namespace {

/// The reader's place in the format: the innermost thing that is open.
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

constexpr Key keysOfDocuments[] = {{"format", Place::FORMAT, true},
                                   {"version", Place::VERSION, true},
                                   {"objects", Place::OBJECTS, true},
                                   {"links", Place::LINKS, true}};
constexpr Key keysOfObjects[] = {
    {"number", Place::NUMBER, true}, {"class", Place::CLASS, true}, {"attributes", Place::ATTRIBUTES, false}};
constexpr Key keysOfLinks[] = {
    {"from", Place::FROM, true}, {"role", Place::ROLE, true}, {"to", Place::TO, true}};
constexpr Key keysOfBytes[] = {{"hex", Place::HEX, true}};

/// The keys of an object, each of which comes once, in any order.
class Keys {
public:
    Keys() = default;
    template <std::size_t count>
    explicit Keys(Key const (&keys)[count]) : first(keys), last(keys + count) {}

    Place take(std::string const& name) {
        Key const* const key = std::find_if(first, last, [&](Key const& each) { return name == each.name; });
        if (key == last) {
            throw Mistake(kit::quoted(name) + " isn't a key here");
        }
        if (has(*key)) {
            throw Mistake(kit::quoted(name) + " is repeated");
        }
        met |= bitOf(*key);
        return key->place;
    }

    void end(TextPosition const& position) const {
        for (Key const* key = first; key != last; ++key) {
            if (key->required && !has(*key)) {
                throw Mistake(kit::quoted(key->name) + " is missing", position);
            }
        }
    }

private:
    unsigned bitOf(Key const& key) const { return 1U << (&key - first); }
    bool has(Key const& key) const { return met & bitOf(key); }

    Key const* first = nullptr;
    Key const* last = nullptr;
    unsigned met = 0;
};

/// What a file holds of an object or of links; it is used when it is complete.
struct Attribute {
    std::string name;
    Scalar value;
    TextPosition position;
};

struct ObjectText {
    TextPosition position;
    std::uint64_t number = 0;
    std::string className;
    TextPosition classPosition;
    std::vector<Attribute> attributes;
};

struct Reference {
    std::uint64_t number = 0;
    TextPosition position;
};

struct LinkText {
    TextPosition position;
    Reference from;
    std::string role;
    TextPosition rolePosition;
    std::vector<Reference> to;
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
            throw Mistake("\"hex\" must be pairs of lower-case hexadecimal digits");
        }
        bytes += static_cast<char>(high * 16 + low);
    }
    if (hexadecimal.size() % 2) {
        throw Mistake("\"hex\" must be pairs of lower-case hexadecimal digits");
    }
    return bytes;
}

std::uint64_t numberOf(Scalar const& value) {
    constexpr std::size_t mostDigits = 18;
    if (value.kind != Scalar::NUMBER || value.text[0] == '-' || value.text == "0" ||
        value.text.size() > mostDigits) {
        throw Mistake("expected the number of an object, a whole number of at least 1");
    }
    return std::stoull(value.text);
}

/// The last characters of a text, which may be as long as the file.
std::string endOf(std::string const& text) {
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

void require(bool holds, std::string const& problem) {
    if (!holds) {
        throw Mistake(problem);
    }
}

std::string textOf(Scalar const& scalar, char const* what) {
    require(scalar.kind == Scalar::TEXT, std::string(what) + " must stand here");
    return scalar.text;
}

Mistake unexpected(std::string const& what) {
    return Mistake(what + " isn't allowed here");
}

/// Follows the parser through the file and knows what may come next. An object is made when its text ends.
/// Links are made when their text ends or, if they come before the objects, when the objects end.
class Handler : public nlohmann::json_sax<nlohmann::json> {
public:
    explicit Handler(JsonSource& from) : source(from) {}

    bool null() override {
        where = source.tokenBegin();
        throw unexpected("null");
    }
    bool boolean(bool truth) override { return value({Scalar::TRUTH, truth ? "true" : "false"}); }
    bool number_integer(number_integer_t number) override {
        return value({Scalar::NUMBER, std::to_string(number)});
    }
    bool number_unsigned(number_unsigned_t number) override {
        return value({Scalar::NUMBER, std::to_string(number)});
    }
    bool number_float(number_float_t, string_t const& text) override {
        where = source.tokenBegin();
        throw Mistake(text + " isn't a whole number, or is too large");
    }
    bool string(string_t& text) override { return value({Scalar::TEXT, std::move(text)}); }
    bool binary(binary_t&) override { throw Mistake("binary data isn't allowed here"); }

    bool start_object(std::size_t) override {
        where = source.tokenBegin();
        switch (place) {
        case Place::START:
            documentKeys = Keys(keysOfDocuments);
            return enter(Place::DOCUMENT);
        case Place::OBJECT_LIST:
            keys = Keys(keysOfObjects);
            object.position = where;
            return enter(Place::OBJECT);
        case Place::ATTRIBUTES:
            return enter(Place::ATTRIBUTE_LIST);
        case Place::ATTRIBUTE:
            bytesKeys = Keys(keysOfBytes);
            bytesPosition = where;
            return enter(Place::BYTES);
        case Place::LINK_LIST:
            keys = Keys(keysOfLinks);
            link.position = where;
            return enter(Place::LINK);
        default:
            throw unexpected("{");
        }
    }

    bool key(string_t& name) override {
        where = source.tokenBegin();
        if (place == Place::ATTRIBUTE_LIST) {
            object.attributes.push_back({std::move(name), {}, where});
            return enter(Place::ATTRIBUTE);
        }
        Keys& open = place == Place::DOCUMENT ? documentKeys : place == Place::BYTES ? bytesKeys : keys;
        return enter(open.take(name));
    }

    bool end_object() override {
        where = source.here();
        switch (place) {
        case Place::DOCUMENT:
            documentKeys.end(where);
            return enter(Place::END);
        case Place::OBJECT:
            keys.end(object.position);
            make(object);
            object = {};
            return enter(Place::OBJECT_LIST);
        case Place::ATTRIBUTE_LIST:
            return enter(Place::OBJECT);
        case Place::BYTES:
            bytesKeys.end(bytesPosition);
            return enter(Place::ATTRIBUTE_LIST);
        default:
            keys.end(link.position);
            endLink();
            return enter(Place::LINK_LIST);
        }
    }

    bool start_array(std::size_t) override {
        where = source.tokenBegin();
        switch (place) {
        case Place::OBJECTS:
            return enter(Place::OBJECT_LIST);
        case Place::LINKS:
            return enter(Place::LINK_LIST);
        case Place::TO:
            return enter(Place::TO_LIST);
        default:
            throw unexpected("[");
        }
    }

    bool end_array() override {
        if (place == Place::OBJECT_LIST) {
            objectsAreMade = true;
            for (LinkText& each : waiting) {
                link = std::move(each);
                make(link);
            }
            waiting = {};
            link = {};
        }
        return enter(place == Place::TO_LIST ? Place::LINK : Place::DOCUMENT);
    }

    bool parse_error(std::size_t, std::string const& token, nlohmann::json::exception const& error) override {
        where = source.here();
        std::string_view const reason = error.what();
        bool const cutOff = source.atEnd() && (reason.find("unexpected end of input") != reason.npos ||
                                               reason.find("closing quote") != reason.npos);
        require(place != Place::END, "there is text after the graph");
        throw Mistake(cutOff ? "the text is truncated" : "this isn't JSON: " + endOf(token));
    }

    kit::Graph take() { return builder.take(); }

    /// The position of a mistake, and the text that it is in, unless the mistake has them.
    std::string placeOf(Mistake const& mistake) const {
        TextPosition const at = mistake.position.line ? mistake.position : where;
        return "line " + std::to_string(at.line) + ", column " + std::to_string(at.column);
    }
    std::string subjectOf() const {
        if (object.number) {
            return ", in object " + std::to_string(object.number);
        }
        return link.from.number ? ", in the links of object " + std::to_string(link.from.number) : "";
    }

private:
    bool enter(Place into) {
        place = into;
        return true;
    }

    bool value(Scalar scalar) {
        where = source.tokenBegin();
        switch (place) {
        case Place::FORMAT:
            require(scalar.kind == Scalar::TEXT && scalar.text == formatName,
                    std::string("\"format\" must be \"") + formatName + "\"");
            return enter(Place::DOCUMENT);
        case Place::VERSION:
            require(scalar.kind == Scalar::NUMBER && scalar.text == std::to_string(formatVersion),
                    "\"version\" isn't supported");
            return enter(Place::DOCUMENT);
        case Place::NUMBER:
        case Place::CLASS:
            return valueOfObject(scalar);
        case Place::ATTRIBUTE:
        case Place::HEX:
            return valueOfAttribute(std::move(scalar));
        case Place::FROM:
        case Place::ROLE:
        case Place::TO_LIST:
            return valueOfLink(scalar);
        default:
            throw unexpected(scalar.kind == Scalar::TEXT ? kit::quoted(scalar.text) : scalar.text);
        }
    }

    bool valueOfObject(Scalar const& scalar) {
        if (place == Place::NUMBER) {
            object.number = numberOf(scalar);
        } else {
            object.className = textOf(scalar, "the name of a class");
            object.classPosition = where;
        }
        return enter(Place::OBJECT);
    }

    bool valueOfAttribute(Scalar&& scalar) {
        if (place == Place::ATTRIBUTE) {
            object.attributes.back().value = std::move(scalar);
            return enter(Place::ATTRIBUTE_LIST);
        }
        require(scalar.kind == Scalar::TEXT, "\"hex\" must be a text");
        object.attributes.back().value = {Scalar::TEXT, bytesOf(scalar.text)};
        return enter(Place::BYTES);
    }

    bool valueOfLink(Scalar const& scalar) {
        if (place == Place::TO_LIST) {
            link.to.push_back({numberOf(scalar), where});
            return true;
        }
        if (place == Place::FROM) {
            link.from = {numberOf(scalar), where};
        } else {
            link.role = textOf(scalar, "the name of a role");
            link.rolePosition = where;
        }
        return enter(Place::LINK);
    }

    void make(ObjectText const& text) {
        where = text.classPosition;
        builder.beginObject(text.number, text.className, text.position);
        for (Attribute const& attribute : text.attributes) {
            where = attribute.position;
            builder.addAttribute(attribute.name, attribute.value, where);
        }
        builder.endObject();
    }

    void make(LinkText const& text) {
        where = text.from.position;
        builder.object(text.from.number);
        where = text.rolePosition;
        builder.beginLinks(text.from.number, text.role);
        for (Reference const& to : text.to) {
            where = to.position;
            builder.addLink(to.number);
        }
    }

    void endLink() {
        if (objectsAreMade) {
            make(link);
        } else {
            waiting.push_back(std::move(link));
        }
        link = {};
    }

    JsonSource& source;
    GraphBuilder builder;
    Place place = Place::START;
    TextPosition where{1, 1}; ///< what is being read, or used, begins
    Keys documentKeys;
    Keys keys;
    Keys bytesKeys;
    TextPosition bytesPosition;
    ObjectText object;
    LinkText link;
    std::vector<LinkText> waiting;
    bool objectsAreMade = false;
};

} // namespace

kit::Graph readJson(std::istream& in, std::string const& subject) {
    kit::Progress::phase("reading");
    JsonSource source(in);
    Handler handler(source);
    try {
        nlohmann::json::sax_parse(JsonCharacter(&source), JsonCharacter(), &handler);
        return handler.take();
    } catch (Mistake const& mistake) {
        throw kit::ToolError(subject, handler.placeOf(mistake) + ": " + mistake.what() + handler.subjectOf());
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
