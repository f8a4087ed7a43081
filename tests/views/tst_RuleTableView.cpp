#include "models/MaskValidationModel.h"
#include "models/TokenValidationModel.h"
#include "tests/support/Activation.h"
#include "tests/support/ZelTest.h"
#include "views/MaskValidationTableView.h"
#include "views/TokenValidationTableView.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QSpinBox>
#include <QWindow>

namespace {

constexpr int kMaskColumn = 2;
constexpr int kDeleteColumn = 3;

/// A table as the window builds it: view, sorting proxy, model.
template <typename Model, typename View>
struct Table
{
    explicit Table(decltype(Model().rules()) rules, Qt::SortOrder order = Qt::AscendingOrder)
        : model(rules)
    {
        proxy.setSourceModel(&model);
        view.setModel(&proxy);
        view.sortByColumn(0, order);
        view.resize(600, 200);
        view.show();
        QApplication::setActiveWindow(&view);
    }

    /// The place on screen of column @p column of rule @p rule.
    [[nodiscard]] QModelIndex cell(int rule, int column) const
    {
        return proxy.mapFromSource(model.index(rule, column));
    }
    /// The rule that is shown in view row @p row.
    [[nodiscard]] int ruleAt(int row) const { return proxy.mapToSource(proxy.index(row, 0)).row(); }
    [[nodiscard]] QModelIndex current() const { return proxy.mapToSource(view.currentIndex()); }

    /// Types into whatever has the focus, as a hand does.
    void type(const char *text)
    {
        QTest::keyClicks(QApplication::focusWidget(), QLatin1String(text));
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    /// The open cell editor, if it has the focus.
    [[nodiscard]] QWidget *editor() const
    {
        QWidget *widget = QApplication::focusWidget();
        return widget != nullptr && widget->parentWidget() == view.viewport() ? widget : nullptr;
    }

    void click(const QModelIndex &index, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers,
                          view.visualRect(index).center());
    }
    /// The middle of the delete button of view row @p row.
    [[nodiscard]] QPoint deleteButton(int row) const
    {
        const QRect cell = view.visualRect(proxy.index(row, proxy.columnCount() - 1));
        return {cell.left() + 5 + qRound(0.275 * cell.height()), cell.center().y()};
    }
    void clickDelete(int row)
    {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, deleteButton(row));
    }
    [[nodiscard]] QList<int> selectedRules() const
    {
        QList<int> rules;
        for (const QModelIndex &index : view.selectionModel()->selectedRows()) {
            rules.append(proxy.mapToSource(index).row());
        }
        std::sort(rules.begin(), rules.end());
        return rules;
    }

    Model model;
    QSortFilterProxyModel proxy;
    View view;
};

using MaskTable = Table<MaskValidationModel, MaskValidationTableView>;
using TokenTable = Table<TokenValidationModel, TokenValidationTableView>;

MaskValidationRule rule(int parameter, const char *mask = "m")
{
    return {static_cast<quint16>(parameter), static_cast<quint16>(parameter + 1), mask};
}

QList<MaskValidationRule> manyRules()
{
    QList<MaskValidationRule> rules;
    for (int parameter = 10; parameter < 500; parameter += 10) {
        rules.append(rule(parameter));
    }
    return rules;
}

} // namespace

/// What both rule tables do alike, on a desktop with real focus and a real clipboard.
class tst_RuleTableView : public ZelTest
{
    Q_OBJECT

private slots:
    void newRuleIsEnteredWithTheKeyboard_data();
    void newRuleIsEnteredWithTheKeyboard();
    void beginEditingEndsTheEditInProgress();
    void beginEditingScrollsBack();
    void beginEditingOfNothingDoesNothing();
    void editedRuleStaysCurrentSelectedAndInSight_data();
    void editedRuleStaysCurrentSelectedAndInSight();
    void escapeLeavesTheRuleAlone();
    void clickElsewhereCommits();
    void tabWalksOverTheFields();
    void backtabWalksBack();
    void tabWithoutAnEditorWalksOverTheFields();
    void deleteCellOpensNoEditor_data();
    void deleteCellOpensNoEditor();
    void emptyMaskKeepsTheEditorOpen();
    void emptyMaskIsDroppedWithTheFocus();
    void tokenEditorTakesOneLetter();
    void strangeTokenCanBeReplaced();
    void untouchedEditorKeepsStrangeBytes();
    void untouchedEditorsReportNoChange();

