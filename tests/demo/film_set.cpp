#include "demo/film_set.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <fstream>

#include "demo/stillness.h"

namespace demo {

namespace {

constexpr int width = 1280;
constexpr int height = 720;

QFont posterFont(int pixelSize, QFont::Weight weight) {
    QFont font(QStringLiteral("Liberation Sans"));
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

/// A row of hills along the bottom: the sum of two waves.
QPainterPath hills(double base, double high, double phase) {
    QPainterPath path(QPointF(0, height));
    for (int x = 0; x <= width; x += 4) {
        const double wave = std::sin(x / 210.0 + phase) + 0.5 * std::sin(x / 90.0 + 2 * phase);
        path.lineTo(x, base - high * wave);
    }
    path.lineTo(width, height);
    return path;
}

QImage paintWallpaper() {
    QImage image(width, height, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, height);
    sky.setColorAt(0, QColor(0x3d, 0x5a, 0x98));
    sky.setColorAt(0.55, QColor(0xa8, 0x8f, 0xc0));
    sky.setColorAt(1, QColor(0xf5, 0xb9, 0x9a));
    painter.fillRect(image.rect(), sky);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x7d, 0x74, 0xb0));
    painter.drawPath(hills(520, 42, 0.4));
    painter.setBrush(QColor(0x59, 0x5a, 0x96));
    painter.drawPath(hills(590, 36, 2.1));
    painter.setBrush(QColor(0x3a, 0x42, 0x78));
    painter.drawPath(hills(660, 26, 4.0));
    return image;
}

void paintLighthouse(QPainter& painter) {
    painter.setBrush(QColor(0x14, 0x1c, 0x3a));
    painter.drawEllipse(QRectF(60, 222, 210, 90));
    const QPolygonF beam({{165, 92}, {500, 20}, {500, 130}});
    QLinearGradient light(165, 92, 500, 75);
    light.setColorAt(0, QColor(255, 236, 170, 230));
    light.setColorAt(1, QColor(255, 236, 170, 0));
    painter.setBrush(light);
    painter.drawPolygon(beam);
    painter.setBrush(QColor(0xf7, 0xf3, 0xea));
    painter.drawPolygon(QPolygonF({{148, 108}, {182, 108}, {196, 240}, {134, 240}}));
    painter.setBrush(QColor(0xd9, 0x53, 0x4f));
    painter.drawPolygon(QPolygonF({{144, 140}, {186, 140}, {189, 172}, {141, 172}}));
    painter.drawPolygon(QPolygonF({{138, 204}, {192, 204}, {196, 240}, {134, 240}}));
    painter.setBrush(QColor(0xff, 0xe9, 0xa8));
    painter.drawRect(QRectF(152, 80, 26, 26));
    painter.setBrush(QColor(0x2a, 0x30, 0x52));
    painter.drawRect(QRectF(142, 104, 46, 7));
    painter.drawPolygon(QPolygonF({{146, 82}, {165, 58}, {184, 82}}));
}

QImage paintPoster() {
    QImage image(500, 460, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QLinearGradient night(0, 0, 0, 270);
    night.setColorAt(0, QColor(0x1b, 0x25, 0x52));
    night.setColorAt(1, QColor(0x6a, 0x5b, 0x9c));
    painter.fillRect(image.rect(), night);
    painter.setBrush(QColor(0xff, 0xf4, 0xd6));
    painter.drawEllipse(QPointF(404, 74), 34, 34);
    for (const QPointF star : {QPointF(52, 50),
                               {96, 112},
                               {262, 38},
                               {330, 150},
                               {460, 150},
                               {236, 132},
                               {300, 88},
                               {40, 170},
                               {470, 40},
                               {360, 190}}) {
        painter.drawEllipse(star, 2.4, 2.4);
    }
    painter.setBrush(QColor(0x24, 0x3a, 0x6e));
    painter.drawRect(QRectF(0, 236, 500, 40));
    paintLighthouse(painter);
    painter.fillRect(QRectF(0, 270, 500, 190), QColor(0x14, 0x1c, 0x3a));
    painter.setPen(QColor(0xff, 0xc2, 0x6b));
    painter.setFont(posterFont(48, QFont::Bold));
    painter.drawText(QRectF(0, 286, 500, 60), Qt::AlignCenter, QStringLiteral("Harbour Lights"));
    painter.setPen(QColor(0xff, 0xff, 0xff));
    painter.setFont(posterFont(33, QFont::Normal));
    painter.drawText(QRectF(0, 346, 500, 44), Qt::AlignCenter,
                     QStringLiteral("Saturday 14 June, 7 pm"));
    painter.drawText(QRectF(0, 394, 500, 44), Qt::AlignCenter,
                     QStringLiteral("Pier 3, free entry"));
    return image;
}

}  // namespace

FilmSet::FilmSet(desktop::Desktop& desktop) : desktop_(desktop) {
    showWallpaper();
    programs_.push_back(
        desktop_.start("picom", {"picom", "--config", desktop_.home() / ".config/picom.conf"}));
    desktop::require("The start of the compositor", [this] {
        return desktop_.client().selectionOwner("_NET_WM_CM_S0") != XCB_WINDOW_NONE;
    });
    openPoster();
    openEditor();
    Stillness(desktop_.client()).wait();
}

void FilmSet::showWallpaper() {
    const QImage image = paintWallpaper();
    const desktop::XClient& client = desktop_.client();
    xcb_connection_t* connection = client.get();
    const xcb_pixmap_t pixmap = xcb_generate_id(connection);
    const xcb_gcontext_t pen = xcb_generate_id(connection);
    xcb_create_pixmap(connection, client.screen().root_depth, pixmap, client.root(), width, height);
    xcb_create_gc(connection, pen, pixmap, 0, nullptr);
    for (int y = 0; y < height; ++y) {
        xcb_put_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, pen, width, 1, 0,
                      static_cast<std::int16_t>(y), 0, client.screen().root_depth,
                      static_cast<std::uint32_t>(image.bytesPerLine()), image.constScanLine(y));
    }
    xcb_change_window_attributes(connection, client.root(), XCB_CW_BACK_PIXMAP, &pixmap);
    // The compositor paints the background itself and finds it by this property.
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, client.root(),
                        client.atom("_XROOTPMAP_ID"), XCB_ATOM_PIXMAP, 32, 1, &pixmap);
    xcb_clear_area(connection, 0, client.root(), 0, 0, 0, 0);
    xcb_free_gc(connection, pen);
    client.synchronize();
}

