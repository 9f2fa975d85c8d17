#pragma once

#include <QTextEdit>

class QLabel;
class QMimeData;

namespace tally::ui {

/// A label whose text can be selected and copied; without a parent.
QLabel *copyable_label(const QString &text, const QString &style);

/// A longer text that can be selected and copied, as high as it needs to be. It wraps behind
/// semicolons and wherever it must: a label breaks between words only, and equipment comes as one.
class CopyableText : public QTextEdit {
    Q_OBJECT

public:
    /// \param style declarations of a style sheet
    CopyableText(const QString &text, const QString &style, QWidget *parent = nullptr);

protected:
    QMimeData *createMimeDataFromSelection() const override;
    void resizeEvent(QResizeEvent *event) override;
    /// What it stands in is what scrolls.
    void wheelEvent(QWheelEvent *event) override;

private:
    void fit_height();
};

} // namespace tally::ui
