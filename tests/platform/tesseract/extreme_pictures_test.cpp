// Pictures that no screen with a text in a window gives, through the helper as it is shipped: it
// answers, within a bound, and reads no letters where there are none.

#include <gmock/gmock.h>

#include <QGuiApplication>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "base/text.h"
#include "platform/tesseract/drawn_text.h"
#include "platform/tesseract/helper_fixture.h"
#include "text_score.h"

namespace {

using namespace tesseract_tests;
using testing::ElementsAre;
using testing::IsEmpty;

/// Deterministic, and the same everywhere.
class Random {
  public:
    explicit Random(std::uint32_t seed) : engine_(seed) {}
    int below(int limit) { return static_cast<int>(engine_() % static_cast<unsigned>(limit)); }
    double unit() { return static_cast<double>(engine_()) / 4294967296.0; }

  private:
    std::mt19937 engine_;
};

/// Soft hills of grey in several sizes, as clouds and skin and blurred backgrounds have them.
double softness(double x, double y, int octaves) {
    double value = 0;
    for (int octave = 0; octave < octaves; ++octave) {
        const double scale = std::pow(2.0, octave) / 90.0;
        value += (std::sin(x * scale * 1.7 + 3.1 * octave + 2 * std::sin(y * scale)) +
                  std::cos(y * scale * 2.3 - 1.7 * octave + 2 * std::cos(x * scale * 0.7))) /
                 std::pow(1.8, octave);
    }
    return value / 4 + 0.5;
}

/// A landscape: a sky with clouds, hills of detail, trees with many edges, and a sensor's grain.
QImage photograph(int width, int height) {
    QImage image = sheet(width, height);
    Random random(7);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const double horizon = height * (0.45 + 0.1 * std::sin(x / 130.0));
            const double cloud = softness(x, 2.0 * y, 4);
            const double ground = softness(1.7 * x, 3.0 * y, 7);
            double red = y < horizon ? 120 + 110 * cloud : 40 + 90 * ground;
            double green = y < horizon ? 150 + 90 * cloud : 70 + 110 * ground;
            double blue = y < horizon ? 215 + 30 * cloud : 30 + 50 * ground;
            const double grain = 10 * (random.unit() - 0.5);
            red = std::clamp(red + grain, 0.0, 255.0);
            green = std::clamp(green + grain, 0.0, 255.0);
            blue = std::clamp(blue + grain, 0.0, 255.0);
            image.setPixel(
                x, y, qRgb(static_cast<int>(red), static_cast<int>(green), static_cast<int>(blue)));
        }
    }
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int tree = 0; tree < 60; ++tree) {
        const double x = random.below(width);
        const double foot = height * (0.55 + 0.4 * random.unit());
        const double tall = 20 + 80 * random.unit();
        painter.setPen(QPen(QColor(60, 45, 30), 1 + tall / 25));
        painter.drawLine(QPointF(x, foot), QPointF(x, foot - tall));
        for (int leaf = 0; leaf < 40; ++leaf) {
            const double size = 2 + 6 * random.unit();
            painter.setPen(Qt::NoPen);
            painter.setBrush(QColor(30 + random.below(50), 70 + random.below(80), 25, 200));
            painter.drawEllipse(QPointF(x + tall * (random.unit() - 0.5) * 0.7,
                                        foot - tall * (0.4 + 0.7 * random.unit())),
                                size, size * 0.7);
        }
    }
    return image;
}

QImage noise(int width, int height) {
    QImage image = sheet(width, height);
    Random random(11);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.setPixel(x, y, qRgb(random.below(256), random.below(256), random.below(256)));
        }
    }
    return image;
}

class ExtremePictures : public HelperFixture {
  protected:
    /// Reads within the recogniser's own bound, which depends on the size of the picture.
    std::vector<std::string> read(const QImage& image) {
        if (!recognizer_) {
            use(LUMAFRAME_TEXT_HELPER);
        }
        return textsOf(recognizer_->recognize(imageOf(image)));
    }
    static void write(QImage& image, const QFont& font, QPoint baseline, const char* text) {
        QPainter painter(&image);
        painter.setFont(font);
        painter.drawText(baseline, QString::fromUtf8(text));
    }
};

