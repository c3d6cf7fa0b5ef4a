#include "platform/tesseract/engine_runtime.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <link.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "own_parts.h"
#include "picture_set.h"
#include "platform/tesseract/engine_symbols.h"
#include "platform/tesseract/line_reader.h"

namespace platform::tesseract {

namespace {

/// What compiled code finds under that name.
template <class Function>
Function calledAs(const char* name) {
    return reinterpret_cast<Function>(::dlsym(RTLD_DEFAULT, name));
}
using Call = void (*)();
using NextSection = unsigned (*)();

constexpr int sectionCount = 5;
using Counts = std::array<int, sectionCount>;

/// Counts how often its OpenMP sections were run, of a construct that has begun.
void runSections(void* counts) {
    const auto next = calledAs<NextSection>("GOMP_sections_next");
    for (unsigned part = next(); part != 0; part = next()) {
        ++static_cast<Counts*>(counts)->at(part - 1);
    }
    calledAs<Call>("GOMP_sections_end_nowait")();
}

/// The same of one that it begins itself, within a parallel region.
void beginSections(void* counts) {
    using Start = unsigned (*)(unsigned);
    const auto next = calledAs<NextSection>("GOMP_sections_next");
    for (unsigned part = calledAs<Start>("GOMP_sections_start")(sectionCount); part != 0;
         part = next()) {
        ++static_cast<Counts*>(counts)->at(part - 1);
    }
    calledAs<Call>("GOMP_sections_end")();
}

std::vector<std::string> replacedNames() {
    std::vector<std::string> names{"GOMP_parallel",       "GOMP_parallel_sections",
                                   "GOMP_sections_start", "GOMP_sections_next",
                                   "GOMP_sections_end",   "GOMP_sections_end_nowait",
                                   "pixWriteMem"};
    names.insert(names.end(), std::begin(symbols::replaced), std::end(symbols::replaced));
    return names;
}

/// What a program offers to its libraries: the names in its dynamic table that have a place.
std::set<std::string> exportedBy(const std::string& program) {
    std::ifstream file(program, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    const auto at = [&bytes]<class Entry>(std::size_t place, Entry entry) {
        std::memcpy(&entry, bytes.data() + place, sizeof(entry));
        return entry;
    };
    const auto header = at(0, ElfW(Ehdr){});
    const auto section = [&](std::size_t index) {
        return at(header.e_shoff + index * header.e_shentsize, ElfW(Shdr){});
    };
    std::set<std::string> names;
    for (std::size_t index = 0; index < header.e_shnum; ++index) {
        const auto table = section(index);
        for (std::size_t place = 0; table.sh_type == SHT_DYNSYM && place < table.sh_size;
             place += sizeof(ElfW(Sym))) {
            const auto symbol = at(table.sh_offset + place, ElfW(Sym){});
            if (symbol.st_shndx != SHN_UNDEF) {
                names.insert(bytes.c_str() + section(table.sh_link).sh_offset + symbol.st_name);
            }
        }
    }
    return names;
}

/// An engine as its own program would use it, which finds the lines itself.
class WholeEngine {
  public:
    WholeEngine() {
        EXPECT_EQ(api_.Init(nullptr, "eng", ::tesseract::OEM_LSTM_ONLY), 0);
        api_.SetVariable("debug_file", "/dev/null");
        api_.SetPageSegMode(::tesseract::PSM_SINGLE_BLOCK);
    }
    std::string read(const base::Image& picture) {
        constexpr int pixelBytes = 4;
        api_.SetImage(picture.row(0), picture.width(), picture.height(), pixelBytes,
                      picture.width() * pixelBytes);
        const std::unique_ptr<char[]> text(api_.GetUTF8Text());
        return text.get();
    }
    /// Letters that only the table of what looks alike knows as one.
    bool knowsLookAlikes() { return api_.IsValidCharacter("rn"); }

  private:
    ::tesseract::TessBaseAPI api_;
};

long threadCount() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

}  // namespace

TEST(EngineRuntime, what_the_engine_calls_is_found_in_this_program) {
    Dl_info here{};
    ASSERT_NE(::dladdr(reinterpret_cast<void*>(&keepEngineOnThisThread), &here), 0);
    for (const std::string& name : replacedNames()) {
        Dl_info found{};
        ASSERT_NE(::dladdr(::dlsym(RTLD_DEFAULT, name.c_str()), &found), 0) << name;
        EXPECT_EQ(std::string(found.dli_fname), here.dli_fname) << name;
    }
}

// A linker takes from a library only what somebody asks for; these tests ask for more.
TEST(EngineRuntime, what_the_engine_calls_is_found_in_the_helper_program) {
    const auto exported = exportedBy(LUMAFRAME_TEXT_HELPER);
    for (const std::string& name : replacedNames()) {
        EXPECT_TRUE(exported.contains(name)) << name;
    }
}

TEST(EngineRuntime, each_section_runs_once) {
    using RunSections = void (*)(void (*)(void*), void*, unsigned, unsigned, unsigned);
    Counts counts{};
    calledAs<RunSections>("GOMP_parallel_sections")(runSections, &counts, 4, sectionCount, 0);
    EXPECT_THAT(counts, testing::Each(1));
}

TEST(EngineRuntime, each_section_of_a_construct_within_a_region_runs_once) {
    using RunRegion = void (*)(void (*)(void*), void*, unsigned, unsigned);
    for (int times = 1; times <= 2; ++times) {
        Counts counts{};
        calledAs<RunRegion>("GOMP_parallel")(beginSections, &counts, 4, 0);
        EXPECT_THAT(counts, testing::Each(1));
    }
    EXPECT_EQ(calledAs<unsigned (*)(unsigned)>("GOMP_sections_start")(0), 0U);
}

TEST(EngineRuntime, the_engine_starts_no_thread) {
    const auto reader = LineReader::create({"eng"});
    ASSERT_TRUE(reader) << reader.error().sentence;
    const long before = threadCount();
    reader.value()->read(InkPlane(400, 36, 255));
    EXPECT_EQ(threadCount(), before);
}

TEST_F(OwnParts, spare_the_engine_what_only_that_of_old_and_pages_need) {
    const auto picture = bench::loadPicture(LUMAFRAME_TEST_DATA "/ocr/prose01.png");
    ASSERT_TRUE(picture);
    WholeEngine engine;
    EXPECT_FALSE(engine.knowsLookAlikes());
    EXPECT_LT(engine.read(picture.value()).size(), 4);
}

TEST_F(OwnParts, not_chosen_leave_outlines_and_tables_to_the_engine) {
    const auto picture = bench::loadPicture(LUMAFRAME_TEST_DATA "/ocr/prose01.png");
    ASSERT_TRUE(picture);
    chooseParts(PartImplementation::engine);
    WholeEngine engine;
    EXPECT_TRUE(engine.knowsLookAlikes());
    EXPECT_GT(engine.read(picture.value()).size(), 40);
}

}  // namespace platform::tesseract
