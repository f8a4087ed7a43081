#include "widgets/MessagePopupWidget.h"

#include "common/Scale.h"
#include "tests/support/Activation.h"
#include "tests/support/ZelTest.h"
#include "widgets/MessageLabel.h"
#include "widgets/MessagePopupWidget_p.h"

#include <QAccessible>
#include <QApplication>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPropertyAnimation>
#include <QScreen>
#include <QSignalSpy>
#include <QTimer>
#include <QWindow>

#include <memory>

namespace {

/// Long enough that a test is sure to meet the animation running.
constexpr uint kLong = 60000;

QString shortText()
{
    return QStringLiteral("Please select a firmware file.");
}

QString longText()
{
    return QStringLiteral("ZEL file was successfully saved to\nC:\\")
           + QString(300, QLatin1Char('m')) + QStringLiteral("\\package.zel.");
}

/// An active window with a field and, as in the main window, a message popup over its content.
struct Stage
{
    Stage()
    {
        window.setGeometry(200, 150, 600, 300);
        content = new QWidget(&window);
        content->setGeometry(0, 0, 600, 300);
        edit = new QLineEdit(content);
        popup = new MessagePopupWidget(content);
        popup->setAlignment(Qt::AlignHCenter | Qt::AlignBottom | Qt::AlignVCenter);
        popup->setMargin(Qt::AlignBottom);
        popup->setVerticalDirection(PopupWidget::BottomToTop);
        popup->setEffectDuration(20);
        priv = popup->findChild<MessagePopupWidgetPrivate *>();
        label = popup->findChild<QLabel *>(QStringLiteral("messageLabel"));
        frame = popup->findChild<QFrame *>(QStringLiteral("messageFrame"));
    }

    [[nodiscard]] bool isReady()
    {
        edit->setFocus();
        return showActive(window);
    }

    /// Where a popup of the present size belongs.
    [[nodiscard]] QRect place() const
    {
        const QRect base(content->mapToGlobal(QPoint()), content->size());
        QRect rect(QPoint(), popup->sizeHint());
        rect.moveLeft((base.left() + base.right()) / 2 - rect.width() / 2);
        rect.moveBottom(base.bottom());
        return rect;
    }

    QWidget window;
    QWidget *content = nullptr;
    QLineEdit *edit = nullptr;
    MessagePopupWidget *popup = nullptr;
    MessagePopupWidgetPrivate *priv = nullptr;
    QLabel *label = nullptr;
    QFrame *frame = nullptr;
};

} // namespace

class tst_MessagePopupWidget : public ZelTest
{
    Q_OBJECT

private slots:
    void partsAndLayout();
    void marginsStayZero_data();
    void marginsStayZero();
    void typeValues();
    void styles_data();
    void styles();
    void anotherTypeDropsTheColours();

    void appearsAfterAMoment();
    void isMeasuredUnseen();
    void standsAtTheBottomCentre();
    void aFontSizeFromOutsideCounts();
    void textIsPlainText();
    void lineBreaksAreLines();
    void isReadToThoseWhoCannotSee();

    void secondMessageReplacesAPendingOne();
    void secondMessageRestartsTheTimer();
    void secondMessageReplacesAShownOne();
    void messageWhileShowing();
    void messageWhileHiding();
    void hideDropsAPendingMessage();
    void mousePressLeavesAPendingMessage();
    void mousePressHidesTheMessage();
    void hidesAfterItsOwnDelay();

    void aLongPathStaysWithinItsBaseWidget();
    void aLongPathOverANarrowBaseWidget();
    void aLongPathWithoutABaseWidget();
    void aMessageOfTheConstructorIsShown();
    void waitsForAMinimisedWindow();
    void hideDropsAWaitingMessage();
    void typingGoesOn();
    void diesWithAPendingMessage();
};

