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

TEST(ToolTip, may_have_several_lines_when_it_is_long) {
    EXPECT_TRUE(Qt::mightBeRichText(ui::toolTipOf(QStringLiteral("a plain sentence"))));
}

TEST(ToolTip, of_nothing_is_none) {
    EXPECT_TRUE(ui::toolTipOf({}).isEmpty());
}

}  // namespace
