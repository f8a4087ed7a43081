#pragma once

#include "models/MaskValidationRule.h"
#include "models/RuleTableModel.h"

/// The mask rules of a package: parameter, index, mask.
class MaskValidationModel final : public RuleTableModel<MaskValidationRule>
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MaskValidationModel)

public:
    explicit MaskValidationModel(QObject *parent = nullptr);
    explicit MaskValidationModel(QList<MaskValidationRule> rules, QObject *parent = nullptr);
};
