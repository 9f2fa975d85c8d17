#pragma once

#include "host/game_windows.h"

#include <QButtonGroup>
#include <QDialog>
#include <QList>
#include <QString>

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

private Q_SLOTS:
    void on_ok();

private:
    QWidget *build_rows(const QString &current_exe);
    QWidget *build_buttons();

    QList<platform::GameWindowInfo> windows_;
    QButtonGroup radios_;
    QString chosen_exe_path_;
};

} // namespace tally::ui
