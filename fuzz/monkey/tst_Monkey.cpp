#include "app/ZelCreator.h"
#include "fuzz/monkey/DialogKeeper.h"
#include "fuzz/monkey/MarkWitness.h"
#include "tests/support/ZelTest.h"
#include "tlv/FileNameRules_p.h"
#include "tlv/ZelFile.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QRandomGenerator>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QToolButton>
#include <QWheelEvent>
#include <QWindow>

#include <memory>

namespace {

constexpr int kDefaultEvents = 1500;
/// How often a long run tells that it is still running, in events.
constexpr int kProgress = 5000;
/// More windows than the program, its menus, its lists and its dialogs have together.
constexpr int kMostWindows = 60;
/// How many of the last events are told when one fails.
constexpr int kRemembered = 12;

/// Opens nothing: the monkey must not start other programs.
class NoDesktop final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NoDesktop)

public:
    NoDesktop()
    {
        for (const char *scheme : {"file", "http", "https", "mailto"}) {
            QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "ignore");
        }
    }
    ~NoDesktop() override
    {
        for (const char *scheme : {"file", "http", "https", "mailto"}) {
            QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
        }
    }

public slots:
    void ignore(const QUrl & /*url*/) {}
};

/// What the fields of strangers may hold.
QStringList hostileTexts()
{
    return {
        QString(),
        QStringLiteral("0x8000ABCD"),
        QStringLiteral("8000ABCD"),
        QStringLiteral("0x0x  0x12"),
        QStringLiteral("0x123456789"),
        QStringLiteral("99.99"),
        QStringLiteral("01.5"),
        QStringLiteral("4294967296"),
        QStringLiteral("-1"),
        QStringLiteral("7"),
        QStringLiteral("RISC-V (2)"),
        QStringLiteral("1598\t1\tA*B*\n3\t2\tx"),
        QStringLiteral("<img src=\"file:///etc/passwd\"><b>bold</b>"),
        QStringLiteral("%1 %2 %Temp%\\%Tmp%"),
        QStringLiteral("\\\\server\\share\\firmware.bin"),
        QStringLiteral("[*][*]"),
        QStringLiteral("Pr\u00FCfstand \u96FB\u6C17 \u202Etxt.exe"),
        QString(QChar(0xD800)) + QStringLiteral("lone surrogate"),
        QStringLiteral("NUL ") + QChar(QChar::Null) + QStringLiteral(" inside"),
        QString(10000, QLatin1Char('W')),
        QStringLiteral("a\r\nb\u2028c\u001B[31m"),
    };
}

} // namespace

/// A user without a plan. Each event depends on nothing but the seed and its number, so that the
/// same seed plays the same events.
class tst_Monkey : public ZelTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void plays();

private:
    void makeFiles();
    void startProgram();
    [[nodiscard]] QString file(const QString &name) const { return m_folder.filePath(name); }
    [[nodiscard]] QString path(const QStringList &names) { return file(oneOf(names)); }

    [[nodiscard]] bool chance(int outOf) { return m_random.bounded(outOf) == 0; }
    template <typename List>
    [[nodiscard]] typename List::value_type oneOf(const List &list)
    {
        return list.at(m_random.bounded(static_cast<int>(list.size())));
    }

    void play(int number);
    void act();
    [[nodiscard]] QWidget *target();
    [[nodiscard]] QWidget *child(QWidget *top);
    [[nodiscard]] QPoint pointIn(const QWidget *widget);
    void mouse(QTest::MouseAction action, QWidget *widget, const QPoint &point);
    void key(const QWidget *top, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    void clickAnywhere();
    void drag();
    void hover();
    void turnWheel();
    void pressKey();
    void typeText();
    void paste();
    void choosePath();
    void open();
    void save();
    void retype(const char *field, const QString &text);
    void leaveMenus();
    void clickTab();
    void clickMenu();
    void useShortcut();
    void addRule();
    void clickHeader();
    void clickCell();
    void changeWindow();
    void changeFocus();

    QRandomGenerator m_random;
    QTemporaryDir m_folder;
    NoDesktop m_desktop;
    DialogKeeper m_dialogs;
    QWidget m_otherWindow;
    std::unique_ptr<ZelCreator> m_window;
    std::unique_ptr<MarkWitness> m_witness;
    QStringList m_history;
    int m_openCount = 0;
    int m_saveCount = 0;
    int m_startCount = 0;
};

