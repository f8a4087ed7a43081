#include "widgets/ErrorMark.h"

#include "common/Scale.h"

#include <QColor>
#include <QWidget>

namespace {

constexpr int kBlurRadius = 7;

ErrorMark *markOf(const QWidget *field)
{
    return qobject_cast<ErrorMark *>(field->graphicsEffect());
}

} // namespace

ErrorMark::ErrorMark(QWidget *field)
    : QGraphicsDropShadowEffect(field)
{
    setColor(QColor(247, 60, 9, 255));
    setOffset(0, 0);
    setBlurRadius(Scale(field->logicalDpiX()).px(kBlurRadius));
    setEnabled(false);
    field->setGraphicsEffect(this);
}

void ErrorMark::setMarked(QWidget *field, bool marked)
{
    if (ErrorMark *const mark = markOf(field)) {
        mark->setEnabled(marked);
    }
}

bool ErrorMark::isMarked(const QWidget *field)
{
    const ErrorMark *const mark = markOf(field);
    return mark != nullptr && mark->isEnabled();
}
