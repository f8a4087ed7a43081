#include "views/MaskValidationTableView.h"

namespace {

using Editor = RuleTableColumn::Editor;

constexpr RuleTableColumn kColumns[] = {
    {Editor::SpinBox, 1.6, 0, false},
    {Editor::SpinBox, 1.6, 1, false},
    {Editor::LineEdit, 3.0, 2, true, ".+",
     QT_TRANSLATE_NOOP("MaskValidationTableView", "Please enter a mask")},
    {Editor::DeleteButton, 0.8, 1, false},
};

} // namespace

MaskValidationTableView::MaskValidationTableView(QWidget *parent)
    : RuleTableView({std::begin(kColumns), std::end(kColumns)}, parent)
{
}
