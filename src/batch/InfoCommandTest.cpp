#include <gmock/gmock.h>

#include "batch/CommandsForTests.h"

namespace trimora::batch {
namespace {

using ::testing::HasSubstr;

using InfoCommandTest = CommandTest;

TEST_F(InfoCommandTest, TellsAPersonWhatAFileIsAndHowItOpens) {
    const std::string file = putGrey("a.png", 3000, 1000);
    EXPECT_EQ(runInfo({file}), kAllWell);
    EXPECT_EQ(out, file +
                       "\n"
                       "  format        PNG, 8 bits a sample, with transparency\n"
                       "  stored        3000 x 1000, upright\n"
                       "  profile       sRGB\n"
                       "  pictures      3000 x 1000\n"
                       "  opens as      3000 x 1000\n"
                       "  mask plane    2000 x 666, scale 0.666667\n");
}

TEST_F(InfoCommandTest, TellsAProgramTheSame) {
    const std::string file = putGrey("a.png", 1500, 800);
    EXPECT_EQ(runInfo({file, "--json"}), kAllWell);
    const Line expected = {{"file", file},
                           {"opens", true},
                           {"format", "PNG"},
                           {"bits", 8},
                           {"alpha", true},
                           {"stored", {1500, 800}},
                           {"orientation", 1},
                           {"profile", "sRGB"},
                           {"representations", {{1500, 800}}},
                           {"image", {1500, 800}},
                           {"planes", {1500, 800}},
                           {"maskScale", 1.0},
                           {"notice", ""}};
    EXPECT_EQ(jsonLines().at(0), expected);
}

TEST_F(InfoCommandTest, TellsWhyAFileDoesNotOpenAndGoesOn) {
    const std::string text = put("text.png", "no picture");
    const std::string good = putGrey("good.png");
    EXPECT_EQ(runInfo({text, good, at("none")}), kSomeFailed);
    EXPECT_THAT(out, HasSubstr(text + "\n  does not open: it is not a JPEG, PNG, TIFF or GIF picture\n"));
    EXPECT_THAT(out, HasSubstr("  opens as      40 x 30\n"));
    EXPECT_THAT(out, HasSubstr("  does not open: the file cannot be read: No such file or directory\n"));
    EXPECT_EQ(runInfo({text, "--json"}), kSomeFailed);
    EXPECT_EQ(
        jsonLines().at(0),
        (Line{{"file", text}, {"opens", false}, {"error", "it is not a JPEG, PNG, TIFF or GIF picture"}}));
}

TEST_F(InfoCommandTest, DamageBeyondTheHeadIsSeenToo) {
    std::string bytes = contents(putGrey("a.png"));
    for (std::size_t i = bytes.find("IDAT") + 4; i < bytes.size(); ++i)
        bytes[i] = 'x';
    EXPECT_EQ(runInfo({put("bad.png", bytes), "--json"}), kSomeFailed);
    EXPECT_EQ(jsonLines().at(0)["format"], "PNG");
    EXPECT_EQ(jsonLines().at(0)["opens"], false);
}

TEST_F(InfoCommandTest, ReadsStandardInput) {
    input = png(filled(7, 5, {1, 2, 3, 255}));
    EXPECT_EQ(runInfo({"-"}), kAllWell);
    EXPECT_THAT(out, HasSubstr("opens as      7 x 5\n"));
}

TEST_F(InfoCommandTest, NonsenseIsTroubleAndHelpIsNot) {
    EXPECT_EQ(runInfo({}), kBadUsage);
    EXPECT_EQ(runInfo({"a", "--verbose"}), kBadUsage);
    EXPECT_EQ(err, "trimora info: the option --verbose is not known; --help tells more\n");
    EXPECT_EQ(runInfo({"-", "-"}), kBadUsage);
    EXPECT_EQ(runInfo({"--help"}), kAllWell);
    EXPECT_THAT(out, HasSubstr("trimora info PICTURE..."));
}

}  // namespace
}  // namespace trimora::batch
