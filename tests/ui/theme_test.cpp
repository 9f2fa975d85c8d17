#include "ui/parts/theme.h"

#include "ui/parts/moment_edit.h"

#include <QApplication>
#include <QCalendarWidget>
#include <QComboBox>
#include <QDateEdit>
#include <QHoverEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTabBar>
#include <QTableView>

#include <gtest/gtest.h>

#include <cmath>
#include <map>

using namespace tally;
using namespace Qt::StringLiterals;

namespace {

double luminance(QColor colour)
{
    const auto part = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) +
           0.0722 * part(colour.blueF());
}

/// How well the most striking pixel stands out from the most frequent one: 1 to 21.
double contrast_in(const QImage &picture)
{
    std::map<QRgb, int> pixels;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            ++pixels[picture.pixel(x, y)];
    }
    const auto most =
        std::ranges::max_element(pixels, {}, [](const auto &colour) { return colour.second; });
    const double back = luminance(QColor(most->first));
    double best = 1.0;
    for (const auto &[colour, count] : pixels) {
        const double front = luminance(QColor(colour));
        best = std::max(best, (std::max(front, back) + 0.05) / (std::min(front, back) + 0.05));
    }
    return best;
}

double contrast_in(QWidget &widget, QRect part)
{
    return contrast_in(widget.grab(part).toImage());
}

void hover(QWidget &widget, QPoint at)
{
    widget.setAttribute(Qt::WA_UnderMouse);
    QHoverEvent move(QEvent::HoverMove, at, widget.mapToGlobal(at), QPointF(-1, -1));
    QCoreApplication::sendEvent(&widget, &move);
}

class BothThemes : public testing::TestWithParam<int> {
protected:
    void SetUp() override { ui::apply_to_app(qApp, GetParam()); }
    void TearDown() override { qApp->setStyleSheet({}); }
};

INSTANTIATE_TEST_SUITE_P(Theme, BothThemes, testing::Values(0, 1));

} // namespace

TEST_P(BothThemes, TextUnderTheMouseIsReadable)
{
    QPushButton button(u"Refresh"_s);
    button.setDefault(true);
    button.show();
    hover(button, button.rect().center());
    EXPECT_GT(contrast_in(button, button.rect().adjusted(5, 5, -5, -5)), 4.5);

    QTabBar tabs;
    tabs.addTab(u"Chains"_s);
    tabs.show();
    hover(tabs, tabs.tabRect(0).center());
    EXPECT_GT(contrast_in(tabs, tabs.tabRect(0).adjusted(8, 12, -8, -8)), 4.5);
}

TEST_P(BothThemes, ControlsLookLikeControls)
{
    QComboBox combo;
    combo.show();
    EXPECT_GT(contrast_in(combo, {combo.width() - 19, 4, 15, combo.height() - 8}), 4.5) << "arrow";
    QRadioButton ring;
    ring.show();
    EXPECT_GT(contrast_in(ring, ring.rect()), 2.5) << "ring";
}

TEST_P(BothThemes, TheCalendarShowsAllItsWeeks)
{
    const std::unique_ptr<QDateEdit> date(ui::new_date_edit({}));
    date->show();
    QCalendarWidget *calendar = date->calendarWidget();
    calendar->window()->show();
    calendar->window()->adjustSize();
    const auto *days = calendar->findChild<QTableView *>();
    const int last = days->model()->rowCount() - 1;
    EXPECT_LE(days->rowViewportPosition(last) + days->rowHeight(last), days->viewport()->height());
}

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
