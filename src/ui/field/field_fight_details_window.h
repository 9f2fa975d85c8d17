#pragma once

#include "queries/asker.h"
#include "ui/parts/surroundings.h"

#include <QDialog>
#include <QString>
#include <QVariantMap>

class QPushButton;

namespace tally::ui {

struct AttackDetails;

/// One attack in full: how it ended, both armies, and what it cost them. Modal; deletes itself when
/// it is closed.
class FieldFightDetailsWindow : public QDialog {
    Q_OBJECT

public:
    /// \param row all columns of the attack
    FieldFightDetailsWindow(const QVariantMap &row, const Surroundings &around,
                            QWidget *parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private Q_SLOTS:
    void toggle_favorite();

private:
    QWidget *new_head(const AttackDetails &details);
    void ask_for_favorite();
    void end_toggling();
    void show_favorite(bool is_favorite);

    Surroundings around_;
    QString favorite_key_; ///< empty if the store has no name for the mail
    QPushButton *star_button_ = nullptr;
    bool was_resized_ = false; ///< by the user
    bool is_toggling_ = false;
    queries::Asker favorite_;
};

} // namespace tally::ui
