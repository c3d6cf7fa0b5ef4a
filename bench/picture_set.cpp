#include "picture_set.h"

#include <png.h>

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

namespace bench {

base::Result<std::vector<Sample>> loadSamples(const std::filesystem::path& folder) {
    const auto manifestFile = folder / "manifest.json";
    std::ifstream source(manifestFile);
    const auto manifest = nlohmann::json::parse(source, nullptr, false);
    if (!manifest.is_array()) {
        return base::Error{base::ErrorKind::notFound, manifestFile.string() + " cannot be read."};
    }
    std::vector<Sample> samples;
    for (const auto& entry : manifest) {
        Sample sample;
        sample.name = entry.value("name", "");
        sample.category = entry.value("category", "");
        sample.program = entry.value("renderer", "");
        sample.languages.push_back(entry.value("lang", "eng"));
        if (sample.languages.front() != "eng") {
            sample.languages.emplace_back("eng");
        }
        sample.file = folder / (sample.name + ".png");
        std::ifstream text(folder / (sample.name + ".txt"));
        sample.truth.assign(std::istreambuf_iterator<char>(text), {});
        samples.push_back(std::move(sample));
    }
    return samples;
}

base::Result<base::Image> loadPicture(const std::filesystem::path& file) {
    png_image header{};
    header.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&header, file.c_str()) == 0) {
        return base::Error{base::ErrorKind::notFound, file.string() + " cannot be read."};
    }
    header.format = PNG_FORMAT_BGRA;
    std::vector<std::uint8_t> pixels(PNG_IMAGE_SIZE(header));
    const png_color black{};
    if (png_image_finish_read(&header, &black, pixels.data(), 0, nullptr) == 0) {
        return base::Error{base::ErrorKind::invalid, file.string() + " is no PNG picture."};
    }
    return base::Image::fromPixels(static_cast<int>(header.width), static_cast<int>(header.height),
                                   std::move(pixels), base::AlphaChannel::none);
}

}  // namespace bench
