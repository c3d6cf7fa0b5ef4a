#include "ui/content_view.h"

#include <QHBoxLayout>
#include <QShowEvent>
#include <QVBoxLayout>

#include "ui/card.h"
#include "ui/content_header.h"
#include "ui/divider.h"
#include "ui/focus_ring.h"
#include "ui/general_switches.h"
#include "ui/mode_column.h"

namespace ui {

namespace {

constexpr int viewPadding = 20;
constexpr int sectionSpacing = 24;
constexpr int columnSpacing = 20;
constexpr int columnDividerHeight = 110;
constexpr int cardHorizontalPadding = 14;
constexpr int modeCardVerticalPadding = 12;
constexpr int switchCardVerticalPadding = 10;

}  // namespace

ContentView::ContentView(const Mediator& mediator)
    : settings_(mediator.settings),
      dockIcon_(settings_.hideDockIcon, mediator.application),
      permissionCheck_({.permissions = mediator.permissions,
                        .fileManager = mediator.fileManager,
                        .windows = mediator.windows}),
      mainQueue_(mediator.mainQueue) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(viewPadding, viewPadding, viewPadding, viewPadding);
    column->setSpacing(sectionSpacing);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->addWidget(new ContentHeader(mediator.bundle));
    column->addWidget(makeModeCards(mediator));
    column->addWidget(makeGeneralSwitches(mediator));
    new FocusRing(*this);
}

QWidget* ContentView::makeModeCards(const Mediator& mediator) {
    auto* card = new Card;
    auto* row = new QHBoxLayout(card);
    row->setContentsMargins(cardHorizontalPadding, modeCardVerticalPadding, cardHorizontalPadding,
                            modeCardVerticalPadding);
    row->setSpacing(columnSpacing);
    row->addWidget(
        new ModeColumn({.title = QStringLiteral("Screenshots"),
                        .shortcut = {mediator.shortcutManager, base::CaptureMode::screenshot},
                        .save = settings_.saveToDownloads,
                        .savePath = settings_.screenshotSavePath,
                        .copy = settings_.copyToClipboard},
                       mediator.keyMonitor),
        1, Qt::AlignTop);
    auto* divider = new Divider(Qt::Vertical);
    divider->setFixedHeight(columnDividerHeight);
    row->addWidget(divider, 0, Qt::AlignTop);
    row->addWidget(new ModeColumn({.title = QStringLiteral("Text Recognition"),
                                   .shortcut = {mediator.shortcutManager, base::CaptureMode::ocr},
                                   .save = settings_.saveOCRToDownloads,
                                   .savePath = settings_.ocrSavePath,
                                   .copy = settings_.copyOCRToClipboard},
                                  mediator.keyMonitor),
                   1, Qt::AlignTop);
    return card;
}

QWidget* ContentView::makeGeneralSwitches(const Mediator& mediator) {
    auto* card = new Card;
    auto* stack = new QVBoxLayout(card);
    stack->setContentsMargins(cardHorizontalPadding, switchCardVerticalPadding,
                              cardHorizontalPadding, switchCardVerticalPadding);
    stack->addWidget(
        new GeneralSwitches(settings_, {.service = mediator.loginItems, .log = mediator.log}));
    return card;
}

void ContentView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // Not when the window manager brings a minimised window back.
    if (!event->spontaneous()) {
        // Later, so that the permissions window comes up in front of this one.
        mainQueue_.post(alive_.guard([this] { permissionCheck_.run(); }));
    }
}

}  // namespace ui
