#include "analytics/event/Dictionary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>
#include <random>

#include "testing/Seed.h"

namespace trimora::analytics {
namespace {

using nlohmann::json;

TEST(Dictionary, IsWrittenCompactlyInTheOrderOfItsNames) {
    const Dictionary data = {{"text", "open"},
                             {"count", -3},
                             {"large", 18446744073709551615U},
                             {"real", 0.1},
                             {"whole", 2.0},
                             {"yes", true},
                             {"nothing", nullptr},
                             {"again", "first"},
                             {"again", "last"},
                             {"inner", {{"k", "v"}}},
                             {"empty", Dictionary::object()},
                             {"list", Dictionary::array({1, "two", Dictionary::array()})}};
    EXPECT_EQ(data.json().value(),
              R"({"again":"last","count":-3,"empty":{},"inner":{"k":"v"},"large":18446744073709551615,)"
              R"("list":[1,"two",[]],"nothing":null,"real":0.1,"text":"open","whole":2.0,"yes":true})");
    EXPECT_EQ(Dictionary::parse(data.json().value()), data);
}

TEST(Dictionary, TextOfEveryKindIsReadBackAsItWas) {
    for (const std::string& text : {std::string("quote \" and \\"), std::string("a\0b\n\x7F", 5),
                                    std::string("\xC3\xA9t\xC3\xA9 \xF0\x9F\x8E\xA8")}) {
        const std::string written = Dictionary{{text, text}}.json().value();
        EXPECT_EQ(json::parse(written), (json{{text, text}}));
        EXPECT_EQ(Dictionary::parse(written), (Dictionary{{text, text}}));
    }
}

TEST(Dictionary, WhatJsonCannotCarryIsAnErrorOrMarked) {
    const Dictionary bytes = {{"k", "a\xFF"}};
    EXPECT_FALSE(bytes.json());
    EXPECT_EQ(bytes.jsonOrMarks(), "{\"k\":\"a\xEF\xBF\xBD\"}");
    const Dictionary number = Dictionary::array({std::numeric_limits<double>::quiet_NaN()});
    EXPECT_FALSE(number.json());
    EXPECT_EQ(number.jsonOrMarks(), "[null]");
}

TEST(Dictionary, WhatIsNoJsonIsNotRead) {
    for (const char* text : {"", "{", "{\"a\":1}x", "{'a':1}", "[1,]", "\"\xFF\"", "1e999", "nul"})
        EXPECT_FALSE(Dictionary::parse(text)) << text;
    EXPECT_TRUE(Dictionary::parse(std::string(100, '[') + std::string(100, ']')));
    EXPECT_FALSE(Dictionary::parse(std::string(101, '[') + std::string(101, ']')));
    EXPECT_FALSE(Dictionary::parse(std::string(1'000'000, '[')));
}

TEST(Dictionary, MembersAreFoundSetAndTaken) {
    Dictionary data = {{"b", 1}, {"a", 2}};
    EXPECT_EQ(*data.find("a"), 2);
    EXPECT_EQ(data.find("c"), nullptr);
    data.set("c", 3);
    data.set("a", "new");
    EXPECT_EQ(data, (Dictionary{{"a", "new"}, {"b", 1}, {"c", 3}}));
    EXPECT_EQ(data.take("b"), Dictionary(1));
    EXPECT_EQ(data.take("b"), std::nullopt);
    EXPECT_FALSE(data.isEmpty());
    data.append(4);
    Dictionary list = Dictionary::array();
    EXPECT_TRUE(list.isEmpty());
    list.set("a", 1);
    list.append(4);
    EXPECT_EQ(list, Dictionary::array({4}));
    EXPECT_EQ(list.find("a"), nullptr);
    EXPECT_EQ(list.take("a"), std::nullopt);
    EXPECT_TRUE(Dictionary().isNull() && Dictionary().isEmpty());
}

TEST(Dictionary, TellsWhatItHolds) {
    EXPECT_EQ(*Dictionary("x").text(), "x");
    EXPECT_EQ(Dictionary(1).text(), nullptr);
    EXPECT_EQ(Dictionary(true).boolean(), true);
    EXPECT_EQ(Dictionary(1).boolean(), std::nullopt);
    EXPECT_EQ(Dictionary(7U).integer(), 7);
    EXPECT_EQ(Dictionary(18446744073709551615U).integer(), std::nullopt);
    EXPECT_EQ(Dictionary(18446744073709551615U).number(), 18446744073709551615.0);
    EXPECT_EQ(Dictionary(-2).number(), -2.0);
    EXPECT_EQ(Dictionary(0.5).number(), 0.5);
    EXPECT_EQ(Dictionary("1").number(), std::nullopt);
}

/// A value of the JSON library's, by chance.
json anyValue(std::mt19937_64& random, int depth) {
    switch (random() % (depth > 0 ? 8 : 6)) {
        case 0:
            return nullptr;
        case 1:
            return random() % 2 == 0;
        case 2:
            return static_cast<std::int64_t>(random());
        case 3:
            return random();
        case 4:
            return static_cast<double>(static_cast<std::int64_t>(random())) / 1e9;
        case 5:
            return std::string(random() % 9, static_cast<char>(random() % 128));
        default:
            break;
    }
    json value = random() % 2 == 0 ? json::object() : json::array();
    for (std::uint64_t i = random() % 5; i > 0; --i) {
        if (value.is_object())
            value[std::string(1 + random() % 3, static_cast<char>(random() % 128))] =
                anyValue(random, depth - 1);
        else
            value.push_back(anyValue(random, depth - 1));
    }
    return value;
}

TEST(Dictionary, ReadsAndWritesWhatTheLibraryReadsAndWrites) {
    std::mt19937_64 random = testing::seededGenerator();
    for (int i = 0; i < 2'000; ++i) {
        const std::string text = anyValue(random, 4).dump();
        const auto read = Dictionary::parse(text);
        ASSERT_TRUE(read) << text;
        ASSERT_EQ(read->json().value(), text);
    }
}

}  // namespace
}  // namespace trimora::analytics
