#include "ui/parts/theme.h"

#include "ui/parts/theme_additions.h"

#include <QApplication>
#include <QPalette>

namespace tally::ui {
namespace {

struct ThemeColour {
    QLatin1StringView placeholder;
    QLatin1StringView dark;
    QLatin1StringView light;
};

constexpr ThemeColour colours[] = {
    {QLatin1StringView("{bg}"), QLatin1StringView("#1a1c2e"), QLatin1StringView("#f0f2f5")},
    {QLatin1StringView("{panel}"), QLatin1StringView("#2d1b3d"), QLatin1StringView("#ffffff")},
    {QLatin1StringView("{panel2}"), QLatin1StringView("#3b2a4d"), QLatin1StringView("#e8ebf0")},
    {QLatin1StringView("{fg}"), QLatin1StringView("#e8eaed"), QLatin1StringView("#1c1e21")},
    {QLatin1StringView("{muted}"), QLatin1StringView("#8a8f9e"), QLatin1StringView("#65676b")},
    {QLatin1StringView("{accent}"), QLatin1StringView("#5865f2"), QLatin1StringView("#5865f2")},
    {QLatin1StringView("{accent_fg}"), QLatin1StringView("#ffffff"), QLatin1StringView("#ffffff")},
    {QLatin1StringView("{select_bg}"), QLatin1StringView("#4752c4"), QLatin1StringView("#e7f3ff")},
    {QLatin1StringView("{entry_bg}"), QLatin1StringView("#2b2f3a"), QLatin1StringView("#ffffff")},
    {QLatin1StringView("{border}"), QLatin1StringView("#3a3d4a"), QLatin1StringView("#d0d3d9")},
    {QLatin1StringView("{row_even}"), QLatin1StringView("#22243a"), QLatin1StringView("#f5f6f8")},
    {QLatin1StringView("{row_odd}"), QLatin1StringView("#1e2033"), QLatin1StringView("#ffffff")},
    {QLatin1StringView("{drop_high}"), QLatin1StringView("#2ecc71"), QLatin1StringView("#2ecc71")},
    {QLatin1StringView("{drop_mid}"), QLatin1StringView("#f39c12"), QLatin1StringView("#f39c12")},
    {QLatin1StringView("{drop_low}"), QLatin1StringView("#e74c3c"), QLatin1StringView("#e74c3c")},
};

constexpr char sheet_template[] = R"css(
QMainWindow, QWidget { background-color: {bg}; color: {fg}; }
QMenuBar { background-color: {panel}; color: {fg}; border-bottom: 1px solid {border}; }
QMenuBar::item:selected { background-color: {accent}; color: {accent_fg}; }
QMenu { background-color: {panel}; color: {fg}; border: 1px solid {border}; }
QMenu::item:selected { background-color: {accent}; color: {accent_fg}; }
QTabWidget::pane { background-color: {bg}; border: 1px solid {border}; top: -1px; }
QTabBar { background-color: {bg}; border: none; }
QTabBar::tab { background-color: {panel}; color: {fg}; padding: 8px 16px;
    border: 1px solid {border}; border-bottom: none; margin-top: 5px; }
QTabBar::tab:selected { background-color: {accent}; color: {accent_fg}; }
QTabBar::tab:hover { background-color: {select_bg}; }
QGroupBox { background-color: {bg}; color: {accent}; font-weight: bold;
    border: 1px solid {border}; border-radius: 4px; margin-top: 12px; padding-top: 8px; }
QGroupBox::title { subcontrol-origin: margin; left: 10px; padding: 0 6px; }
QLabel { background: transparent; color: {fg}; }
QPushButton { background-color: {panel}; color: {fg}; border: 1px solid {border};
    border-radius: 4px; padding: 6px 14px; }
QPushButton:hover { background-color: {select_bg}; }
QPushButton:pressed { background-color: {accent}; color: {accent_fg}; }
QPushButton:default { background-color: {accent}; color: {accent_fg};
    border: 1px solid {accent}; }
QPushButton:default:hover { background-color: {select_bg}; }
QLineEdit, QTextEdit, QDateEdit, QTimeEdit, QComboBox { background-color: {entry_bg};
    color: {fg}; border: 1px solid {border}; border-radius: 3px; padding: 4px 6px;
    selection-background-color: {accent}; selection-color: {accent_fg}; }
QComboBox::drop-down { border: none; }
QComboBox QAbstractItemView { background-color: {panel}; color: {fg};
    selection-background-color: {accent}; selection-color: {accent_fg};
    border: 1px solid {border}; }
QTableView, QTreeWidget, QListWidget { background-color: {panel}; color: {fg};
    alternate-background-color: {row_odd}; gridline-color: {border};
    border: 1px solid {border}; selection-background-color: {accent};
    selection-color: {accent_fg}; }
QHeaderView::section { background-color: {panel2}; color: {fg}; padding: 6px;
    border: 1px solid {border}; font-weight: bold; }
QScrollBar:vertical { background: {panel}; width: 12px; border: none; }
QScrollBar::handle:vertical { background: {muted}; border-radius: 4px; min-height: 20px;
    margin: 2px; }
QScrollBar::handle:vertical:hover { background: {accent}; }
QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }
QScrollBar:horizontal { background: {panel}; height: 12px; border: none; }
QScrollBar::handle:horizontal { background: {muted}; border-radius: 4px; min-width: 20px;
    margin: 2px; }
QScrollBar::handle:horizontal:hover { background: {accent}; }
QScrollBar::add-line:horizontal, QScrollBar::sub-line:horizontal { width: 0; }
QStatusBar { background-color: {panel}; color: {muted}; border-top: 1px solid {border}; }
QProgressBar { background-color: {entry_bg}; border: 1px solid {border}; border-radius: 3px;
    text-align: center; }
QProgressBar::chunk { background-color: {accent}; border-radius: 2px; }
QDialog { background-color: {bg}; color: {fg}; }
)css";

QString filled_in(const char *template_text, int theme)
{
    QString sheet = QString::fromUtf8(template_text);
    for (const auto &[placeholder, dark, light] : colours)
        sheet.replace(placeholder, theme == 1 ? light : dark);
    return sheet;
}

} // namespace

int theme_from_name(const QString &name)
{
    return name.compare(u"light", Qt::CaseInsensitive) == 0 ? 1 : 0;
}

QString theme_name(int theme)
{
    return theme == 1 ? QStringLiteral("light") : QStringLiteral("dark");
}

QString theme_stylesheet(int theme)
{
    return filled_in(sheet_template, theme);
}

void apply_to_app(QApplication *app, int theme)
{
    if (!app)
        return;
    // A sheet does not reach links, whose own blue is unreadable on a dark window.
    QPalette palette = QApplication::palette();
    for (const QPalette::ColorRole role : {QPalette::Link, QPalette::LinkVisited})
        palette.setColor(role, theme == 1 ? QColor(0x4752c4) : QColor(0x9aa3ff));
    QApplication::setPalette(palette);
    app->setStyleSheet(theme_stylesheet(theme) + filled_in(theme_additions(), theme));
}

} // namespace tally::ui