void tst_MessagePopupWidget::partsAndLayout()
{
    Stage stage;
    const MessagePopupWidget &popup = *stage.popup;
    QCOMPARE(int(popup.windowFlags()), 0x80b);
    QVERIFY(popup.isHidden());
    QVERIFY(popup.testAttribute(Qt::WA_NoSystemBackground));
    QVERIFY(popup.testAttribute(Qt::WA_TranslucentBackground));
    QVERIFY(!popup.autoFillBackground());
    QCOMPARE(popup.styleSheet(), QStringLiteral("QFrame { background-color: transparent; }"));
    QVERIFY(qobject_cast<QHBoxLayout *>(popup.layout()) != nullptr);
    QCOMPARE(popup.layout()->sizeConstraint(), QLayout::SetFixedSize);

    QCOMPARE(stage.frame->parentWidget(), &popup);
    QCOMPARE(stage.frame->sizePolicy().horizontalPolicy(), QSizePolicy::Minimum);
    QCOMPARE(stage.frame->sizePolicy().verticalPolicy(), QSizePolicy::Preferred);
    QVERIFY(qobject_cast<QHBoxLayout *>(stage.frame->layout()) != nullptr);
    QCOMPARE(stage.frame->layout()->sizeConstraint(), QLayout::SetFixedSize);
    const int margin = Scale(popup.logicalDpiX()).px(3);
    QCOMPARE(stage.frame->layout()->contentsMargins(), QMargins(margin, margin, margin, margin));

    QCOMPARE(stage.label->parentWidget(), stage.frame);
    QCOMPARE(stage.label->sizePolicy().horizontalPolicy(), QSizePolicy::Minimum);
    QCOMPARE(stage.label->sizePolicy().verticalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(stage.priv->scale.factor(), popup.logicalDpiX() / 96.0);
}

void tst_MessagePopupWidget::marginsStayZero_data()
{
    QTest::addColumn<Qt::Alignment>("alignment");
    QTest::newRow("initial") << Qt::Alignment();
    QTest::newRow("top") << Qt::Alignment(Qt::AlignTop);
    QTest::newRow("bottom") << Qt::Alignment(Qt::AlignBottom);
    QTest::newRow("left") << Qt::Alignment(Qt::AlignLeft);
    QTest::newRow("right") << Qt::Alignment(Qt::AlignRight);
    QTest::newRow("main window") << Qt::Alignment(196);
}

void tst_MessagePopupWidget::marginsStayZero()
{
    QFETCH(Qt::Alignment, alignment);

    MessagePopupWidget popup;
    QVERIFY(popup.layout()->contentsMargins().isNull());
    popup.setAlignment(alignment);
    QCOMPARE(popup.alignment(), alignment);
    QVERIFY(popup.layout()->contentsMargins().isNull());

    // The margin on the far side of the alignment is the one that is set.
    popup.layout()->setContentsMargins(1, 2, 3, 4);
    QVERIFY(popup.setProperty("alignment", QVariant::fromValue(alignment)));
    const QMargins margins = popup.layout()->contentsMargins();
    QCOMPARE(margins.bottom(), alignment.testFlag(Qt::AlignTop) ? 0 : 4);
    QCOMPARE(margins.top(), alignment.testFlag(Qt::AlignBottom) ? 0 : 2);
    QCOMPARE(margins.left(), alignment.testFlag(Qt::AlignRight) ? 0 : 1);
    QCOMPARE(margins.right(), alignment.testFlag(Qt::AlignLeft) ? 0 : 3);
}

void tst_MessagePopupWidget::typeValues()
{
    QCOMPARE(int(MessagePopupWidget::Error), 0);
    QCOMPARE(int(MessagePopupWidget::Info), 1);
}

void tst_MessagePopupWidget::styles_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("frame");
    QTest::addColumn<QColor>("textColor");

    QTest::newRow("error")
        << 0 << QStringLiteral("QLabel { color: rgb(199, 3, 27); border: none; padding: 0px; }")
        << QStringLiteral("QFrame { border: 1px solid rgb(252, 193, 195); "
                          "background-color: rgb(252, 228, 228);  border-radius: 0px; "
                          "padding: %1px; }")
        << QColor(199, 3, 27);
    QTest::newRow("information")
        << 1 << QStringLiteral("QLabel { color: rgb(15, 73, 111); border: none; padding: 0px; }")
        << QStringLiteral("QFrame { border: 1px solid rgb(0, 120, 215); "
                          "background-color: rgb(228, 248, 253);  border-radius: 0px; "
                          "padding: %1px; }")
        << QColor(15, 73, 111);
    const QString bare = QStringLiteral(" border-radius: 0px; padding: %1px; }");
    const QColor plain = QApplication::palette().color(QPalette::WindowText);
    QTest::newRow("unknown") << 2 << QString() << bare << plain;
    QTest::newRow("negative") << -1 << QString() << bare << plain;
}

