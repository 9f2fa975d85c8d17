#pragma once

#include "settings/setting.h"
#include "ui/field/tree_columns.h"

#include <QObject>
#include <QTimer>

class QHeaderView;

namespace tally {
class Settings;
}

namespace tally::ui {

/// Keeps the widths and the order of a table's columns between starts.
class KeptColumns : public QObject {
    Q_OBJECT

public:
    /// Arranges the columns as they were left, or else from left to right in these widths.
    /// \param header its parent; it has as many sections, of which the last one stretches
    /// \param settings outlives the header
    KeptColumns(QHeaderView *header, Settings &settings, const Setting<QString> &setting,
                std::vector<int> widths);
    ~KeptColumns() override;

private:
    void arrange();
    void note_width(int column, int width);
    void note_order();
    void save();

    QHeaderView *header_;
    Settings &settings_;
    const Setting<QString> setting_;
    ColumnArrangement arrangement_;
    QTimer save_; ///< runs while something is not stored yet
};

} // namespace tally::ui
