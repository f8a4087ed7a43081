#include "widgets/MessageLabel.h"

#include <QPainter>
#include <QStringList>
#include <QStyle>
#include <QStyleOption>
#include <QTextLayout>

namespace {

/// @p paragraph cut into pieces no wider than @p width in @p font.
QStringList brokenLines(const QString &paragraph, const QFont &font, int width)
{
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    // Paths break behind a slash; measured as one, a backslash does the same.
    QString measured = paragraph;
    measured.replace(QLatin1Char('\\'), QLatin1Char('/'));
    QTextLayout layout(measured, font);
    layout.setTextOption(option);

    QStringList lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        QString piece = paragraph.mid(line.textStart(), line.textLength());
        while (piece.endsWith(QLatin1Char(' '))) {
            piece.chop(1);
        }
        lines.append(piece);
    }
    layout.endLayout();
    return lines;
}

} // namespace

MessageLabel::MessageLabel(QWidget *parent)
    : QLabel(parent)
{
    // Messages carry file names and texts of strangers, which are not markup.
    setTextFormat(Qt::PlainText);
}

MessageLabel::~MessageLabel() = default;

void MessageLabel::setLineWidthLimit(int pixels)
{
    if (pixels != m_lineWidthLimit) {
        m_lineWidthLimit = pixels;
        updateGeometry();
        update();
    }
}

QString MessageLabel::brokenText() const
{
    if (!isTooWide()) {
        return text();
    }
    QStringList lines;
    const QStringList paragraphs = text().split(QLatin1Char('\n'));
    for (const QString &paragraph : paragraphs) {
        lines += brokenLines(paragraph, font(), m_lineWidthLimit);
    }
    return lines.join(QLatin1Char('\n'));
}

QSize MessageLabel::sizeHint() const
{
    const QSize natural = QLabel::sizeHint();
    if (!isTooWide()) {
        return natural;
    }
    const QSize chrome = natural - fontMetrics().size(0, text());
    return fontMetrics().size(0, brokenText()) + chrome;
}

QSize MessageLabel::minimumSizeHint() const
{
    return sizeHint();
}

void MessageLabel::paintEvent(QPaintEvent *event)
{
    if (!isTooWide()) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    drawFrame(&painter);
    QStyleOption option;
    option.initFrom(this);
    style()->drawItemText(&painter, contentsRect(),
                          int(QStyle::visualAlignment(layoutDirection(), alignment())),
                          option.palette, isEnabled(), brokenText(), foregroundRole());
}

bool MessageLabel::isTooWide() const
{
    ensurePolished();
    return m_lineWidthLimit > 0 && fontMetrics().size(0, text()).width() > m_lineWidthLimit;
}
