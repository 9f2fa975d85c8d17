#include "ui/parts/theme_additions.h"

namespace tally::ui {

const char *theme_additions()
{
    return R"css(
QTabBar::tab:selected:hover { color: {fg}; }
QTabBar::tab:selected:focus { border: 1px solid {fg}; border-bottom: none; }
QPushButton:focus { border: 1px solid {accent}; }
QPushButton:default:hover { color: {fg}; }
QPushButton:default:hover:pressed { background-color: {accent}; color: {accent_fg}; }
QPushButton:default:focus { border: 1px solid {fg}; }
QPushButton:disabled { color: {muted}; }
QPushButton:default:disabled { background-color: {panel}; border: 1px solid {border}; }
QPushButton[pending="true"] { background-color: {accent}; color: {accent_fg};
    border: 1px solid {accent}; }
QPushButton[pending="true"]:hover { background-color: {select_bg}; color: {fg}; }
QPushButton[pending="true"]:focus { border: 1px solid {fg}; }
QSpinBox { background-color: {entry_bg}; color: {fg}; border: 1px solid {border};
    border-radius: 3px; padding: 4px 6px; selection-background-color: {accent};
    selection-color: {accent_fg}; }
QLineEdit:focus, QTextEdit:focus, QAbstractSpinBox:focus, QComboBox:focus,
QTableView:focus, QTreeWidget:focus, QListWidget:focus { border: 1px solid {accent}; }
QLineEdit[unreadable="true"] { border: 1px solid {drop_low}; }
QListWidget::item { background-color: transparent; }
QListWidget::item:selected { background-color: {accent}; color: {accent_fg}; }
QComboBox::drop-down, QDateEdit::drop-down { subcontrol-origin: border;
    subcontrol-position: center right; width: 20px; border: none; }
QComboBox::down-arrow, QDateEdit::down-arrow, QAbstractSpinBox::down-arrow,
QAbstractSpinBox::up-arrow {
    width: 8px; height: 5px; }
QComboBox::down-arrow, QDateEdit::down-arrow, QAbstractSpinBox::down-arrow {
    background: qconicalgradient(cx:0.5, cy:1, angle:63.43,
    stop:0 {fg}, stop:0.14758 {fg}, stop:0.1476 transparent, stop:1 transparent); }
QAbstractSpinBox::up-arrow {
    background: qconicalgradient(cx:0.5, cy:0, angle:243.43,
    stop:0 {fg}, stop:0.14758 {fg}, stop:0.1476 transparent, stop:1 transparent); }
QComboBox::down-arrow:disabled, QDateEdit::down-arrow:disabled,
QAbstractSpinBox::down-arrow:disabled, QAbstractSpinBox::down-arrow:off {
    background: qconicalgradient(cx:0.5, cy:1, angle:63.43,
    stop:0 {muted}, stop:0.14758 {muted}, stop:0.1476 transparent, stop:1 transparent); }
QAbstractSpinBox::up-arrow:disabled, QAbstractSpinBox::up-arrow:off {
    background: qconicalgradient(cx:0.5, cy:0, angle:243.43,
    stop:0 {muted}, stop:0.14758 {muted}, stop:0.1476 transparent, stop:1 transparent); }
QAbstractSpinBox::up-button, QAbstractSpinBox::down-button { subcontrol-origin: border;
    width: 20px; border: none; background: transparent; }
QAbstractSpinBox::up-button { subcontrol-position: top right; }
QAbstractSpinBox::down-button { subcontrol-position: bottom right; }
QAbstractSpinBox::up-button:hover, QAbstractSpinBox::down-button:hover,
QDateEdit::drop-down:hover, QComboBox::drop-down:hover { background-color: {select_bg}; }
QRadioButton, QCheckBox { background: transparent; }
QRadioButton::indicator, QCheckBox::indicator { width: 12px; height: 12px;
    border: 1px solid {muted}; background-color: {entry_bg}; }
QRadioButton::indicator { border-radius: 7px; }
QCheckBox::indicator { border-radius: 3px; }
QRadioButton::indicator:checked, QCheckBox::indicator:checked { width: 6px; height: 6px;
    border: 4px solid {accent}; background-color: {accent_fg}; }
QRadioButton::indicator:hover, QCheckBox::indicator:hover, QRadioButton::indicator:focus,
QCheckBox::indicator:focus { border-color: {accent}; }
QAbstractScrollArea::corner { background-color: {panel}; border: none; }
QToolTip { background-color: {panel}; color: {fg}; border: 1px solid {border}; padding: 3px; }
)css";
}

} // namespace tally::ui