    void deleteRemovesTheRuleShown_data();
    void deleteRemovesTheRuleShown();
    void deleteIsAnnouncedBeforeTheRuleGoes();
    void deleteIgnoresTheSelection();
    void deleteAllRules();
    void deleteDuringAnEditRemovesTheRuleAimedAt();
    void deleteOfTheEditedRule();
    void clickThatAnEditHasMisledDeletesNothing();
    void pressElsewhereReleaseOnTheButtonDeletesNothing();
    void replacedModelDuringTheClickIsSurvived();

    void headerClickSorts();
    void headerClickOnDeleteColumnKeepsTheSorting();
    void selectionFollowsTheSorting();

    void copiesWholeMaskRows();
    void copiesWholeTokenRows();
    void copies_data();
    void copies();
    void copyOfNothingEmptiesTheClipboard();
    void copyOfSingleCells();
    void copyInAnEditorIsTheEditors();
    void keysWithoutAModelAreSurvived();
};

void tst_RuleTableView::newRuleIsEnteredWithTheKeyboard_data()
{
    QTest::addColumn<Qt::SortOrder>("order");
    QTest::addColumn<int>("sortColumn");

    for (const int column : {0, 1, 2, -1}) {
        const QByteArray name = "sorted by column " + QByteArray::number(column);
        QTest::newRow(name + ", ascending") << Qt::AscendingOrder << column;
        QTest::newRow(name + ", descending") << Qt::DescendingOrder << column;
    }
}

void tst_RuleTableView::newRuleIsEnteredWithTheKeyboard()
{
    QFETCH(Qt::SortOrder, order);
    QFETCH(int, sortColumn);

    MaskTable table(manyRules());
    QVERIFY(activate(table.view));
    table.view.sortByColumn(sortColumn, order);
    const int last = table.model.rowCount();
    QVERIFY(table.model.insertRows(last, 1));
    table.view.beginEditing(table.cell(last, 0));
    QVERIFY(qobject_cast<QSpinBox *>(table.editor()));
    QCOMPARE(table.selectedRules(), QList<int>{last});

    table.type("255");
    table.press(Qt::Key_Tab);
    QVERIFY(qobject_cast<QSpinBox *>(table.editor()));
    QCOMPARE(table.current(), table.model.index(last, 1));
    table.type("77");
    table.press(Qt::Key_Tab);
    auto *maskEditor = qobject_cast<QLineEdit *>(table.editor());
    QVERIFY(maskEditor);
    QCOMPARE(table.current(), table.model.index(last, kMaskColumn));
    QCOMPARE(maskEditor->placeholderText(), QStringLiteral("Please enter a mask"));
    table.type("a*b");
    QCOMPARE(maskEditor->geometry(), table.view.visualRect(table.view.currentIndex()));
    table.press(Qt::Key_Return);

    const MaskValidationRule entered{255, 77, "a*b"};
    QTRY_COMPARE(table.model.rules().at(last), entered);
    QCOMPARE(table.model.rules().mid(0, last), manyRules());
    QCOMPARE(table.current(), table.model.index(last, kMaskColumn));
    QCOMPARE(table.selectedRules(), QList<int>{last});
    QTRY_VERIFY(table.view.hasFocus());
    QVERIFY(
        table.view.viewport()->rect().contains(table.view.visualRect(table.view.currentIndex())));
}

void tst_RuleTableView::beginEditingEndsTheEditInProgress()
{
    MaskTable table({rule(1), rule(2), rule(3)});
    QVERIFY(activate(table.view));
    table.view.beginEditing(table.cell(0, 0));
    table.type("50");
    // Ending that edit moves the rules 2 and 3 up.
    table.view.beginEditing(table.cell(2, 0));
    QCOMPARE(int(table.model.rules().at(0).parameter), 50);
    QCOMPARE(table.current(), table.model.index(2, 0));
    QCOMPARE(table.selectedRules(), QList<int>{2});
    QVERIFY(qobject_cast<QSpinBox *>(table.editor()));
    QCOMPARE(qobject_cast<QSpinBox *>(table.editor())->value(), 3);
}

