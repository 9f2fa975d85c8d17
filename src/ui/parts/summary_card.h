#pragma once

#include <QFrame>
#include <QString>

class QLabel;

namespace tally::ui {

/// One figure with its title under it; an em dash until it has a value.
class SummaryCard : public QFrame {
    Q_OBJECT

public:
    explicit SummaryCard(const QString &title, QWidget *parent = nullptr);

    void set_value(qint64 value);
    void set_text(const QString &text);

private:
    QLabel *value_label_;
    QLabel *title_label_;
};

} // namespace tally::ui
