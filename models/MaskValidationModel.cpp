#include "models/MaskValidationModel.h"

#include <utility>

MaskValidationModel::MaskValidationModel(QObject *parent)
    : MaskValidationModel({}, parent)
{
}

MaskValidationModel::MaskValidationModel(QList<MaskValidationRule> rules, QObject *parent)
    : RuleTableModel(
        {
            {QT_TR_NOOP("Parameter"), &MaskValidationRule::parameter},
            {QT_TR_NOOP("Index"), &MaskValidationRule::index},
            {QT_TR_NOOP("Mask"), &MaskValidationRule::mask},
        },
        std::move(rules), parent)
{
}
