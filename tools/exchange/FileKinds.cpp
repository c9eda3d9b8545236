#include "exchange/FileKinds.h"

#include "exchange/JsonWriter.h"

#include <istream>
#include <nlohmann/json.hpp>

namespace exchange {
namespace {

/// Looks for the name of the format among the outer keys of a document.
class FormatSearch : public nlohmann::json_sax<nlohmann::json> {
public:
    bool null() override { return value(); }
    bool boolean(bool) override { return value(); }
    bool number_integer(number_integer_t) override { return value(); }
    bool number_unsigned(number_unsigned_t) override { return value(); }
    bool number_float(number_float_t, string_t const&) override { return value(); }
    bool string(string_t& text) override {
        found = depth == 1 && isFormat && text == formatName;
        return !found && value();
    }
    bool binary(binary_t&) override { return value(); }
    bool start_object(std::size_t) override { return begin(); }
    bool key(string_t& name) override {
        isFormat = name == "format";
        return true;
    }
    bool end_object() override { return end(); }
    bool start_array(std::size_t) override { return depth > 0 && begin(); }
    bool end_array() override { return end(); }
    bool parse_error(std::size_t, std::string const&, nlohmann::json::exception const&) override {
        return false;
    }

    bool found = false;

private:
    bool value() const { return depth > 0; }
    bool begin() {
        ++depth;
        return true;
    }
    bool end() {
        --depth;
        return true;
    }

    std::size_t depth = 0;
    bool isFormat = false;
};

} // namespace

bool isGraphText(std::istream& in) {
    FormatSearch search;
    nlohmann::json::sax_parse(in, &search, nlohmann::json::input_format_t::json, false);
    return search.found;
}

} // namespace exchange
