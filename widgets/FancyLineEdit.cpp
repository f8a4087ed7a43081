#include "widgets/FancyLineEdit.h"

#include <QEvent>
#include <QFontMetrics>
#include <QLabel>
#include <QPalette>
#include <QStyle>
#include <QStyleOptionFrame>

namespace {

int textAdvance(const QLabel *label)
{
    return label->fontMetrics().horizontalAdvance(label->text());
}

} // namespace

FancyLineEdit::FancyLineEdit(QWidget *parent)
    : QLineEdit(parent)
    , m_scale(logicalDpiX())
    , m_leadingLabel(createLabel(QStringLiteral("leadingLabel")))
    , m_trailingLabel(createLabel(QStringLiteral("trailingLabel")))
{
    updateTextMargins();
}

QString FancyLineEdit::leadingText() const
{
    return m_leadingLabel->text();
}

void FancyLineEdit::setLeadingText(const QString &text)
{
    setLabelText(m_leadingLabel, text);
}

QString FancyLineEdit::trailingText() const
{
    return m_trailingLabel->text();
}

void FancyLineEdit::setTrailingText(const QString &text)
{
    setLabelText(m_trailingLabel, text);
}

void FancyLineEdit::changeEvent(QEvent *event)
{
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        updateTextMargins();
        placeLabels();
    }
}

void FancyLineEdit::resizeEvent(QResizeEvent *event)
{
    QLineEdit::resizeEvent(event);
    placeLabels();
}

QLabel *FancyLineEdit::createLabel(const QString &objectName)
{
    auto *const label = new QLabel(this);
    label->setObjectName(objectName);
    label->setTextFormat(Qt::PlainText);
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    QPalette grey = label->palette();
    grey.setColor(QPalette::Text, Qt::darkGray);
    grey.setColor(QPalette::WindowText, Qt::darkGray);
    label->setPalette(grey);
    return label;
}

void FancyLineEdit::setLabelText(QLabel *label, const QString &text)
{
    label->setText(text);
    updateTextMargins();
    placeLabels();
}

void FancyLineEdit::updateTextMargins()
{
    const int vertical = m_scale.px(2);
    const QMargins margins(textAdvance(m_leadingLabel) + m_scale.px(1), vertical,
                           textAdvance(m_trailingLabel) + m_scale.px(2), vertical);
    if (margins != textMargins()) {
        setTextMargins(margins);
    }
}

void FancyLineEdit::placeLabels()
{
    QStyleOptionFrame option;
    initStyleOption(&option);
    // Where the field centres its own text, so that all three texts stand on one base line.
    const QRect contents = style()->subElementRect(QStyle::SE_LineEditContents, &option, this);
    m_leadingLabel->setGeometry(m_scale.px(2), contents.top(), textAdvance(m_leadingLabel),
                                contents.height());
    const int trailingWidth = textAdvance(m_trailingLabel);
    m_trailingLabel->setGeometry(width() - m_scale.px(3) - trailingWidth, contents.top(),
                                 trailingWidth, contents.height());
}
