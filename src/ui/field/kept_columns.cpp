#include "ui/field/kept_columns.h"

#include "settings/settings.h"

#include <QHeaderView>

#include <numeric>
#include <utility>

namespace tally::ui {

KeptColumns::KeptColumns(QHeaderView *header, Settings &settings, const Setting<QString> &setting,
                         std::vector<int> widths)
    : QObject(header), header_(header), settings_(settings), setting_(setting)
{
    constexpr std::chrono::seconds hand_rests{1};
    save_.setSingleShot(true);
    save_.setInterval(hand_rests);
    connect(&save_, &QTimer::timeout, this, &KeptColumns::save);
    arrangement_.order.resize(widths.size());
    std::iota(arrangement_.order.begin(), arrangement_.order.end(), 0);
    arrangement_.widths = std::move(widths);
    if (auto kept = arrangement_in(settings.get(setting), header->count()))
        arrangement_ = std::move(*kept);
    arrange();
    connect(header, &QHeaderView::sectionMoved, this, &KeptColumns::note_order);
    connect(header, &QHeaderView::sectionResized, this,
            [this](int column, int /*before*/, int width) { note_width(column, width); });
}

KeptColumns::~KeptColumns()
{
    if (save_.isActive())
        save();
}

void KeptColumns::arrange()
{
    for (int place = 0; place < header_->count(); ++place) {
        const int column = arrangement_.order.at(static_cast<std::size_t>(place));
        header_->moveSection(header_->visualIndex(column), place);
        header_->resizeSection(column, arrangement_.widths.at(static_cast<std::size_t>(column)));
    }
}

void KeptColumns::note_width(int column, int width)
{
    // The last one follows the window.
    if (header_->visualIndex(column) == header_->count() - 1)
        return;
    arrangement_.widths.at(static_cast<std::size_t>(column)) = width;
    save_.start();
}

void KeptColumns::note_order()
{
    for (int place = 0; place < header_->count(); ++place)
        arrangement_.order.at(static_cast<std::size_t>(place)) = header_->logicalIndex(place);
    save_.start();
}

/// The header may be gone but for its children.
void KeptColumns::save()
{
    settings_.set(setting_, arrangement_text(arrangement_));
}

} // namespace tally::ui
