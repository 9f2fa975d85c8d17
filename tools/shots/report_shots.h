#pragma once

#include <QPixmap>
#include <QString>

#include <utility>
#include <vector>

namespace tally::ui {
class MainWindow;
}

/// The dialogs behind the pages of boss runs, forts and the keep, the settings and the alerts, each
/// with its name.
std::vector<std::pair<QString, QPixmap>> report_shots(tally::ui::MainWindow &window);
