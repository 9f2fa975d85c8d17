#pragma once

#include <QString>
#include <QWidget>

class QLabel;
class QPushButton;

namespace tally::ui {

/// One calm line that says why a page is empty, with the step that helps. Hidden until it has
/// something to say.
class PageNote : public QWidget {
    Q_OBJECT

public:
    /// \param after says what the step leads to; may be empty
    PageNote(const QString &step, const QString &after, QWidget *parent = nullptr);

    /// \param offers_step whether there is anything to do
    void say(const QString &text, bool offers_step);

Q_SIGNALS:
    void stepTaken();

private:
    QLabel *text_;
    QPushButton *step_;
    QLabel *after_;
};

} // namespace tally::ui
