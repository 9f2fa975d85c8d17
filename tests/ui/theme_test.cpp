#include "ui/parts/theme.h"

#include <QApplication>
#include <QRegularExpression>
#include <QWidget>

#include <gtest/gtest.h>

using namespace tally;
using namespace Qt::StringLiterals;

TEST(Theme, OnlyTheWordLightIsLight)
{
    for (const QString &name : {u"light"_s, u"LIGHT"_s, u"Light"_s})
        EXPECT_EQ(ui::theme_from_name(name), 1) << name.toStdString();
    for (const QString &name : {u"dark"_s, u"blue"_s, u""_s, u" light"_s})
        EXPECT_EQ(ui::theme_from_name(name), 0) << name.toStdString();
    EXPECT_EQ(ui::theme_name(1), u"light"_s);
    EXPECT_EQ(ui::theme_name(7), u"dark"_s);
}

TEST(Theme, AFinishedSheetHoldsNoPlaceholder)
{
    static const QRegularExpression placeholder(u"\\{[a-z_0-9]+\\}"_s);
    for (const int theme : {0, 1})
        EXPECT_FALSE(ui::theme_stylesheet(theme).contains(placeholder));
}

TEST(Theme, AWidgetTakesTheColoursOfTheTheme)
{
    const QWidget widget;
    for (const auto &[theme, back] : {std::pair(0, u"#1a1c2e"_s), std::pair(1, u"#f0f2f5"_s)}) {
        ui::apply_to_app(qApp, theme);
        widget.ensurePolished();
        EXPECT_EQ(widget.palette().color(QPalette::Window).name(), back);
    }
    ui::apply_to_app(nullptr, 0);
}
