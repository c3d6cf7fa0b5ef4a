#include "shortcuts/shortcut_recorder.h"

#include <QAbstractButton>
#include <QColor>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QHideEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <algorithm>
#include <utility>

namespace shortcuts {

namespace {

// Lengths are points.
constexpr int pillFontSize = 11;
constexpr int pillHorizontalPadding = 8;
constexpr int pillVerticalPadding = 3;
constexpr double outlineWidth = 1;
constexpr int symbolSize = 14;
constexpr int rowSpacing = 8;

constexpr double pillOpacity = 0.1;
constexpr double secondaryOpacity = 0.6;
constexpr double pressedOpacity = 0.6;

QColor recordingColor() {
    return QColor::fromRgbF(0.5F, 0, 1);
}

QColor withOpacity(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(color.alphaF() * opacity));
    return color;
}

/// A button that is drawn here from what a palette says, and answers Return like Space.
class PlainButton : public QAbstractButton {
  public:
    explicit PlainButton(QWidget* parent) : QAbstractButton(parent) {
        setFocusPolicy(Qt::StrongFocus);
    }

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (!isReturn(*event)) {
            QAbstractButton::keyPressEvent(event);
        } else if (!event->isAutoRepeat()) {
            setDown(true);
        }
    }
    void keyReleaseEvent(QKeyEvent* event) override {
        if (!isReturn(*event)) {
            QAbstractButton::keyReleaseEvent(event);
        } else if (!event->isAutoRepeat() && isDown()) {
            // At the release, as with Space: a recording must not begin with the key that asked
            // for it still down.
            setDown(false);
            click();
        }
    }
    [[nodiscard]] QColor primary() const { return palette().color(QPalette::WindowText); }

  private:
    static bool isReturn(const QKeyEvent& event) {
        return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    }
};

/// The largest capsule inside `area` whose outline, `width` wide, stays inside too.
void drawCapsule(QPainter& painter, const QRectF& area, double width) {
    const QRectF middle = area.adjusted(width / 2, width / 2, -width / 2, -width / 2);
    painter.drawRoundedRect(middle, middle.height() / 2, middle.height() / 2);
}

QString recordingLabel() {
    return QStringLiteral("Press Shortcut…");
}

}  // namespace

class Pill final : public PlainButton {
  public:
    explicit Pill(QWidget* parent) : PlainButton(parent) {
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        QFont pillFont;
        pillFont.setPixelSize(pillFontSize);
        pillFont.setWeight(QFont::Medium);
        // The family stays that of the application.
        setFont(pillFont);
    }

    /// Is read from the next `show` on.
    void setPurpose(const QString& purpose) { purpose_ = purpose; }

    void show(const RecorderModel& model) {
        isRecording_ = model.isRecording();
        const QString label = QString::fromStdString(model.label());
        const QString words = QString::fromStdString(model.labelInWords());
        setText(label);
        setAccessibleName(label);
        setAccessibleDescription(description(words == label ? QString() : words));
        shownText_ = canDraw(label) ? label : words;
        update();
    }

    [[nodiscard]] QSize sizeHint() const override {
        // Of the invitation whatever is shown: nothing around it ever moves.
        const QFontMetrics metrics(font());
        return {metrics.horizontalAdvance(recordingLabel()) + 2 * pillHorizontalPadding,
                metrics.height() + 2 * pillVerticalPadding};
    }
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setOpacity(isDown() ? pressedOpacity : 1);
        painter.setPen(Qt::NoPen);
        painter.setBrush(withOpacity(primary(), pillOpacity));
        drawCapsule(painter, rect(), 0);
        painter.setBrush(Qt::NoBrush);
        if (isRecording_) {
            painter.setPen(QPen(recordingColor(), outlineWidth));
            drawCapsule(painter, rect(), outlineWidth);
        }
        painter.setPen(isRecording_ ? recordingColor() : primary());
        // Symbols have no direction of their own and would change places.
        painter.setLayoutDirection(Qt::LeftToRight);
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine,
                         QFontMetrics(font()).elidedText(shownText_, Qt::ElideRight,
                                                         width() - 2 * pillHorizontalPadding));
    }

  private:
    /// Whether this desktop has fonts for all of the symbols.
    [[nodiscard]] bool canDraw(const QString& text) const {
        const QFontMetrics metrics(font());
        const auto characters = text.toUcs4();
        return std::all_of(characters.begin(), characters.end(),
                           [&](auto character) { return metrics.inFontUcs4(character); });
    }

    [[nodiscard]] QString description(const QString& words) const {
        return purpose_.isEmpty() || words.isEmpty() ? purpose_ + words
                                                     : purpose_ + QStringLiteral(", ") + words;
    }

    bool isRecording_ = false;
    QString purpose_;
    QString shownText_;
};