void tst_MessagePopupWidget::styles()
{
    QFETCH(int, type);
    QFETCH(QString, label);
    QFETCH(QString, frame);
    QFETCH(QColor, textColor);

    Stage stage;
    QVERIFY(stage.isReady());
    if (label.isEmpty()) {
        expectWarning(QStringLiteral("Could not parse stylesheet"));
    }
    stage.popup->showMessage(shortText(), type);
    QCOMPARE(stage.label->styleSheet(), label);
    QCOMPARE(stage.frame->styleSheet(), frame.arg(Scale(stage.popup->logicalDpiX()).px(2)));
    QTRY_VERIFY(stage.popup->isVisible());
    QCOMPARE(stage.label->palette().color(QPalette::WindowText), textColor);
    QCOMPARE(stage.label->text(), shortText());
}

void tst_MessagePopupWidget::anotherTypeDropsTheColours()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.popup->showMessage(shortText(), MessagePopupWidget::Error);
    expectWarning(QStringLiteral("Could not parse stylesheet"));
    stage.popup->showMessage(shortText(), 7);
    QCOMPARE(stage.label->styleSheet(), QString());
    QVERIFY(!stage.frame->styleSheet().contains(QLatin1String("rgb")));
}

void tst_MessagePopupWidget::appearsAfterAMoment()
{
    Stage stage;
    QVERIFY(stage.isReady());
    QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    stage.popup->showMessage(shortText(), MessagePopupWidget::Info);
    QVERIFY(stage.popup->isHidden());
    QVERIFY(!stage.popup->isActive());
    QVERIFY(stage.priv->showDelay->isSingleShot());
    QVERIFY(stage.priv->showDelay->isActive());
    QCOMPARE(stage.priv->showDelay->interval(), 30);
    QTRY_COMPARE(opened.size(), 1);
    QCOMPARE(opened.at(0).at(0).toBool(), true);
    QVERIFY(stage.popup->isVisible());
    QVERIFY(stage.popup->isActive());
    QCOMPARE(stage.popup->message(), shortText());
}

void tst_MessagePopupWidget::isMeasuredUnseen()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.popup->showMessage(shortText(), MessagePopupWidget::Info);
    QVERIFY(!stage.popup->testAttribute(Qt::WA_DontShowOnScreen));
    QCOMPARE(stage.popup->size(), stage.popup->sizeHint());
    QVERIFY(stage.label->width() >= stage.label->fontMetrics().horizontalAdvance(shortText()));
    QCOMPARE(stage.frame->geometry(), stage.popup->rect());
}

void tst_MessagePopupWidget::standsAtTheBottomCentre()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.popup->showMessage(shortText(), MessagePopupWidget::Error);
    QTRY_VERIFY(stage.popup->isVisible());
    QTRY_COMPARE(stage.popup->geometry(), stage.place());
    const QRect base(stage.content->mapToGlobal(QPoint()), stage.content->size());
    QVERIFY(base.contains(stage.popup->geometry()));
    QCOMPARE(stage.popup->geometry().bottom(), base.bottom());
}

void tst_MessagePopupWidget::aFontSizeFromOutsideCounts()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.popup->showMessage(shortText(), MessagePopupWidget::Error);
    const QSize before = stage.popup->size();
    stage.popup->setStyleSheet(QStringLiteral("QWidget { font-size: 30px; }"));
    stage.popup->showMessage(shortText(), MessagePopupWidget::Error);
    QCOMPARE(stage.label->font().pixelSize(), 30);
    QVERIFY(stage.popup->width() > before.width());
    QVERIFY(stage.popup->height() > before.height());
}

