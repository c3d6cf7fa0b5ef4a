#include <fstream>
#include <iterator>

#include "desktop/process.h"

#include "pasteboard_fixture.h"

using namespace pasteboard_test;

namespace {

/// Lets another program, one that is not of this project, print the clipboard as `target`.
std::string printedByXclip(PasteboardDesktop& desk, const std::string& target) {
    const TemporaryDirectory directory;
    const std::filesystem::path output = directory.path() / "xclip";
    desktop::Process reader({.command = {"xclip", "-selection", "clipboard", "-out", "-target",
                                         target, "-display", sharedServer().displayName()},
                             .environment = {{"PATH", "/usr/bin:/bin"}},
                             .outputFile = output});
    EXPECT_TRUE(desk.runUntil([&] { return !reader.isRunning(); }));
    std::ifstream file(output.string() + ".out", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(ClipboardReader, an_independent_program_reads_a_small_picture) {
    PasteboardDesktop desk;
    PreparedEncoder encoder(randomBytes(5000));
    desk.pasteboard->writeImage(imageOf(encoder));

    EXPECT_TRUE(bytesOf(printedByXclip(desk, "image/png")) == randomBytes(5000));
}

TEST(ClipboardReader, an_independent_program_reads_a_picture_in_pieces) {
    PasteboardDesktop desk;
    PreparedEncoder encoder(randomBytes(7'000'001));
    desk.pasteboard->writeImage(imageOf(encoder));

    EXPECT_TRUE(bytesOf(printedByXclip(desk, "image/png")) == randomBytes(7'000'001));
}

TEST(ClipboardReader, an_independent_program_reads_a_text) {
    PasteboardDesktop desk;
    desk.pasteboard->writeString("Größe: 5 €");

    EXPECT_EQ(printedByXclip(desk, "UTF8_STRING"), "Größe: 5 €");
}

}  // namespace
