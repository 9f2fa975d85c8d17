#pragma once

#include <QWidget>

#include <initializer_list>

class QComboBox;
class QPushButton;

namespace tally::ui {

/// The row above a page in which its reports are chosen: groups of controls, which a narrow window
/// shows below each other, and at the right end the button that asks the store anew.
class FilterRow : public QWidget {
    Q_OBJECT

public:
    explicit FilterRow(QWidget *parent = nullptr);

    /// Controls that stay together.
    void add_group(std::initializer_list<QWidget *> controls);
    /// A group of its own, with a label before it.
    QComboBox *add_choice(const QString &name);

Q_SIGNALS:
    void refreshAsked();

private:
    QWidget *groups_;
};

} // namespace tally::ui
