#include "audio/PropertyList.h"

#include <gtest/gtest.h>

#include <limits>
#include <string_view>

namespace volvelle::test {
namespace {

class PropertyListTest : public testing::Test {
protected:
    std::optional<PropertyDictionary> read(std::string_view content)
    {
        const std::vector<std::uint8_t> bytes(content.begin(), content.end());
        const auto list = propertyListFromData(bytes);
        error = list.error();
        return list ? std::optional(*list) : std::nullopt;
    }

    // What the dictionary with one key, "a", holds.
    std::optional<PropertyValue> readValue(const std::string& element)
    {
        const auto list = read("<plist><dict><key>a</key>" + element + "</dict></plist>");
        return list ? std::optional(list->at("a")) : std::nullopt;
    }

    std::optional<std::string> write(const PropertyDictionary& list)
    {
        const auto bytes = propertyListData(list);
        error = bytes.error();
        return bytes ? std::optional(std::string(bytes->begin(), bytes->end())) : std::nullopt;
    }

    static PropertyDictionary nested(int levels)
    {
        PropertyDictionary list;
        for (int i = 1; i < levels; ++i) {
            list = {{"a", {list}}};
        }
        return list;
    }

    std::string error;
};

TEST_F(PropertyListTest, EachKindOfValueIsReadFromItsElement)
{
    const auto list = read("\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                           "<!DOCTYPE plist SYSTEM \"list.dtd\">\n<!-- a state -->\n"
                           "<plist version=\"1.0\">\n<dict>\n"
                           "<key>yes</key><true/><key>no</key><false/>\n"
                           "<key>count</key><integer> -42 </integer>\n"
                           "<key>level</key><real>+0.5e1</real>\n"
                           "<key>name</key><string> a &amp; b &lt;<![CDATA[&amp;]]></string>\n"
                           "<key>bytes</key><data>\n\tAAEC\n\t/w==\n</data>\n"
                           "<key>day</key><date>2020-01-02T03:04:05Z</date>\n"
                           "<key>list</key><array>\n<integer>1</integer><array/>\n</array>\n"
                           "<key>inner</key><dict><key></key><string/></dict>\n"
                           "</dict>\n</plist>\n");
    const PropertyDictionary expected{
        {"yes", {true}},
        {"no", {false}},
        {"count", {std::int64_t{-42}}},
        {"level", {5.0}},
        {"name", {std::string(" a & b <&amp;")}},
        {"bytes", {PropertyData{0, 1, 2, 255}}},
        {"day", {std::string("2020-01-02T03:04:05Z")}},
        {"list", {PropertyArray{{std::int64_t{1}}, {PropertyArray{}}}}},
        {"inner", {PropertyDictionary{{"", {std::string()}}}}},
    };
    ASSERT_TRUE(list) << error;
    EXPECT_EQ(*list, expected);
}

TEST_F(PropertyListTest, EachKindOfValueIsWrittenAsItsElement)
{
    EXPECT_EQ(write({{"a<b", {true}},
                     {"array", {PropertyArray{{false}, {std::int64_t{-7}}}}},
                     {"bytes", {PropertyData{0, 1, 2, 255}}},
                     {"inner", {PropertyDictionary{{"r", {120.0}}}}},
                     {"text", {std::string("a & b > c\r")}}}),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<plist version=\"1.0\">\n"
              "<dict>\n"
              "\t<key>a&lt;b</key>\n"
              "\t<true/>\n"
              "\t<key>array</key>\n"
              "\t<array>\n"
              "\t\t<false/>\n"
              "\t\t<integer>-7</integer>\n"
              "\t</array>\n"
              "\t<key>bytes</key>\n"
              "\t<data>AAEC/w==</data>\n"
              "\t<key>inner</key>\n"
              "\t<dict>\n"
              "\t\t<key>r</key>\n"
              "\t\t<real>120.0</real>\n"
              "\t</dict>\n"
              "\t<key>text</key>\n"
              "\t<string>a &amp; b &gt; c&#13;</string>\n"
              "</dict>\n"
              "</plist>\n");
}

TEST_F(PropertyListTest, WhatIsWrittenReadsBackTheSame)
{
    const PropertyDictionary list{
        {"", {std::string("  \r\n\t  ")}},
        {"blank", {std::string(" ")}},
        {"umlaut \xC3\xA4 \xE2\x82\xAC \xF0\x9D\x84\x9E", {std::string("\xEF\xBF\xBD\"'")}},
        {"least", {std::numeric_limits<std::int64_t>::min()}},
        {"greatest", {std::numeric_limits<std::int64_t>::max()}},
        {"tenth", {0.1}},
        {"small", {5e-324}},
        {"large", {-1.7976931348623157e308}},
        {"endless", {std::numeric_limits<double>::infinity()}},
        {"none", {PropertyData{}}},
        {"one", {PropertyData{1}}},
        {"two", {PropertyData{254, 255}}},
        {"three", {PropertyData{0, 0, 0}}},
        {"empty", {PropertyDictionary{}}},
        {"deep", {nested(100)}},
    };
    const auto written = write(list);
    ASSERT_TRUE(written) << error;
    EXPECT_EQ(read(*written), list) << error;
}

TEST_F(PropertyListTest, OfEqualKeysTheLastCounts)
{
    const auto list = read("<plist><dict><key>a</key><true/><key>a</key><false/></dict></plist>");
    EXPECT_EQ(list, (PropertyDictionary{{"a", {false}}}));
}

TEST_F(PropertyListTest, AnEmptyDictionaryIsAList)
{
    EXPECT_EQ(read("<plist><dict/></plist>"), PropertyDictionary{});
}

TEST_F(PropertyListTest, AFileThatIsNoXMLIsRefusedWithThePlace)
{
    EXPECT_FALSE(read(""));
    EXPECT_EQ(error, "No document element found (at byte 0).");
    EXPECT_FALSE(read("<plist><dict>"));
    EXPECT_EQ(error, "Start-end tags mismatch (at byte 12).");
}

TEST_F(PropertyListTest, ARootWithoutADictionaryIsRefused)
{
    for (const char* content : {"<plist/>", "<plist><array/></plist>", "<dict/>", "<a><dict/></a>"}) {
        EXPECT_FALSE(read(content)) << content;
        EXPECT_EQ(error, "The file holds no property list with a dictionary.");
    }
}

TEST_F(PropertyListTest, KeysAndValuesComeInPairs)
{
    EXPECT_FALSE(read("<plist><dict><key>a</key></dict></plist>"));
    EXPECT_EQ(error, "A key has no value (at byte 8).");
    EXPECT_FALSE(read("<plist><dict><key>a</key><key>b</key></dict></plist>"));
    EXPECT_EQ(error, "A key has no value (at byte 26).");
    EXPECT_FALSE(read("<plist><dict><true/></dict></plist>"));
    EXPECT_EQ(error, "A value has no key (at byte 14).");
}

TEST_F(PropertyListTest, AnElementOfAnotherKindIsNamed)
{
    EXPECT_FALSE(readValue("<number>1</number>"));
    EXPECT_EQ(error, "The element 'number' is unknown (at byte 26).");
    EXPECT_FALSE(readValue("<array><string><b/></string></array>"));
    EXPECT_EQ(error, "The element 'string' holds others (at byte 33).");
}

TEST_F(PropertyListTest, NumbersMustBeWholeAndFit)
{
    for (const char* content : {"", "1.5", "12a", "9223372036854775808", "+-1", "--1"}) {
        EXPECT_FALSE(readValue(std::string("<integer>") + content + "</integer>")) << content;
        EXPECT_EQ(error, "An integer is not a number of 64 bits (at byte 26).");
    }
    for (const char* content : {"", "x", "1,5", "1e999"}) {
        EXPECT_FALSE(readValue(std::string("<real>") + content + "</real>")) << content;
        EXPECT_EQ(error, "A real is not a number (at byte 26).");
    }
}

TEST_F(PropertyListTest, DataMustBeInBase64)
{
    for (const char* content : {"A", "AAE", "A===", "AA=E", "====", "AA\xC3\xA4", "AAE*"}) {
        EXPECT_FALSE(readValue(std::string("<data>") + content + "</data>")) << content;
        EXPECT_EQ(error, "Data are not in base 64 (at byte 26).");
    }
}

TEST_F(PropertyListTest, TwoHundredLevelsAreReadAndWrittenAndOneMoreIsNot)
{
    const auto written = write(nested(200));
    ASSERT_TRUE(written) << error;
    EXPECT_EQ(read(*written), nested(200));
    EXPECT_FALSE(write(nested(201)));
    EXPECT_EQ(error, "The values are nested too deeply.");
    std::string deep = "<plist>";
    for (int i = 0; i < 200; ++i) {
        deep += "<dict><key>a</key>";
    }
    deep += "<dict/>";
    for (int i = 0; i < 200; ++i) {
        deep += "</dict>";
    }
    EXPECT_FALSE(read(deep + "</plist>"));
    EXPECT_EQ(error, "The values are nested too deeply (at byte 3608).");
}

TEST_F(PropertyListTest, TheFirstAndTheLastCharacterOfEachLengthAreWrittenAndReadBack)
{
    for (const char* content : {" ", "\x7F", "\u0080", "\u07FF", "\u0800", "\uD7FF", "\uE000", "\uFFFD",
                                "\U00010000", "\U0010FFFF"}) {
        const PropertyDictionary list{{content, {std::string("a") + content + "b"}}};
        const auto written = write(list);
        ASSERT_TRUE(written) << content;
        EXPECT_EQ(*written,
                  std::string("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n"
                              "<dict>\n\t<key>") +
                      content + "</key>\n\t<string>a" + content + "b</string>\n</dict>\n</plist>\n");
        EXPECT_EQ(read(*written), list) << content;
    }
}

TEST_F(PropertyListTest, ATextThatXMLCannotHoldIsNotWritten)
{
    for (const char* content : {"\x01",
                                "\x1F",
                                "\xC3",
                                "\xC0\x80",
                                "\x80",
                                "\xE0\x80\x80",
                                "\xED\xA0\x80",
                                "\xEF\xBF\xBF",
                                "\xF4\x90\x80\x80",
                                "\xFF",
                                "a\xC3(",
                                "\xE2\x82",
                                "\xC1\xBF",
                                "\xE0\x9F\xBF",
                                "\xED\xBF\xBF",
                                "\xEF\xBF\xBE",
                                "\xF0\x8F\xBF\xBF",
                                "\xF0\x90\x80",
                                "\xF8\x88\x80\x80",
                                "\xC2\xC0",
                                "\xBF"}) {
        EXPECT_FALSE(write({{"a", {std::string(content)}}}));
        EXPECT_EQ(error, "A text holds a character that XML does not know.");
        EXPECT_FALSE(write({{content, {true}}}));
    }
    EXPECT_FALSE(write({{"a", {std::string(1, '\0')}}}));
}

} // namespace
} // namespace volvelle::test
