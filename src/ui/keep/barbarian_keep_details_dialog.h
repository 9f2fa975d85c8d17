#pragma once

#include "data/store/trial_records.h"
#include "ui/parts/details_dialog.h"

namespace tally::ui {

/// One kill of the keep with everybody's share.
class BarbarianKeepDetailsDialog : public DetailsDialog {
    Q_OBJECT

public:
    BarbarianKeepDetailsDialog(data::TrialDetail detail, const QString &icon_dir, QWidget *parent);

private:
    static QWidget *new_column_header();
    QWidget *new_participants(const QString &icon_dir) const;

    data::TrialDetail detail_;
};

} // namespace tally::ui
