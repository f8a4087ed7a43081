#include "views/ButtonItemDelegate.h"

#include "tests/support/ZelTest.h"
#include "tests/views/ApplicationAt.h"

#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QSignalSpy>
#include <QStandardItemModel>

#include <memory>
#include <utility>

namespace {

const QColor kRow(QStringLiteral("#f0f8ff"));
const QColor kSelectedRow(QStringLiteral("#3899fa"));
const QColor kEdge(QStringLiteral("#ebebeb"));
const QColor kInactiveIcon(Qt::darkGreen);
const QColor kActiveIcon(Qt::red);

/// A cell that is 30 pixels high: at 96 dots per inch its button is the square 105, 57, 17 x 17.
const QRect kCell(100, 50, 60, 30);

} // namespace

class tst_ButtonItemDelegate : public ZelTest
{
    Q_OBJECT

private slots:
    void initTestCase();

    void releaseInsideClicks_data();
    void releaseInsideClicks();
    void onlyTheReleaseCounts_data();
    void onlyTheReleaseCounts();
    void otherButtonsClickToo();
    void squareFollowsTheCell_data();
    void squareFollowsTheCell();
    void tellsTheRow();
    void handsTheEventOn();
    void survivesTheRemovalOfItsRow();
    void hasNoEditor();

    void paintsTheRowColor_data();
    void paintsTheRowColor();
    void alwaysPaintsTheInactiveIcon_data();
    void alwaysPaintsTheInactiveIcon();
    void paintsTheIconInTheSquare();
    void paintsNoText();
    void leavesThePainterAsItWas();
    void scalesTheIconWithTheCell();
    void missingIconsAreSurvived();

private:
    [[nodiscard]] QString iconPath(const char *name) const;
    bool send(QEvent::Type type, QPoint position, const QRect &cell = kCell,
              Qt::MouseButton button = Qt::LeftButton);
    [[nodiscard]] QImage painted(QStyle::State state = QStyle::State_Enabled,
                                 const QRect &cell = kCell) const;

    QStandardItemModel m_model{4, 1};
    std::unique_ptr<ButtonItemDelegate> m_delegate;
};

void tst_ButtonItemDelegate::initTestCase()
{
    QCOMPARE(m_model.rowCount(), 4);
    for (const auto &[name, color] :
         {std::pair{"inactive", kInactiveIcon}, std::pair{"active", kActiveIcon}}) {
        QImage icon(64, 64, QImage::Format_RGB32);
        icon.fill(color);
        QVERIFY(icon.save(iconPath(name)));
    }
    m_delegate =
        std::make_unique<ButtonItemDelegate>(iconPath("inactive"), iconPath("active"), nullptr);
}

QString tst_ButtonItemDelegate::iconPath(const char *name) const
{
    return TestSandbox::temporaryPath() + QStringLiteral("/%1.png").arg(QLatin1String(name));
}

bool tst_ButtonItemDelegate::send(QEvent::Type type, QPoint position, const QRect &cell,
                                  Qt::MouseButton button)
{
    QStyleOptionViewItem option;
    option.rect = cell;
    QMouseEvent event(type, position, button, {}, {});
    return m_delegate->editorEvent(&event, &m_model, option, m_model.index(2, 0));
}

QImage tst_ButtonItemDelegate::painted(QStyle::State state, const QRect &cell) const
{
    QImage image(cell.right() + 20, cell.bottom() + 20, QImage::Format_RGB32);
    image.fill(Qt::magenta);
    QPainter painter(&image);
    QStyleOptionViewItem option;
    option.rect = cell;
    option.state = state;
    m_delegate->paint(&painter, option, m_model.index(0, 0));
    return image;
}

void tst_ButtonItemDelegate::releaseInsideClicks_data()
{
    QTest::addColumn<QPoint>("position");
    QTest::addColumn<int>("clicks");

    QTest::newRow("middle") << QPoint(113, 65) << 1;
    QTest::newRow("left border") << QPoint(105, 65) << 0;
    QTest::newRow("inside left") << QPoint(106, 65) << 1;
    QTest::newRow("top border") << QPoint(113, 57) << 0;
    QTest::newRow("inside top") << QPoint(113, 58) << 1;
    QTest::newRow("inside right") << QPoint(121, 65) << 1;
    QTest::newRow("right of it") << QPoint(122, 65) << 0;
    QTest::newRow("inside bottom") << QPoint(113, 73) << 1;
    QTest::newRow("below it") << QPoint(113, 74) << 0;
    QTest::newRow("elsewhere in the cell") << QPoint(150, 65) << 0;
}

void tst_ButtonItemDelegate::releaseInsideClicks()
{
    QFETCH(QPoint, position);
    QFETCH(int, clicks);

    const QSignalSpy clicked(m_delegate.get(), &ButtonItemDelegate::clicked);
    send(QEvent::MouseButtonRelease, position);
    QCOMPARE(clicked.count(), clicks);
}

