#pragma once

#include "data/store/records.h"
#include "queries/asker.h"
#include "ui/parts/details_dialog.h"
#include "ui/parts/surroundings.h"

#include <vector>

class QTableWidget;

namespace tally::honor {

class DiscrepancyChart;

/// What readings have told of the estimates before them. It is deleted when it is closed.
class HonorDiscrepancyHistoryDialog : public ui::DetailsDialog {
    Q_OBJECT

public:
    explicit HonorDiscrepancyHistoryDialog(const ui::Surroundings &around,
                                           QWidget *parent = nullptr);

private:
    void show_rows(const std::vector<data::HonorLogRow> &rows);

    DiscrepancyChart *chart_;
    QTableWidget *table_;
    queries::Asker asker_;
};

} // namespace tally::honor
