#pragma once

#include "settings/settings.h"

#include <QActionGroup>
#include <QString>
#include <QVariant>

#include <span>

class QMenu;

namespace tally::ui {

/// Menu entries that set a setting and follow it, for the main window's menus and for those that
/// open on an overlay. Whoever shows the setting follows it as well.

/// A checkable entry that holds a value, in an exclusive group.
QAction *add_choice(QMenu &menu, QActionGroup &group, const QString &label, const QVariant &value);

/// Checks the choice that holds the value, and no other.
void check_choice(const QActionGroup &group, const QVariant &value);

/// Checks the choice that `value_of` finds for the setting, now and at each change.
template <typename T, typename ValueOf>
void follow_setting(QActionGroup &group, Settings &settings, const Setting<T> &setting,
                    ValueOf value_of)
{
    check_choice(group, value_of(settings.get(setting)));
    settings.on_change(setting, &group, [&group, value_of](const T &value) {
        check_choice(group, value_of(value));
    });
}

/// One way in which an overlay can show itself.
struct ModeChoice {
    QLatin1StringView key; ///< as the setting stores it
    const char16_t *label;
};

/// The submenu "Font size".
void add_font_sizes(QMenu &menu, Settings &settings, const Setting<int> &setting);

/// The submenu "Mode".
/// \param key_of turns what is stored into the key of a mode
void add_modes(QMenu &menu, Settings &settings, const Setting<QString> &setting,
               std::span<const ModeChoice> modes, QString (*key_of)(const QString &stored));

/// A checkable entry that is on while the setting is.
QAction *add_switch(QMenu &menu, Settings &settings, const Setting<bool> &setting,
                    const QString &label);

/// "Pin to game window".
void add_pin_switch(QMenu &menu, Settings &settings, const Setting<bool> &setting);

/// A separator and "Let clicks through". It belongs into a menu of the main window: an overlay that
/// lets clicks through opens no menu of its own.
void add_click_through_switch(QMenu &menu, Settings &settings, const Setting<bool> &setting);

} // namespace tally::ui
