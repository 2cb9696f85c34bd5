#include "platform/FileUri.h"

#include <gtest/gtest.h>

namespace trimora::platform {
namespace {

using std::filesystem::path;

TEST(FileUri, KeepsEveryByteOfAName) {
    for (const path file :
         {"/a/b.png", "/with blank/50% #1?.png", "/\xc3\xa9t\xc3\xa9.png", "/\xff\xfe not UTF-8"})
        EXPECT_EQ(fileOfUri(fileUri(file)), file);
    EXPECT_EQ(fileUri("/with blank/50% #1?.png"), "file:///with%20blank/50%25%20%231%3F.png");
}

TEST(FileUri, TakesAddressesAsOtherProgramsWriteThem) {
    EXPECT_EQ(fileOfUri("file://localhost/a%2fb"), path("/a/b"));
    EXPECT_EQ(fileOfUri(QString::fromUtf8("file:///\xc3\xa9")), path("/\xc3\xa9"));
}

TEST(FileUri, IsNothingForWhatIsNoFileOfThisMachine) {
    for (const char* uri :
         {"", "/a/b.png", "https://example.org/a.png", "file://elsewhere/a.png", "file:///a%00b"})
        EXPECT_EQ(fileOfUri(uri), std::nullopt) << uri;
}

}  // namespace
}  // namespace trimora::platform
