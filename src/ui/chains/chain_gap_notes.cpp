#include "ui/chains/chain_gap_notes.h"

#include "ui/parts/page_note.h"
#include "ui/parts/utc_time.h"

#include <QVBoxLayout>

namespace tally::ui {
namespace {

QDate day_of(std::optional<double> seconds)
{
    if (!seconds)
        return {};
    return utc_date(*seconds);
}

QString period_text(QDate last_day)
{
    if (!last_day.isValid())
        return QStringLiteral("No chains yet. They come in with their mails.");
    return QStringLiteral("Nothing in this period; the last chain was on %1.")
        .arg(last_day.toString(Qt::ISODate));
}

} // namespace

ChainGapNotes::ChainGapNotes(QWidget *parent)
    : QWidget(parent),
      folder_(new PageNote(QStringLiteral("Choose…"),
                           QStringLiteral("New mails are watched from the next start on."))),
      period_(new PageNote(QStringLiteral("Show that day"), {}))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(folder_);
    layout->addWidget(period_);
    connect(folder_, &PageNote::stepTaken, this, &ChainGapNotes::folderWanted);
    connect(period_, &PageNote::stepTaken, this, [this] { Q_EMIT dayWanted(last_day_); });
    hide();
}

void ChainGapNotes::show_gap(const std::optional<ChainGap> &gap)
{
    setVisible(gap.has_value());
    if (!gap)
        return;
    last_day_ = day_of(gap->last_chain);
    if (gap->has_mail_folder)
        folder_->hide();
    else
        folder_->say(QStringLiteral("No mail folder yet."), true);
    if (gap->has_mail_folder || last_day_.isValid())
        period_->say(period_text(last_day_), last_day_.isValid());
    else
        period_->hide();
}

} // namespace tally::ui
