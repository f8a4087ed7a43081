#pragma once

#include "tests/support/ZelTest.h"

#include <QList>
#include <QString>

#include <memory>

class QAbstractItemModel;
class RuleTableView;

/// What holds for the columns of every rule table. A test of one table derives from it and says
/// what its columns are.
class RuleColumnsTest : public ZelTest
{
    Q_OBJECT

protected:
    enum class Editor { None, SpinBox, LineEdit };

    struct Column
    {
        const char *name;
        /// The text, and how many times its width, that make the column's preferred width.
        const char *measuredText;
        double factor;
        Editor editor;
        /// Of a line edit: what it takes, and what it asks for while it is empty.
        const char *expression;
        const char *prompt;
    };

    /// A table with these columns, of which @p spareColumn takes the width that is left.
    RuleColumnsTest(QList<Column> columns, int spareColumn);

    /// A model with one new rule.
    [[nodiscard]] virtual std::unique_ptr<QAbstractItemModel> createModel() const = 0;
    [[nodiscard]] virtual std::unique_ptr<RuleTableView> createView() const = 0;

private slots:
    void init();
    void cleanup();

    void editors_data();
    void editors();
    void columnsTakeTheirPreferredWidth();
    void spareWidthGoesToOneColumn();
    void narrowViewScrolls();
    void widthsAreThoseOfTheViewsFont();

private:
    [[nodiscard]] bool showWithWidth(int width);
    [[nodiscard]] QList<int> preferredWidths() const;
    [[nodiscard]] QList<int> widths() const;

    const QList<Column> m_columns;
    const int m_spareColumn;
    std::unique_ptr<QAbstractItemModel> m_model;
    std::unique_ptr<RuleTableView> m_view;
};
