// Files that were made to harm: each is played or refused, soon, and costs nothing but its film.
#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>

#include "video/video_fixture.h"

namespace video_tests {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::Not;

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string bigEndian(std::uint32_t number) {
    return {static_cast<char>(number >> 24U), static_cast<char>(number >> 16U),
            static_cast<char>(number >> 8U), static_cast<char>(number)};
}

std::string box(const std::string& type, const std::string& content) {
    return bigEndian(static_cast<std::uint32_t>(content.size() + 8)) + type + content;
}

std::uint32_t number(const std::string& bytes, std::size_t place) {
    std::uint32_t value = 0;
    for (std::size_t index = 0; index < 4; ++index) {
        value = value << 8U | static_cast<std::uint8_t>(bytes[place + index]);
    }
    return value;
}

/// The box of a film whose data are in another file: an alias of the Macintosh, whose many fields
/// say nothing but the absolute path.
std::string referenceTo(const std::filesystem::path& file) {
    constexpr std::size_t fixedLength = 150;
    constexpr std::uint32_t absolutePath = 2;
    const std::string path = file.string() + std::string(file.string().size() % 2, '\0');
    const std::string entry =
        bigEndian(absolutePath << 16U | static_cast<std::uint32_t>(path.size())) + path;
    return box("alis",
               bigEndian(0) + std::string(fixedLength, '\0') + entry + bigEndian(0xffff0000));
}

class HostileFilm : public VideoFixture {
  protected:
    void write(const std::string& bytes) const {
        std::ofstream(film(), std::ios::binary | std::ios::trunc) << bytes;
    }
    [[nodiscard]] std::string goodFilm(const FilmPlan& plan = {}) const {
        makeFilm(film(), plan);
        return contentOf(film());
    }
    /// Where what follows the type of the box begins.
    static std::size_t inside(const std::string& bytes, const std::string& type) {
        const std::size_t place = bytes.rfind(type);
        EXPECT_NE(place, std::string::npos);
        return place + type.size();
    }
    /// The film with this box in the place of the one that says that its data are its own.
    static std::string withReference(std::string bytes, const std::string& reference) {
        const std::size_t own = bytes.rfind("url ") - 4;
        constexpr std::size_t ownLength = 12;
        for (const char* const outer : {"moov", "trak", "mdia", "minf", "dinf", "dref"}) {
            const std::size_t length = inside(bytes, outer) - 8;
            bytes.replace(length, 4,
                          bigEndian(static_cast<std::uint32_t>(number(bytes, length) +
                                                               reference.size() - ownLength)));
        }
        return bytes.replace(own, ownLength, reference);
    }
    /// Why the film is not played; empty when it is.
    std::string errorOf(const std::string& bytes) {
        write(bytes);
        open();
        const Answer answer = next();
        return answer ? "" : answer.error().sentence;
    }
    /// Asks for some pictures; whatever comes has to come in time, and times may not go back.
    void playSome(const std::string& bytes, int count = 30) {
        write(bytes);
        open();
        std::chrono::microseconds last{-1};
        for (int picture = 0; picture < count; ++picture) {
            const Answer answer = next();
            if (!answer) {
                EXPECT_FALSE(answer.error().sentence.empty());
                EXPECT_NE(answer.error().sentence, "The video helper has ended unexpectedly.");
                break;
            }
            EXPECT_GT(answer.value().time, last);
            last = answer.value().time;
        }
        looper_.reset();
    }
};

constexpr const char* invalidData = "Invalid data found when processing input.";

TEST_F(HostileFilm, that_is_empty_or_no_film_says_so) {
    EXPECT_EQ(errorOf(""), invalidData);
    EXPECT_EQ(errorOf("This is a text, and not a film at all.\n"), invalidData);
    EXPECT_EQ(errorOf(std::string(100000, '\0')), invalidData);
    EXPECT_EQ(errorOf(std::string(100000, '\xff')), invalidData);
}

TEST_F(HostileFilm, that_has_no_video_is_told_apart) {
    makeSoundOnly(film());
    open();
    const Answer answer = next();
    ASSERT_FALSE(answer);
    EXPECT_EQ(answer.error().kind, base::ErrorKind::notFound);
}

TEST_F(HostileFilm, that_is_missing_is_told_apart_and_starts_nothing) {
    for (const char* const name : {"missing", "film.mp4/film", "../film"}) {
        const auto opened = resources_.open(name);
        ASSERT_FALSE(opened);
        EXPECT_EQ(opened.error().kind, base::ErrorKind::notFound) << name;
    }
}

TEST_F(HostileFilm, that_is_no_file_is_refused) {
    std::filesystem::create_directory(film());
    const auto opened = resources_.open("film");
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.error().kind, base::ErrorKind::invalid);
    EXPECT_THAT(opened.error().sentence, testing::EndsWith("film.mp4 is not a file."));
}

