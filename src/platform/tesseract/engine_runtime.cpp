#include "platform/tesseract/engine_runtime.h"

#include <leptonica/allheaders.h>

#include "platform/tesseract/engine_function.h"
#include "platform/tesseract/engine_parts.h"
#include "platform/tesseract/engine_symbols.h"

namespace platform::tesseract {

void keepEngineOnThisThread() {
    // For an engine that was built against entry points that are not below. Its OpenMP comes with
    // it; another compiler's beside it would not be heard, and one opens a file where none may be
    // opened.
    using SetLevels = void (*)(int);
    if (const auto setLevels = engineFunction<SetLevels>("omp_set_max_active_levels")) {
        setLevels(0);
    }
}

namespace {

/// The parts of a "sections" construct that are still to be run.
struct Sections {
    unsigned next = 0;
    unsigned count = 0;
};
thread_local Sections sections;

}  // namespace

}  // namespace platform::tesseract

// NOLINTBEGIN(readability-identifier-naming,bugprone-reserved-identifier): the libraries' names.

namespace tesseract {

using platform::tesseract::engineFunction;
using platform::tesseract::usesOwnParts;
namespace symbols = platform::tesseract::symbols;

class UNICHARSET;

/// Of the engine's own classes, as far as it is needed to be the one that the engine finds.
class UnicharAmbigs {
  public:
    [[gnu::visibility("default")]] void LoadUniversal(const UNICHARSET& encoder,
                                                      UNICHARSET* characters);
};

/// Letters that the engine of old mistook for each other; the neural one never asks for them, and
/// sorting their list is two thirds of the time that it takes to load.
void UnicharAmbigs::LoadUniversal(const UNICHARSET& encoder, UNICHARSET* characters) {
    if (usesOwnParts()) {
        return;
    }
    using Load = void (*)(UnicharAmbigs*, const UNICHARSET&, UNICHARSET*);
    static const auto load = engineFunction<Load>(symbols::loadUniversal);
    load(this, encoder, characters);
}

class BLOCK;
/// A handle of the engine, passed by value.
class Image {
    [[maybe_unused]] PIX* picture_;
};

/// The outlines of the letters, for the engine of old and for finding lines. The neural one reads
/// the whole picture of a raw line, and without outlines takes one the size of that picture.
[[gnu::visibility("default")]] void extract_edges(Image picture, BLOCK* block);
void extract_edges(Image picture, BLOCK* block) {
    if (usesOwnParts()) {
        return;
    }
    using Extract = void (*)(Image, BLOCK*);
    static const auto extract = engineFunction<Extract>(symbols::extractEdges);
    extract(picture, block);
}

}  // namespace tesseract

extern "C" {

// Those of GCC's OpenMP, as compiled code calls them. libgomp would keep a team of one thread for
// each of them, and wake it through the kernel, several times for every column of a line.

[[gnu::visibility("default")]] void GOMP_parallel(void (*work)(void*), void* data, unsigned,
                                                  unsigned) {
    work(data);
}

[[gnu::visibility("default")]] unsigned GOMP_sections_start(unsigned count) {
    platform::tesseract::sections = {count > 0 ? 1U : 0U, count};
    return platform::tesseract::sections.next;
}

[[gnu::visibility("default")]] unsigned GOMP_sections_next() {
    auto& sections = platform::tesseract::sections;
    return sections.next < sections.count ? ++sections.next : 0;
}

[[gnu::visibility("default")]] void GOMP_sections_end() {}

[[gnu::visibility("default")]] void GOMP_sections_end_nowait() {}

[[gnu::visibility("default")]] void GOMP_parallel_sections(void (*work)(void*), void* data,
                                                           unsigned, unsigned count, unsigned) {
    const auto outer = platform::tesseract::sections;
    platform::tesseract::sections = {0, count};
    work(data);
    platform::tesseract::sections = outer;
}

// The engine gets its copy of a line from `pixReadMem`, which knows leptonica's own format by its
// first bytes. Nothing else writes pictures here.
[[gnu::visibility("default")]] l_ok pixWriteMem(l_uint8** bytes, size_t* length, PIX* picture,
                                                l_int32) {
    l_uint32* words = nullptr;
    const l_ok status = pixSerializeToMemory(picture, &words, length);
    *bytes = reinterpret_cast<l_uint8*>(words);
    return status;
}

}  // extern "C"

// NOLINTEND(readability-identifier-naming,bugprone-reserved-identifier)
