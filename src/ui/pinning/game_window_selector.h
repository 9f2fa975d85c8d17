#pragma once

#include "platform/host/game_windows.h"

#include <QButtonGroup>
#include <QDialog>
#include <QList>
#include <QString>

class QScrollArea;

namespace tally::ui {

/// Lets the user choose among several windows of the game. The choice is an image path: windows of
/// one image can't be told apart afterwards.
class GameWindowSelector : public QDialog {
    Q_OBJECT

public:
    /// \param current_exe the image path chosen so far; may be empty
    GameWindowSelector(QList<platform::GameWindowInfo> windows, const QString &current_exe,
                       QWidget *parent = nullptr);

    /// Valid once the dialog was accepted.
    const QString &chosen_exe_path() const { return chosen_exe_path_; }

protected:
    void showEvent(QShowEvent *event) override;

private Q_SLOTS:
    void on_ok();

private:
    QWidget *build_rows(const QString &current_exe);
    QWidget *build_buttons();
    void scroll_to_checked();

    QList<platform::GameWindowInfo> windows_;
    QButtonGroup radios_;
    QScrollArea *scroll_;
    QString chosen_exe_path_;
};

} // namespace tally::ui
