#include "batch/CutOrder.h"

#include <gtest/gtest.h>

namespace trimora::batch {
namespace {

using foundation::Result;

Result<CutOrder> parse(std::vector<const char*> words) {
    return CutOrder::parse(words);
}

std::string complaint(std::vector<const char*> words) {
    const Result<CutOrder> order = CutOrder::parse(words);
    return order ? "" : order.error().message;
}

TEST(CutOrder, EveryOptionIsTaken) {
    const auto order =
        parse({"a.jpg", "--out-dir", "out", "b.jpg", "--mask", "m.png", "--strokes", "s.jsonl",
               "--background", "#ff8000", "--crop", "--write-mask", "--jobs", "3", "--json", "--force"});
    ASSERT_TRUE(order) << order.error().message;
    EXPECT_EQ(order->inputs, (std::vector<std::string>{"a.jpg", "b.jpg"}));
    EXPECT_EQ(order->outFolder, "out");
    EXPECT_EQ(order->output, std::nullopt);
    EXPECT_EQ(order->mask, "m.png");
    EXPECT_EQ(order->strokes, "s.jsonl");
    EXPECT_EQ(order->background->kind, BackgroundChoice::Kind::colour);
    EXPECT_EQ(order->background->colour, (cutengine::Colour{1, 128 / 255.0, 0, 1}));
    EXPECT_EQ(order->jobs, 3);
    EXPECT_TRUE(order->crop && order->writeMask && order->json && order->force);
}

TEST(CutOrder, NothingIsDoneThatWasNotAskedFor) {
    const auto order = parse({"a.jpg", "-o", "a.png"});
    ASSERT_TRUE(order);
    EXPECT_FALSE(order->crop || order->writeMask || order->json || order->force || order->background);
    EXPECT_EQ(order->jobs, 0);
}

TEST(CutOrder, AfterTwoDashesEverythingIsAFile) {
    const auto order = parse({"-o", "a.png", "--", "--crop"});
    ASSERT_TRUE(order);
    EXPECT_EQ(order->inputs, std::vector<std::string>{"--crop"});
    EXPECT_FALSE(order->crop);
}

TEST(CutOrder, HelpNeedsNothingElse) {
    EXPECT_TRUE(parse({"--help"})->help);
    EXPECT_TRUE(parse({"-h"})->help);
}

TEST(CutOrder, EveryOptionIsOnThePageOfHelp) {
    const std::string page = CutOrder::helpPage();
    for (const char* option : {"-o", "--out-dir", "--mask", "--strokes", "--background", "--crop",
                               "--write-mask", "--jobs", "--json", "--force", "--help"})
        EXPECT_NE(page.find(std::string("\n  ") + option + ' '), std::string::npos) << option;
}

TEST(CutOrder, WordsThatMakeNoSenseAreNamed) {
    EXPECT_EQ(complaint({"a.jpg", "--frobnicate"}), "the option --frobnicate is not known");
    EXPECT_EQ(complaint({"a.jpg", "-o"}), "the option -o lacks a word");
    EXPECT_EQ(complaint({"-o", "a.png"}), "no picture is named");
    EXPECT_EQ(complaint({"", "-o", "a.png"}), "a file name is empty");
    EXPECT_EQ(complaint({"a.jpg", "-o", ""}), "a file name is empty");
    for (const char* jobs : {"0", "-1", "two", "3x", "257", "99999999999", ""})
        EXPECT_EQ(complaint({"a.jpg", "-o", "b", "--jobs", jobs}),
                  std::string("--jobs takes a number from 1 to 256, not \"") + jobs + '"');
    for (const char* colour : {"#12345", "#1234567", "#12345g", "#+12345", "123456", "red", ""})
        EXPECT_EQ(complaint({"a.jpg", "-o", "b", "--background", colour}),
                  std::string("--background takes none, blur or #RRGGBB, not \"") + colour + '"');
}

TEST(CutOrder, WordsThatContradictEachOtherAreRefused) {
    const std::string where = "where the result goes is to be said by either -o or --out-dir";
    EXPECT_EQ(complaint({"a.jpg"}), where);
    EXPECT_EQ(complaint({"a.jpg", "-o", "b", "--out-dir", "c"}), where);
    EXPECT_EQ(complaint({"a.jpg", "b.jpg", "-o", "c.png"}),
              "-o takes one picture; several go to a folder, --out-dir");
    EXPECT_EQ(complaint({"a.jpg", "-o", "-", "--json"}), "-o - and --json both want standard output");
    EXPECT_EQ(complaint({"a.jpg", "-o", "-", "--write-mask"}),
              "a result on standard output has no name to keep the mask beside (--write-mask)");
    EXPECT_EQ(complaint({"-", "-o", "b", "--mask", "-"}), "only one thing can be read from standard input");
    EXPECT_EQ(complaint({"-", "-", "--out-dir", "b"}), "only one thing can be read from standard input");
}

}  // namespace
}  // namespace trimora::batch
