#include "ui/field/attack_side_panel.h"

#include "ui/field/attack_details.h"
#include "ui/field/copyable_text.h"

#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

namespace tally::ui {
namespace {

const QString text_style = QStringLiteral("font-family: Consolas, monospace; font-size: 9pt;");

/// A title takes a '&' for a mnemonic.
QString as_title(QString text)
{
    return text.replace(u'&', QStringLiteral("&&"));
}

QFrame *new_line()
{
    auto *line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Plain);
    line->setStyleSheet(QStringLiteral("color: rgba(128, 128, 128, 0.4);"));
    return line;
}

void add_section(QVBoxLayout &layout, const QString &title, const QString &title_style,
                 const QString &text)
{
    QLabel *label = copyable_label(title, title_style);
    auto *content = new CopyableText(text, text_style);
    content->setAccessibleName(title);
    layout.addWidget(label);
    layout.addWidget(content);
}

void add_hero(QVBoxLayout &layout, const HeroDetails &hero)
{
    const QString section_style =
        QStringLiteral("color: #888; font-size: 9pt; font-weight: bold; margin-top: 4px;");
    layout.addWidget(copyable_label(
        hero.name, QStringLiteral("color: #5865f2; font-size: 11pt; font-weight: bold;")));
    layout.addWidget(copyable_label(hero.level, QStringLiteral("font-size: 9pt;")));
    add_section(layout, QStringLiteral("Skills:"), section_style, hero.skills);
    if (!hero.equipment.isEmpty())
        add_section(layout, QStringLiteral("Equipment (slot:eq_id_iconic:count):"), section_style,
                    hero.equipment);
    if (!hero.inscriptions.isEmpty())
        add_section(layout, QStringLiteral("Inscriptions:"), section_style, hero.inscriptions);
}

} // namespace

QGroupBox *new_side_panel(const SideDetails &side)
{
    auto *panel = new QGroupBox(as_title(side.title));
    panel->setAccessibleName(side.title);
    auto *layout = new QVBoxLayout(panel);
    layout->addWidget(copyable_label(
        side.castle, QStringLiteral("color: #888; font-size: 9pt; font-style: italic;")));
    for (const HeroDetails &hero : side.heroes) {
        if (&hero != &side.heroes.front())
            layout->addWidget(new_line());
        add_hero(*layout, hero);
    }
    layout->addWidget(new_line());
    add_section(*layout, QStringLiteral("Armament buffs:"),
                QStringLiteral("color: #5865f2; font-size: 9pt; font-weight: bold;"), side.buffs);
    layout->addStretch();
    return panel;
}

} // namespace tally::ui
