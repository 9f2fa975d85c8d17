#pragma once

#include "ui/parts/flow_layout.h"

#include <vector>

namespace tally::ui {

/// A row of items with equal stretch. Where the row is too narrow for them, they stand in as few
/// rows as it takes, all with the same width.
class CardLayout : public FlowLayout {
    Q_OBJECT

public:
    explicit CardLayout(int spacing, QWidget *parent = nullptr);

    int heightForWidth(int width) const override;
    void setGeometry(const QRect &rect) override;
    /// All items in one row.
    QSize sizeHint() const override;

private:
    int columns_in(int width) const;
    int width_of_one_row() const;
    QSize largest_item() const;
    /// What each item gets of one row.
    std::vector<int> shares(int width) const;

    int spacing_;
};

} // namespace tally::ui
