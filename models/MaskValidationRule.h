#pragma once

#include <QByteArray>
#include <QtGlobal>

/// A rule that the value of a drive parameter must match a mask.
struct MaskValidationRule
{
    quint16 parameter = 0; ///< Number of the drive parameter.
    quint16 index = 0;     ///< Index within the parameter.
    /// UTF-8. An asterisk matches any one character of the parameter's value; every other character
    /// and the length must match exactly.
    QByteArray mask;

    friend bool operator==(const MaskValidationRule &left, const MaskValidationRule &right)
    {
        return left.parameter == right.parameter && left.index == right.index
               && left.mask == right.mask;
    }
    friend bool operator!=(const MaskValidationRule &left, const MaskValidationRule &right)
    {
        return !(left == right);
    }
};

Q_DECLARE_TYPEINFO(MaskValidationRule, Q_MOVABLE_TYPE);
