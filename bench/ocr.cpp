// Reads sets of pictures whose text is known and prints how much of it was right and what it took:
// processor time on one thread, time by the clock on two, and, where the first set has a picture of
// a single word, the helper's first use and the memory that is left behind. Each picture is read
// three times in both ways in turn, and the medians of its times count: machines are noisy. The
// rows "all pictures but those of" say how much of the whole a single program makes; nothing is
// fitted without it.
//
//   ocr [--texts FOLDER] [--pictures] [--no-command-line] SET...
//
//   --texts FOLDER      writes what was read to FOLDER/NAME.txt
//   --pictures          a line for each picture that was not read perfectly
//   --no-command-line   leaves out the tesseract command, which takes most of the time
#include <cstdio>
#include <fstream>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "helper_run.h"
#include "reading_run.h"
#include "set_score.h"
#include "text_score.h"

namespace {

using platform::tesseract::CrewSize;

constexpr int readingsOfEach = 3;

struct Options {
    std::filesystem::path texts;
    bool showsPictures = false;
    bool runsCommandLine = true;
    std::vector<std::filesystem::path> sets;
};

/// What one recogniser made of a set, and what it took.
class Tally {
  public:
    void add(const bench::Sample& sample, const bench::TextScore& score,
             const bench::Reading& reading) {
        score_.add(sample, score);
        cpu_ += reading.cpu;
        wall_ += reading.wall;
        megapixels_ += reading.megapixels;
    }

    void print(const char* recognizer) const {
        std::printf(
            "%-24s CER %6.2f %%   exact lines %5.1f %%   CPU %6.0f ms/MP   "
            "characters from pictures without text %ld\n",
            recognizer, 100 * score_.whole().errorRate(), 100 * score_.whole().exactShare(),
            cpuPerMegapixel(), score_.charactersFromNothing());
    }

    [[nodiscard]] double cpuPerMegapixel() const { return cpu_ / megapixels_; }
    [[nodiscard]] double wallPerMegapixel() const { return wall_ / megapixels_; }

    void printGroups() const {
        printRows(score_.categories());
        std::printf("  of the same reading, all pictures but those of:\n");
        printRows(score_.withoutOneProgram());
    }

  private:
    static void printRows(const std::map<std::string, bench::TextScore>& scores) {
        for (const auto& [name, score] : scores) {
            std::printf(
                "  %-22s CER %6.2f %%   exact lines %5.1f %%   (%ld of %ld characters wrong)\n",
                name.c_str(), 100 * score.errorRate(), 100 * score.exactShare(),
                score.wrongCharacters, score.characters);
        }
    }

    bench::SetScore score_;
    double cpu_ = 0;
    double wall_ = 0;
    double megapixels_ = 0;
};

int fail(const base::Error& error) {
    std::fprintf(stderr, "%s\n", error.sentence.c_str());
    return 1;
}

int readSet(const std::filesystem::path& folder, const Options& options) {
    const auto samples = bench::loadSamples(folder);
    if (!samples) {
        return fail(samples.error());
    }
    bench::ReadingRun oneThread(CrewSize::one);
    bench::ReadingRun twoThreads(CrewSize::two);
    Tally own;
    Tally spread;
    Tally commandLine;
    for (const bench::Sample& sample : samples.value()) {
        std::vector<bench::Reading> onOne;
        std::vector<bench::Reading> onTwo;
        for (int turn = 0; turn < readingsOfEach; ++turn) {
            auto reading = oneThread.read(sample);
            auto again = twoThreads.read(sample);
            if (!reading || !again) {
                return fail(reading ? again.error() : reading.error());
            }
            if (again.value().text != reading.value().text) {
                std::printf("  %s: two threads read another text than one\n", sample.name.c_str());
            }
            onOne.push_back(std::move(reading.value()));
            onTwo.push_back(std::move(again.value()));
        }
        const bench::Reading reading = bench::medianOf(std::move(onOne));
        const auto score = bench::scoreText(sample.truth, reading.text);
        own.add(sample, score, reading);
        spread.add(sample, score, bench::medianOf(std::move(onTwo)));
        if (!options.texts.empty()) {
            std::ofstream(options.texts / (sample.name + ".txt")) << reading.text;
        }
        if (options.showsPictures && score.wrongCharacters > 0) {
            std::printf("  %-14s %4ld of %4ld wrong, %ld of %ld lines, %.0f ms\n",
                        sample.name.c_str(), score.wrongCharacters, score.characters,
                        score.exactLines, score.lines, reading.cpu);
        }
        if (options.runsCommandLine) {
            const auto other = bench::readWithCommandLine(sample);
            if (!other) {
                return fail(other.error());
            }
            commandLine.add(sample, bench::scoreText(sample.truth, other.value().text),
                            other.value());
        }
    }
    std::printf("%s\n", folder.c_str());
    own.printGroups();
    own.print("this program");
    std::printf(
        "%-24s %.0f ms/MP by the clock, %.0f %% of the processor time on one; CPU %.0f ms/MP\n",
        "  on two threads", spread.wallPerMegapixel(),
        100 * spread.wallPerMegapixel() / own.cpuPerMegapixel(), spread.cpuPerMegapixel());
    if (options.runsCommandLine) {
        commandLine.print("tesseract command line");
    }
    return 0;
}

/// Once with each locale: the same small picture, whatever its language.
int printFirstUses(const std::filesystem::path& helper, const std::filesystem::path& picture) {
    constexpr double mebibyte = 1 << 20;
    for (const char* locale : {"C.UTF-8", "de_DE.UTF-8", "fr_FR.UTF-8"}) {
        const auto use = bench::measureFirstUse(helper, locale, picture);
        if (!use) {
            return fail(use.error());
        }
        std::printf(
            "first use, %-11s  helper %4.0f ms CPU   this process %.2f MiB before, %.2f MiB "
            "after\n",
            locale, use.value().cpu, static_cast<double>(use.value().residentBefore) / mebibyte,
            static_cast<double>(use.value().residentAfter) / mebibyte);
    }
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
    Options options;
    for (int index = 1; index < count; ++index) {
        const std::string argument = arguments[index];
        if (argument == "--texts" && index + 1 < count) {
            options.texts = arguments[++index];
            std::filesystem::create_directories(options.texts);
        } else if (argument == "--pictures") {
            options.showsPictures = true;
        } else if (argument == "--no-command-line") {
            options.runsCommandLine = false;
        } else {
            options.sets.emplace_back(argument);
        }
    }
    if (options.sets.empty()) {
        std::fprintf(stderr,
                     "Usage: ocr [--texts FOLDER] [--pictures] [--no-command-line] SET...\n");
        return 2;
    }
    const auto word = options.sets.front() / "word01.png";
    if (std::filesystem::exists(word)) {
        const auto helper = std::filesystem::absolute(arguments[0]).parent_path().parent_path() /
                            "lumaframe-text-helper";
        if (const int status = printFirstUses(helper, word); status != 0) {
            return status;
        }
    }
    for (const auto& folder : options.sets) {
        if (const int status = readSet(folder, options); status != 0) {
            return status;
        }
    }
    return 0;
}
