#include "platform/tesseract/engine_runtime.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <string>

#include "platform/tesseract/line_reader.h"

namespace platform::tesseract {

namespace {

/// Counts how often its OpenMP sections were run.
void runSections(void* counts) {
    using Next = unsigned (*)();
    const auto next = reinterpret_cast<Next>(::dlsym(RTLD_DEFAULT, "GOMP_sections_next"));
    for (unsigned part = next(); part != 0; part = next()) {
        ++static_cast<int*>(counts)[part - 1];
    }
}

long threadCount() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

}  // namespace

TEST(EngineRuntime, what_the_engine_calls_is_found_in_this_program) {
    Dl_info here{};
    ASSERT_NE(::dladdr(reinterpret_cast<void*>(&keepEngineOnThisThread), &here), 0);
    for (const char* name :
         {"GOMP_parallel", "GOMP_parallel_sections", "GOMP_sections_next",
          "GOMP_sections_end_nowait", "pixWriteMem",
          "_ZN9tesseract13UnicharAmbigs13LoadUniversalERKNS_10UNICHARSETEPS1_",
          "_ZN9tesseract13extract_edgesENS_5ImageEPNS_5BLOCKE",
          "_ZN9tesseract9NetworkIO17WriteTimeStepPartEiiiPKf",
          "_ZN9tesseract14FullyConnected15ForwardTimeStepEiPf",
          "_ZN9tesseract8Convolve7ForwardEbRKNS_9NetworkIOEPKNS_15TransposedArrayEPNS_"
          "14NetworkScratchEPS1_",
          "_ZN9tesseract7Maxpool7ForwardEbRKNS_9NetworkIOEPKNS_15TransposedArrayEPNS_"
          "14NetworkScratchEPS1_",
          "_ZN9tesseract4LSTM7ForwardEbRKNS_9NetworkIOEPKNS_15TransposedArrayEPNS_"
          "14NetworkScratchEPS1_"}) {
        Dl_info found{};
        ASSERT_NE(::dladdr(::dlsym(RTLD_DEFAULT, name), &found), 0) << name;
        EXPECT_EQ(std::string(found.dli_fname), here.dli_fname) << name;
    }
}

TEST(EngineRuntime, each_section_runs_once) {
    using RunSections = void (*)(void (*)(void*), void*, unsigned, unsigned, unsigned);
    const auto run = reinterpret_cast<RunSections>(::dlsym(RTLD_DEFAULT, "GOMP_parallel_sections"));
    int counts[5] = {};
    run(runSections, counts, 4, 5, 0);
    for (const int count : counts) {
        EXPECT_EQ(count, 1);
    }
}

TEST(EngineRuntime, the_engine_starts_no_thread) {
    const auto reader = LineReader::create({"eng"});
    ASSERT_TRUE(reader) << reader.error().sentence;
    const long before = threadCount();
    reader.value()->read(InkPlane(400, 36, 255));
    EXPECT_EQ(threadCount(), before);
}

}  // namespace platform::tesseract
