#pragma once

#include <QByteArray>
#include <QtGlobal>

/// A rule that a named token of the drive must have a given value.
struct TokenValidationRule
{
    QByteArray token; ///< Token name, UTF-8.
    QByteArray value; ///< The value that the token must have, UTF-8.

    friend bool operator==(const TokenValidationRule &left, const TokenValidationRule &right)
    {
        return left.token == right.token && left.value == right.value;
    }
    friend bool operator!=(const TokenValidationRule &left, const TokenValidationRule &right)
    {
        return !(left == right);
    }
};

Q_DECLARE_TYPEINFO(TokenValidationRule, Q_MOVABLE_TYPE);
