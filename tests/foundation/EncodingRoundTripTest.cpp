// Every encoding that the C library lists, with random texts: a text either reads the same in the target
// encoding, or it stays as it is and counts as an error.

#include <qor/QOREncodingConverter.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <iconv.h>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace {

using Converter = std::unique_ptr<QOREncodingConverter>;

/// The same numbers in both word sizes.
class Random {
public:
    explicit Random(unsigned seed) : engine(seed) {}
    unsigned operator()() { return static_cast<unsigned>(engine()); }

private:
    std::minstd_rand engine;
};

/// The names that the program iconv lists; empty where there is no such program.
std::vector<std::string> listedNames() {
    std::vector<std::string> names;
    std::unique_ptr<FILE, int (*)(FILE*)> const list(popen("iconv -l 2>/dev/null", "r"), pclose);
    char name[200];
    while (list && std::fscanf(list.get(), " %199[^, \n]%*[,]", name) == 1) {
        std::string each = name;
        if (each.size() > 2 && each.compare(each.size() - 2, 2, "//") == 0)
            each.resize(each.size() - 2);
        names.push_back(each);
    }
    return names;
}

/// The C library's own conversion of one text, to compare with.
class Judge {
public:
    Judge(char const* to, char const* from) : descriptor(iconv_open(to, from)) {}
    Judge(Judge const&) = delete;
    Judge& operator=(Judge const&) = delete;
    ~Judge() {
        if (isOpen())
            iconv_close(descriptor);
    }

    bool isOpen() const { return descriptor != reinterpret_cast<iconv_t>(-1); }

    bool convert(std::string text, std::string& result) const {
        iconv(descriptor, nullptr, nullptr, nullptr, nullptr);
        result.assign(text.size() * 12 + 100, '\0');
        char* in = text.data();
        char* out = result.data();
        std::size_t left = text.size();
        std::size_t room = result.size();
        bool const whole = iconv(descriptor, &in, &left, &out, &room) == 0 &&
                           iconv(descriptor, nullptr, nullptr, &out, &room) == 0;
        result.resize(result.size() - room);
        return whole;
    }

private:
    iconv_t descriptor;
};

struct Conversion {
    std::string text;
    bool failed;
};

Conversion convert(std::string const& text, QOREncodingConverter& from, QOREncodingConverter& to) {
    int first = 0;
    int errors = 0;
    QORString const result = convertEncoding(text.c_str(), &from, &to, first, errors);
    EXPECT_EQ(1, first + errors);
    EXPECT_TRUE(errors == 0 || result == text.c_str()) << "what can't be converted stays";
    return {result.chars, errors != 0};
}

std::string shown(std::string const& text) {
    std::string digits;
    char byte[4];
    for (char const each : text) {
        std::snprintf(byte, sizeof byte, "%02X ", static_cast<unsigned char>(each));
        digits += byte;
    }
    return digits;
}

void append(std::string& text, unsigned code) {
    if (code < 0x80) {
        text += static_cast<char>(code);
        return;
    }
    int const more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    constexpr unsigned lead[] = {0, 0xC0, 0xE0, 0xF0};
    text += static_cast<char>(lead[more] | code >> 6 * more);
    for (int i = more - 1; i >= 0; --i)
        text += static_cast<char>(0x80U | (code >> 6 * i & 0x3FU));
}

/// A character of some kind that encodings treat in a way of their own.
unsigned character(Random& random) {
    constexpr unsigned special[] = {0x1B,   0x0E,   0x0F,  '~',   '+',    '&',    '$',    '(',     '\\',
                                    'B',    'A',    0x301, 0x5D1, 0x5BC,  0xFEFF, 0xFFFE, 0xE0041, 0x20AC,
                                    0x3042, 0xFF71, 0xAC,  0x416, 0x4E00, 0x2603, 0xAC00, 0x85,    0x1F600};
    switch (random() % 4) {
    case 0:
        return special[random() % std::size(special)];
    case 1:
        return 1 + random() % 0x1F;
    case 2:
        return 0x20 + random() % 0x60;
    default: {
        constexpr unsigned limits[] = {0x100, 0x800, 0x3400, 0xD800, 0x20000};
        unsigned const code = 1 + random() % (limits[random() % std::size(limits)] - 1);
        return code >= 0xD800 && code < 0xE000 ? 'x' : code;
    }
    }
}

std::string randomText(Random& random) {
    std::string text;
    for (auto count = 1 + random() % 5; count > 0; --count)
        append(text, character(random));
    return text;
}

std::string randomBytes(Random& random) {
    constexpr unsigned char special[] = {0x1B, 0x0E, 0x0F, '$', '(', ')', 'B',
                                         'A',  '@',  'C',  '~', '{', '+', '-'};
    std::string bytes;
    for (auto count = 1 + random() % 8; count > 0; --count) {
        bool const any = random() % 3 != 0;
        bytes += static_cast<char>(any ? 1 + random() % 255 : special[random() % std::size(special)]);
    }
    return bytes;
}

/// Each character alone, between others, and beside those that often shift or escape.
std::vector<std::string> asciiTexts() {
    std::vector<std::string> texts;
    for (int code = 1; code < 128; ++code) {
        std::string const each(1, static_cast<char>(code));
        texts.insert(texts.end(), {each, "a" + each + "b"});
        for (char const* const control : {"\x1B", "\x0E", "\x0F", "~", "+"})
            texts.insert(texts.end(), {each + control, control + each});
    }
    return texts;
}