void tst_RuleTableView::beginEditingScrollsBack()
{
    MaskTable table(manyRules());
    QVERIFY(activate(table.view));
    table.view.setCurrentIndex(table.cell(0, 0));
    table.view.scrollToBottom();
    table.view.beginEditing(table.cell(0, 0));
    QVERIFY(table.editor());
    QVERIFY(table.view.viewport()->rect().contains(table.editor()->geometry()));
}

void tst_RuleTableView::beginEditingOfNothingDoesNothing()
{
    MaskTable table({rule(1)});
    QVERIFY(activate(table.view));
    table.view.clearFocus();
    table.view.beginEditing(QModelIndex());
    QVERIFY(!table.editor());
    QVERIFY(!table.view.hasFocus());
    QCOMPARE(table.selectedRules(), QList<int>());
}

void tst_RuleTableView::editedRuleStaysCurrentSelectedAndInSight_data()
{
    QTest::addColumn<Qt::SortOrder>("order");
    QTest::addColumn<int>("rule");
    QTest::addColumn<QString>("typed");

    QTest::newRow("first to the end") << Qt::AscendingOrder << 0 << QStringLiteral("9999");
    QTest::newRow("last to the start") << Qt::AscendingOrder << 48 << QStringLiteral("1");
    QTest::newRow("descending, to the end") << Qt::DescendingOrder << 48 << QStringLiteral("1");
    QTest::newRow("descending, to the start") << Qt::DescendingOrder << 0 << QStringLiteral("9999");
    QTest::newRow("stays") << Qt::AscendingOrder << 20 << QStringLiteral("211");
}

void tst_RuleTableView::editedRuleStaysCurrentSelectedAndInSight()
{
    QFETCH(Qt::SortOrder, order);
    QFETCH(int, rule);
    QFETCH(QString, typed);

    MaskTable table(manyRules(), order);
    QVERIFY(activate(table.view));
    table.view.scrollTo(table.cell(rule, 0));
    table.click(table.cell(rule, 0));
    table.press(Qt::Key_F2);
    QTest::keyClicks(table.editor(), typed);
    table.press(Qt::Key_Return);

    QTRY_COMPARE(int(table.model.rules().at(rule).parameter), typed.toInt());
    QTRY_VERIFY(!table.editor());
    QCOMPARE(table.current(), table.model.index(rule, 0));
    QCOMPARE(table.selectedRules(), QList<int>{rule});
    QVERIFY(
        table.view.viewport()->rect().contains(table.view.visualRect(table.view.currentIndex())));
}

void tst_RuleTableView::escapeLeavesTheRuleAlone()
{
    MaskTable table({rule(1), rule(2)});
    QVERIFY(activate(table.view));
    table.view.beginEditing(table.cell(1, kMaskColumn));
    table.type("changed");
    table.press(Qt::Key_Escape);
    QVERIFY(!table.editor());
    const QList<MaskValidationRule> unchanged{rule(1), rule(2)};
    QCOMPARE(table.model.rules(), unchanged);
}

void tst_RuleTableView::clickElsewhereCommits()
{
    MaskTable table({rule(1), rule(2)});
    QVERIFY(activate(table.view));
    table.view.beginEditing(table.cell(0, kMaskColumn));
    table.type("typed");
    table.click(table.cell(1, 0));
    QVERIFY(!table.editor());
    QCOMPARE(table.model.rules().at(0).mask, QByteArrayLiteral("typed"));
    QCOMPARE(table.current(), table.model.index(1, 0));
}

void tst_RuleTableView::tabWalksOverTheFields()
{
    MaskTable table({rule(1), rule(2)});
    QVERIFY(activate(table.view));
    table.view.beginEditing(table.cell(0, kMaskColumn));
    table.press(Qt::Key_Tab);
    QCOMPARE(table.current(), table.model.index(1, 0));
    QVERIFY(qobject_cast<QSpinBox *>(table.editor()));
    table.press(Qt::Key_Tab);
    QCOMPARE(table.current(), table.model.index(1, 1));
    table.press(Qt::Key_Tab);
    QCOMPARE(table.current(), table.model.index(1, kMaskColumn));
    table.press(Qt::Key_Tab);
    QCOMPARE(table.current(), table.model.index(0, 0));
    QVERIFY(qobject_cast<QSpinBox *>(table.editor()));
}

