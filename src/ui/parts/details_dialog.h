#pragma once

#include <QDialog>

class QVBoxLayout;

namespace tally::ui {

/// A dialog that shows what is behind one row of a table: widgets below each other, and at the
/// bottom a button that closes it. It is deleted when it is closed.
class DetailsDialog : public QDialog {
    Q_OBJECT

public:
    /// \param margin on all sides, and \param spacing between the widgets
    DetailsDialog(const QString &title, QSize size, int margin, int spacing, QWidget *parent);

protected:
    void add(QWidget *widget, int stretch = 0);

private:
    QVBoxLayout *layout_;
    int filled_ = 0; ///< widgets above the button
};

} // namespace tally::ui
