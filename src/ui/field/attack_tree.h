#pragma once

#include "ui/field/field_rows.h"

#include <QHash>
#include <QSet>
#include <QStringList>
#include <QTreeWidget>

#include <vector>

namespace tally::ui {

/// Tours, under them their reports, under those the attacks. An attack's item has its file's name
/// and its id, as a list, under `Qt::UserRole` in the first column.
class AttackTree : public QTreeWidget {
    Q_OBJECT

public:
    enum class Place {
        Kept, ///< what is unfolded, selected and in view stays so; new rows come in by their rule
        Left, ///< the top, with nothing selected
    };

    /// \param export_name of a file of the attacks, without ending
    explicit AttackTree(const QString &export_name, QWidget *parent = nullptr);

    /// Touches nothing if the attacks are those that are shown and the place is kept.
    /// \param rows those of the attacks
    void show_attacks(std::vector<FieldAttack> attacks, std::vector<FieldRow> rows, Place place);

Q_SIGNALS:
    void attackEntered(QTreeWidgetItem *item, int column); ///< by the Enter key

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    /// Rows by their keys.
    struct Position {
        QHash<QString, bool> unfolded; ///< of tours and reports
        QSet<QString> selected;
        QString current;
        QStringList in_view; ///< from the top; empty if that is the first row
        int left = 0;        ///< of the horizontal bar
    };
    Position position() const;
    void go_back(const Position &position);
    void build(const QHash<QString, bool> &unfolded);
    std::vector<std::size_t> attacks_in(QList<QTreeWidgetItem *> items) const;
    std::vector<std::size_t> all_attacks() const;

    std::vector<FieldAttack> attacks_;
    std::vector<FieldRow> rows_; ///< what the items show
};

} // namespace tally::ui