void tst_MessagePopupWidget::textIsPlainText()
{
    Stage stage;
    QVERIFY(stage.isReady());
    const QString markup = QStringLiteral("<img src=\"x\"><b>bold.bin</b>");
    stage.popup->showMessage(markup, MessagePopupWidget::Error);
    QCOMPARE(stage.label->textFormat(), Qt::PlainText);
    QCOMPARE(stage.label->text(), markup);
    QVERIFY(stage.label->width() >= stage.label->fontMetrics().horizontalAdvance(markup));
}

void tst_MessagePopupWidget::lineBreaksAreLines()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.popup->showMessage(QStringLiteral("one"), MessagePopupWidget::Info);
    const int oneLine = stage.popup->height();
    stage.popup->showMessage(QStringLiteral("one\ntwo"), MessagePopupWidget::Info);
    QCOMPARE(stage.popup->height(), oneLine + stage.label->fontMetrics().lineSpacing());
}

void tst_MessagePopupWidget::isReadToThoseWhoCannotSee()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.popup->showMessage(shortText(), MessagePopupWidget::Info);
    QTRY_VERIFY(stage.popup->isVisible());
    QAccessibleInterface *popup = QAccessible::queryAccessibleInterface(stage.popup);
    QVERIFY(popup != nullptr);
    QCOMPARE(popup->text(QAccessible::Name), shortText());
    QAccessibleInterface *label = QAccessible::queryAccessibleInterface(stage.label);
    QVERIFY(label != nullptr);
    QCOMPARE(label->text(QAccessible::Name), shortText());
}

void tst_MessagePopupWidget::secondMessageReplacesAPendingOne()
{
    Stage stage;
    QVERIFY(stage.isReady());
    QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    stage.popup->showMessage(longText(), MessagePopupWidget::Error);
    stage.popup->showMessage(shortText(), MessagePopupWidget::Info);
    QTRY_COMPARE(opened.size(), 1);
    QCOMPARE(stage.label->text(), shortText());
    QVERIFY(stage.label->styleSheet().contains(QLatin1String("rgb(15, 73, 111)")));
    QTRY_COMPARE(stage.popup->geometry(), stage.place());
    QVERIFY(!stage.priv->showDelay->isActive());
}

void tst_MessagePopupWidget::secondMessageRestartsTheTimer()
{
    Stage stage;
    QTimer *timer = stage.priv->showDelay;
    timer->setTimerType(Qt::PreciseTimer);
    timer->setInterval(int(kLong));
    stage.popup->showMessage(shortText(), MessagePopupWidget::Error);
    QTRY_VERIFY(timer->remainingTime() < int(kLong) - 100);
    const int left = timer->remainingTime();
    stage.popup->showMessage(shortText(), MessagePopupWidget::Error);
    QVERIFY(timer->remainingTime() > left);
}

void tst_MessagePopupWidget::secondMessageReplacesAShownOne()
{
    Stage stage;
    QVERIFY(stage.isReady());
    QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    stage.popup->showMessage(shortText(), MessagePopupWidget::Error);
    QTRY_COMPARE(opened.size(), 1);
    const QRect earlier = stage.popup->geometry();
    stage.popup->showMessage(shortText() + shortText(), MessagePopupWidget::Info);
    QVERIFY(stage.popup->isHidden());
    QTRY_COMPARE(opened.size(), 2);
    QVERIFY(stage.popup->isVisible());
    QVERIFY(stage.popup->width() > earlier.width());
    QTRY_COMPARE(stage.popup->geometry(), stage.place());
}

void tst_MessagePopupWidget::messageWhileShowing()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.popup->setEffectDuration(kLong);
    stage.popup->showMessage(shortText(), MessagePopupWidget::Error);
    QTRY_VERIFY(stage.popup->isVisible());
    // About to end, at the place of the shorter text.
    stage.priv->fadeAnimation->setCurrentTime(kLong - 5);
    stage.popup->setEffectDuration(20);
    stage.popup->showMessage(shortText() + shortText(), MessagePopupWidget::Error);
    QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    QTRY_COMPARE(opened.size(), 1);
    QVERIFY(stage.popup->isVisible());
    QTRY_COMPARE(stage.popup->geometry(), stage.place());
}

