#include "ui/pinning/wrapped_text.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QTextDocument>
#include <QTextOption>

#include <cmath>

namespace tally::ui {

namespace {

constexpr int narrowest = 120;
constexpr int comfortable = 440;

} // namespace

WrappedText::WrappedText(const QString &html, QWidget *parent) : QLabel(html, parent)
{
    setTextFormat(Qt::RichText);
    setWordWrap(true);
}

QSize WrappedText::sizeHint() const
{
    return {comfortable, heightForWidth(comfortable)};
}

QSize WrappedText::minimumSizeHint() const
{
    return {narrowest, fontMetrics().height()};
}

int WrappedText::heightForWidth(int width) const
{
    return static_cast<int>(std::ceil(laid_out(width)->size().height()));
}

void WrappedText::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette = palette();
    context.palette.setColor(QPalette::Text, palette().color(QPalette::WindowText));
    laid_out(width())->documentLayout()->draw(&painter, context);
}

std::unique_ptr<QTextDocument> WrappedText::laid_out(int width) const
{
    auto document = std::make_unique<QTextDocument>();
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document->setDefaultTextOption(option);
    document->setDocumentMargin(0);
    document->setDefaultFont(font());
    document->setHtml(text());
    document->setTextWidth(width);
    return document;
}

} // namespace tally::ui