void tst_Monkey::initTestCase()
{
    QApplication::setQuitOnLastWindowClosed(false);
    // Of the toolkit's own making: it asks the server about windows, or wants to focus one, that
    // the window manager has just taken down, and loses count when a window is minimised and
    // brought back faster than the window manager answers.
    allowWarnings(QStringLiteral("XCB error: 3 \\(BadWindow\\)"));
    allowWarnings(QStringLiteral("XCB error: 8 \\(BadMatch\\).*\\(SetInputFocus\\)"));
    allowWarnings(QStringLiteral("setNetWmStateOnUnmappedWindow\\(\\) called on mapped window"));
    // The toolkit's file dialog asks for the icons of files, which Wine does not have.
    allowWarnings(QStringLiteral("QPixmap::fromWinHICON\\(\\), failed to GetIconInfo\\(\\)"));
    m_otherWindow.setWindowTitle(QStringLiteral("Another program"));
    m_otherWindow.resize(300, 200);
    makeFiles();
    // A name without a folder must not litter anyone's.
    QVERIFY(QDir::setCurrent(m_folder.path()));
}

void tst_Monkey::makeFiles()
{
    const auto write = [this](const QString &name, const QByteArray &bytes) {
        QFile out(file(name));
        QVERIFY(out.open(QIODevice::WriteOnly));
        QCOMPARE(out.write(bytes), qint64(bytes.size()));
    };
    write(QStringLiteral("image.bin"), QByteArray(3000, 'i'));
    write(QStringLiteral("other.bin"), QByteArray());
    write(QStringLiteral("two.dots.bin"), QByteArray(1, 'x'));
    write(QStringLiteral("text.zel"), "no package");

    const auto pack = [this](const QString &name, int ruleCount, const QByteArray &text) {
        QList<MaskValidationRule> masks;
        QList<TokenValidationRule> tokens;
        for (int i = 0; i < ruleCount; ++i) {
            masks.append({static_cast<quint16>(i * 7919), static_cast<quint16>(i), text});
            tokens.append({text + QByteArray::number(i), text});
        }
        tlv::ZelFile package;
        package.setMaskRules(masks);
        package.setTokenRules(tokens);
        package.setSoftwareOptions({true, {9, 99}, {1, 0}, false, {65535, 65535}, {0, 0}});
        package.setHardware(0xFFFFFFFFU, 7, 0x12345678, 99);
        package.setFirmwareFile(file(QStringLiteral("image.bin")), 0x00000FFFU);
        QString target = file(name);
        QString message;
        QVERIFY2(package.save(target, message), qPrintable(message));
    };
    pack(QStringLiteral("plain.zel"), 3, "A*");
    pack(QStringLiteral("many.zel"), 300, "mask");
    const QString marked = QStringLiteral("marked [*].zel");
    if (tlv::isPlainFileName(marked, tlv::nativeFileNames())) {
        pack(marked, 1, "[*]");
    }
    pack(QStringLiteral("hostile.zel"), 5, hostileTexts().join(QLatin1Char(' ')).toUtf8());
#ifdef Q_OS_UNIX
    QVERIFY(QFile::link(QStringLiteral("/dev/full"), file(QStringLiteral("full.zel"))));
#else
    // No disk that is always full there: a folder in the way.
    QVERIFY(QDir(m_folder.path()).mkdir(QStringLiteral("full.zel")));
#endif
}

void tst_Monkey::startProgram()
{
    if (m_witness != nullptr) {
        m_openCount += m_witness->openCount();
        m_saveCount += m_witness->saveCount();
    }
    m_witness.reset();
    m_window.reset();
    const QString startPath = chance(2)
                                  ? QString()
                                  : path({QStringLiteral("plain.zel"), QStringLiteral("many.zel"),
                                          QStringLiteral("text.zel"), QStringLiteral("gone.zel")});
    m_window = std::make_unique<ZelCreator>(startPath);
    m_witness = std::make_unique<MarkWitness>(m_window.get(), startPath, nullptr);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    ++m_startCount;
}

