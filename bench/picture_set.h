#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "base/image.h"
#include "base/result.h"

namespace bench {

/// A picture of a screen whose text is known.
struct Sample {
    std::string name;
    std::string category;
    /// What drew it.
    std::string program;
    /// The engine's codes, the picture's own language first.
    std::vector<std::string> languages;
    std::filesystem::path file;
    std::string truth;
};

/// The samples of a folder with `manifest.json` and NAME.png and NAME.txt for each.
base::Result<std::vector<Sample>> loadSamples(const std::filesystem::path& folder);

base::Result<base::Image> loadPicture(const std::filesystem::path& file);

}  // namespace bench
