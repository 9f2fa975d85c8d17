#pragma once

#include <QFrame>
#include <QMargins>
#include <QString>

class QLabel;

namespace tally::ui {

/// The frame around the rows of a chain, with a headline.
class ChainGroupWidget : public QFrame {
    Q_OBJECT

public:
    static constexpr int spacing = 4; ///< pixels between headline and rows

    explicit ChainGroupWidget(QWidget *parent);

    /// \param date for the tool tip
    void show_chain(const QString &head, const QString &date);

    /// From the frame's outer edge to headline and rows.
    QMargins insets();
    int head_height() const;

private:
    QLabel *head_;
};

} // namespace tally::ui