void tst_Monkey::plays()
{
    const int events = qEnvironmentVariableIsSet("ZEL_MONKEY_EVENTS")
                           ? qEnvironmentVariableIntValue("ZEL_MONKEY_EVENTS")
                           : kDefaultEvents;
    const quint32 seed = qEnvironmentVariableIsSet("ZEL_MONKEY_SEED")
                             ? qEnvironmentVariable("ZEL_MONKEY_SEED").toUInt()
                             : QRandomGenerator::system()->generate();
    QVERIFY(events > 0);
    qInfo("%d events of seed %u", events, seed);

    QElapsedTimer clock;
    clock.start();
    for (int number = 0; number < events && !QTest::currentTestFailed(); ++number) {
        const quint32 seeds[] = {seed, static_cast<quint32>(number)};
        m_random = QRandomGenerator(seeds);
        if (number > 0 && number % kProgress == 0) {
            qInfo("%d events in %lld s", number, clock.elapsed() / 1000);
        }
        play(number);
        if (QTest::currentTestFailed()) {
            qInfo("seed %u failed at event %d; the last events were\n  %s", seed, number,
                  qPrintable(m_history.join(QStringLiteral("\n  "))));
        }
    }
    if (m_witness != nullptr) {
        m_openCount += m_witness->openCount();
        m_saveCount += m_witness->saveCount();
    }
    qInfo("played %d events of seed %u in %lld s: %d starts, %d packages opened, %d saved", events,
          seed, clock.elapsed() / 1000, m_startCount, m_openCount, m_saveCount);
    m_witness.reset();
    m_window.reset();
}

void tst_Monkey::play(int number)
{
    if (m_window == nullptr || (!m_window->isVisible() && !m_window->isMinimized())) {
        startProgram();
    }
    if (m_window->isMinimized() && chance(4)) {
        m_window->showNormal();
    }
    const QStringList packages = {QStringLiteral("plain.zel"),   QStringLiteral("many.zel"),
                                  QStringLiteral("hostile.zel"), QStringLiteral("text.zel"),
                                  QStringLiteral("image.bin"),   QStringLiteral("full.zel"),
                                  QStringLiteral("gone.zel"),    QStringLiteral("no/such.zel"),
                                  QStringLiteral("saved 1.zel"), QStringLiteral("<b>2</b>"),
                                  QStringLiteral("a.b.zel"),     QStringLiteral("marked [*].zel"),
                                  QStringLiteral("saved 3.zel")};
    m_dialogs.prepare(chance(5) ? QString() : path(packages), !chance(4), m_random.bounded(100));
    m_history.append(QString::number(number));
    while (m_history.size() > kRemembered) {
        m_history.removeFirst();
    }
    m_witness->beforeEvent();
    act();
    QCoreApplication::processEvents();
    const QString problem = m_witness->afterEvent(m_dialogs);
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
    QVERIFY2(QApplication::topLevelWidgets().size() < kMostWindows, "windows pile up");
}

/// Does one thing of those that a user can do, the frequent ones more often.
void tst_Monkey::act()
{
    struct Action
    {
        const char *name;
        void (tst_Monkey::*run)();
        int weight;
    };
    static constexpr Action kActions[] = {
        {"click", &tst_Monkey::clickAnywhere, 30},
        {"key", &tst_Monkey::pressKey, 30},
        {"type", &tst_Monkey::typeText, 12},
        {"paste", &tst_Monkey::paste, 8},
        {"cell", &tst_Monkey::clickCell, 10},
        {"add rule", &tst_Monkey::addRule, 5},
        {"header", &tst_Monkey::clickHeader, 3},
        {"hover", &tst_Monkey::hover, 4},
        {"drag", &tst_Monkey::drag, 4},
        {"wheel", &tst_Monkey::turnWheel, 4},
        {"tab", &tst_Monkey::clickTab, 5},
        {"menu", &tst_Monkey::clickMenu, 3},
        {"path", &tst_Monkey::choosePath, 3},
        {"shortcut", &tst_Monkey::useShortcut, 4},
        {"open", &tst_Monkey::open, 3},
        {"save", &tst_Monkey::save, 4},
        {"window", &tst_Monkey::changeWindow, 2},
        {"focus", &tst_Monkey::changeFocus, 3},
    };
    int total = 0;
    for (const Action &action : kActions) {
        total += action.weight;
    }
    int drawn = m_random.bounded(total);
    for (const Action &action : kActions) {
        drawn -= action.weight;
        if (drawn < 0) {
            m_history.last() += QLatin1Char(' ') + QLatin1String(action.name);
            (this->*action.run)();
            return;
        }
    }
}

