#include "ui/field/copyable_text.h"

#include "ui/parts/plain_label.h"

#include <QAbstractTextDocumentLayout>
#include <QLabel>
#include <QMimeData>
#include <QTextDocument>
#include <QWheelEvent>

#include <cmath>

namespace tally::ui {
namespace {

constexpr Qt::TextInteractionFlags copyable =
    Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard;

constexpr QChar break_here(0x200b);
constexpr QChar no_break_here(0x2060);

QString with_breaks(QString text)
{
    text.replace(u':', QString(u':') + no_break_here);
    return text.replace(u';', QString(u';') + break_here);
}

} // namespace

QLabel *copyable_label(const QString &text, const QString &style)
{
    QLabel *label = plain_label(text, style);
    label->setTextInteractionFlags(copyable);
    label->setIndent(0); // a margin in the style would make one
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
    setPlainText(with_breaks(text));
    connect(document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
            &CopyableText::fit_height);
}

QMimeData *CopyableText::createMimeDataFromSelection() const
{
    auto *copied = new QMimeData;
    copied->setText(textCursor()
                        .selectedText()
                        .replace(QChar::ParagraphSeparator, u'\n')
                        .remove(break_here)
                        .remove(no_break_here));
    return copied;
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
