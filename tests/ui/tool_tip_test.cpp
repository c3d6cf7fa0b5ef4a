#include "ui/tool_tip.h"

#include <gtest/gtest.h>

#include <QTextDocument>

namespace {

/// What the toolkit shows.
QString shownText(const QString& toolTip) {
    if (!Qt::mightBeRichText(toolTip)) {
        return toolTip;
    }
    QTextDocument document;
    document.setHtml(toolTip);
    return document.toPlainText();
}

TEST(ToolTip, shows_names_as_they_are) {
    for (const char* name : {"/home/someone/Pictures", "/A & B", "/a &lt; b", "<b>bold</b>",
                             "a  b   c", "\"quoted\"", "Größe <1>"}) {
        const QString text = QString::fromUtf8(name);
        EXPECT_EQ(shownText(ui::toolTipOf(text)), text);
    }
}

TEST(ToolTip, keeps_its_lines) {
    const QString text = QStringLiteral("What it is for.\nWhy it is missing.");
    EXPECT_EQ(shownText(ui::toolTipOf(text)), text);
}

TEST(ToolTip, of_nothing_is_none) {
    EXPECT_TRUE(ui::toolTipOf({}).isEmpty());
}

}  // namespace
