#include "platform/qt/application_icon.h"

#include <QFileInfo>
#include <QImageReader>
#include <QPainter>
#include <QPixmap>
#include <array>

namespace platform::qt {

namespace {

// The sizes that trays ask for. Pictures and no drawing: the reader for drawings stays unloaded.
constexpr std::array sizes{16, 22, 24, 32, 48, 64};

/// A frame with a pointer at its corner.
QPixmap paintedIcon(int size) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 24.0, size / 24.0);
    painter.setPen(QPen(QColor(0x3d, 0x7e, 0xff), 2));
    painter.setBrush(QColor(0xff, 0xff, 0xff, 0xe0));
    painter.drawRoundedRect(QRectF(3, 5, 18, 13), 2, 2);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x1b, 0x2b, 0x4b));
    painter.drawPolygon(QPolygonF{{12, 10}, {12, 21}, {15, 18.5}, {20, 18}});
    return pixmap;
}

/// The format is told, and not to be found out: that would load every reader of pictures that is
/// installed, for good.
QPixmap readPng(const QString& file) {
    QImageReader reader(file, "png");
    reader.setAutoDetectImageFormat(false);
    return QPixmap::fromImageReader(&reader);
}

}  // namespace

QIcon applicationIcon(const std::string& iconDirectory) {
    QIcon icon;
    for (const int size : sizes) {
        const QString folder = QString::number(size) + u'x' + QString::number(size);
        const QString file = QString::fromStdString(iconDirectory) + u'/' + folder +
                             QStringLiteral("/apps/app.lumaframe.Lumaframe.png");
        const QPixmap pixmap = QFileInfo::exists(file) ? readPng(file) : QPixmap();
        if (!pixmap.isNull()) {
            icon.addPixmap(pixmap);
        }
    }
    if (icon.isNull()) {
        for (const int size : sizes) {
            icon.addPixmap(paintedIcon(size));
        }
    }
    return icon;
}

StatusNotifierItem::Picture symbolicIcon(const std::string& iconDirectory, const QIcon& icon) {
    // The directory is a theme, the path holds themes.
    const QFileInfo theme(QString::fromStdString(iconDirectory));
    const QString name = QStringLiteral("app.lumaframe.Lumaframe-symbolic");
    const bool isThere = QFileInfo::exists(theme.filePath() + QStringLiteral("/symbolic/apps/") +
                                           name + QStringLiteral(".svg"));
    return {isThere ? name : QString(), theme.path(), icon};
}

}  // namespace platform::qt