TEST_F(HostileFilm, that_cannot_be_opened_is_an_error_with_its_reason) {
    std::filesystem::create_symlink(film(), film());
    const auto opened = resources_.open("film");
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.error().kind, base::ErrorKind::failed);
    EXPECT_THAT(opened.error().sentence,
                testing::EndsWith("film.mp4 cannot be read: Too many levels of symbolic links."));
}

TEST_F(HostileFilm, that_is_cut_anywhere_is_played_as_far_as_it_goes_or_refused) {
    const std::string tablesBehind = goodFilm();
    const std::string tablesInFront = goodFilm({.flags = "faststart"});
    for (std::size_t part = 1; part < 8; ++part) {
        playSome(tablesBehind.substr(0, tablesBehind.size() * part / 8));
        playSome(tablesInFront.substr(0, tablesInFront.size() * part / 8));
    }
}

TEST_F(HostileFilm, whose_end_is_missing_loops_over_what_is_there) {
    const std::string bytes =
        goodFilm({.reorderedCount = 0, .keyDistance = 1, .flags = "faststart"});
    write(bytes.substr(0, bytes.size() - (bytes.size() - inside(bytes, "mdat")) / 2));
    open();
    const auto numbers = nextNumbers(24);
    EXPECT_EQ(numbers.front(), 0);
    EXPECT_THAT(std::vector(numbers.begin() + 1, numbers.end()), testing::Contains(0));
    EXPECT_THAT(numbers, Not(testing::Contains(-2)));
}

TEST_F(HostileFilm, with_bytes_changed_at_random_is_played_or_refused) {
    const std::string good = goodFilm({.flags = "faststart"});
    const std::size_t tables = good.find("mdat");
    std::mt19937 random(20250307);
    for (int attempt = 0; attempt < 24; ++attempt) {
        std::string bytes = good;
        // In the tables, where every byte matters; each fourth time anywhere.
        const std::size_t length = attempt % 4 == 3 ? bytes.size() : tables;
        for (int change = 0; change < 12; ++change) {
            bytes[random() % length] = static_cast<char>(random());
        }
        SCOPED_TRACE(attempt);
        playSome(bytes, 15);
    }
}

TEST_F(HostileFilm, of_absurd_dimensions_is_refused_or_played_as_it_really_is) {
    std::string bytes = goodFilm();
    // Of a description of pictures the dimensions are 24 bytes behind its type.
    bytes.replace(inside(bytes, "avc1") + 24, 4, "\xff\xff\xff\xff");
    EXPECT_EQ(errorOf(bytes), "The video's pictures are too large.");
}

TEST_F(HostileFilm, whose_coded_pictures_are_larger_than_it_says_is_refused) {
    std::string bytes = goodFilm({.pictureCount = 1, .width = 4608, .height = 2304});
    bytes.replace(inside(bytes, "avc1") + 24, 4, bigEndian(64U << 16U | 64U));
    EXPECT_NE(errorOf(bytes), "");
}