void tst_RuleTableView::backtabWalksBack()
{
    MaskTable table({rule(1), rule(2)});
    QVERIFY(activate(table.view));
    table.view.beginEditing(table.cell(1, 0));
    table.press(Qt::Key_Backtab);
    QCOMPARE(table.current(), table.model.index(0, kMaskColumn));
    QVERIFY(qobject_cast<QLineEdit *>(table.editor()));
    table.press(Qt::Key_Backtab);
    table.press(Qt::Key_Backtab);
    QCOMPARE(table.current(), table.model.index(0, 0));
    table.press(Qt::Key_Backtab);
    QCOMPARE(table.current(), table.model.index(1, kMaskColumn));
    QVERIFY(qobject_cast<QLineEdit *>(table.editor()));
}

void tst_RuleTableView::tabWithoutAnEditorWalksOverTheFields()
{
    MaskTable table({rule(1), rule(2)});
    QVERIFY(activate(table.view));
    table.click(table.cell(0, kMaskColumn));
    QTest::keyClick(&table.view, Qt::Key_Tab);
    QCOMPARE(table.current(), table.model.index(1, 0));
    QTest::keyClick(&table.view, Qt::Key_Backtab);
    QCOMPARE(table.current(), table.model.index(0, kMaskColumn));
    table.view.setCurrentIndex(table.cell(0, kDeleteColumn));
    QTest::keyClick(&table.view, Qt::Key_Tab);
    QCOMPARE(table.current(), table.model.index(1, 0));
    table.view.setCurrentIndex(table.cell(0, kDeleteColumn));
    QTest::keyClick(&table.view, Qt::Key_Backtab);
    QCOMPARE(table.current(), table.model.index(0, kMaskColumn));
}

void tst_RuleTableView::deleteCellOpensNoEditor_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("F2") << int(Qt::Key_F2);
    QTest::newRow("letter") << int(Qt::Key_A);
    QTest::newRow("digit") << int(Qt::Key_1);
    QTest::newRow("blank") << int(Qt::Key_Space);
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Delete") << int(Qt::Key_Delete);
}

void tst_RuleTableView::deleteCellOpensNoEditor()
{
    QFETCH(int, key);

    MaskTable table({rule(1), rule(2)});
    QVERIFY(activate(table.view));
    table.view.setFocus();
    table.view.setCurrentIndex(table.cell(0, kDeleteColumn));
    table.press(static_cast<Qt::Key>(key));
    table.view.edit(table.view.currentIndex());
    QVERIFY(!table.editor());
    QCOMPARE(table.model.rowCount(), 2);
    // The table still takes an edit.
    table.view.beginEditing(table.cell(0, kMaskColumn));
    QVERIFY(table.editor());
}

void tst_RuleTableView::emptyMaskKeepsTheEditorOpen()
{
    MaskTable table({rule(1, "old")});
    QVERIFY(activate(table.view));
    table.view.beginEditing(table.cell(0, kMaskColumn));
    table.press(Qt::Key_Backspace);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Tab, Qt::Key_Backtab}) {
        table.press(key);
        QCoreApplication::processEvents();
        QVERIFY(table.editor());
        QCOMPARE(table.current(), table.model.index(0, kMaskColumn));
    }
    table.type("new");
    table.press(Qt::Key_Return);
    QTRY_COMPARE(table.model.rules().at(0).mask, QByteArrayLiteral("new"));
}

void tst_RuleTableView::emptyMaskIsDroppedWithTheFocus()
{
    MaskTable table({rule(1, "old"), rule(2)});
    QVERIFY(activate(table.view));
    table.view.beginEditing(table.cell(0, kMaskColumn));
    table.press(Qt::Key_Backspace);
    table.click(table.cell(1, 0));
    QVERIFY(!table.editor());
    QCOMPARE(table.model.rules().at(0).mask, QByteArrayLiteral("old"));

    table.view.beginEditing(table.cell(0, kMaskColumn));
    table.press(Qt::Key_Backspace);
    table.view.beginEditing(table.cell(1, 0));
    QVERIFY(qobject_cast<QSpinBox *>(table.editor()));
    QCOMPARE(table.model.rules().at(0).mask, QByteArrayLiteral("old"));
}

