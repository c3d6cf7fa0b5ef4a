// The places of everything in the settings view, beside the numbers that its layout gives.
#include <gmock/gmock.h>

#include <QPushButton>

#include "ui/card.h"
#include "ui/check_box.h"
#include "ui/content_header.h"
#include "ui/content_view_fixture.h"
#include "ui/divider.h"
#include "ui/folder_button.h"
#include "ui/general_switches.h"
#include "ui/mode_column.h"
#include "ui/text_label.h"

namespace {

using testing::ElementsAre;

/// Every child of one class: they carry no meta information of their own.
template <typename Widget>
std::vector<Widget*> all(const QWidget& parent) {
    std::vector<Widget*> found;
    for (QWidget* widget : parent.findChildren<QWidget*>()) {
        if (auto* one = dynamic_cast<Widget*>(widget)) {
            found.push_back(one);
        }
    }
    return found;
}

class ContentLayout : public ui_tests::ContentViewFixture {
  protected:
    QRect whole() { return frame(view()); }
    std::vector<QRect> frames(const auto& widgets) {
        std::vector<QRect> rectangles;
        for (const QWidget* widget : widgets) {
            rectangles.push_back(frame(*widget));
        }
        return rectangles;
    }
    QRect card(std::size_t index) { return frame(*all<ui::Card>(view()).at(index)); }
    QRect column(std::size_t index) { return frame(*all<ui::ModeColumn>(view()).at(index)); }
    static int below(const QRect& upper, const QRect& lower) {
        return lower.top() - (upper.top() + upper.height());
    }
};

TEST_F(ContentLayout, the_sections_are_20_from_the_edges_and_24_apart) {
    const QRect header = frame(*all<ui::ContentHeader>(view()).front());
    EXPECT_EQ(header.top(), 20);
    EXPECT_EQ(below(header, card(0)), 24);
    EXPECT_EQ(below(card(0), card(1)), 24);
    EXPECT_EQ(whole().height() - (card(1).top() + card(1).height()), 20);
    for (const std::size_t index : {0U, 1U}) {
        EXPECT_EQ(card(index).left(), 20);
        EXPECT_EQ(card(index).width(), whole().width() - 40);
    }
}

TEST_F(ContentLayout, the_header_is_centred_with_an_icon_of_150_and_the_tag_line_pulled_up_by_2) {
    const QRect icon = frame(named("applicationIcon"));
    const QRect name = frame(named("applicationName"));
    const QRect tagLine = frame(named("tagLine"));
    EXPECT_EQ(icon.size(), QSize(150, 150));
    EXPECT_EQ(icon.top(), 20);
    EXPECT_EQ(below(icon, name), 8);
    EXPECT_EQ(below(name, tagLine), 8 - 2);
    for (const QRect& rectangle : {icon, name, tagLine}) {
        EXPECT_NEAR(rectangle.left() + rectangle.width() / 2.0, whole().width() / 2.0, 1);
    }
}

TEST_F(ContentLayout, the_mode_card_is_padded_12_and_14_with_20_on_both_sides_of_a_divider_of_110) {
    const QRect divider = frame(*all<ui::Divider>(*all<ui::Card>(view()).front()).front());
    EXPECT_EQ(divider.height(), 110);
    EXPECT_EQ(divider.width(), 1);
    EXPECT_EQ(divider.top(), card(0).top() + 12);
    EXPECT_EQ(card(0).height(), 110 + 24);
    EXPECT_EQ(column(0).left(), card(0).left() + 14);
    EXPECT_EQ(divider.left() - (column(0).left() + column(0).width()), 20);
    EXPECT_EQ(column(1).left() - (divider.left() + 1), 20);
    EXPECT_EQ(card(0).left() + card(0).width() - (column(1).left() + column(1).width()), 14);
    EXPECT_NEAR(column(0).width(), column(1).width(), 1);
    EXPECT_EQ(column(0).top(), card(0).top() + 12);
    EXPECT_EQ(column(1).top(), card(0).top() + 12);
}

TEST_F(ContentLayout, the_rows_of_a_column_are_10_apart_and_begin_at_its_edge) {
    for (const ui::ModeColumn* one : all<ui::ModeColumn>(view())) {
        const QRect title = frame(*all<ui::TextLabel>(*one).front());
        const QRect recorder = frame(*one->findChild<QWidget*>(QStringLiteral("recorder")));
        const auto boxes = frames(all<ui::CheckBox>(*one));
        const QRect folder = frame(*all<ui::FolderButton>(*one).front());
        const QRect saveRow = boxes.at(0).united(folder);
        EXPECT_EQ(below(title, recorder), 10);
        EXPECT_EQ(below(recorder, saveRow), 10);
        EXPECT_EQ(below(saveRow, boxes.at(1)), 10);
        for (const QRect& row : {title, recorder, saveRow, boxes.at(1)}) {
            EXPECT_EQ(row.left(), frame(*one).left());
        }
        EXPECT_EQ(recorder.width(), frame(*one).width());
        // Between the two at least the flexible space and the row's spacing on both of its sides.
        EXPECT_GE(folder.left() - (boxes.at(0).left() + boxes.at(0).width()), 4 + 8 + 4);
        EXPECT_EQ(folder.left() + folder.width(), frame(*one).left() + frame(*one).width());
        EXPECT_NEAR(folder.center().y(), boxes.at(0).center().y(), 1);
    }
}

TEST_F(ContentLayout, a_long_folder_name_leaves_the_space_before_it) {
    world_.settings.setString(app::keys::screenshotSavePath, "/" + std::string(100, 'W'));
    const QRect folder = frame(named(app::keys::screenshotSavePath));
    const QRect box = frame(named(app::keys::saveToDownloads));
    EXPECT_EQ(folder.left() - (box.left() + box.width()), 4 + 8 + 4);
    EXPECT_EQ(folder.left() + folder.width(), column(0).left() + column(0).width());
}

TEST_F(ContentLayout, the_switches_are_padded_10_and_14_with_8_around_each_divider) {
    const QWidget& list = *all<ui::GeneralSwitches>(view()).front();
    const auto rows = frames(all<ui::CheckBox>(list));
    const auto dividers = frames(all<ui::Divider>(list));
    ASSERT_EQ(rows.size(), 5U);
    ASSERT_EQ(dividers.size(), 4U);
    EXPECT_EQ(rows.front().top(), card(1).top() + 10);
    EXPECT_EQ(card(1).top() + card(1).height() - (rows.back().top() + rows.back().height()), 10);
    for (std::size_t index = 0; index < dividers.size(); ++index) {
        EXPECT_EQ(below(rows[index], dividers[index]), 8);
        EXPECT_EQ(below(dividers[index], rows[index + 1]), 8);
        EXPECT_EQ(dividers[index].height(), 1);
        EXPECT_EQ(dividers[index].left(), card(1).left() + 14);
        EXPECT_EQ(dividers[index].width(), card(1).width() - 28);
        EXPECT_EQ(rows[index].left(), card(1).left() + 14);
    }
}

TEST_F(ContentLayout, a_folder_button_is_padded_8_and_3) {
    const QWidget& folder = named(app::keys::screenshotSavePath);
    const QFontMetrics metrics(folder.font());
    EXPECT_EQ(frame(folder).size(),
              QSize(metrics.horizontalAdvance(QStringLiteral("Downloads")) + 2 * 8,
                    metrics.height() + 2 * 3));
}

TEST_F(ContentLayout, the_fonts_have_their_sizes_in_points_of_the_screen) {
    const auto font = [](const QWidget& widget) {
        return std::pair(widget.font().pixelSize(), widget.font().weight());
    };
    EXPECT_EQ(font(named("applicationName")), std::pair(13, QFont::DemiBold));
    EXPECT_EQ(font(named("tagLine")), std::pair(10, QFont::Normal));
    EXPECT_EQ(font(*all<ui::TextLabel>(*all<ui::ModeColumn>(view()).front()).front()),
              std::pair(10, QFont::Bold));
    for (const char* key : {app::keys::screenshotSavePath, app::keys::ocrSavePath}) {
        EXPECT_EQ(font(named(key)), std::pair(11, QFont::Medium));
    }
    for (const ui::CheckBox* box : all<ui::CheckBox>(view())) {
        EXPECT_EQ(font(*box), std::pair(13, QFont::Normal));
    }
}

TEST_F(ContentLayout, the_window_cannot_be_resized) {
    shown();
    EXPECT_EQ(view().minimumSize(), view().size());
    EXPECT_EQ(view().maximumSize(), view().size());
    EXPECT_EQ(view().size(), view().sizeHint());
}

TEST_F(ContentLayout, nothing_is_clipped_or_covers_another_control) {
    for (const QFont& desktopFont :
         {QApplication::font(), QFont(QStringLiteral("DejaVu Serif"), 24, QFont::Bold)}) {
        const QFont usual = QApplication::font();
        QApplication::setFont(desktopFont);
        close();
        const auto buttons = view().findChildren<QAbstractButton*>();
        for (const QAbstractButton* one : buttons) {
            if (one->isHidden()) {
                continue;
            }
            EXPECT_TRUE(QRect(QPoint(), view().sizeHint()).contains(frame(*one)));
            EXPECT_GE(one->width(), one->minimumSizeHint().width());
            EXPECT_GE(one->height(), one->minimumSizeHint().height());
            for (const QAbstractButton* other : buttons) {
                EXPECT_TRUE(one == other || other->isHidden() ||
                            !frame(*one).intersects(frame(*other)))
                    << one->objectName().toStdString() << " " << other->objectName().toStdString();
            }
        }
        QApplication::setFont(usual);
    }
}

TEST_F(ContentLayout, a_card_is_a_tint_over_the_ground_of_the_window) {
    const QColor ground(0x40, 0x80, 0xc0);
    QPalette palette = view().palette();
    palette.setColor(QPalette::Window, ground);
    view().setPalette(palette);
    const QPoint besideTheCards(2, 2);
    const QPoint onACard = frame(*all<ui::Card>(view()).front()).topLeft() + QPoint(20, 4);

    const QImage opaque = view().grab().toImage();
    EXPECT_EQ(opaque.pixelColor(besideTheCards), ground);
    EXPECT_GT(opaque.pixelColor(onACard).lightness(), ground.lightness());

    // The system's own ground shines through a window that is translucent.
    view().setAttribute(Qt::WA_TranslucentBackground);
    const QImage translucent = view().grab().toImage();
    EXPECT_EQ(translucent.pixelColor(besideTheCards).alpha(), 0);
    EXPECT_GT(translucent.pixelColor(onACard).alpha(), 0);
    EXPECT_LT(translucent.pixelColor(onACard).alpha(), 255);
}

TEST_F(ContentLayout, from_right_to_left_it_is_its_own_mirror_image) {
    const QRect box = frame(named(app::keys::playSounds));
    const QRect folder = frame(named(app::keys::screenshotSavePath));
    const QRect second = column(1);
    view().setLayoutDirection(Qt::RightToLeft);
    QCoreApplication::sendPostedEvents();
    const auto mirrored = [&](const QRect& rectangle) {
        return QRect(whole().width() - rectangle.left() - rectangle.width(), rectangle.top(),
                     rectangle.width(), rectangle.height());
    };
    EXPECT_EQ(frame(named(app::keys::playSounds)), mirrored(box));
    EXPECT_EQ(frame(named(app::keys::screenshotSavePath)), mirrored(folder));
    EXPECT_EQ(column(1), mirrored(second));
    const auto& check = dynamic_cast<ui::CheckBox&>(named(app::keys::playSounds));
    EXPECT_EQ(check.boxRectangle().right(), check.rect().right());
}

}  // namespace
