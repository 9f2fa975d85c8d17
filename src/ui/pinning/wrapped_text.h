#pragma once

#include <QLabel>

#include <memory>

class QTextDocument;

namespace tally::ui {

/// A label of rich text that wraps wherever it must. A plain label breaks between words only, and
/// would be cut off or push its window's side out for a path or a title without blanks.
class WrappedText : public QLabel {
    Q_OBJECT

public:
    explicit WrappedText(const QString &html, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    std::unique_ptr<QTextDocument> laid_out(int width) const;
};

} // namespace tally::ui