/// One encoding, beside UTF-8.
class Encoding {
public:
    explicit Encoding(std::string const& name)
        : utf8(QOREncodingConverter::create("UTF-8")), own(QOREncodingConverter::create(name.c_str())),
          encode(name.c_str(), "UTF-8"), decode("UTF-8", name.c_str()) {}

    /// What tells encodings apart, so that aliases are left out.
    std::string signature() const {
        std::string all;
        std::string result;
        Random random(7);
        for (int i = 1; i < 256; ++i)
            all += (decode.convert(std::string(1, static_cast<char>(i)), result) ? result : "-") + "|";
        for (int i = 0; i < 200; ++i)
            all += (encode.convert(randomText(random), result) ? result : "-") + "|";
        return all;
    }

    void expectThereAndBack(std::string const& text) const {
        std::string there;
        std::string back;
        bool const same = encode.convert(text, there) && there.find('\0') == std::string::npos &&
                          decode.convert(there, back) && back == text;
        Conversion const result = convert(text, *utf8, *own);
        ASSERT_EQ(!same, result.failed) << shown(text) << "became " << shown(there) << "and " << shown(back);
        if (same) {
            ASSERT_EQ(there, result.text);
            Conversion const returned = convert(result.text, *own, *utf8);
            ASSERT_FALSE(returned.failed) << shown(text);
            ASSERT_EQ(text, returned.text);
        }
    }

    void expectFromBytes(std::string const& bytes) const {
        Conversion const read = convert(bytes, *own, *utf8);
        if (read.failed || read.text.empty())
            return;
        ASSERT_FALSE(convert(read.text, *utf8, *utf8).failed) << shown(bytes) << "became no UTF-8";
        expectThereAndBack(read.text);
    }

    /// Whatever was a text in this encoding reads the same in the other one, or stays.
    void expectTo(Encoding const& other, std::string const& bytes) const {
        Conversion const there = convert(bytes, *own, *other.own);
        if (there.failed)
            return;
        Conversion const meant = convert(bytes, *own, *utf8);
        Conversion const read = convert(there.text, *other.own, *other.utf8);
        ASSERT_FALSE(meant.failed || read.failed) << shown(bytes);
        ASSERT_EQ(meant.text, read.text) << shown(bytes) << "became " << shown(there.text);
    }

    Converter utf8;
    Converter own;
    Judge encode;
    Judge decode;
};

/// The encodings without their aliases.
std::vector<std::string> const& encodings() {
    static std::vector<std::string> const all = [] {
        std::vector<std::string> names;
        std::set<std::string> signatures;
        for (std::string const& name : listedNames()) {
            Encoding const encoding(name);
            if (encoding.own && signatures.insert(encoding.signature()).second)
                names.push_back(name);
        }
        return names;
    }();
    return all;
}

class EncodingRoundTrip : public testing::Test {
protected:
    void SetUp() override {
        if (encodings().empty())
            GTEST_SKIP() << "the program iconv is missing";
    }
};

} // namespace

TEST_F(EncodingRoundTrip, EachListedNameThatTheCLibraryOpensHasAConverter) {
    for (std::string const& name : listedNames()) {
        Encoding const encoding(name);
        EXPECT_EQ(encoding.encode.isOpen() && encoding.decode.isOpen(), encoding.own != nullptr) << name;
    }
}

TEST_F(EncodingRoundTrip, EachAsciiCharacterAndPairWithAControlComesBackOrIsRefused) {
    for (std::string const& name : encodings()) {
        SCOPED_TRACE(name);
        Encoding const encoding(name);
        for (std::string const& text : asciiTexts()) {
            encoding.expectThereAndBack(text);
            ASSERT_FALSE(HasFatalFailure());
        }
    }
}

TEST_F(EncodingRoundTrip, RandomTextsComeBackOrAreRefused) {
    Random random(20260811);
    for (std::string const& name : encodings()) {
        SCOPED_TRACE(name);
        Encoding const encoding(name);
        for (int i = 0; i < 400; ++i) {
            encoding.expectThereAndBack(randomText(random));
            ASSERT_FALSE(HasFatalFailure());
        }
    }
}

TEST_F(EncodingRoundTrip, RandomBytesAreReadAsTextThatComesBackOrIsRefused) {
    Random random(20260812);
    for (std::string const& name : encodings()) {
        SCOPED_TRACE(name);
        Encoding const encoding(name);
        for (int i = 0; i < 400; ++i) {
            encoding.expectFromBytes(randomBytes(random));
            ASSERT_FALSE(HasFatalFailure());
        }
    }
}

TEST_F(EncodingRoundTrip, TextsReadTheSameInTheOtherEncodingOrAreRefused) {
    Random random(20260813);
    auto const any = [&] { return encodings()[random() % encodings().size()]; };
    for (int pair = 0; pair < 600; ++pair) {
        Encoding const from(any());
        Encoding const to(any());
        SCOPED_TRACE(std::string(from.own->getName()) + " to " + to.own->getName());
        for (int i = 0; i < 50; ++i) {
            from.expectTo(to, randomBytes(random));
            ASSERT_FALSE(HasFatalFailure());
        }
    }
}
