#pragma once

#include "views/RuleTableView.h"

/// The table of the mask rules: parameter, index, mask, delete button.
class MaskValidationTableView : public RuleTableView
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MaskValidationTableView)

public:
    explicit MaskValidationTableView(QWidget *parent = nullptr);
};