/// What is left when single shapes look like letters, not more.
void expectScraps(const std::vector<std::string>& texts, std::size_t mostLines,
                  std::size_t longestLine) {
    EXPECT_LE(texts.size(), mostLines) << testing::PrintToString(texts);
    for (const std::string& text : texts) {
        EXPECT_LE(base::characterCount(text), longestLine) << text;
    }
}

TEST_F(ExtremePictures, a_single_color_gives_nothing) {
    for (const QColor& color : {QColor(Qt::white), QColor(Qt::black), QColor(200, 30, 90)}) {
        EXPECT_THAT(read(sheet(800, 600, color)), IsEmpty());
    }
}

TEST_F(ExtremePictures, noise_gives_nothing) {
    for (const int size : {3, 12, 300, 1500}) {
        EXPECT_THAT(read(noise(size, size)), IsEmpty()) << size;
    }
}

TEST_F(ExtremePictures, noise_of_the_size_of_a_letter_may_look_like_one) {
    for (const int size : {24, 40}) {
        expectScraps(read(noise(size, size)), 1, 2);
    }
}

TEST_F(ExtremePictures, a_photograph_without_text_gives_nothing) {
    const QImage picture = photograph(1200, 800);
    EXPECT_THAT(read(picture.scaled(600, 400, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)),
                IsEmpty());
    EXPECT_THAT(read(picture.copy(300, 300, 400, 300)), IsEmpty());
    EXPECT_THAT(read(picture.copy(0, 600, 1200, 200)), IsEmpty());
    EXPECT_THAT(read(picture), IsEmpty());
}

TEST_F(ExtremePictures, a_chart_without_letters_gives_nothing) {
    QImage image = sheet(700, 400, QColor(250, 250, 250));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    Random random(3);
    for (int bar = 0; bar < 12; ++bar) {
        const int tall = 40 + random.below(280);
        painter.fillRect(30 + bar * 54, 370 - tall, 38, tall, QColor::fromHsv(bar * 30, 160, 210));
    }
    painter.setPen(QPen(QColor(40, 40, 40), 2));
    painter.drawLine(20, 370, 690, 370);
    painter.drawLine(20, 20, 20, 370);
    painter.end();
    EXPECT_THAT(read(image), IsEmpty());
}

TEST_F(ExtremePictures, thin_and_large_letters_are_read) {
    QImage thin = sheet(700, 80);
    QFont font = letters(26, "DejaVu Sans");
    font.setWeight(QFont::ExtraLight);
    write(thin, font, {20, 50}, "Thin letters are hard to see");
    EXPECT_THAT(read(thin), ElementsAre("Thin letters are hard to see"));
    QImage large = sheet(600, 140);
    write(large, letters(60), {30, 90}, "Huge sign");
    EXPECT_THAT(read(large), ElementsAre("Huge sign"));
}

TEST_F(ExtremePictures, letters_as_large_as_a_window_are_read) {
    for (const int pixels : {100, 200, 360}) {
        QImage image = sheet(6 * pixels, 2 * pixels);
        write(image, letters(pixels), {pixels / 4, pixels * 5 / 4}, "Huge sign");
        EXPECT_THAT(read(image), ElementsAre("Huge sign")) << pixels;
    }
}

TEST_F(ExtremePictures, a_headline_is_read_above_the_text_below_it) {
    QImage image = sheet(1100, 400, QColor(30, 40, 60));
    QPainter painter(&image);
    painter.setPen(Qt::white);
    painter.setFont(letters(140, "DejaVu Sans"));
    painter.drawText(40, 160, "Harbour plan");
    painter.setFont(letters(16));
    painter.drawText(40, 300, "Figures of the last quarter show a slow start.");
    painter.end();
    EXPECT_THAT(read(image),
                ElementsAre("Harbour plan", "Figures of the last quarter show a slow start."));
}