TEST_F(HostileFilm, of_no_rate_at_all_is_played_with_a_bounded_one) {
    std::string bytes = goodFilm();
    // One entry: the number of pictures and what each lasts.
    bytes.replace(inside(bytes, "stts") + 12, 4, bigEndian(0));
    write(bytes);
    open();
    std::int64_t last = -1;
    for (const std::int64_t time : nextTimes(30)) {
        EXPECT_GE(time, last < 0 ? 0 : last + 8333);
        last = time;
    }
}

TEST_F(HostileFilm, that_promises_endless_pictures_ends_where_it_ends) {
    for (const char* const table : {"stts", "stsz", "stsc", "stco", "ctts"}) {
        std::string bytes = goodFilm();
        // How many entries it has; those of "stsz" come after their common size.
        const std::size_t place = inside(bytes, table) + (std::string(table) == "stsz" ? 8 : 4);
        bytes.replace(place, 4, bigEndian(0x7fffffff));
        SCOPED_TRACE(table);
        playSome(bytes);
    }
    std::string bytes = goodFilm();
    bytes.replace(inside(bytes, "stts") + 8, 4, bigEndian(0xffffffff));
    playSome(bytes);
    bytes = goodFilm();
    // Four thousand million pictures of one byte each.
    bytes.replace(inside(bytes, "stsz") + 4, 8, bigEndian(1) + bigEndian(0xffffffff));
    playSome(bytes);
}

TEST_F(HostileFilm, of_ten_thousand_tracks_is_refused) {
    const std::string bytes = goodFilm();
    const std::size_t movie = inside(bytes, "moov");
    const std::size_t track = inside(bytes, "trak") - 8;
    const std::uint32_t length = number(bytes, track);
    std::string content = bytes.substr(movie, track - movie);
    for (int copy = 0; copy < 10000; ++copy) {
        content += bytes.substr(track, length);
    }
    EXPECT_NE(errorOf(bytes.substr(0, movie - 8) + box("moov", content)), "");
}

TEST_F(HostileFilm, with_boxes_in_boxes_without_end_is_refused) {
    std::string content;
    for (int depth = 0; depth < 20000; ++depth) {
        content = box("moov", content.substr(0, 100000));
    }
    EXPECT_NE(errorOf(content), "");
}

TEST_F(HostileFilm, of_a_million_million_bytes_is_not_read_to_its_end) {
    const std::string bytes = goodFilm();
    write(bytes.substr(0, inside(bytes, "mdat") - 8));
    std::filesystem::resize_file(film(), std::uintmax_t{1} << 40U);
    open();
    EXPECT_FALSE(next());
}

TEST_F(HostileFilm, that_names_another_file_does_not_get_it) {
    const std::string good = goodFilm();
    EXPECT_EQ(errorOf(good), "");
    // Its pictures are in the other file alone.
    std::ofstream(film("other"), std::ios::binary) << good;
    std::string bytes = good;
    const std::size_t pictures = inside(bytes, "mdat");
    const std::size_t tables = inside(bytes, "moov") - 8;
    ASSERT_LT(pictures, tables);
    std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(pictures),
              bytes.begin() + static_cast<std::ptrdiff_t>(tables), '\0');
    const std::string absolute = referenceTo(film("other"));
    EXPECT_NE(errorOf(withReference(bytes, absolute)), "");
    // What looks for the other file has found its name: with its own pictures, too, the film has
    // none.
    EXPECT_NE(errorOf(withReference(good, absolute)), "");
}

TEST_F(HostileFilm, in_a_codec_that_is_not_for_films_is_refused) {
    std::string bytes = goodFilm({.encoder = "mpeg4"});
    // The type of the codec comes behind the head of its description; 0x61 is MPEG-2.
    const std::size_t head = bytes.find(std::string("\x04\x80\x80\x80", 4), inside(bytes, "esds"));
    ASSERT_NE(head, std::string::npos);
    ASSERT_EQ(bytes[head + 5], '\x20');
    bytes[head + 5] = '\x61';
    EXPECT_EQ(errorOf(bytes), "The video is coded in an unknown way.");
}

}  // namespace
}  // namespace video_tests
