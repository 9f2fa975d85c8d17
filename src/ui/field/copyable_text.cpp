#include "ui/field/copyable_text.h"

#include "ui/parts/plain_label.h"

#include <QAbstractTextDocumentLayout>
#include <QLabel>
#include <QTextDocument>
#include <QWheelEvent>

#include <cmath>

namespace tally::ui {
namespace {

constexpr Qt::TextInteractionFlags copyable =
    Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard;

} // namespace

QLabel *copyable_label(const QString &text, const QString &style)
{
    QLabel *label = plain_label(text, style);
    label->setTextInteractionFlags(copyable);
    return label;
}

CopyableText::CopyableText(const QString &text, const QString &style, QWidget *parent)
    : QTextEdit(parent)
{
    setStyleSheet(QStringLiteral("QTextEdit { background: transparent; border: none; "
                                 "padding: 0; %1 } "
                                 "QTextEdit:focus { background: rgba(88, 101, 242, 0.12); }")
                      .arg(style));
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setTabChangesFocus(true);
    setReadOnly(true);
    setTextInteractionFlags(copyable);
    document()->setDocumentMargin(0);
    setPlainText(text);
    connect(document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
            &CopyableText::fit_height);
}

void CopyableText::resizeEvent(QResizeEvent *event)
{
    QTextEdit::resizeEvent(event);
    fit_height();
}

void CopyableText::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

void CopyableText::fit_height()
{
    setFixedHeight(static_cast<int>(std::ceil(document()->size().height())));
}

} // namespace tally::ui
