#include "ui/icon_label.h"

#include <QApplication>
#include <QDrag>
#include <QImageReader>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>
#include <cmath>
#include <utility>

namespace ui {

namespace {

/// How large the dragged picture is, points.
constexpr int draggedSize = 64;

/// The picture at `path`, fitted into a square of `size` points on the sharpest display.
QPixmap readIcon(const std::string& path, int size) {
    QImageReader reader(QString::fromStdString(path), "png");
    // Told, and not to be found out: that would load every reader of pictures that is installed.
    reader.setAutoDetectImageFormat(false);
    if (path.empty() || !reader.canRead()) {
        return {};
    }
    const double scale = qApp->devicePixelRatio();
    const int pixels = static_cast<int>(std::lround(size * scale));
    reader.setScaledSize(reader.size().scaled(pixels, pixels, Qt::KeepAspectRatio));
    QPixmap pixmap = QPixmap::fromImageReader(&reader);
    pixmap.setDevicePixelRatio(scale);
    return pixmap;
}

}  // namespace

IconLabel::IconLabel(const base::Bundle& bundle, int size) : location_(bundle.location) {
    setObjectName(QStringLiteral("applicationIcon"));
    setAccessibleName(QStringLiteral("Lumaframe"));
    setFixedSize(size, size);
    setAlignment(Qt::AlignCenter);
    setPixmap(readIcon(bundle.icon, size));
}

void IconLabel::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        pressedAt_ = event->position().toPoint();
    }
}

void IconLabel::mouseMoveEvent(QMouseEvent* event) {
    if (!pressedAt_ || (event->buttons() & Qt::LeftButton) == 0) {
        return;
    }
    const QPoint way = event->position().toPoint() - *pressedAt_;
    if (way.manhattanLength() >= QApplication::startDragDistance()) {
        pressedAt_.reset();
        startDrag();
    }
}

void IconLabel::startDrag() {
    auto content = std::make_unique<QMimeData>();
    if (!location_.empty()) {
        content->setUrls({QUrl::fromLocalFile(QString::fromStdString(location_))});
    }
    // Not a child of this label, which may be closed while the drag goes on.
    auto* drag = new QDrag(qApp);
    drag->setMimeData(content.release());
    const QPixmap icon = pixmap(Qt::ReturnByValue);
    QPixmap dragged = icon.scaledToWidth(static_cast<int>(draggedSize * icon.devicePixelRatio()),
                                         Qt::SmoothTransformation);
    drag->setHotSpot({draggedSize / 2, draggedSize / 2});
    drag->setPixmap(std::exchange(dragged, {}));
    // The one loop of its own in this program: the toolkit has no other way to drag. It ends with
    // the button's release, and nothing of this object is used after it.
    drag->exec(Qt::CopyAction | Qt::LinkAction, Qt::CopyAction);
}

}  // namespace ui
