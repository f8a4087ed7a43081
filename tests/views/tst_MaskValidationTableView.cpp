#include "views/MaskValidationTableView.h"

#include "models/MaskValidationModel.h"
#include "tests/views/ApplicationAt.h"
#include "tests/views/RuleColumnsTest.h"

class tst_MaskValidationTableView final : public RuleColumnsTest
{
    Q_OBJECT

public:
    tst_MaskValidationTableView()
        : RuleColumnsTest({{"parameter", "Parameter", 1.6, Editor::SpinBox, "", ""},
                           {"index", "Index", 1.6, Editor::SpinBox, "", ""},
                           {"mask", "Mask", 3.0, Editor::LineEdit, ".+", "Please enter a mask"},
                           {"delete button", "Index", 0.8, Editor::None, "", ""}},
                          2)
    {
    }

private:
    [[nodiscard]] std::unique_ptr<QAbstractItemModel> createModel() const override
    {
        return std::make_unique<MaskValidationModel>(
            QList<MaskValidationRule>{MaskValidationRule()});
    }
    [[nodiscard]] std::unique_ptr<RuleTableView> createView() const override
    {
        return std::make_unique<MaskValidationTableView>();
    }
};

ZEL_TEST_MAIN_WITH(ApplicationAt<96>, tst_MaskValidationTableView)
#include "tst_MaskValidationTableView.moc"
