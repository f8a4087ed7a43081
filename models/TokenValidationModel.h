#pragma once

#include "models/RuleTableModel.h"
#include "models/TokenValidationRule.h"

/// The token rules of a package: token, value. Two rules may carry the same token.
class TokenValidationModel final : public RuleTableModel<TokenValidationRule>
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TokenValidationModel)

public:
    explicit TokenValidationModel(QObject *parent = nullptr);
    explicit TokenValidationModel(QList<TokenValidationRule> rules, QObject *parent = nullptr);
};
