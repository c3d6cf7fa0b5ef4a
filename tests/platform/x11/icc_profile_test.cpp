#include "platform/x11/icc_profile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "desktop/color_profile.h"

namespace {

using desktop::ColorProfile;
using platform::x11::checkedIccProfile;
using platform::x11::iccDescription;
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t firstTag = 132;

Bytes profile(ColorProfile::Version version = ColorProfile::Version::two) {
    return ColorProfile{.version = version}.bytes();
}

void setNumber(Bytes& bytes, std::size_t offset, std::uint32_t number) {
    for (std::size_t index = 0; index < 4; ++index) {
        bytes.at(offset + index) = static_cast<std::uint8_t>(number >> (24 - 8 * index));
    }
}

void setText(Bytes& bytes, std::size_t offset, const std::string& text) {
    std::copy(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(offset));
}

std::uint32_t numberAt(const Bytes& bytes, std::size_t offset) {
    return static_cast<std::uint32_t>(bytes.at(offset)) << 24U |
           static_cast<std::uint32_t>(bytes.at(offset + 1)) << 16U |
           static_cast<std::uint32_t>(bytes.at(offset + 2)) << 8U | bytes.at(offset + 3);
}

Bytes withText(std::size_t offset, const std::string& text) {
    Bytes bytes = profile();
    setText(bytes, offset, text);
    return bytes;
}

TEST(IccProfile, of_both_versions_is_taken_as_it_is) {
    for (const auto version : {ColorProfile::Version::two, ColorProfile::Version::four}) {
        EXPECT_EQ(checkedIccProfile(profile(version)), profile(version));
    }
}

TEST(IccProfile, what_follows_the_profile_is_cut_off) {
    Bytes bytes = profile();
    bytes.resize(bytes.size() + 10);
    EXPECT_EQ(checkedIccProfile(bytes), profile());
}

TEST(IccProfile, that_is_too_short_or_cut_is_refused) {
    EXPECT_FALSE(checkedIccProfile({}));
    const Bytes whole = profile();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_FALSE(checkedIccProfile({whole.begin(), whole.begin() + static_cast<int>(size)}));
    }
}

TEST(IccProfile, of_no_device_with_red_green_and_blue_is_refused) {
    EXPECT_FALSE(checkedIccProfile(withText(36, "acsx")));
    EXPECT_FALSE(checkedIccProfile(withText(16, "GRAY")));
    EXPECT_FALSE(checkedIccProfile(withText(16, "CMYK")));
    EXPECT_FALSE(checkedIccProfile(withText(12, "link")));
    EXPECT_FALSE(checkedIccProfile(withText(12, "abst")));
    EXPECT_FALSE(checkedIccProfile(withText(20, "RGB ")));
    EXPECT_TRUE(checkedIccProfile(withText(20, "Lab ")));
    EXPECT_TRUE(checkedIccProfile(withText(12, "scnr")));
}

TEST(IccProfile, with_a_part_outside_of_it_is_refused) {
    for (const std::uint32_t offset : {10000U, 0xFFFFFFF0U, 0xFFFFFFFFU}) {
        Bytes bytes = profile();
        setNumber(bytes, firstTag + 4, offset);
        EXPECT_FALSE(checkedIccProfile(bytes));
    }
    Bytes bytes = profile();
    setNumber(bytes, firstTag + 8, 0xFFFFFFFF);
    EXPECT_FALSE(checkedIccProfile(bytes));
    for (const std::uint32_t count : {1000U, 0x20000000U, 0xFFFFFFFFU}) {
        bytes = profile();
        setNumber(bytes, firstTag - 4, count);
        EXPECT_FALSE(checkedIccProfile(bytes));
    }
}

TEST(IccProfile, of_version_4_has_a_size_of_whole_words) {
    Bytes bytes = profile(ColorProfile::Version::four);
    bytes.push_back(0);
    setNumber(bytes, 0, static_cast<std::uint32_t>(bytes.size()));
    EXPECT_FALSE(checkedIccProfile(bytes));
    bytes = profile();
    bytes.push_back(0);
    setNumber(bytes, 0, static_cast<std::uint32_t>(bytes.size()));
    EXPECT_TRUE(checkedIccProfile(bytes));
}

TEST(IccDescription, is_the_name_that_the_profile_gives_itself) {
    for (const auto version : {ColorProfile::Version::two, ColorProfile::Version::four}) {
        const ColorProfile named{.version = version, .descriptions = {{"en", " Model 27, #3 "}}};
        EXPECT_EQ(iccDescription(named.bytes()), "Model 27, #3");
    }
}

TEST(IccDescription, is_the_english_one_of_several_and_else_the_first) {
    ColorProfile named{.version = ColorProfile::Version::four,
                       .descriptions = {{"de", "Bildschirm"}, {"en", "Display"}, {"fr", "Ecran"}}};
    EXPECT_EQ(iccDescription(named.bytes()), "Display");
    named.descriptions.erase(named.descriptions.begin() + 1);
    EXPECT_EQ(iccDescription(named.bytes()), "Bildschirm");
}

TEST(IccDescription, has_every_letter_of_utf_16) {
    ColorProfile named{.version = ColorProfile::Version::four, .descriptions = {{"ja", "abcd"}}};
    Bytes bytes = named.bytes();
    const std::size_t tag = numberAt(bytes, firstTag + 4);
    // The name follows the one record: e with an acute accent, a kana, a face beyond 16 bits.
    setNumber(bytes, tag + 28, 0x00E930D5);
    setNumber(bytes, tag + 32, 0xD83DDE00);
    EXPECT_EQ(iccDescription(bytes), "\u00e9\u30d5\U0001F600");
    // Half of a pair is replaced.
    setNumber(bytes, tag + 32, 0xD83D0041);
    EXPECT_EQ(iccDescription(bytes), "\u00e9\u30d5\ufffd\ufffd\ufffdA");
}

TEST(IccDescription, is_empty_where_there_is_none_that_can_be_read) {
    EXPECT_EQ(iccDescription(withText(firstTag, "dscm")), "");
    Bytes bytes = profile();
    const std::size_t tag = numberAt(bytes, firstTag + 4);
    setNumber(bytes, tag + 8, 0xFFFFFFFF);
    EXPECT_EQ(iccDescription(bytes), "");
    setText(bytes, tag, "text");
    EXPECT_EQ(iccDescription(bytes), "");
    bytes = profile();
    setNumber(bytes, firstTag + 8, 3);
    EXPECT_EQ(iccDescription(bytes), "");
    bytes = profile(ColorProfile::Version::four);
    setNumber(bytes, numberAt(bytes, firstTag + 4) + 20, 0xFFFFFFF0);
    EXPECT_EQ(iccDescription(bytes), "");
}

TEST(IccProfile, damaged_anywhere_is_read_within_its_bounds) {
    // Under the address sanitizer a step outside ends the test.
    std::mt19937 generator(4);
    for (int round = 0; round < 20000; ++round) {
        Bytes bytes =
            profile(round % 2 == 0 ? ColorProfile::Version::two : ColorProfile::Version::four);
        for (int damage = 0; damage < 4; ++damage) {
            bytes.at(generator() % 330) = static_cast<std::uint8_t>(generator());
        }
        if (const auto checked = checkedIccProfile(bytes)) {
            EXPECT_LE(iccDescription(*checked).size(), checked->size() * 2);
        }
    }
}

}  // namespace
