#include "platform/tesseract/line_reader.h"

#include <tesseract/baseapi.h>

#include <algorithm>

#include "platform/tesseract/engine_runtime.h"
#include "platform/tesseract/language_data.h"

namespace platform::tesseract {

namespace {

/// The engine scales what it reads by this; the lines come at the size that it wants.
constexpr int resolution = 300;

std::string joined(const std::vector<std::string>& languages) {
    std::string all;
    for (const std::string& language : languages) {
        all += (all.empty() ? "" : "+") + language;
    }
    return all;
}

/// tesseract-ocr-chi-sim for chi_sim.
std::string packageOf(const std::string& language) {
    std::string name = language;
    std::replace(name.begin(), name.end(), '_', '-');
    return "tesseract-ocr-" + name;
}

std::string oneLine(const char* text) {
    std::string line = text == nullptr ? "" : text;
    for (char& character : line) {
        if (character == '\n' || character == '\r' || character == '\f') {
            character = ' ';
        }
    }
    const std::size_t first = line.find_first_not_of(' ');
    if (first == std::string::npos) {
        return {};
    }
    return line.substr(first, line.find_last_not_of(' ') - first + 1);
}

}  // namespace

class LineReader::Engine {
  public:
    /// `directory` is that of the language data; the engine's own choice when it is null.
    bool load(const char* directory, const std::string& languages) {
        return api_.Init(directory, 0, languages.c_str(), ::tesseract::OEM_LSTM_ONLY, nullptr, 0,
                         nullptr, nullptr, false, readFile) == 0;
    }
    [[nodiscard]] const char* directory() { return api_.GetDatapath(); }
    void configure() {
        api_.SetVariable("tessedit_do_invert", "0");
        api_.SetVariable("debug_file", "/dev/null");
        api_.SetPageSegMode(::tesseract::PSM_RAW_LINE);
    }
    [[nodiscard]] std::vector<std::string> loadedLanguages() {
        std::vector<std::string> languages;
        api_.GetLoadedLanguagesAsVector(&languages);
        return languages;
    }
    LineReading read(const InkPlane& picture) {
        api_.SetImage(picture.row(0), picture.width(), picture.height(), 1, picture.width());
        api_.SetSourceResolution(resolution);
        const std::unique_ptr<char[]> text(api_.GetUTF8Text());
        LineReading reading{oneLine(text.get()), api_.MeanTextConf(), {}, {}};
        const std::unique_ptr<int[]> confidences(api_.AllWordConfidences());
        for (const int* word = confidences.get(); word != nullptr && *word >= 0; ++word) {
            reading.wordConfidences.push_back(*word);
        }
        return reading;
    }

  private:
    static bool readFile(const char* path, std::vector<char>* bytes) {
        return readLanguageData(path, bytes);
    }

    ::tesseract::TessBaseAPI api_;
};

LineReader::LineReader(std::unique_ptr<Engine> engine, std::string languages)
    : engine_(std::move(engine)), languages_(std::move(languages)) {}
LineReader::~LineReader() = default;

base::Result<std::unique_ptr<LineReader>> LineReader::create(
    const std::vector<std::string>& languages) {
    if (languages.empty()) {
        return base::Error{base::ErrorKind::invalid, "No language to recognise text in was given."};
    }
    auto engine = std::make_unique<Engine>();
    const bool isLoaded = engine->load(nullptr, joined(languages));
    const std::vector<std::string> loaded =
        isLoaded ? engine->loadedLanguages() : std::vector<std::string>{};
    for (const std::string& language : languages) {
        if (std::find(loaded.begin(), loaded.end(), language) == loaded.end()) {
            return base::Error{base::ErrorKind::unavailable,
                               "The recognition data for \"" + language +
                                   "\" are missing; please install the package " +
                                   packageOf(language) + "."};
        }
    }
    engine->configure();
    return std::unique_ptr<LineReader>(new LineReader(std::move(engine), joined(languages)));
}

std::unique_ptr<LineReader> LineReader::another() {
    keepEngineOnThisThread();
    auto engine = std::make_unique<Engine>();
    if (!engine->load(engine_->directory(), languages_)) {
        return nullptr;
    }
    engine->configure();
    return std::unique_ptr<LineReader>(new LineReader(std::move(engine), languages_));
}

LineReading LineReader::read(const InkPlane& picture) {
    keepEngineOnThisThread();
    return engine_->read(picture);
}

}  // namespace platform::tesseract
