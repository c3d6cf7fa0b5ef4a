#pragma once

#include <QPainter>
#include <QString>
#include <vector>

namespace demo {

/// The line at the bottom of the film: the keys that are pressed, and what they do. It fades from
/// one content to the next and presses its keys over a few pictures; `step` is called once for
/// each.
class FilmCaption {
  public:
    /// `keys` are drawn as key caps, not pressed yet; `mark` puts a green tick before the text.
    enum class Mark { none, done };
    void show(std::vector<QString> keys, QString text, Mark mark = Mark::none);
    void clear() { show({}, {}); }
    /// Lets the first `count` keys go down, or come up again with 0.
    void press(std::size_t count) { pressed_ = count; }

    void step();
    /// Paints into a picture of 1280 x 720 pixels.
    void paint(QPainter& painter) const;

  private:
    struct Content {
        std::vector<QString> keys;
        QString text;
        Mark mark = Mark::none;
        /// How far each key is down, 0 to 1.
        std::vector<double> depths;
        /// 0 to 1.
        double opacity = 0;

        [[nodiscard]] bool isEmpty() const { return keys.empty() && text.isEmpty(); }
        [[nodiscard]] double width() const;
    };

    static void paintContent(QPainter& painter, const Content& content, double left, double middle);

    Content shown_;
    Content leaving_;
    std::size_t pressed_ = 0;
    double width_ = 0;
    double plateOpacity_ = 0;
};

}  // namespace demo
