#pragma once

#include <QRegularExpressionValidator>

/// A regular expression whose "$" stands for the very end of the text. To the plain validator a
/// line break may follow there, which comes in by pasting and which nobody sees.
class WholeTextValidator final : public QRegularExpressionValidator
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(WholeTextValidator)

public:
    using QRegularExpressionValidator::QRegularExpressionValidator;

    State validate(QString &input, int &position) const override;
};