void tst_ButtonItemDelegate::onlyTheReleaseCounts_data()
{
    QTest::addColumn<QEvent::Type>("type");
    QTest::newRow("press") << QEvent::MouseButtonPress;
    QTest::newRow("double click") << QEvent::MouseButtonDblClick;
    QTest::newRow("move") << QEvent::MouseMove;
}

void tst_ButtonItemDelegate::onlyTheReleaseCounts()
{
    QFETCH(QEvent::Type, type);

    const QSignalSpy clicked(m_delegate.get(), &ButtonItemDelegate::clicked);
    send(type, QPoint(113, 65));
    QCOMPARE(clicked.count(), 0);
}

void tst_ButtonItemDelegate::otherButtonsClickToo()
{
    const QSignalSpy clicked(m_delegate.get(), &ButtonItemDelegate::clicked);
    send(QEvent::MouseButtonRelease, QPoint(113, 65), kCell, Qt::RightButton);
    QCOMPARE(clicked.count(), 1);
}

void tst_ButtonItemDelegate::squareFollowsTheCell_data()
{
    QTest::addColumn<QRect>("cell");
    QTest::addColumn<QRect>("square");

    QTest::newRow("30 high") << QRect(0, 0, 60, 30) << QRect(5, 7, 17, 17);
    QTest::newRow("31 high") << QRect(10, 20, 60, 31) << QRect(15, 27, 17, 17);
    QTest::newRow("40 high") << QRect(0, 0, 60, 40) << QRect(5, 9, 22, 22);
    QTest::newRow("negative") << QRect(-50, -40, 60, 30) << QRect(-45, -33, 17, 17);
}

void tst_ButtonItemDelegate::squareFollowsTheCell()
{
    QFETCH(QRect, cell);
    QFETCH(QRect, square);

    QRect hit;
    for (int y = cell.top(); y <= cell.bottom(); ++y) {
        for (int x = cell.left(); x <= cell.right(); ++x) {
            const QSignalSpy clicked(m_delegate.get(), &ButtonItemDelegate::clicked);
            send(QEvent::MouseButtonRelease, QPoint(x, y), cell);
            hit |= clicked.isEmpty() ? QRect() : QRect(x, y, 1, 1);
        }
    }
    QCOMPARE(hit, square.adjusted(1, 1, 0, 0));
}

void tst_ButtonItemDelegate::tellsTheRow()
{
    const QSignalSpy clicked(m_delegate.get(), &ButtonItemDelegate::clicked);
    send(QEvent::MouseButtonRelease, QPoint(113, 65));
    QCOMPARE(clicked.at(0).at(0).toInt(), 2);
}

void tst_ButtonItemDelegate::handsTheEventOn()
{
    QCOMPARE(send(QEvent::MouseButtonRelease, QPoint(113, 65)), false);

    QStandardItemModel model;
    auto *item = new QStandardItem;
    item->setCheckable(true);
    item->setCheckState(Qt::Unchecked);
    model.appendRow(item);
    QKeyEvent blank(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
    QStyleOptionViewItem option;
    option.state = QStyle::State_Enabled;
    QVERIFY(m_delegate->editorEvent(&blank, &model, option, model.index(0, 0)));
    QCOMPARE(item->checkState(), Qt::Checked);
}

void tst_ButtonItemDelegate::survivesTheRemovalOfItsRow()
{
    QStandardItemModel model(1, 1);
    const QMetaObject::Connection connection =
        connect(m_delegate.get(), &ButtonItemDelegate::clicked, &model,
                [&model](int row) { model.removeRow(row); });
    QStyleOptionViewItem option;
    option.rect = kCell;
    QMouseEvent release(QEvent::MouseButtonRelease, QPoint(113, 65), Qt::LeftButton, {}, {});
    QVERIFY(!m_delegate->editorEvent(&release, &model, option, model.index(0, 0)));
    QCOMPARE(model.rowCount(), 0);
    disconnect(connection);
}

void tst_ButtonItemDelegate::hasNoEditor()
{
    QWidget parent;
    QVERIFY(!m_delegate->createEditor(&parent, QStyleOptionViewItem(), m_model.index(0, 0)));
    QVERIFY(parent.children().isEmpty());
}

void tst_ButtonItemDelegate::paintsTheRowColor_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QColor>("color");

    const int enabled = QStyle::State_Enabled;
    QTest::newRow("row") << enabled << kRow;
    QTest::newRow("selected row") << (enabled | QStyle::State_Selected) << kSelectedRow;
    QTest::newRow("hovered row") << (enabled | QStyle::State_MouseOver) << kRow;
    QTest::newRow("selected, without focus") << int(QStyle::State_Selected) << kSelectedRow;
}

