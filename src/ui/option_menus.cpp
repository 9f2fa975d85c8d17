#include "ui/option_menus.h"

#include "settings/catalogue.h"
#include "settings/settings.h"
#include "ui/overlay/overlay_mode.h"
#include "ui/parts/theme.h"
#include "ui/pinning/setting_menus.h"

#include <QActionGroup>
#include <QMenu>

namespace tally::ui {

void add_overlay_options(QMenu &menu, Settings &settings)
{
    QMenu *options = menu.addMenu(QStringLiteral("Overlay options"));
    add_font_sizes(*options, settings, settings::overlay_font_size);
    add_modes(*options, settings, settings::overlay_mode, overlay_modes, overlay_menu_key);
    add_pin_switch(*options, settings, settings::overlay_pinned);
    add_click_through_switch(*options, settings, settings::overlay_click_through);
}

void add_tracker_options(QMenu &menu, Settings &settings)
{
    QMenu *options = menu.addMenu(QStringLiteral("Tracker options"));
    add_font_sizes(*options, settings, settings::honor_tracker_font_size);
    QMenu *mode = options->addMenu(QStringLiteral("Mode"));
    add_choice(*mode, *new QActionGroup(mode), QStringLiteral("Full (vertical)"), {})
        ->setChecked(true);
    add_pin_switch(*options, settings, settings::honor_tracker_pinned);
    add_click_through_switch(*options, settings, settings::honor_tracker_click_through);
}

QMenu *add_theme_menu(QMenu &menu, Settings &settings)
{
    QMenu *themes = menu.addMenu(QStringLiteral("&Theme"));
    auto *group = new QActionGroup(themes);
    for (const int theme : {0, 1}) {
        const QString name = theme_name(theme);
        add_choice(*themes, *group, name.at(0).toUpper() + name.sliced(1), theme);
    }
    // A name that is no theme's checks none, though the program takes it for the dark one.
    follow_setting(*group, settings, settings::theme, [](const QString &name) {
        const int theme = theme_from_name(name);
        const bool is_theme = name.compare(theme_name(theme), Qt::CaseInsensitive) == 0;
        return is_theme ? QVariant(theme) : QVariant();
    });
    return themes;
}

} // namespace tally::ui