void tst_RuleTableView::tokenEditorTakesOneLetter()
{
    TokenTable table(QList<TokenValidationRule>{{"A", "1"}});
    QVERIFY(activate(table.view));
    table.view.beginEditing(table.cell(0, 0));
    auto *lineEdit = qobject_cast<QLineEdit *>(table.editor());
    QVERIFY(lineEdit);
    table.press(Qt::Key_Backspace);
    QCOMPARE(lineEdit->placeholderText(), QStringLiteral("Please enter a token"));
    table.type("1_b2c");
    QCOMPARE(lineEdit->text(), QStringLiteral("b"));
    table.press(Qt::Key_Tab);
    lineEdit = qobject_cast<QLineEdit *>(table.editor());
    QVERIFY(lineEdit);
    QCOMPARE(lineEdit->placeholderText(), QStringLiteral("Please enter a value"));
    table.type("any value");
    table.press(Qt::Key_Tab);
    const QList<TokenValidationRule> expected{{"b", "any value"}};
    QCOMPARE(table.model.rules(), expected);
    QCOMPARE(table.current(), table.model.index(0, 0));
}

void tst_RuleTableView::strangeTokenCanBeReplaced()
{
    TokenTable table(QList<TokenValidationRule>{{"LONG", "1"}});
    QVERIFY(activate(table.view));
    table.view.beginEditing(table.cell(0, 0));
    table.press(Qt::Key_Return);
    QCoreApplication::processEvents();
    QVERIFY(table.editor());
    QCOMPARE(table.model.rules().at(0).token, QByteArrayLiteral("LONG"));
    table.press(Qt::Key_A, Qt::ControlModifier);
    table.type("z");
    table.press(Qt::Key_Return);
    QTRY_COMPARE(table.model.rules().at(0).token, QByteArrayLiteral("z"));
}

void tst_RuleTableView::untouchedEditorKeepsStrangeBytes()
{
    const QByteArray bytes("\xff\xfe\x00tail\n\x01", 9);
    MaskTable table({{1, 2, bytes}, {3, 4, "m"}});
    QVERIFY(activate(table.view));
    table.view.beginEditing(table.cell(0, kMaskColumn));
    table.press(Qt::Key_Return);
    QTRY_VERIFY(!table.editor());
    QCOMPARE(table.model.rules().at(0).mask, bytes);
    table.view.beginEditing(table.cell(0, kMaskColumn));
    table.press(Qt::Key_Tab);
    QCOMPARE(table.model.rules().at(0).mask, bytes);
    table.view.beginEditing(table.cell(0, kMaskColumn));
    table.click(table.cell(1, 0));
    QCOMPARE(table.model.rules().at(0).mask, bytes);
}

void tst_RuleTableView::untouchedEditorsReportNoChange()
{
    MaskTable table({rule(1), rule(2)});
    QVERIFY(activate(table.view));
    const QSignalSpy changed(&table.model, &QAbstractItemModel::dataChanged);
    table.view.beginEditing(table.cell(0, 0));
    for (int step = 0; step < 6; ++step) {
        QVERIFY(table.editor());
        table.press(Qt::Key_Tab);
    }
    QCOMPARE(table.current(), table.model.index(0, 0));
    QCOMPARE(changed.count(), 0);
}

void tst_RuleTableView::deleteRemovesTheRuleShown_data()
{
    QTest::addColumn<Qt::SortOrder>("order");
    QTest::addColumn<int>("row");
    QTest::addColumn<QList<int>>("left");

    QTest::newRow("ascending, first") << Qt::AscendingOrder << 0 << QList<int>{30, 20};
    QTest::newRow("ascending, middle") << Qt::AscendingOrder << 1 << QList<int>{30, 10};
    QTest::newRow("ascending, last") << Qt::AscendingOrder << 2 << QList<int>{10, 20};
    QTest::newRow("descending, first") << Qt::DescendingOrder << 0 << QList<int>{10, 20};
    QTest::newRow("descending, middle") << Qt::DescendingOrder << 1 << QList<int>{30, 10};
    QTest::newRow("descending, last") << Qt::DescendingOrder << 2 << QList<int>{30, 20};
}