void tst_MessagePopupWidget::messageWhileHiding()
{
    Stage stage;
    QVERIFY(stage.isReady());
    QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    stage.popup->showMessage(shortText(), MessagePopupWidget::Error);
    QTRY_COMPARE(opened.size(), 1);
    stage.popup->setEffectDuration(kLong);
    stage.popup->hidePopup();
    QVERIFY(stage.popup->isVisible());
    stage.popup->setEffectDuration(20);
    stage.popup->showMessage(shortText() + shortText(), MessagePopupWidget::Info);
    QTRY_COMPARE(opened.size(), 2);
    QCOMPARE(opened.at(1).at(0).toBool(), true);
    QVERIFY(stage.popup->isVisible());
    QVERIFY(stage.popup->isActive());
    QTRY_COMPARE(stage.popup->geometry(), stage.place());
}

void tst_MessagePopupWidget::hideDropsAPendingMessage()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.popup->showMessage(shortText(), MessagePopupWidget::Error);
    stage.popup->hidePopup();
    QVERIFY(!stage.priv->showDelay->isActive());
    QVERIFY(stage.popup->isHidden());
}

void tst_MessagePopupWidget::mousePressLeavesAPendingMessage()
{
    Stage stage;
    QVERIFY(stage.isReady());
    QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    stage.popup->showMessage(shortText(), MessagePopupWidget::Error);
    QTRY_COMPARE(opened.size(), 1);
    stage.popup->showMessage(shortText(), MessagePopupWidget::Info);
    QTest::mouseClick(stage.edit, Qt::LeftButton);
    QTRY_COMPARE(opened.size(), 2);
    QVERIFY(stage.popup->isVisible());
}

void tst_MessagePopupWidget::mousePressHidesTheMessage()
{
    Stage stage;
    QVERIFY(stage.isReady());
    QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    stage.popup->showMessage(shortText(), MessagePopupWidget::Error);
    QTRY_COMPARE(opened.size(), 1);
    QTest::mouseClick(stage.content, Qt::LeftButton, Qt::NoModifier, QPoint(300, 100));
    QCOMPARE(stage.priv->fadeAnimation->direction(), QAbstractAnimation::Backward);
    QTRY_VERIFY(stage.popup->isHidden());
    QCOMPARE(opened.size(), 2);
}

void tst_MessagePopupWidget::hidesAfterItsOwnDelay()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.popup->setHideDelayMsec(300);
    stage.popup->showMessage(shortText(), MessagePopupWidget::Error);
    QTRY_VERIFY(stage.popup->isVisible());
    QTRY_VERIFY(stage.popup->isHidden());
    QVERIFY(!stage.popup->isActive());
    QVERIFY(!stage.priv->showDelay->isActive());
}

void tst_MessagePopupWidget::aLongPathStaysWithinItsBaseWidget()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.popup->showMessage(longText(), MessagePopupWidget::Info);
    QTRY_VERIFY(stage.popup->isVisible());
    QCOMPARE(stage.label->text(), longText());
    const QRect base(stage.content->mapToGlobal(QPoint()), stage.content->size());
    QTRY_VERIFY(base.contains(stage.popup->geometry()));
    QVERIFY(stage.popup->height() > 4 * stage.label->fontMetrics().height());
    QTRY_COMPARE(stage.popup->geometry(), stage.place());
    QCOMPARE(stage.frame->geometry(), stage.popup->rect());
    QVERIFY(stage.frame->rect().contains(stage.label->geometry()));

    stage.popup->showMessage(shortText(), MessagePopupWidget::Info);
    QTRY_VERIFY(stage.popup->isVisible());
    QTRY_VERIFY(stage.popup->height() < 3 * stage.label->fontMetrics().height());
}