/// A filled circle with a cross left out of it.
class ResetButton final : public PlainButton {
  public:
    explicit ResetButton(QWidget* parent) : PlainButton(parent) {
        const QString help = QStringLiteral("Reset to default");
        setToolTip(help);
        setAccessibleName(help);
        setFixedSize(symbolSize, symbolSize);
    }

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setOpacity(isDown() ? pressedOpacity : 1);
        const QPointF center = QRectF(rect()).center();
        painter.fillPath(symbol().translated(center), withOpacity(primary(), secondaryOpacity));
    }

  private:
    /// Around the origin.
    static QPainterPath symbol() {
        constexpr double reach = symbolSize * 0.17;
        constexpr double thickness = symbolSize * 0.1;
        QPainterPath circle;
        circle.addEllipse(QPointF(), symbolSize / 2.0, symbolSize / 2.0);
        QPainterPath cross;
        cross.moveTo(-reach, -reach);
        cross.lineTo(reach, reach);
        cross.moveTo(-reach, reach);
        cross.lineTo(reach, -reach);
        QPainterPathStroker stroker;
        stroker.setWidth(thickness);
        stroker.setCapStyle(Qt::RoundCap);
        return circle.subtracted(stroker.createStroke(cross));
    }
};

ShortcutRecorder::ShortcutRecorder(RecorderFields fields, KeyMonitor& keyMonitor, QWidget* parent)
    : QWidget(parent),
      model_(std::move(fields), keyMonitor, [this] { refresh(); }),
      pill_(new Pill(this)),
      resetButton_(new ResetButton(this)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(rowSpacing);
    row->addWidget(pill_, 1, Qt::AlignVCenter);
    row->addWidget(resetButton_, 0, Qt::AlignVCenter);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    QObject::connect(pill_, &QAbstractButton::clicked, this, [this] { model_.toggle(); });
    QObject::connect(resetButton_, &QAbstractButton::clicked, this, [this] {
        model_.reset();
        refresh();
    });
    refresh();
}

ShortcutRecorder::~ShortcutRecorder() = default;

QAbstractButton& ShortcutRecorder::pill() const {
    return *pill_;
}

QAbstractButton& ShortcutRecorder::resetButton() const {
    return *resetButton_;
}

void ShortcutRecorder::setPurpose(const QString& purpose) {
    pill_->setPurpose(purpose);
    resetButton_->setAccessibleDescription(purpose);
    refresh();
}

void ShortcutRecorder::refresh() {
    model_.update();
    pill_->show(model_);
    const bool canReset = model_.canReset();
    // Asked of the window, which keeps its focus also while another one has the input.
    if (!canReset && window()->focusWidget() == resetButton_) {
        pill_->setFocus(Qt::OtherFocusReason);
    }
    resetButton_->setVisible(canReset);
}

void ShortcutRecorder::hideEvent(QHideEvent* event) {
    // A window that is only minimised is hidden by the system, and goes on when it comes back.
    if (!event->spontaneous()) {
        model_.cancel();
    }
    QWidget::hideEvent(event);
}

}  // namespace shortcuts