void tst_RuleTableView::deleteRemovesTheRuleShown()
{
    QFETCH(Qt::SortOrder, order);
    QFETCH(int, row);
    QFETCH(QList<int>, left);

    MaskTable table({rule(30), rule(10), rule(20)}, order);
    QVERIFY(activate(table.view));
    table.clickDelete(row);
    QCOMPARE(table.model.rowCount(), 2);
    QCOMPARE(table.model.rules(), (QList<MaskValidationRule>{rule(left[0]), rule(left[1])}));
}

void tst_RuleTableView::deleteIsAnnouncedBeforeTheRuleGoes()
{
    TokenTable table({{"A", "1"}, {"B", "2"}}, Qt::DescendingOrder);
    QVERIFY(activate(table.view));
    QList<QPair<int, int>> announced;
    connect(&table.view, &TokenValidationTableView::onDeleteMaskValidationRule, this, [&](int row) {
        announced.append({row, table.model.rowCount()});
    });
    table.clickDelete(1);
    const QList<QPair<int, int>> expected{{1, 2}};
    QCOMPARE(announced, expected);
    const QList<TokenValidationRule> left{{"B", "2"}};
    QCOMPARE(table.model.rules(), left);
}

void tst_RuleTableView::deleteIgnoresTheSelection()
{
    MaskTable table({rule(1), rule(2), rule(3), rule(4)});
    QVERIFY(activate(table.view));
    table.click(table.cell(0, 0));
    table.click(table.cell(2, 0), Qt::ShiftModifier);
    QCOMPARE(table.selectedRules(), (QList<int>{0, 1, 2}));
    table.clickDelete(1);
    const QList<MaskValidationRule> left{rule(1), rule(3), rule(4)};
    QCOMPARE(table.model.rules(), left);
}

void tst_RuleTableView::deleteAllRules()
{
    MaskTable table({rule(1), rule(2), rule(3)}, Qt::DescendingOrder);
    QVERIFY(activate(table.view));
    table.clickDelete(0);
    table.clickDelete(0);
    table.clickDelete(0);
    QCOMPARE(table.model.rowCount(), 0);
    QTest::keyClick(&table.view, Qt::Key_Tab);
    QVERIFY(table.model.insertRows(0, 1));
    table.view.beginEditing(table.cell(0, 0));
    QVERIFY(table.editor());
}

void tst_RuleTableView::deleteDuringAnEditRemovesTheRuleAimedAt()
{
    MaskTable table({rule(10), rule(20), rule(30)});
    QVERIFY(activate(table.view));
    table.view.beginEditing(table.cell(0, 0));
    table.type("25");
    // The edited rule moves to the middle: the last row is not concerned.
    table.clickDelete(2);
    QVERIFY(!table.editor());
    QCOMPARE(table.model.rowCount(), 2);
    QCOMPARE(int(table.model.rules().at(0).parameter), 25);
    QCOMPARE(int(table.model.rules().at(1).parameter), 20);
}

void tst_RuleTableView::deleteOfTheEditedRule()
{
    MaskTable table({rule(10), rule(20)});
    QVERIFY(activate(table.view));
    table.view.beginEditing(table.cell(0, kMaskColumn));
    table.type("typed");
    table.clickDelete(0);
    QVERIFY(!table.editor());
    QCOMPARE(table.model.rules(), QList<MaskValidationRule>{rule(20)});

    table.view.beginEditing(table.cell(0, kMaskColumn));
    QVERIFY(table.proxy.removeRows(0, 1));
    QTRY_VERIFY(!table.editor());
    QCOMPARE(table.model.rowCount(), 0);
    QVERIFY(table.model.insertRows(0, 1));
    table.view.beginEditing(table.cell(0, 0));
    QVERIFY(table.editor());
}

void tst_RuleTableView::clickThatAnEditHasMisledDeletesNothing()
{
    MaskTable table({rule(10), rule(20), rule(30)});
    QVERIFY(activate(table.view));
    table.view.beginEditing(table.cell(0, 0));
    table.type("35");
    // Aimed at 20, which the ending of the edit moves up: 30 is under the pointer.
    table.clickDelete(1);
    QVERIFY(!table.editor());
    QCOMPARE(table.model.rowCount(), 3);
    QCOMPARE(int(table.model.rules().at(0).parameter), 35);

    table.clickDelete(1);
    QCOMPARE(table.model.rowCount(), 2);
    QCOMPARE(int(table.model.rules().at(1).parameter), 20);

    // An edit that has ended earlier misleads no click.
    table.view.beginEditing(table.cell(1, 0));
    table.type("99");
    table.press(Qt::Key_Return);
    QTRY_COMPARE(int(table.model.rules().at(1).parameter), 99);
    QCoreApplication::processEvents();
    table.clickDelete(0);
    QCOMPARE(table.model.rowCount(), 1);
    QCOMPARE(int(table.model.rules().at(0).parameter), 99);
}