/// The window that a user would act on.
QWidget *tst_Monkey::target()
{
    if (QWidget *popup = QApplication::activePopupWidget()) {
        return chance(8) ? m_window.get() : popup;
    }
    if (QWidget *modal = QApplication::activeModalWidget()) {
        return modal;
    }
    auto *message = m_window->findChild<QWidget *>(QStringLiteral("messagePopup"));
    return message->isVisible() && chance(20) ? message : m_window.get();
}

QWidget *tst_Monkey::child(QWidget *top)
{
    QList<QWidget *> visible;
    for (QWidget *widget : top->findChildren<QWidget *>()) {
        if (widget->isVisible() && widget->window() == top) {
            visible.append(widget);
        }
    }
    return visible.isEmpty() ? top : oneOf(visible);
}

QPoint tst_Monkey::pointIn(const QWidget *widget)
{
    return {m_random.bounded(qMax(1, widget->width())),
            m_random.bounded(qMax(1, widget->height()))};
}

/// Sends the event to the window as the desktop would, so that grabs and modality hold.
void tst_Monkey::mouse(QTest::MouseAction action, QWidget *widget, const QPoint &point)
{
    QWidget *top = widget->window();
    const QPoint position = widget->mapTo(top, point);
    QWindow *window = top->windowHandle();
    if (window == nullptr || !window->isVisible() || !top->rect().contains(position)) {
        return;
    }
    const Qt::MouseButton button = chance(6) ? Qt::RightButton : Qt::LeftButton;
    const Qt::KeyboardModifiers modifiers = oneOf(QVector<Qt::KeyboardModifiers>{
        Qt::NoModifier, Qt::NoModifier, Qt::NoModifier, Qt::ShiftModifier, Qt::ControlModifier});
    m_history.last() +=
        QStringLiteral(" %1 \"%2\" at %3,%4")
            .arg(QLatin1String(widget->metaObject()->className()), widget->objectName())
            .arg(point.x())
            .arg(point.y());
    QTest::mouseEvent(action, window, action == QTest::MouseMove ? Qt::NoButton : button,
                      action == QTest::MouseMove ? Qt::NoModifier : modifiers, position);
}

/// Presses and releases a key. Not by Qt Test's own function, which goes on with a window that one
/// of the keys has taken away, as Alt does with a menu.
void tst_Monkey::key(const QWidget *top, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    struct Modifier
    {
        Qt::KeyboardModifier modifier;
        Qt::Key key;
    };
    static constexpr Modifier kModifiers[] = {{Qt::ShiftModifier, Qt::Key_Shift},
                                              {Qt::ControlModifier, Qt::Key_Control},
                                              {Qt::AltModifier, Qt::Key_Alt}};
    const QPointer<QWindow> window(top->windowHandle());
    const auto send = [&window](bool isPress, Qt::Key code, Qt::KeyboardModifiers held) {
        if (window != nullptr) {
            const char letter = QTest::keyToAscii(code);
            QTest::simulateEvent(window, isPress, code, held,
                                 letter == 0 ? QString() : QString(QLatin1Char(letter)), false);
        }
    };
    Qt::KeyboardModifiers held = Qt::NoModifier;
    for (const Modifier &modifier : kModifiers) {
        if (modifiers.testFlag(modifier.modifier)) {
            send(true, modifier.key, held);
            held |= modifier.modifier;
        }
    }
    send(true, key, held);
    send(false, key, held);
    for (const Modifier &modifier : kModifiers) {
        if (modifiers.testFlag(modifier.modifier)) {
            send(false, modifier.key, held);
            held &= ~Qt::KeyboardModifiers(modifier.modifier);
        }
    }
}

void tst_Monkey::clickAnywhere()
{
    QWidget *widget = child(target());
    mouse(chance(6) ? QTest::MouseDClick : QTest::MouseClick, widget, pointIn(widget));
}

void tst_Monkey::drag()
{
    QWidget *widget = child(target());
    const QPointer<QWindow> window(widget->window()->windowHandle());
    const QRect area = widget->window()->rect();
    const QPoint from = widget->mapTo(widget->window(), pointIn(widget));
    const QPoint to(m_random.bounded(qMax(1, area.width())),
                    m_random.bounded(qMax(1, area.height())));
    if (window == nullptr || !window->isVisible() || !area.contains(from)) {
        return;
    }
    QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, from);
    for (const QPoint &point : {(from + to) / 2, to}) {
        if (window != nullptr && window->isVisible()) {
            QTest::mouseMove(window, point);
        }
    }
    QWindow *released = window != nullptr ? window.data() : m_window->windowHandle();
    QTest::mouseRelease(released, Qt::LeftButton, Qt::NoModifier, to);
}

