#include "base/PlainText.h"

#include <gtest/gtest.h>

namespace volvelle::test {
namespace {

TEST(PlainText, WhatIsUTF8StaysAsItIs)
{
    for (const char* text :
         {"", "a", "\x7E", "\xC2\xA0", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
          "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF", "\n\t"}) {
        EXPECT_EQ(utf8Text(text), text);
        EXPECT_EQ(plainText(text), text);
    }
}

TEST(PlainText, WhatIsNotUTF8IsReadAsOneCharacterPerByte)
{
    EXPECT_EQ(utf8Text("A\xC4"
                       "b"),
              "A\xC3\x84"
              "b");
    for (const char* broken : {"\x80", "\xC1\xBF", "\xC2", "\xC2\x41", "\xE0\x9F\xBF", "\xED\xA0\x80",
                               "\xE2\x82", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80"}) {
        EXPECT_NE(utf8Text(broken), broken);
    }
}

TEST(PlainText, ControlCharactersAreQuestionMarks)
{
    using namespace std::string_view_literals;
    EXPECT_EQ(plainText("\x1B[31mred\x07\r\0\x7F\x1F end"sv), "?[31mred????? end");
    EXPECT_EQ(plainText("\xC2\x9B"
                        "2J \xC2\x80 \xC2\x9F \xC2\xA0"),
              "?2J ? ? \xC2\xA0");
    EXPECT_EQ(plainText("\x9B"
                        "2J"),
              "?2J");
}

TEST(PlainText, MarksThatTurnTheDirectionAreQuestionMarks)
{
    for (const char* mark :
         {"\u061C", "\u200E", "\u200F", "\u202A", "\u202E", "\u2066", "\u2067", "\u2069"}) {
        EXPECT_EQ(plainText(std::string("a") + mark + "b"), "a?b");
    }
    for (const char* text : {"\u061B", "\u061D", "\u200D", "\u2010", "\u202F", "\u2065", "\u206A"}) {
        EXPECT_EQ(plainText(text), text);
    }
}

TEST(PlainText, SeparatorsOfLinesAndParagraphsAreLineEnds)
{
    EXPECT_EQ(plainText("a\u2028b\u2029"), "a\nb\n");
    EXPECT_EQ(plainLine("a\u2028b\u2029"), "a b ");
    EXPECT_EQ(plainText("\u2027\u202F"), "\u2027\u202F");
}

TEST(PlainText, SmallLettersAreThoseOfEveryScript)
{
    EXPECT_EQ(smallLetters("SLOW Tide 2"), "slow tide 2");
    EXPECT_EQ(smallLetters("ÜBERMUT Ångström ΩΣ ЖУК ĳ"), "übermut ångström ωσ жук ĳ");
    EXPECT_EQ(smallLetters("A\xC4"
                           "B\xE2\x82"),
              "a\xC4"
              "b\xE2\x82");
    EXPECT_EQ(smallLetters(std::string_view("A\0B", 3)), std::string_view("a\0b", 3));
    EXPECT_EQ(smallLetters(""), "");
}

TEST(PlainText, ALineHasNoLineEndsAndTabs)
{
    EXPECT_EQ(plainLine("one\ntwo\tthree\x1B"), "one two three?");
}

} // namespace
} // namespace volvelle::test