void tst_RuleTableView::pressElsewhereReleaseOnTheButtonDeletesNothing()
{
    MaskTable table({rule(1), rule(2)});
    QVERIFY(activate(table.view));
    QTest::mousePress(table.view.viewport(), Qt::LeftButton, {},
                      table.view.visualRect(table.cell(0, 0)).center());
    QTest::mouseRelease(table.view.viewport(), Qt::LeftButton, {}, table.deleteButton(1));
    QCOMPARE(table.model.rowCount(), 2);
    QTest::mousePress(table.view.viewport(), Qt::LeftButton, {}, table.deleteButton(1));
    QTest::mouseRelease(table.view.viewport(), Qt::LeftButton, {},
                        table.view.visualRect(table.cell(0, 0)).center());
    QCOMPARE(table.model.rowCount(), 2);
}

void tst_RuleTableView::replacedModelDuringTheClickIsSurvived()
{
    MaskTable table({rule(1), rule(2)});
    QVERIFY(activate(table.view));
    connect(&table.view, &MaskValidationTableView::onDeleteMaskValidationRule, this,
            [&] { table.model.setRules({}); });
    table.clickDelete(1);
    QCOMPARE(table.model.rowCount(), 0);
}

void tst_RuleTableView::headerClickSorts()
{
    MaskTable table({{1, 30, "c"}, {2, 10, "b"}, {3, 20, "a"}});
    QVERIFY(activate(table.view));
    QHeaderView *header = table.view.horizontalHeader();
    const auto click = [header](int column) {
        const QPoint position(header->sectionViewportPosition(column) + 8, header->height() / 2);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, position);
    };
    QCOMPARE(table.ruleAt(0), 0);
    click(1);
    QCOMPARE(table.ruleAt(0), 1);
    click(1);
    QCOMPARE(table.ruleAt(0), 0);
    click(kMaskColumn);
    QCOMPARE(table.ruleAt(0), 2);
    QCOMPARE(header->sortIndicatorSection(), kMaskColumn);
}

void tst_RuleTableView::headerClickOnDeleteColumnKeepsTheSorting()
{
    MaskTable table({rule(1), rule(3), rule(2)});
    QVERIFY(activate(table.view));
    QHeaderView *header = table.view.horizontalHeader();
    const auto click = [header] {
        const QPoint position(header->sectionViewportPosition(kDeleteColumn) + 8,
                              header->height() / 2);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, position);
    };
    click();
    QCOMPARE(header->sortIndicatorSection(), 0);
    QCOMPARE(header->sortIndicatorOrder(), Qt::AscendingOrder);
    QCOMPARE(table.ruleAt(2), 1);
    table.view.sortByColumn(1, Qt::DescendingOrder);
    click();
    click();
    QCOMPARE(header->sortIndicatorSection(), 1);
    QCOMPARE(header->sortIndicatorOrder(), Qt::DescendingOrder);
    QCOMPARE(table.ruleAt(0), 1);
    QCOMPARE(table.proxy.sortColumn(), 1);
}

void tst_RuleTableView::selectionFollowsTheSorting()
{
    MaskTable table({rule(1), rule(2), rule(3)});
    QVERIFY(activate(table.view));
    table.click(table.cell(0, 1));
    table.view.sortByColumn(0, Qt::DescendingOrder);
    QCOMPARE(table.current(), table.model.index(0, 1));
    QCOMPARE(table.selectedRules(), QList<int>{0});
    QCOMPARE(table.view.currentIndex().row(), 2);
}

void tst_RuleTableView::copiesWholeMaskRows()
{
    MaskTable table({{7, 65535, " A*\t b\n"}, {1598, 2, "****"}, {9, 9, "unselected"}});
    QVERIFY(activate(table.view));
    table.click(table.cell(1, 0));
    table.click(table.cell(0, 2), Qt::ControlModifier);
    table.press(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("7\t65535\tA* b\n1598\t2\t****\n"));
}