void tst_MessagePopupWidget::aLongPathOverANarrowBaseWidget()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.content->resize(40, 40);
    stage.popup->showMessage(longText(), MessagePopupWidget::Info);
    QTRY_VERIFY(stage.popup->isVisible());
    const int narrowest = Scale(stage.popup->logicalDpiX()).px(320);
    QVERIFY(stage.popup->width() <= narrowest);
    QVERIFY(stage.popup->width() > narrowest / 2);
}

void tst_MessagePopupWidget::aLongPathWithoutABaseWidget()
{
    MessagePopupWidget popup;
    popup.showMessage(longText() + longText(), MessagePopupWidget::Info);
    QTRY_VERIFY(popup.isVisible());
    QVERIFY(popup.width() <= popup.screen()->availableGeometry().width());
}

void tst_MessagePopupWidget::aMessageOfTheConstructorIsShown()
{
    Stage stage;
    QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    stage.popup->showMessage(longText(), MessagePopupWidget::Error);
    QVERIFY(stage.isReady());
    QTRY_COMPARE(opened.size(), 1);
    QVERIFY(stage.popup->isVisible());
    QTRY_COMPARE(stage.popup->geometry(), stage.place());
    QVERIFY(stage.popup->width() > stage.content->width() / 2);
}

void tst_MessagePopupWidget::waitsForAMinimisedWindow()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.window.showMinimized();
    QTRY_VERIFY(!stage.window.windowHandle()->isExposed());
    stage.popup->showMessage(shortText(), MessagePopupWidget::Info);
    QTRY_VERIFY(!stage.priv->awaitedWindow.isNull());
    QVERIFY(stage.popup->isHidden());
    stage.window.showNormal();
    QTRY_VERIFY(stage.popup->isVisible());
    QVERIFY(stage.priv->awaitedWindow.isNull());
}

void tst_MessagePopupWidget::hideDropsAWaitingMessage()
{
    Stage stage;
    QVERIFY(stage.isReady());
    stage.window.showMinimized();
    QTRY_VERIFY(!stage.window.windowHandle()->isExposed());
    stage.popup->showMessage(shortText(), MessagePopupWidget::Info);
    QTRY_VERIFY(!stage.priv->awaitedWindow.isNull());
    stage.popup->hidePopup();
    QVERIFY(stage.priv->awaitedWindow.isNull());
    stage.window.showNormal();
    QTRY_VERIFY(stage.window.windowHandle()->isExposed());
    QVERIFY(!stage.priv->showDelay->isActive());
    QVERIFY(stage.popup->isHidden());
}

void tst_MessagePopupWidget::typingGoesOn()
{
    Stage stage;
    QVERIFY(stage.isReady());
    QTRY_VERIFY(stage.edit->hasFocus());
    connect(stage.edit, &QLineEdit::textChanged, stage.popup, [&stage](const QString &text) {
        stage.popup->showMessage(text, MessagePopupWidget::Error);
    });
    QSignalSpy opened(stage.popup, &PopupWidget::popupOpened);
    const QByteArray keys = QByteArrayLiteral("0123456789");
    for (const char key : keys) {
        QTest::keyClick(stage.window.windowHandle(), key);
        QCoreApplication::processEvents();
    }
    QTRY_COMPARE(opened.size(), 1);
    QTest::keyClick(stage.window.windowHandle(), 'x');
    QTRY_COMPARE(opened.size(), 2);
    QCOMPARE(stage.edit->text(), QStringLiteral("0123456789x"));
    QCOMPARE(stage.label->text(), stage.edit->text());
    QVERIFY(stage.popup->isVisible());
    QCOMPARE(QApplication::activeWindow(), &stage.window);
    QVERIFY(stage.edit->hasFocus());
}

void tst_MessagePopupWidget::diesWithAPendingMessage()
{
    auto stage = std::make_unique<Stage>();
    QVERIFY(stage->isReady());
    const QPointer<MessagePopupWidget> popup(stage->popup);
    popup->showMessage(shortText(), MessagePopupWidget::Error);
    stage.reset();
    QVERIFY(popup.isNull());
    QTest::qWait(60); // Nothing to wait for: no timer may fire after the end.
}

ZEL_TEST_MAIN(tst_MessagePopupWidget)
#include "tst_MessagePopupWidget.moc"
