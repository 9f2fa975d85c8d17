#pragma once

#include "data/store/trial_records.h"
#include "ui/parts/details_dialog.h"
#include "ui/parts/view_asker.h"

#include <QStringList>

#include <vector>

class QLabel;

namespace tally::ui {

class ItemRowTable;

/// Every kill of one player in one session, the newest first.
class BaulurKillsDialog : public DetailsDialog {
    Q_OBJECT

public:
    /// \param queries outlives the dialog
    /// \param files the session's mails
    BaulurKillsDialog(queries::StoreQueries *queries, const QStringList &files,
                      const QString &player, const QString &icon_dir, QWidget *parent);

private:
    void show_kills(const std::vector<data::PlayerKill> &kills);

    QString player_;
    QLabel *header_;
    ItemRowTable *view_;
    ViewAsker kills_;
};

} // namespace tally::ui
