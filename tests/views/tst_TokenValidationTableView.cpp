#include "views/TokenValidationTableView.h"

#include "models/TokenValidationModel.h"
#include "tests/views/ApplicationAt.h"
#include "tests/views/RuleColumnsTest.h"

class tst_TokenValidationTableView final : public RuleColumnsTest
{
    Q_OBJECT

public:
    tst_TokenValidationTableView()
        : RuleColumnsTest(
            {{"token", "Token", 3.0, Editor::LineEdit, "[A-Za-z]", "Please enter a token"},
             {"value", "Value", 7.0, Editor::LineEdit, ".+", "Please enter a value"},
             {"delete button", "Token", 0.8, Editor::None, "", ""}},
            1)
    {
    }

private:
    [[nodiscard]] std::unique_ptr<QAbstractItemModel> createModel() const override
    {
        return std::make_unique<TokenValidationModel>(
            QList<TokenValidationRule>{TokenValidationRule()});
    }
    [[nodiscard]] std::unique_ptr<RuleTableView> createView() const override
    {
        return std::make_unique<TokenValidationTableView>();
    }
};

ZEL_TEST_MAIN_WITH(ApplicationAt<96>, tst_TokenValidationTableView)
#include "tst_TokenValidationTableView.moc"
