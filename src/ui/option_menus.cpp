#include "ui/option_menus.h"

#include "settings/catalogue.h"
#include "settings/settings.h"
#include "ui/parts/theme.h"

#include <QActionGroup>
#include <QMenu>

namespace tally::ui {
namespace {

constexpr int font_sizes[] = {8, 9, 10, 11, 12, 14, 16, 20, 22, 25, 26};

struct ModeEntry {
    QLatin1StringView key;
    const char16_t *label;
};

constexpr ModeEntry overlay_modes[] = {
    {QLatin1StringView("full"), u"Full (vertical)"},
    {QLatin1StringView("compact1"), u"Compact (1 line)"},
    {QLatin1StringView("compact2"), u"Compact (2 lines)"},
};

QAction *add_choice(QMenu &menu, QActionGroup &group, const QString &label, const QVariant &value)
{
    QAction *choice = menu.addAction(label);
    choice->setCheckable(true);
    choice->setData(value);
    group.addAction(choice);
    return choice;
}

void check(const QActionGroup &group, const QVariant &value)
{
    for (QAction *choice : group.actions())
        choice->setChecked(choice->data() == value);
}

/// Checks the choice that `data_of` finds for the setting's value, now and at each change.
template <typename T, typename DataOf>
void follow(QActionGroup &group, Settings &settings, const Setting<T> &setting, DataOf data_of)
{
    check(group, data_of(settings.get(setting)));
    settings.on_change(setting, &group,
                       [&group, data_of](const T &value) { check(group, data_of(value)); });
}

void add_font_sizes(QMenu &options, Settings &settings, const Setting<int> &setting)
{
    QMenu *menu = options.addMenu(QStringLiteral("Font size"));
    auto *group = new QActionGroup(menu);
    for (const int size : font_sizes)
        add_choice(*menu, *group, QStringLiteral("%1 pt").arg(size), size);
    follow(*group, settings, setting, [](int size) { return size; });
    QObject::connect(group, &QActionGroup::triggered, menu,
                     [&settings, setting](const QAction *choice) {
                         settings.set(setting, choice->data().toInt());
                     });
}

void add_pin_switch(QMenu &options, Settings &settings, const Setting<bool> &setting)
{
    QAction *pin = options.addAction(QStringLiteral("Pin to game window"));
    pin->setCheckable(true);
    pin->setChecked(settings.get(setting));
    settings.on_change(setting, pin, [pin](bool pinned) { pin->setChecked(pinned); });
    QObject::connect(pin, &QAction::triggered, &options,
                     [&settings, setting](bool pinned) { settings.set(setting, pinned); });
}

QString mode_of_setting(const QString &mode)
{
    return mode == u"compact" ? QStringLiteral("compact2") : mode; // as earlier versions called it
}

void add_overlay_mode(QMenu &options, Settings &settings)
{
    QMenu *menu = options.addMenu(QStringLiteral("Mode"));
    auto *group = new QActionGroup(menu);
    for (const auto &[mode, label] : overlay_modes)
        add_choice(*menu, *group, QString::fromUtf16(label), QString(mode));
    follow(*group, settings, settings::overlay_mode, mode_of_setting);
    QObject::connect(group, &QActionGroup::triggered, menu, [&settings](const QAction *choice) {
        settings.set(settings::overlay_mode, choice->data().toString());
    });
}

} // namespace

void add_overlay_options(QMenu &menu, Settings &settings)
{
    QMenu *options = menu.addMenu(QStringLiteral("Overlay options"));
    add_font_sizes(*options, settings, settings::overlay_font_size);
    add_overlay_mode(*options, settings);
    add_pin_switch(*options, settings, settings::overlay_pinned);
}

void add_tracker_options(QMenu &menu, Settings &settings)
{
    QMenu *options = menu.addMenu(QStringLiteral("Tracker options"));
    add_font_sizes(*options, settings, settings::honor_tracker_font_size);
    QMenu *mode = options->addMenu(QStringLiteral("Mode"));
    add_choice(*mode, *new QActionGroup(mode), QStringLiteral("Full (vertical)"), {})
        ->setChecked(true);
    add_pin_switch(*options, settings, settings::honor_tracker_pinned);
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
    follow(*group, settings, settings::theme, [](const QString &name) {
        const int theme = theme_from_name(name);
        const bool is_theme = name.compare(theme_name(theme), Qt::CaseInsensitive) == 0;
        return is_theme ? QVariant(theme) : QVariant();
    });
    return themes;
}

} // namespace tally::ui
