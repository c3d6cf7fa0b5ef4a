#pragma once

#include <QImage>
#include <filesystem>

#include "demo/film_caption.h"
#include "demo/stillness.h"
#include "desktop/desktop.h"

namespace demo {

/// Takes the pictures of a film, one at a time: it moves the pointer a step, waits until the
/// desktop has done what comes of it, and only then takes the picture. So the film's time is its
/// own, and a busy machine makes the same film as a fast one.
class FilmCamera {
  public:
    /// The pictures are written as 0000.png, 0001.png, ... into `output`.
    FilmCamera(desktop::Desktop& desktop, std::filesystem::path output, desktop::Place pointer);

    [[nodiscard]] FilmCaption& caption() { return caption_; }

    /// Takes `pictures` without moving the pointer.
    void hold(int pictures);
    /// Moves the pointer to `place`, slowly at both ends, in as many pictures.
    void glide(desktop::Place place, int pictures);
    void pressButton();
    void releaseButton();
    /// Fades from the last picture to the first, which is the one that follows.
    void fadeToBeginning(int pictures);

  private:
    void take();
    void keep(const QImage& picture);
    void paintPointer(QPainter& painter) const;
    void paintRing(QPainter& painter) const;

    desktop::Desktop& desktop_;
    std::filesystem::path output_;
    Stillness stillness_;
    FilmCaption caption_;
    desktop::Place pointer_;
    int taken_ = 0;
    QImage first_;
    QImage last_;
    enum class Button { up, down } button_ = Button::up;
    /// Around the pointer: grows with a press and fades after it, 0 to 1.
    double ring_ = 0;
};

}  // namespace demo
