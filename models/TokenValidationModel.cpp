#include "models/TokenValidationModel.h"

#include <utility>

TokenValidationModel::TokenValidationModel(QObject *parent)
    : TokenValidationModel({}, parent)
{
}

TokenValidationModel::TokenValidationModel(QList<TokenValidationRule> rules, QObject *parent)
    : RuleTableModel(
        {
            {QT_TR_NOOP("Token"), &TokenValidationRule::token},
            {QT_TR_NOOP("Value"), &TokenValidationRule::value},
        },
        std::move(rules), parent)
{
}