void tst_RuleTableView::copiesWholeTokenRows()
{
    TokenTable table({{"A", "1"}, {"B", "<b>2</b>"}});
    QVERIFY(activate(table.view));
    table.view.setFocus();
    table.press(Qt::Key_A, Qt::ControlModifier);
    table.press(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("A\t1\nB\t<b>2</b>\n"));
}

void tst_RuleTableView::copies_data()
{
    QTest::addColumn<Qt::SortOrder>("order");
    QTest::addColumn<QList<int>>("rows");
    QTest::addColumn<QString>("text");

    const Qt::SortOrder up = Qt::AscendingOrder;
    QTest::newRow("first row") << up << QList<int>{0} << QStringLiteral("1\t2\tm\n");
    QTest::newRow("a later row") << up << QList<int>{1} << QStringLiteral("2\t3\tm\n");
    QTest::newRow("rows with a gap")
        << up << QList<int>{0, 2} << QStringLiteral("1\t2\tm\n3\t4\tm\n");
    QTest::newRow("as sorted") << Qt::DescendingOrder << QList<int>{2, 1, 0}
                               << QStringLiteral("3\t4\tm\n2\t3\tm\n1\t2\tm\n");
}

void tst_RuleTableView::copies()
{
    QFETCH(Qt::SortOrder, order);
    QFETCH(QList<int>, rows);
    QFETCH(QString, text);

    MaskTable table({rule(1), rule(2), rule(3)}, order);
    QVERIFY(activate(table.view));
    table.view.setFocus();
    for (const int row : rows) {
        table.view.selectionModel()->select(
            table.proxy.index(row, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    table.press(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), text);
}

void tst_RuleTableView::copyOfNothingEmptiesTheClipboard()
{
    MaskTable table({rule(1)});
    QVERIFY(activate(table.view));
    QApplication::clipboard()->setText(QStringLiteral("before"));
    table.view.setFocus();
    table.view.clearSelection();
    table.press(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), QString());
}

void tst_RuleTableView::copyOfSingleCells()
{
    MaskTable table({rule(1, "a"), rule(2, "b"), rule(3, "c")});
    QVERIFY(activate(table.view));
    table.view.setFocus();
    QItemSelectionModel *selection = table.view.selectionModel();
    const auto copied = [&](std::initializer_list<QPair<int, int>> cells) {
        selection->clear();
        for (const auto &[row, column] : cells) {
            selection->select(table.proxy.index(row, column), QItemSelectionModel::Select);
        }
        table.press(Qt::Key_C, Qt::ControlModifier);
        return QApplication::clipboard()->text();
    };
    QCOMPARE(copied({{0, 2}}), QStringLiteral("a\n"));
    QCOMPARE(copied({{0, kDeleteColumn}}), QString());
    // Counting takes whole rows for granted: the last cell joins the line of the row before it.
    QCOMPARE(copied({{0, 0}, {1, 0}}), QStringLiteral("1\t2\n"));
    QCOMPARE(copied({{0, 2}, {1, 0}, {1, 2}}), QStringLiteral("a\n2\tb\n"));
    // And each fourth cell is left out, wherever it stands.
    QCOMPARE(copied({{0, 0}, {0, 1}, {1, 0}, {1, 1}, {2, 0}}), QStringLiteral("1\t2\n2\t3\n"));
}

void tst_RuleTableView::copyInAnEditorIsTheEditors()
{
    MaskTable table({rule(1, "whole"), rule(2)});
    QVERIFY(activate(table.view));
    table.view.beginEditing(table.cell(0, kMaskColumn));
    table.press(Qt::Key_A, Qt::ControlModifier);
    table.press(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("whole"));
}

void tst_RuleTableView::keysWithoutAModelAreSurvived()
{
    MaskValidationTableView view;
    view.resize(300, 100);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_F2, Qt::Key_Down}) {
        QTest::keyClick(&view, key);
    }
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
    QVERIFY(!view.currentIndex().isValid());
}

ZEL_TEST_MAIN(tst_RuleTableView)
#include "tst_RuleTableView.moc"
