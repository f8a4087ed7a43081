#pragma once

#include "views/RuleTableView.h"

/// The table of the token rules: token, value, delete button.
class TokenValidationTableView : public RuleTableView
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TokenValidationTableView)

public:
    explicit TokenValidationTableView(QWidget *parent = nullptr);
};
