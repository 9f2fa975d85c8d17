#include "ui/option_menus.h"

#include "ui/parts/theme.h"
#include "ui/stored_settings.h"

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

QAction *add_choice(QMenu &menu, QActionGroup &group, const QString &label, bool checked)
{
    QAction *choice = menu.addAction(label);
    choice->setCheckable(true);
    group.addAction(choice);
    choice->setChecked(checked);
    return choice;
}

void add_font_sizes(QMenu &options, data::TallyDb *db, const QString &key)
{
    QMenu *menu = options.addMenu(QStringLiteral("Font size"));
    auto *group = new QActionGroup(menu);
    const int stored = stored_setting(*db, key, QStringLiteral("10")).toInt();
    for (const int size : font_sizes)
        add_choice(*menu, *group, QStringLiteral("%1 pt").arg(size), size == stored)->setData(size);
    QObject::connect(group, &QActionGroup::triggered, menu, [db, key](QAction *choice) {
        store_setting(*db, key, QString::number(choice->data().toInt()));
    });
}

void add_pin_switch(QMenu &options, data::TallyDb *db, const QString &key)
{
    QAction *pin = options.addAction(QStringLiteral("Pin to game window"));
    pin->setCheckable(true);
    pin->setChecked(stored_flag(*db, key, false));
    QObject::connect(pin, &QAction::triggered, &options,
                     [db, key](bool pinned) { store_flag(*db, key, pinned); });
}

void add_overlay_mode(QMenu &options, data::TallyDb *db)
{
    const auto key = QStringLiteral("overlay_mode");
    QMenu *menu = options.addMenu(QStringLiteral("Mode"));
    auto *group = new QActionGroup(menu);
    QString stored = stored_setting(*db, key, overlay_modes[0].key);
    if (stored == u"compact") // as earlier versions called it
        stored = QStringLiteral("compact2");
    for (const auto &[mode, label] : overlay_modes)
        add_choice(*menu, *group, QString::fromUtf16(label), mode == stored)
            ->setData(QString(mode));
    QObject::connect(group, &QActionGroup::triggered, menu, [db, key](QAction *choice) {
        store_setting(*db, key, choice->data().toString());
    });
}

} // namespace

void add_overlay_options(QMenu &menu, data::TallyDb *db)
{
    QMenu *options = menu.addMenu(QStringLiteral("Overlay options"));
    add_font_sizes(*options, db, QStringLiteral("overlay_font_size"));
    add_overlay_mode(*options, db);
    add_pin_switch(*options, db, QStringLiteral("overlay_pinned"));
}

void add_tracker_options(QMenu &menu, data::TallyDb *db)
{
    QMenu *options = menu.addMenu(QStringLiteral("Tracker options"));
    add_font_sizes(*options, db, QStringLiteral("honor_tracker_font_size"));
    QMenu *mode = options->addMenu(QStringLiteral("Mode"));
    add_choice(*mode, *new QActionGroup(mode), QStringLiteral("Full (vertical)"), true);
    add_pin_switch(*options, db, QStringLiteral("honor_tracker_pinned"));
}

QMenu *add_theme_menu(QMenu &menu, const data::TallyDb &db)
{
    QMenu *themes = menu.addMenu(QStringLiteral("&Theme"));
    auto *group = new QActionGroup(themes);
    const QString stored = stored_setting(db, QStringLiteral("theme"), theme_name(0));
    for (const int theme : {0, 1}) {
        const QString name = theme_name(theme);
        add_choice(*themes, *group, name.at(0).toUpper() + name.sliced(1),
                   name.compare(stored, Qt::CaseInsensitive) == 0)
            ->setData(theme);
    }
    return themes;
}

} // namespace tally::ui