void tst_ButtonItemDelegate::paintsTheRowColor()
{
    QFETCH(int, state);
    QFETCH(QColor, color);

    const QImage image = painted(QStyle::State(state));
    for (const QPoint corner :
         {kCell.topLeft(), kCell.topRight(), kCell.bottomLeft() - QPoint(0, 1),
          kCell.bottomRight() - QPoint(0, 1)}) {
        QCOMPARE(image.pixelColor(corner), color);
    }
    for (int x = kCell.left(); x <= kCell.right(); ++x) {
        QCOMPARE(image.pixelColor(x, kCell.bottom()), kEdge);
    }
    // Nothing is drawn beside the cell.
    QCOMPARE(image.pixelColor(kCell.topLeft() - QPoint(1, 0)), QColor(Qt::magenta));
    QCOMPARE(image.pixelColor(kCell.topLeft() - QPoint(0, 1)), QColor(Qt::magenta));
    QCOMPARE(image.pixelColor(kCell.bottomLeft() - QPoint(1, 0)), QColor(Qt::magenta));
    QCOMPARE(image.pixelColor(kCell.bottomRight() + QPoint(1, 0)), QColor(Qt::magenta));
    QCOMPARE(image.pixelColor(kCell.bottomRight() + QPoint(0, 1)), QColor(Qt::magenta));
}

void tst_ButtonItemDelegate::alwaysPaintsTheInactiveIcon_data()
{
    QTest::addColumn<int>("state");
    const int enabled = QStyle::State_Enabled;
    QTest::newRow("enabled") << enabled;
    QTest::newRow("disabled") << int(QStyle::State_None);
    QTest::newRow("hovered") << (enabled | QStyle::State_MouseOver);
    QTest::newRow("selected") << (enabled | QStyle::State_Selected);
    QTest::newRow("pressed") << (enabled | QStyle::State_Sunken | QStyle::State_HasFocus);
}

void tst_ButtonItemDelegate::alwaysPaintsTheInactiveIcon()
{
    QFETCH(int, state);
    QCOMPARE(painted(QStyle::State(state)).pixelColor(113, 65), kInactiveIcon);
}

void tst_ButtonItemDelegate::paintsTheIconInTheSquare()
{
    const QImage image = painted();
    const QRect square(105, 57, 17, 17);
    QRect drawn;
    for (int y = kCell.top(); y < kCell.bottom(); ++y) {
        for (int x = kCell.left(); x <= kCell.right(); ++x) {
            drawn |= image.pixelColor(x, y) == kRow ? QRect() : QRect(x, y, 1, 1);
        }
    }
    QVERIFY(square.contains(drawn));
    // The style leaves a margin of a few pixels at most, the same on all sides.
    QVERIFY(drawn.width() >= 11);
    QCOMPARE(drawn.center(), square.center());
}

void tst_ButtonItemDelegate::paintsNoText()
{
    const QImage without = painted();
    m_model.setData(m_model.index(0, 0), QStringLiteral("Text"));
    QCOMPARE(painted(), without);
    m_model.setData(m_model.index(0, 0), QVariant());
}

void tst_ButtonItemDelegate::leavesThePainterAsItWas()
{
    QImage image(200, 200, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setPen(QPen(Qt::red, 3));
    painter.setBrush(Qt::blue);
    painter.setOpacity(0.5);
    QStyleOptionViewItem option;
    option.rect = kCell;
    m_delegate->paint(&painter, option, m_model.index(0, 0));
    QCOMPARE(painter.pen(), QPen(Qt::red, 3));
    QCOMPARE(painter.brush(), QBrush(Qt::blue));
    QCOMPARE(painter.opacity(), 0.5);
    QVERIFY(!painter.hasClipping());
    QVERIFY(painter.transform().isIdentity());
}

void tst_ButtonItemDelegate::scalesTheIconWithTheCell()
{
    const QRect tall(0, 0, 120, 100);
    QCOMPARE(painted().pixelColor(113, 65), kInactiveIcon);
    // Its square is 55 pixels wide and high.
    const QImage image = painted(QStyle::State_Enabled, tall);
    QCOMPARE(image.pixelColor(10, 28), kInactiveIcon);
    QCOMPARE(image.pixelColor(55, 73), kInactiveIcon);
    QCOMPARE(image.pixelColor(4, 50), kRow);
    QCOMPARE(image.pixelColor(61, 50), kRow);
    QCOMPARE(painted().pixelColor(113, 65), kInactiveIcon);
}

void tst_ButtonItemDelegate::missingIconsAreSurvived()
{
    const ButtonItemDelegate delegate(iconPath("none"), iconPath("none"), nullptr);
    QImage image(200, 200, QImage::Format_RGB32);
    QPainter painter(&image);
    QStyleOptionViewItem option;
    option.rect = kCell;
    delegate.paint(&painter, option, m_model.index(0, 0));
    QCOMPARE(image.pixelColor(113, 65), kRow);
}

ZEL_TEST_MAIN_WITH(ApplicationAt<96>, tst_ButtonItemDelegate)
#include "tst_ButtonItemDelegate.moc"
