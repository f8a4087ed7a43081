#include "models/MaskValidationModel.h"
#include "tests/support/ZelTest.h"
#include "tests/views/ApplicationAt.h"
#include "views/ButtonItemDelegate.h"
#include "views/MaskValidationTableView.h"

#include <QHeaderView>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QStyle>

class tst_RuleTableViewAt144Dpi : public ZelTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void styleSheetsAreScaled();
    void minimumHeightHoldsTheScaledFrame();
    void deleteButtonIsScaled();
};

void tst_RuleTableViewAt144Dpi::initTestCase()
{
    QCOMPARE(QWidget().logicalDpiX(), 144);
}

void tst_RuleTableViewAt144Dpi::styleSheetsAreScaled()
{
    const MaskValidationTableView view;
    QCOMPARE(view.styleSheet(),
             QStringLiteral("QTableView { outline: 0; border: 2px solid #dcdcdc; }"
                            "QTableView::item { border-bottom: 2px solid #ebebeb;"
                            " background-color: #f0f8ff; padding-left: 8px; }"
                            "QTableView::item:selected { background: #3899fa; }"));
    QCOMPARE(view.horizontalHeader()->styleSheet(),
             QStringLiteral("QHeaderView { color: #595959; text-align: bottom; }"
                            "QHeaderView::section { background-color: #fafbfd;"
                            " border: 2px solid #ebebeb;"
                            " border-top: none; border-left: none; padding-left: 8px; }"
                            "QHeaderView::down-arrow { image: url(:/SortDown); }"
                            " QHeaderView::up-arrow { image: url(:/SortUp); }"));
}

void tst_RuleTableViewAt144Dpi::minimumHeightHoldsTheScaledFrame()
{
    MaskValidationModel model;
    MaskValidationTableView view;
    view.setModel(&model);
    view.updateMinimumHeight();
    const int frame = qRound(view.style()->pixelMetric(QStyle::PM_DefaultFrameWidth) * 1.5);
    QCOMPARE(view.minimumHeight(), view.verticalHeader()->defaultSectionSize()
                                       + view.horizontalHeader()->height() + 2 * frame);
}

void tst_RuleTableViewAt144Dpi::deleteButtonIsScaled()
{
#ifdef Q_OS_WIN
    QSKIP("on Windows the button takes the resolution of the real screen");
#endif
    ButtonItemDelegate delegate(QString(), QString(), nullptr);
    QStandardItemModel model(1, 1);
    QStyleOptionViewItem option;
    option.rect = QRect(0, 0, 80, 45);
    const auto clicks = [&](QPoint position) {
        const QSignalSpy clicked(&delegate, &ButtonItemDelegate::clicked);
        QMouseEvent release(QEvent::MouseButtonRelease, position, Qt::LeftButton, {}, {});
        delegate.editorEvent(&release, &model, option, model.index(0, 0));
        return clicked.count();
    };
    // The square is 8, 10, 25 x 25.
    QCOMPARE(clicks(QPoint(8, 20)), 0);
    QCOMPARE(clicks(QPoint(9, 20)), 1);
    QCOMPARE(clicks(QPoint(32, 20)), 1);
    QCOMPARE(clicks(QPoint(33, 20)), 0);
    QCOMPARE(clicks(QPoint(20, 10)), 0);
    QCOMPARE(clicks(QPoint(20, 11)), 1);
    QCOMPARE(clicks(QPoint(20, 34)), 1);
    QCOMPARE(clicks(QPoint(20, 35)), 0);

    QImage image(100, 60, QImage::Format_RGB32);
    image.fill(Qt::magenta);
    QPainter painter(&image);
    delegate.paint(&painter, option, model.index(0, 0));
    QCOMPARE(image.pixelColor(40, 42), QColor(QStringLiteral("#f0f8ff")));
    QCOMPARE(image.pixelColor(40, 43), QColor(QStringLiteral("#ebebeb")));
    QCOMPARE(image.pixelColor(40, 44), QColor(QStringLiteral("#ebebeb")));
    QCOMPARE(image.pixelColor(40, 45), QColor(Qt::magenta));
}

ZEL_TEST_MAIN_WITH(ApplicationAt<144>, tst_RuleTableViewAt144Dpi)
#include "tst_RuleTableViewAt144Dpi.moc"
