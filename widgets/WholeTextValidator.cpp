#include "widgets/WholeTextValidator.h"

QValidator::State WholeTextValidator::validate(QString &input, int &position) const
{
    return input.endsWith(QLatin1Char('\n'))
               ? Invalid
               : QRegularExpressionValidator::validate(input, position);
}
