#include "micro/benchmarks.h"

#include <benchmark/benchmark.h>

#include <map>
#include <string>

#include "micro/libpng_peer.h"
#include "micro/pictures.h"
#include "micro/png_peers.h"
#include "platform/png/png_encoder.h"

namespace bench {

namespace {

constexpr int width = 3840;
constexpr int height = 2160;

const base::Image& pictureOf(PictureKind kind) {
    static std::map<PictureKind, base::Image> pictures;
    const auto found = pictures.find(kind);
    return found != pictures.end()
               ? found->second
               : pictures.emplace(kind, drawPicture(kind, width, height)).first->second;
}

std::vector<std::uint8_t> encodeWithLumaframe(const base::Image& image) {
    platform::png::PngEncoder encoder;
    auto file = encoder.encodePng(
        image, {static_cast<double>(image.width()), static_cast<double>(image.height())});
    return file ? std::move(file.value()) : std::vector<std::uint8_t>{};
}

template <typename Encode>
void registerEncoder(const std::string& name, Encode encode) {
    for (const PictureKind kind : allPictureKinds) {
        const auto run = [encode, kind](benchmark::State& state) {
            const base::Image& picture = pictureOf(kind);
            std::size_t size = 0;
            for (auto step : state) {
                size = encode(picture).size();
            }
            state.counters["bytes"] = static_cast<double>(size);
        };
        benchmark::RegisterBenchmark(("png/" + std::string(nameOf(kind)) + "/" + name).c_str(), run)
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime()
            ->MeasureProcessCPUTime();
    }
}

}  // namespace

void registerPngBenchmarks() {
    registerEncoder("lumaframe", encodeWithLumaframe);
    registerEncoder("libpng", encodeWithLibpng);
    registerEncoder("libspng", encodeWithLibspng);
    registerEncoder("libdeflate-1-up", encodeWithLibdeflate);
}

}  // namespace bench
