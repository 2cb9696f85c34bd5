#include <gmock/gmock.h>

#include "batch/CommandsForTests.h"

namespace trimora::batch {
namespace {

namespace fs = std::filesystem;
using foundation::Bitmap;
using foundation::Pixel;
using ::testing::HasSubstr;
using ::testing::StartsWith;

using CutCommandTest = CommandTest;

TEST_F(CutCommandTest, CutsOnePictureToOneFile) {
    const std::string in = putGrey("a.png");
    const std::string mask = putMask("m.png", 40, 30, 10);
    EXPECT_EQ(runCut({in, "-o", at("r.png"), "--mask", mask}), kAllWell);
    EXPECT_EQ(err, in + ": cut, " + at("r.png") + "\n");
    EXPECT_EQ(out, "");
    const Bitmap result = picture("r.png");
    EXPECT_EQ(result.pixel(9, 3), (Pixel{100, 100, 100, 255}));
    EXPECT_EQ(result.pixel(10, 3), Pixel{});
}

TEST_F(CutCommandTest, CutsManyPicturesIntoAFolderThatItMakes) {
    for (const int n : {1, 2, 3, 4, 5})
        putGrey("p" + std::to_string(n) + ".png", 10 * n, 10);
    const std::string to = at("new/folder");
    EXPECT_EQ(runCut({at("p1.png"), at("p2.png"), at("p3.png"), at("p4.png"), at("p5.png"), "--out-dir", to}),
              kAllWell);
    for (const int n : {1, 2, 3, 4, 5})
        EXPECT_EQ(picture("new/folder/p" + std::to_string(n) + ".png").width(), 10 * n);
    EXPECT_THAT(err, HasSubstr("[5/5] "));
    EXPECT_THAT(err, HasSubstr("\n5 cut, 0 failed\n"));
}

TEST_F(CutCommandTest, BrokenPicturesAreToldAndTheOthersAreCut) {
    const std::string whole = png(filled(40, 30, {1, 2, 3, 255}));
    const std::string text = put("text.png", "no picture");
    const std::string good = put("good.png", whole);
    const std::string torn = put("torn.png", whole.substr(0, whole.size() / 2));
    const std::string none = at("none.png");
    EXPECT_EQ(runCut({text, good, none, torn, "--out-dir", at("out"), "--json"}), kSomeFailed);
    EXPECT_TRUE(fs::exists(at("out/good.png")));
    EXPECT_FALSE(fs::exists(at("out/text.png")));
    EXPECT_FALSE(fs::exists(at("out/none.png")));
    EXPECT_THAT(err, HasSubstr("text.png: not cut: it is not a JPEG, PNG, TIFF or GIF picture\n"));
    EXPECT_THAT(err, HasSubstr("none.png: not cut: the file cannot be read: No such file or directory\n"));
    int ok = 0;
    for (const Line& line : jsonLines())
        ok += line["ok"].get<bool>() ? 1 : 0;
    EXPECT_EQ(jsonLines().size(), 4U);
    EXPECT_THAT(err, HasSubstr(std::to_string(ok) + " cut, " + std::to_string(4 - ok) + " failed\n"));
}

TEST_F(CutCommandTest, PictureThatIsCutShortIsCutAsFarAsItGoesAndThatIsSaid) {
    Bitmap large = filled(500, 500, {0, 0, 0, 255});
    for (int y = 0; y < 500; ++y) {
        for (int x = 0; x < 500; ++x)
            large.setPixel(x, y,
                           {static_cast<std::uint8_t>(x * y), static_cast<std::uint8_t>(x ^ y), 7, 255});
    }
    const std::string whole = png(large);
    const std::string torn = put("torn.png", whole.substr(0, whole.size() / 2));
    EXPECT_EQ(runCut({torn, "-o", at("r.png"), "--json"}), kAllWell);
    EXPECT_THAT(err, HasSubstr("(the file is cut short; what could be read is shown)"));
    EXPECT_EQ(jsonLines().at(0)["notice"], "the file is cut short; what could be read is shown");
}

TEST_F(CutCommandTest, FileThatExistsIsLeftAloneUnlessForced) {
    const std::string in = putGrey("a.png");
    put("r.png", "precious");
    EXPECT_EQ(runCut({in, "-o", at("r.png")}), kSomeFailed);
    EXPECT_EQ(err, in + ": not cut: " + at("r.png") + ": a file of that name exists\n");
    EXPECT_EQ(contents(at("r.png")), "precious");
    EXPECT_EQ(runCut({in, "-o", at("r.png"), "--force"}), kAllWell);
    EXPECT_EQ(picture("r.png").width(), 40);
}

TEST_F(CutCommandTest, MaskThatExistsIsLeftAloneTooAndNothingIsWrittenThen) {
    const std::string in = putGrey("a.png");
    put("r.mask.png", "precious");
    EXPECT_EQ(runCut({in, "-o", at("r.png"), "--write-mask"}), kSomeFailed);
    EXPECT_EQ(contents(at("r.mask.png")), "precious");
    EXPECT_FALSE(fs::exists(at("r.png")));
}

TEST_F(CutCommandTest, PictureMayBeReplacedByItsResultWhenForced) {
    const std::string in = putGrey("a.png");
    const std::string mask = putMask("m.png", 40, 30, 10);
    EXPECT_EQ(runCut({in, "-o", in, "--mask", mask, "--force"}), kAllWell);
    EXPECT_EQ(picture("a.png").pixel(20, 3), Pixel{});
}

TEST_F(CutCommandTest, TwoPicturesForOneFileAreToldBeforeAnyWork) {
    fs::create_directory(at("in"));
    const std::string first = putGrey("a.png");
    const std::string second = putGrey("in/a.png");
    EXPECT_EQ(runCut({first, second, "--out-dir", at("out")}), kBadUsage);
    EXPECT_EQ(err, "trimora cut: " + first + " and " + second + " would both be written to " +
                       at("out/a.png") + "; --help tells more\n");
    EXPECT_FALSE(fs::exists(at("out")));
}

TEST_F(CutCommandTest, StandardStreamsAreReadAndWritten) {
    const std::string mask = putMask("m.png", 40, 30, 10);
    input = png(filled(40, 30, {9, 9, 9, 255}));
    EXPECT_EQ(runCut({"-", "-o", "-", "--mask", mask}), kAllWell);
    EXPECT_EQ(err, "-: cut\n");
    EXPECT_EQ(decoded(out).pixel(3, 3), (Pixel{9, 9, 9, 255}));
    EXPECT_EQ(decoded(out).pixel(13, 3), Pixel{});
    const std::string piped = out;
    EXPECT_EQ(runCut({"-", "--out-dir", at("out"), "--mask", mask}), kAllWell);
    EXPECT_EQ(contents(at("out/stdin.png")), piped);
}

TEST_F(CutCommandTest, MaskMayComeFromStandardInput) {
    input = contents(putMask("m.png", 40, 30, 10));
    EXPECT_EQ(runCut({putGrey("a.png"), "-o", at("r.png"), "--mask", "-"}), kAllWell);
    EXPECT_EQ(picture("r.png").pixel(10, 0), Pixel{});
}

TEST_F(CutCommandTest, NothingOnStandardInputIsToldAndNothingIsWritten) {
    EXPECT_EQ(runCut({"-", "-o", "-"}), kSomeFailed);
    EXPECT_EQ(out, "");
    EXPECT_EQ(err, "-: not cut: it is not a JPEG, PNG, TIFF or GIF picture\n");
}

TEST_F(CutCommandTest, KeptMaskGivesTheSameResultAgain) {
    const std::string in = putGrey("a.png");
    const std::string mask = putMask("m.png", 17, 5, 10);
    EXPECT_EQ(runCut({in, "-o", at("r.png"), "--mask", mask, "--write-mask"}), kAllWell);
    EXPECT_EQ(runCut({in, "-o", at("again.png"), "--mask", at("r.mask.png"), "--write-mask"}), kAllWell);
    EXPECT_EQ(contents(at("again.png")), contents(at("r.png")));
    EXPECT_EQ(contents(at("again.mask.png")), contents(at("r.mask.png")));
}

TEST_F(CutCommandTest, CropLeavesWhatShowsAndSaysWhereItWas) {
    const std::string in = putGrey("a.png");
    const std::string mask = putMask("m.png", 40, 30, 10);
    EXPECT_EQ(runCut({in, "-o", at("r.png"), "--mask", mask, "--crop", "--json"}), kAllWell);
    // The last pixel of the mask is a shade above black.
    EXPECT_EQ(jsonLines().at(0)["box"], Line({0, 0, 40, 30}));
    Bitmap hole = filled(40, 30, {});
    hole.setPixel(12, 5, {0, 0, 0, 255});
    hole.setPixel(15, 8, {0, 0, 0, 255});
    EXPECT_EQ(runCut({in, "-o", at("c.png"), "--mask", putPicture("h.png", hole), "--crop", "--json"}),
              kAllWell);
    EXPECT_EQ(jsonLines().at(0)["box"], Line({12, 5, 4, 4}));
    EXPECT_EQ(jsonLines().at(0)["size"], Line({4, 4}));
    EXPECT_EQ(picture("c.png").width(), 4);
    EXPECT_EQ(picture("c.png").pixel(0, 0), (Pixel{100, 100, 100, 255}));
}

TEST_F(CutCommandTest, NothingLeftToCropToFailsAndWritesNothing) {
    const std::string mask = putPicture("m.png", filled(40, 30, {}));
    EXPECT_EQ(runCut({putGrey("a.png"), "-o", at("r.png"), "--mask", mask, "--crop"}), kSomeFailed);
    EXPECT_THAT(err, HasSubstr("nothing is left of the picture to crop to"));
    EXPECT_FALSE(fs::exists(at("r.png")));
}

TEST_F(CutCommandTest, JsonTellsWhereEverythingWent) {
    const std::string in = putGrey("a.png");
    EXPECT_EQ(runCut({in, "-o", at("r.png"), "--write-mask", "--json"}), kAllWell);
    const Line expected = {{"input", in},           {"ok", true},
                           {"output", at("r.png")}, {"size", {40, 30}},
                           {"box", {0, 0, 40, 30}}, {"mask", at("r.mask.png")},
                           {"notice", ""}};
    EXPECT_EQ(jsonLines().at(0), expected);
}

TEST_F(CutCommandTest, NamesThatAreNoTextAreStillValidJson) {
    const std::string in = putGrey("a\xFF.png");
    EXPECT_EQ(runCut({in, "--out-dir", at("out"), "--json"}), kAllWell);
    EXPECT_TRUE(fs::exists(at("out/a\xFF.png")));
    EXPECT_THAT(jsonLines().at(0)["input"].get<std::string>(), HasSubstr("a\xEF\xBF\xBD.png"));
}

TEST_F(CutCommandTest, MaskThatCannotBeReadEndsTheRunBeforeItBegins) {
    const std::string in = putGrey("a.png");
    EXPECT_EQ(runCut({in, "--out-dir", at("out"), "--mask", at("none.png")}), kBadUsage);
    EXPECT_THAT(err,
                StartsWith("trimora cut: the mask " + at("none.png") + " cannot be used: the file cannot"));
    const std::string whole = contents(putMask("m.png", 300, 300, 10));
    const std::string torn = put("torn.png", whole.substr(0, whole.size() / 2));
    EXPECT_EQ(runCut({in, "--out-dir", at("out"), "--mask", torn}), kBadUsage);
    EXPECT_FALSE(fs::exists(at("out")));
}

TEST_F(CutCommandTest, StrokesArePaintedOverTheMask) {
    const std::string script = put("s.jsonl",
                                   "{\"do\":\"view\",\"size\":[400,300]}\n"
                                   "{\"do\":\"slider\",\"which\":\"eraserSize\",\"value\":100}\n"
                                   "{\"do\":\"stroke\",\"points\":[[50,250]]}\n");
    const std::vector<std::string> words = {
        putGrey("a.png"), "-o", at("r.png"), "--strokes", script, "--mask", putMask("m.png", 40, 30, 20),
        "--force"};
    EXPECT_EQ(runCut(words), kAllWell) << err;
    EXPECT_EQ(picture("r.png").pixel(5, 5), Pixel{});
    EXPECT_EQ(picture("r.png").pixel(15, 5), (Pixel{100, 100, 100, 255}));
    EXPECT_EQ(picture("r.png").pixel(25, 5), Pixel{});

    const std::string once = contents(at("r.png"));
    input = contents(script);
    auto piped = words;
    piped[4] = "-";
    EXPECT_EQ(runCut(piped), kAllWell);
    EXPECT_EQ(contents(at("r.png")), once);
}

TEST_F(CutCommandTest, BackgroundOfAScriptStandsUnlessAnotherIsAskedFor) {
    const std::string script = put("s.jsonl",
                                   "{\"do\":\"set\",\"property\":\"brushColor\",\"value\":[1,0,0,1]}\n"
                                   "{\"do\":\"set\",\"property\":\"blurOn\",\"value\":false}\n");
    std::vector<std::string> words = {
        putGrey("a.png"), "-o", at("r.png"), "--strokes", script, "--mask", putMask("m.png", 40, 30, 20),
        "--force"};
    EXPECT_EQ(runCut(words), kAllWell);
    EXPECT_EQ(picture("r.png").pixel(30, 5), (Pixel{0, 0, 255, 255}));
    words.insert(words.end(), {"--background", "none"});
    EXPECT_EQ(runCut(words), kAllWell);
    EXPECT_EQ(picture("r.png").pixel(30, 5), Pixel{});
}

TEST_F(CutCommandTest, ScriptThatCannotBeUsedEndsTheRunBeforeItBegins) {
    const std::string script =
        put("s.jsonl", "{\"do\":\"settle\"}\n{\"do\":\"open\",\"files\":[\"a.png\"]}\n");
    EXPECT_EQ(runCut({putGrey("a.png"), "--out-dir", at("out"), "--strokes", script}), kBadUsage);
    EXPECT_EQ(
        err, "trimora cut: the script " + script +
                 " cannot be used: line 2: the step \"open\" needs the editor's window; --help tells more\n");
    EXPECT_FALSE(fs::exists(at("out")));
}

TEST_F(CutCommandTest, FolderThatCannotBeMadeEndsTheRunBeforeItBegins) {
    put("file", "");
    EXPECT_EQ(runCut({putGrey("a.png"), "--out-dir", at("file/out")}), kBadUsage);
    EXPECT_THAT(err, HasSubstr("the folder " + at("file/out") + " cannot be made: "));
}

TEST_F(CutCommandTest, AnyNumberOfJobsGivesTheSameBytes) {
    Bitmap colours = filled(300, 200, {0, 0, 0, 255});
    for (int y = 0; y < 200; ++y) {
        for (int x = 0; x < 300; ++x)
            colours.setPixel(x, y, {static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y), 99, 255});
    }
    std::vector<std::string> words;
    for (const char* name : {"a.png", "b.png", "c.png", "d.png"})
        words.push_back(putPicture(name, colours));
    const std::string mask = putMask("m.png", 77, 55, 40);
    for (const char* jobs : {"1", "3", "8"}) {
        auto all = words;
        const std::string folderName = std::string("jobs") + jobs;
        all.insert(all.end(),
                   {"--out-dir", at(folderName), "--mask", mask, "--background", "blur", "--jobs", jobs});
        ASSERT_EQ(runCut(all), kAllWell) << err;
        EXPECT_EQ(contents(at(folderName + "/c.png")), contents(at("jobs1/a.png")));
    }
}

TEST_F(CutCommandTest, HelpIsAResultAndNonsenseIsTrouble) {
    EXPECT_EQ(runCut({"--help"}), kAllWell);
    EXPECT_THAT(out, StartsWith("Cuts subjects out of pictures"));
    EXPECT_EQ(err, "");
    EXPECT_EQ(runCut({}), kBadUsage);
    EXPECT_EQ(out, "");
    EXPECT_EQ(err, "trimora cut: no picture is named; --help tells more\n");
}

}  // namespace
}  // namespace trimora::batch