TEST_F(ExtremePictures, text_that_touches_the_border_is_read) {
    QImage image = sheet(400, 60);
    write(image, letters(16), {20, 40}, "Close to every border");
    // The picture ends where the ink does.
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qGray(image.pixel(x, y)) < 250) {
                ink |= QRect(x, y, 1, 1);
            }
        }
    }
    EXPECT_THAT(read(image.copy(ink)), ElementsAre("Close to every border"));
}

TEST_F(ExtremePictures, vertical_text_gives_scraps_and_spoils_no_line_beside_it) {
    const QString upright = "This one stands on its end";
    QImage image = sheet(600, 400);
    write(image, letters(15), {80, 60}, "This line lies as lines do.");
    QPainter painter(&image);
    painter.setFont(letters(15));
    painter.translate(40, 380);
    painter.rotate(-90);
    painter.drawText(0, 0, upright);
    painter.end();
    auto texts = read(image);
    EXPECT_EQ(std::erase(texts, "This line lies as lines do."), 1U);
    expectScraps(texts, static_cast<std::size_t>(upright.size()), 4);
}

/// Words in rows of `columns` letters.
std::string wordsInRows(int columns, int rows) {
    const std::vector<std::string> words{"harbour", "tables", "of",   "high", "water", "come",
                                         "later",   "every",  "rain", "moon", "spring"};
    Random random(5);
    std::string text;
    for (int row = 0; row < rows; ++row) {
        std::string line;
        while (line.size() < static_cast<std::size_t>(columns)) {
            line += words[static_cast<std::size_t>(random.below(static_cast<int>(words.size())))];
            line += ' ';
        }
        text += line.substr(0, static_cast<std::size_t>(columns)) + "\n";
    }
    return text;
}

QImage printed(const std::string& text, int columns, int rows) {
    QImage image = sheet(columns * 6 + 20, rows * 12 + 20);
    QPainter painter(&image);
    painter.setFont(letters(10, "DejaVu Sans Mono"));
    painter.drawText(QRect(10, 10, image.width(), image.height()), Qt::AlignLeft | Qt::AlignTop,
                     QString::fromStdString(text));
    return image;
}

TEST_F(ExtremePictures, a_crowded_page_of_small_letters_is_read) {
    // What is measured is the reading; beside other work it may take longer than people would wait.
    use(LUMAFRAME_TEXT_HELPER, {.reading = {.picture = std::chrono::seconds(50)}});
    // The helper gives up what takes long for its size, as it does where sanitizers slow it down.
    constexpr int rows = LUMAFRAME_SANITIZED ? 6 : 25;
    const std::string truth = wordsInRows(120, rows);
    std::string reading;
    for (const std::string& text : read(printed(truth, 120, rows))) {
        reading += text + "\n";
    }
    const auto score = bench::scoreText(truth, reading);
    EXPECT_LE(score.errorRate(), 0.01) << reading;
}

TEST_F(ExtremePictures, a_hundred_thousand_characters_are_read_or_given_up_in_time) {
    constexpr auto longest = std::chrono::seconds(4);
    use(LUMAFRAME_TEXT_HELPER, {.reading = {.longest = longest}});
    const std::string truth = wordsInRows(400, 250);
    ASSERT_GE(truth.size(), 100000U);
    const base::Image page = imageOf(printed(truth, 400, 250));
    const auto started = std::chrono::steady_clock::now();
    const auto result = recognizer_->recognize(page);
    // Room for the start of the helper beside other work.
    EXPECT_LT(std::chrono::steady_clock::now() - started, longest + std::chrono::seconds(6));
    if (result) {
        EXPECT_GE(result.value().size(), 250U);
    } else {
        EXPECT_EQ(result.error().sentence, "The text recognition helper did not answer in time.");
    }
    EXPECT_THAT(read(printed("As before\n", 20, 2)), ElementsAre("As before"));
}

TEST_F(ExtremePictures, the_largest_picture_is_answered_and_a_larger_one_refused) {
    QImage image = sheet(8192, 8192);
    write(image, letters(40), {4000, 4000}, "In the middle of nowhere");
    EXPECT_THAT(read(image), ElementsAre("In the middle of nowhere"));
    const auto refused = recognizer_->recognize(imageOf(sheet(8193, 8192)));
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().sentence, "The picture is too large for text recognition.");
}

}  // namespace

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
