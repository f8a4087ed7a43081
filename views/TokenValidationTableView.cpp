#include "views/TokenValidationTableView.h"

namespace {

using Editor = RuleTableColumn::Editor;

// A token is deliberately a single ASCII letter.
constexpr RuleTableColumn kColumns[] = {
    {Editor::LineEdit, 3.0, 0, false, "[A-Za-z]",
     QT_TRANSLATE_NOOP("TokenValidationTableView", "Please enter a token")},
    {Editor::LineEdit, 7.0, 1, true, ".+",
     QT_TRANSLATE_NOOP("TokenValidationTableView", "Please enter a value")},
    {Editor::DeleteButton, 0.8, 0, false},
};

} // namespace

TokenValidationTableView::TokenValidationTableView(QWidget *parent)
    : RuleTableView({std::begin(kColumns), std::end(kColumns)}, parent)
{
}