void FilmSet::openPoster() {
    const auto file = desktop_.directory() / "poster.png";
    paintPoster().save(QString::fromStdString(file));
    programs_.push_back(desktop_.start(
        "poster", {"yad", "--picture", "--size=orig", "--filename=" + file.string(),
                   "--title=Poster", "--no-buttons", "--borders=0", "--geometry=500x460+73+47"}));
    waitForWindow(1);
}

void FilmSet::openEditor() {
    const auto file = desktop_.directory() / "notes.txt";
    std::ofstream(file) << "This weekend:\n\n";
    programs_.push_back(desktop_.start(
        "editor", {"yad", "--text-info", "--editable", "--wrap", "--margins=10",
                   "--fontname=Liberation Sans 26", "--filename=" + file.string(), "--title=Notes",
                   "--no-buttons", "--borders=18", "--geometry=540x400+639+79"}));
    waitForWindow(2);
    Stillness(desktop_.client()).wait();
    desktop_.input().chord({desktop::key::leftControl, desktop_.input().keyCodeOf(0xff57)});
}

void FilmSet::waitForWindow(std::size_t count) {
    desktop::require("The opening of a window of the film", [&] {
        const auto list = desktop_.client().property(desktop_.client().root(), "_NET_CLIENT_LIST");
        return list && list->size() == count * sizeof(xcb_window_t);
    });
}

}  // namespace demo
