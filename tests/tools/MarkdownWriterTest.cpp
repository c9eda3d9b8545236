#include "exchange/MarkdownWriter.h"

#include "NastyNames.h"

#include <gmock/gmock.h>
#include <sstream>

namespace {

using testing::HasSubstr;
using testing::Not;

TEST(MarkdownWriter, NameHasNoMeaningOfItsOwn) {
    Nasty const nasty;
    std::ostringstream out;
    exchange::writeMarkdown(*nasty.model, out);
    std::istringstream lines(out.str());
    std::size_t rows = 0;
    for (std::string line; std::getline(lines, line);) {
        EXPECT_THAT(line, Not(HasSubstr("\r")));
        for (std::size_t place = line.find('<'); place != std::string::npos;
             place = line.find('<', place + 1)) {
            EXPECT_TRUE(place > 0 && line[place - 1] == '\\') << line;
        }
        if (line.compare(0, 2, "| ") != 0 || line.compare(0, 5, "| ---") == 0 ||
            line.compare(0, 8, "| Column") == 0) {
            continue;
        }
        // Five cells, whatever is in them: a bar or backslash that isn't escaped would make other ones.
        std::size_t bars = 0;
        for (std::size_t i = 0; i < line.size(); ++i) {
            if (line[i] == '\\') {
                ++i;
            } else {
                bars += line[i] == '|';
            }
        }
        EXPECT_EQ(bars, 6u) << line;
        ++rows;
    }
    EXPECT_EQ(rows, nastyNames.size());
}

} // namespace
