#include <qor/QORSpecification.h>

#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <string>

TEST(QORSpecification, WritesTheFourValues) {
    char const* web = nullptr;
    char const* company = nullptr;
    char const* name = nullptr;
    char const* version = nullptr;
    QORSpecification(&web, &company, &name, &version);
    EXPECT_EQ(web, VRNproductWeb);
    EXPECT_EQ(company, VRNproductCompany);
    EXPECT_STREQ(name, "QOR Repository");
    EXPECT_STREQ(version, "5.2.0 - Jun 12 2007 10:35:49");
    EXPECT_GT(std::strlen(web), 0U);
    EXPECT_GT(std::strlen(company), 0U);
}

TEST(QORSpecification, WritesOnlyWhatIsAskedFor) {
    QORSpecification(nullptr, nullptr, nullptr, nullptr);
    char const* name = nullptr;
    QORSpecification(nullptr, nullptr, &name, nullptr);
    EXPECT_EQ(name, VRNproductName);
    char const* web = nullptr;
    QORSpecification(&web, nullptr, nullptr, nullptr);
    EXPECT_EQ(web, VRNproductWeb);
    char const* company = nullptr;
    QORSpecification(nullptr, &company, nullptr, nullptr);
    EXPECT_EQ(company, VRNproductCompany);
    char const* version = nullptr;
    QORSpecification(nullptr, nullptr, nullptr, &version);
    EXPECT_EQ(version, VRNproductVersion);
}

TEST(QORSpecification, VersionHasDateAndTimeOfTheBuild) {
    std::string shape(VRNproductVersion);
    for (char& character : shape) {
        unsigned char const code = static_cast<unsigned char>(character);
        character = std::isdigit(code) ? '9' : std::isalpha(code) ? 'a' : character;
    }
    EXPECT_EQ(shape, "9.9.9 - aaa 99 9999 99:99:99");
}
