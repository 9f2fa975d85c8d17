#include "ui/pinning/setting_menus.h"

#include "ui/pinning/overlay_font_sizes.h"

#include <QMenu>

namespace tally::ui {

QAction *add_choice(QMenu &menu, QActionGroup &group, const QString &label, const QVariant &value)
{
    QAction *choice = menu.addAction(label);
    choice->setCheckable(true);
    choice->setData(value);
    group.addAction(choice);
    return choice;
}

void check_choice(const QActionGroup &group, const QVariant &value)
{
    for (QAction *choice : group.actions())
        choice->setChecked(choice->data() == value);
}

void add_font_sizes(QMenu &menu, Settings &settings, const Setting<int> &setting)
{
    QMenu *sizes = menu.addMenu(QStringLiteral("Font size"));
    auto *group = new QActionGroup(sizes);
    for (const int size : overlay_font_sizes)
        add_choice(*sizes, *group, QStringLiteral("%1 pt").arg(size), size);
    follow_setting(*group, settings, setting, [](int size) { return size; });
    QObject::connect(group, &QActionGroup::triggered, sizes,
                     [&settings, setting](const QAction *choice) {
                         settings.set(setting, choice->data().toInt());
                     });
}

void add_modes(QMenu &menu, Settings &settings, const Setting<QString> &setting,
               std::span<const ModeChoice> modes, QString (*key_of)(const QString &stored))
{
    QMenu *entries = menu.addMenu(QStringLiteral("Mode"));
    auto *group = new QActionGroup(entries);
    for (const auto &[key, label] : modes)
        add_choice(*entries, *group, QString::fromUtf16(label), QString(key));
    follow_setting(*group, settings, setting, key_of);
    QObject::connect(group, &QActionGroup::triggered, entries,
                     [&settings, setting](const QAction *choice) {
                         settings.set(setting, choice->data().toString());
                     });
}

QAction *add_switch(QMenu &menu, Settings &settings, const Setting<bool> &setting,
                    const QString &label)
{
    QAction *entry = menu.addAction(label);
    entry->setCheckable(true);
    entry->setChecked(settings.get(setting));
    settings.on_change(setting, entry, [entry](bool on) { entry->setChecked(on); });
    QObject::connect(entry, &QAction::triggered, &menu,
                     [&settings, setting](bool on) { settings.set(setting, on); });
    return entry;
}

void add_pin_switch(QMenu &menu, Settings &settings, const Setting<bool> &setting)
{
    add_switch(menu, settings, setting, QStringLiteral("Pin to game window"));
}

void add_click_through_switch(QMenu &menu, Settings &settings, const Setting<bool> &setting)
{
    menu.addSeparator();
    add_switch(menu, settings, setting, QStringLiteral("Let clicks through"));
}

} // namespace tally::ui
