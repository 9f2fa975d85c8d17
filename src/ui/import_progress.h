#pragma once

#include <QProgressDialog>

namespace tally::ui {

/// How far an import by hand has come. It stands until it is closed, whatever it was told.
class ImportProgress : public QProgressDialog {
    Q_OBJECT

public:
    explicit ImportProgress(QWidget *parent);

    void show_progress(int scanned, int total, int imported);
};

} // namespace tally::ui
