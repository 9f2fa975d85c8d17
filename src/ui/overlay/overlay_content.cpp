#include "ui/overlay/overlay_content.h"

#include "data/master/master_cache.h"
#include "ui/items/item_pictures.h"
#include "ui/overlay/close_label.h"
#include "ui/overlay/overlay_figures.h"
#include "ui/parts/plain_label.h"
#include "ui/parts/sharp_pixmap.h"

#include <QLabel>
#include <QVBoxLayout>

#include <utility>

namespace tally::ui {

OverlayContent::OverlayContent(OverlayMode mode, const OverlayLook &look, QString icon_dir)
    : look_(look), icon_dir_(std::move(icon_dir)), lines_(new QVBoxLayout(this))
{
    setObjectName(QStringLiteral("overlayContent"));
    if (mode == OverlayMode::Full)
        build_full();
    else
        build_compact(mode);
    look_for_icons(Icons::All);
}

void OverlayContent::build_full()
{
    lines_->setContentsMargins(12, 10, 12, 10);
    lines_->setSpacing(4);
    QBoxLayout *head = add_line(-1);
    head->addWidget(plain_label(QStringLiteral("Tallyhand"), look_.title()));
    head->addStretch();
    head->addWidget(new_close_label(look_.close_label(4)));
    filter_label_ = plain_label({}, look_.filter());
    filter_label_->setWordWrap(true);
    lines_->addWidget(filter_label_);

    add_row(QStringLiteral("crystals"), QStringLiteral("Crystals"), QStringLiteral("#5cd6f5"));
    add_row(QStringLiteral("gems"), QStringLiteral("Gems"), QStringLiteral("#ff6b9d"));
    add_section(QStringLiteral("Speeds (days)"));
    add_row(QStringLiteral("universal"), QStringLiteral("Universal"));
    add_row(QStringLiteral("training"), QStringLiteral("Training"));
    add_row(QStringLiteral("healing"), QStringLiteral("Healing"));
    add_section(QStringLiteral("Materials"));
    for (const OverlayMaterial &material : overlay_materials)
        add_row(material.key(), QString::fromUtf16(material.label));
    add_section(QStringLiteral("Statistics"));
    add_row(QStringLiteral("chains"), QStringLiteral("Chains"));
    add_row(QStringLiteral("rounds"), QStringLiteral("Rounds"));
    add_row(QStringLiteral("wins"), QStringLiteral("Wins"));
    add_row(QStringLiteral("avg"), QStringLiteral("Barbs/AP"));
    add_row(QStringLiteral("honor"), QStringLiteral("Honor"));

    lines_->addStretch();
    lines_->addWidget(
        centred_label(QStringLiteral("Right-click for menu · drag to move"), look_.hint()));
}

void OverlayContent::build_compact(OverlayMode mode)
{
    const bool one_line = mode == OverlayMode::Compact1;
    const int margin = one_line ? 5 : 4;
    lines_->setContentsMargins(6, margin, 6, margin);
    lines_->setSpacing(2);
    QBoxLayout *first = add_line(8);
    QBoxLayout *loot = one_line ? first : add_line(8);
    for (const QString &key : {QStringLiteral("crystals"), QStringLiteral("gems")})
        add_icon_tile(*first, key, key);
    for (const QString &key :
         {QStringLiteral("universal"), QStringLiteral("training"), QStringLiteral("healing")})
        add_icon_tile(*loot, key, key);
    for (const OverlayMaterial &material : overlay_materials)
        add_icon_tile(*loot, material.key(), QString::fromUtf16(material.name));
    add_text_tile(*first, QStringLiteral("honor"), QStringLiteral("Honor"));
    add_text_tile(*first, QStringLiteral("kills"), QStringLiteral("Kill"));
    add_text_tile(*first, QStringLiteral("avg"), QStringLiteral("Avg"));
    first->addStretch();
    first->addWidget(new_close_label(look_.close_label(6)));
    if (!one_line)
        loot->addStretch();
}

/// \param spacing below 0: that of the style
QBoxLayout *OverlayContent::add_line(int spacing)
{
    auto *line = new QHBoxLayout;
    if (spacing >= 0)
        line->setSpacing(spacing);
    lines_->addLayout(line);
    return line;
}

void OverlayContent::add_row(const QString &key, const QString &label, const QString &colour)
{
    QBoxLayout *row = add_line(8);
    row->addWidget(plain_label(label + u':', look_.row_caption(colour)));
    row->addStretch();
    row->addWidget(new_value(key, QStringLiteral("—")));
}

void OverlayContent::add_section(const QString &title)
{
    QLabel *header = plain_label(title, look_.section());
    header->setIndent(0); // a padding in the style would bring one along
    lines_->addWidget(header);
}

void OverlayContent::add_icon_tile(QBoxLayout &line, const QString &key, const QString &icon)
{
    auto *tile = new QHBoxLayout;
    tile->setSpacing(2);
    tile->addWidget(new_value(key, QStringLiteral("0")));
    line.addLayout(tile);
    tiles_.push_back({.icon = icon, .line = tile});
}

void OverlayContent::add_text_tile(QBoxLayout &line, const QString &key, const QString &label)
{
    auto *tile = new QHBoxLayout;
    tile->setSpacing(3);
    tile->addWidget(plain_label(label + u':', look_.caption()));
    tile->addWidget(new_value(key, QStringLiteral("0")));
    line.addLayout(tile);
}

QLabel *OverlayContent::new_value(const QString &key, const QString &text)
{
    QLabel *label = plain_label(text, look_.value());
    value_labels_.insert(key, label);
    return label;
}

void OverlayContent::show_values(const QHash<QString, QString> &texts)
{
    for (auto value = texts.begin(); value != texts.end(); ++value) {
        if (QLabel *label = value_labels_.value(value.key()))
            label->setText(value.value());
    }
}

void OverlayContent::show_filter(const QString &text)
{
    if (filter_label_)
        filter_label_->setText(text);
}

void OverlayContent::look_for_icons(Icons which)
{
    for (Tile &tile : tiles_) {
        if (which == Icons::All || !tile.picture)
            look_for_icon(tile);
    }
}

void OverlayContent::look_for_icon(Tile &tile)
{
    const QString path = data::MasterCache::instance()
                             .icon_path(QStringLiteral("loot"), tile.icon, icon_dir_)
                             .value_or(QString());
    if (std::exchange(tile.path, path) == path || path.isEmpty())
        return; // what is no picture is not read again and again
    const QPixmap icon = icon_picture(path);
    if (icon.isNull())
        return;
    if (!tile.picture) {
        tile.picture = new QLabel;
        tile.line->insertWidget(0, tile.picture);
    }
    tile.picture->setPixmap(fitted_picture(icon, look_.icon_side()));
}

} // namespace tally::ui