void tst_Monkey::hover()
{
    QWidget *widget = child(target());
    mouse(QTest::MouseMove, widget, pointIn(widget));
}

void tst_Monkey::turnWheel()
{
    QWidget *widget = child(target());
    const QPoint point = pointIn(widget);
    const int angle = chance(2) ? 120 : -120;
    QWheelEvent event(point, widget->mapToGlobal(point), QPoint(), QPoint(0, angle), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(widget, &event);
}

void tst_Monkey::pressKey()
{
    static const QVector<int> keys = {
        Qt::Key_Tab,   Qt::Key_Tab,      Qt::Key_Backtab,   Qt::Key_Return, Qt::Key_Enter,
        Qt::Key_Space, Qt::Key_Escape,   Qt::Key_Backspace, Qt::Key_Delete, Qt::Key_F2,
        Qt::Key_Up,    Qt::Key_Down,     Qt::Key_Left,      Qt::Key_Right,  Qt::Key_Home,
        Qt::Key_End,   Qt::Key_PageUp,   Qt::Key_PageDown,  Qt::Key_F4,     Qt::Key_F10,
        Qt::Key_Menu,  Qt::Key_Insert,   Qt::Key_A,         Qt::Key_1,      Qt::Key_5,
        Qt::Key_9,     Qt::Key_Asterisk, Qt::Key_Period,    Qt::Key_Percent};
    static const QVector<Qt::KeyboardModifiers> modifiers = {Qt::NoModifier,
                                                             Qt::NoModifier,
                                                             Qt::NoModifier,
                                                             Qt::ShiftModifier,
                                                             Qt::AltModifier,
                                                             Qt::ControlModifier,
                                                             Qt::ShiftModifier
                                                                 | Qt::ControlModifier};
    const auto pressed = static_cast<Qt::Key>(oneOf(keys));
    const Qt::KeyboardModifiers modifier = oneOf(modifiers);
    m_history.last() +=
        QStringLiteral(" 0x%1 with 0x%2").arg(pressed, 0, 16).arg(int(modifier), 0, 16);
    key(target(), pressed, modifier);
}

void tst_Monkey::typeText()
{
    const QString alphabet = QStringLiteral("0123456789.ABCDEFabcdefxX*= \"<>[]%&;");
    const int length = 1 + m_random.bounded(6);
    for (int i = 0; i < length; ++i) {
        key(target(), QTest::asciiToKey(oneOf(alphabet).toLatin1()));
    }
}

void tst_Monkey::paste()
{
    const QStringList texts = hostileTexts();
    QApplication::clipboard()->setText(
        chance(6) ? path({QStringLiteral("image.bin"), QStringLiteral("other.bin")})
                  : oneOf(texts));
    if (chance(2)) {
        key(target(), Qt::Key_A, Qt::ControlModifier);
    }
    key(target(), chance(8) ? Qt::Key_X : Qt::Key_V, Qt::ControlModifier);
}

void tst_Monkey::leaveMenus()
{
    while (QWidget *popup = QApplication::activePopupWidget()) {
        popup->close();
    }
}

/// Clicks into a field and pastes over what it holds.
void tst_Monkey::retype(const char *field, const QString &text)
{
    auto *edit = m_window->findChild<QLineEdit *>(QLatin1String(field));
    mouse(QTest::MouseClick, edit, edit->rect().center());
    edit->setFocus();
    edit->selectAll();
    QApplication::clipboard()->setText(text);
    key(m_window.get(), Qt::Key_V, Qt::ControlModifier);
    key(m_window.get(), Qt::Key_Tab);
}

void tst_Monkey::choosePath()
{
    leaveMenus();
    m_window->findChild<QTabWidget *>(QStringLiteral("tabWidget"))->setCurrentIndex(1);
    m_dialogs.prepare(path({QStringLiteral("image.bin"), QStringLiteral("other.bin"),
                            QStringLiteral("two.dots.bin"), QString()}),
                      true, 0);
    auto *button = m_window->findChild<QWidget *>(QStringLiteral("browseButton"));
    mouse(QTest::MouseClick, button, button->rect().center());
}

void tst_Monkey::open()
{
    leaveMenus();
    key(m_window.get(), Qt::Key_O, Qt::ControlModifier);
}

/// Saves, mostly after all that a package needs was entered: without it, none would ever be saved.
void tst_Monkey::save()
{
    leaveMenus();
    m_window->findChild<QTabWidget *>(QStringLiteral("tabWidget"))->setCurrentIndex(1);
    if (!chance(4)) {
        retype("pathField", file(QStringLiteral("image.bin")));
        retype("firmwareAddress", QStringLiteral("0x80001234"));
    }
    if (!chance(4)) {
        for (const char *field : {"optionAMinimum", "optionBMinimum"}) {
            m_window->findChild<QLineEdit *>(QLatin1String(field))
                ->setText(QStringLiteral("00.00"));
        }
        m_window->findChild<QSpinBox *>(QStringLiteral("minimumHardwareVersion"))->setValue(0);
        auto *type = m_window->findChild<QComboBox *>(QStringLiteral("hardwareType"));
        type->setEditText(type->itemText(type->currentIndex()));
    }
    key(m_window.get(), Qt::Key_S, Qt::ControlModifier);
}

void tst_Monkey::clickTab()
{
    auto *bar = m_window->findChild<QTabWidget *>(QStringLiteral("tabWidget"))->tabBar();
    mouse(QTest::MouseClick, bar, bar->tabRect(m_random.bounded(bar->count())).center());
}

void tst_Monkey::clickMenu()
{
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    if (menu == nullptr || menu->actions().isEmpty()) {
        key(m_window.get(), chance(3) ? Qt::Key_H : Qt::Key_F, Qt::AltModifier);
        return;
    }
    mouse(QTest::MouseClick, menu, menu->actionGeometry(oneOf(menu->actions())).center());
}

void tst_Monkey::useShortcut()
{
    static const QVector<Qt::Key> keys = {Qt::Key_S, Qt::Key_S, Qt::Key_S, Qt::Key_O,
                                          Qt::Key_O, Qt::Key_N, Qt::Key_C, Qt::Key_Z};
    const Qt::Key letter = chance(40) ? Qt::Key_W : oneOf(keys);
    m_history.last() += QStringLiteral(" Ctrl+%1").arg(QChar(letter));
    key(m_window.get(), letter, Qt::ControlModifier);
}

void tst_Monkey::addRule()
{
    m_window->findChild<QTabWidget *>(QStringLiteral("tabWidget"))->setCurrentIndex(0);
    auto *button = m_window->findChild<QToolButton *>(oneOf(
        QStringList{QStringLiteral("addMaskRuleButton"), QStringLiteral("addTokenRuleButton")}));
    mouse(QTest::MouseClick, button, button->rect().center());
}

void tst_Monkey::clickHeader()
{
    auto *table = oneOf(m_window->findChildren<QTableView *>());
    QHeaderView *header = table->horizontalHeader();
    const int section = m_random.bounded(qMax(1, header->count()));
    mouse(QTest::MouseClick, header->viewport(),
          {header->sectionViewportPosition(section) + header->sectionSize(section) / 2,
           header->height() / 2});
}

void tst_Monkey::clickCell()
{
    auto *table = oneOf(m_window->findChildren<QTableView *>());
    const int rows = table->model()->rowCount();
    if (rows == 0) {
        return;
    }
    const QModelIndex index = table->model()->index(
        m_random.bounded(rows), m_random.bounded(table->model()->columnCount()));
    table->scrollTo(index);
    const QPoint point = table->visualRect(index).center();
    mouse(chance(3) ? QTest::MouseDClick : QTest::MouseClick, table->viewport(), point);
}

void tst_Monkey::changeWindow()
{
    switch (m_random.bounded(6)) {
    case 0:
        m_window->showMinimized();
        break;
    case 1:
        m_window->showMaximized();
        break;
    case 2:
        m_window->move(m_random.bounded(600), m_random.bounded(400));
        break;
    default:
        m_window->showNormal();
        m_window->resize(m_random.bounded(2000), m_random.bounded(1400));
    }
}

/// Goes over to another program, or comes back from it.
void tst_Monkey::changeFocus()
{
    if (m_otherWindow.isVisible()) {
        m_otherWindow.hide();
        m_window->activateWindow();
        return;
    }
    m_otherWindow.show();
    m_otherWindow.activateWindow();
}

ZEL_TEST_MAIN(tst_Monkey)
#include "tst_Monkey.moc"
