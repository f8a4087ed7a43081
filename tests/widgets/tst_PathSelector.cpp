#include "widgets/PathSelector.h"

#include "common/Scale.h"
#include "tests/support/Activation.h"
#include "tests/support/WindowDriver.h"
#include "tests/support/ZelTest.h"
#include "widgets/ErrorMark.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLoggingCategory>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>

#include <functional>
#include <memory>

namespace {

/// A window with one selector, its parts, and what it signals.
class Form final : public QWidget
{
public:
    explicit Form(PathSelector::PathKind kind)
        : selector(new PathSelector(QStringLiteral("&Firmware"), kind, this))
        , caption(selector->findChild<QLabel *>(QStringLiteral("captionLabel")))
        , field(selector->findChild<QLineEdit *>(QStringLiteral("pathField")))
        , browse(selector->findChild<QPushButton *>(QStringLiteral("browseButton")))
        , open(selector->findChild<QPushButton *>(QStringLiteral("openFolderButton")))
        , paths(selector, &PathSelector::pathChanged)
        , finished(selector, &PathSelector::editingFinished)
        , errors(selector, &PathSelector::errorOccurred)
    {
        auto *const layout = new QVBoxLayout(this);
        layout->addWidget(selector);
        resize(600, 100);
    }

    [[nodiscard]] QString error() const
    {
        return errors.isEmpty() ? QString() : errors.last().at(0).toString();
    }
    [[nodiscard]] QString changedPath() const
    {
        return paths.isEmpty() ? QString() : paths.last().at(0).toString();
    }

    PathSelector *const selector;
    QLabel *const caption;
    QLineEdit *const field;
    QPushButton *const browse;
    QPushButton *const open;
    const QSignalSpy paths;
    const QSignalSpy finished;
    const QSignalSpy errors;
};

QString native(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

} // namespace

class tst_PathSelector : public ZelTest
{
    Q_OBJECT

public slots:
    /// Stands in for the desktop.
    void noteOpenedUrl(const QUrl &url) { m_opened << url; }

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void partsStandInOneRow();
    void partsAreSetUp();
    void startsEmptyAndEnabled();
    void browseButtonFitsItsText();
    void rowLeavesRoomForTheErrorMark();
    void focusGoesToTheField();
    void captionLeadsToTheField();

    void setPathShowsAndAccepts();
    void setFileTypeIsReported();
    void setEnabledEditingLeavesOpenFolderEnabled();
    void setPathLabelWidthFixesTheCaption();
    void setPathLabelWidthTakesWidthsAboveZeroOnly_data();
    void setPathLabelWidthTakesWidthsAboveZeroOnly();
    void propertiesCanBeSetByName();

    void existingPathsAreAccepted_data();
    void existingPathsAreAccepted();
    void wrongPathsAreReported_data();
    void wrongPathsAreReported();
    void aPastedNulMakesAPathThatDoesNotExist();
    void anEmptyFieldGivesNoMessage_data();
    void anEmptyFieldGivesNoMessage();
    void leavingTheFieldChecks();
    void theEndOfTheSelectorChecksNothing();
    void returnKeyChecks();
    void theFieldIsSilentWhileTheOutcomeIsReported();
    void pathChangedComesBeforeEditingFinished();
    void anUnknownKindAcceptsNothing();

    void errorMarkIsOnThePathField();
    void anAcceptedPathRemovesTheErrorMark();
    void aRefusedPathKeepsTheErrorMark();

    void browsingForAFile();
    void browsingForAFolder();
    void browsingStartsAtTheTypedPath();
    void cancellingTheDialogChangesNothing_data();
    void cancellingTheDialogChangesNothing();
    void fileDialogOffersTheFileType_data();
    void fileDialogOffersTheFileType();

    void opensTheFolder();
    void opensTheFolderOfTheFile();
    void opensTheFolderOfAMissingFile();
    void opensTheFolderWhileEditingIsDisabled();
    void aMissingFolderIsNotOpened_data();
    void aMissingFolderIsNotOpened();
    void aFolderThatCannotBeOpenedIsReported();

private:
    bool open(PathSelector::PathKind kind);
    void answerDialog(const std::function<void(QFileDialog &)> &answer);
    static void choose(QFileDialog &dialog, const QString &path);

    QString m_folder;
    QString m_file;
    QString m_missing;
    QList<QUrl> m_opened;
    std::unique_ptr<Form> m_form;
};

void tst_PathSelector::initTestCase()
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    // The X server may be asked about a dialog that was answered and is gone already.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.qpa.xcb.warning=false"));
    QDir scratch(TestSandbox::temporaryPath());
    QVERIFY(scratch.mkpath(QStringLiteral("pack/sub")));
    m_folder = native(scratch.filePath(QStringLiteral("pack")));
    m_file = native(scratch.filePath(QStringLiteral("pack/image.bin")));
    m_missing = native(scratch.filePath(QStringLiteral("pack/missing")));
    QFile file(m_file);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

void tst_PathSelector::init()
{
    m_opened.clear();
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "noteOpenedUrl");
}

void tst_PathSelector::cleanup()
{
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    m_form.reset();
}

bool tst_PathSelector::open(PathSelector::PathKind kind)
{
    m_form = std::make_unique<Form>(kind);
    m_form->show();
    return activate(*m_form);
}

/// Gives the next file dialog its answer as soon as it is there.
void tst_PathSelector::answerDialog(const std::function<void(QFileDialog &)> &answer)
{
    auto *const timer = new QTimer(m_form.get());
    connect(timer, &QTimer::timeout, m_form.get(), [timer, answer] {
        auto *const dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (dialog != nullptr && dialog->isActiveWindow()) {
            timer->stop();
            answer(*dialog);
        }
    });
    timer->start(10);
}

void tst_PathSelector::choose(QFileDialog &dialog, const QString &path)
{
    auto *const name = dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    name->selectAll();
    driver::enter(name, path);
    QTest::keyClick(name, Qt::Key_Return);
}

void tst_PathSelector::partsStandInOneRow()
{
    const Form form(PathSelector::File);
    QCOMPARE(form.selector->layout()->contentsMargins(), QMargins());
    const auto *const grid = form.selector->findChild<QGridLayout *>();
    QVERIFY(grid != nullptr);
    QCOMPARE(grid->rowCount(), 1);
    const auto columnOf = [grid](QWidget *part) {
        int row = 0;
        int column = 0;
        int rowSpan = 0;
        int columnSpan = 0;
        grid->getItemPosition(grid->indexOf(part), &row, &column, &rowSpan, &columnSpan);
        return column;
    };
    QCOMPARE(columnOf(form.caption), 0);
    QCOMPARE(columnOf(form.field), 1);
    QCOMPARE(columnOf(form.browse), 2);
    QCOMPARE(columnOf(form.open), 3);
}

void tst_PathSelector::partsAreSetUp()
{
    const Form form(PathSelector::File);
    QCOMPARE(form.caption->text(), QStringLiteral("&Firmware"));
    QVERIFY(form.caption->buddy() == form.field);
    QCOMPARE(form.field->sizePolicy().horizontalPolicy(), QSizePolicy::MinimumExpanding);
    QCOMPARE(form.field->sizePolicy().verticalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(form.field->focusPolicy(), Qt::StrongFocus);
    QCOMPARE(form.browse->text(), QStringLiteral("..."));
    QCOMPARE(form.browse->toolTip(), QStringLiteral("Browse..."));
    QCOMPARE(form.browse->accessibleName(), QStringLiteral("Browse..."));
    QCOMPARE(form.open->text(), QString());
    QCOMPARE(form.open->toolTip(), QStringLiteral("Open folder"));
    QCOMPARE(form.open->accessibleName(), QStringLiteral("Open folder"));
    for (const QPushButton *const button : {form.browse, form.open}) {
        QCOMPARE(button->sizePolicy().horizontalPolicy(), QSizePolicy::Minimum);
        QCOMPARE(button->sizePolicy().verticalPolicy(), QSizePolicy::Preferred);
        // The padding that is made up for the buttons is deliberately not given to them.
        QCOMPARE(button->styleSheet(), QString());
    }
}

void tst_PathSelector::startsEmptyAndEnabled()
{
    const Form form(PathSelector::Folder);
    QCOMPARE(form.selector->path(), QString());
    QCOMPARE(form.field->text(), QString());
    QCOMPARE(form.selector->fileType(), commonData::AnyFile);
    QVERIFY(form.selector->enabledEditing());
    QVERIFY(form.field->isEnabled());
    QVERIFY(form.browse->isEnabled());
    QVERIFY(form.open->isEnabled());
    QCOMPARE(static_cast<int>(PathSelector::Folder), 0);
    QCOMPARE(static_cast<int>(PathSelector::File), 1);
    QCOMPARE(sizeof(PathSelector::PathKind), std::size_t(1));
}

void tst_PathSelector::browseButtonFitsItsText()
{
    const Form form(PathSelector::File);
    const auto expected = [&form] {
        const QFontMetrics metrics(form.browse->font());
        return metrics.horizontalAdvance(QStringLiteral("...")) + metrics.height();
    };
    QCOMPARE(form.browse->minimumWidth(), expected());
    QCOMPARE(form.browse->maximumWidth(), expected());

    const int before = form.browse->minimumWidth();
    QFont large = form.selector->font();
    large.setPixelSize(50);
    form.selector->setFont(large);
    QCOMPARE(form.browse->minimumWidth(), expected());
    QVERIFY(form.browse->minimumWidth() > before);
}

void tst_PathSelector::rowLeavesRoomForTheErrorMark()
{
    QVERIFY(open(PathSelector::File));
    const int room = Scale(m_form->logicalDpiX()).px(4);

    QCOMPARE(m_form->field->height(), m_form->selector->sizeHint().height());
    QVERIFY(m_form->field->y() >= room);
    QVERIFY(m_form->selector->height() - m_form->field->geometry().bottom() > room);
}

void tst_PathSelector::focusGoesToTheField()
{
    QVERIFY(open(PathSelector::File));
    m_form->open->setFocus();

    m_form->selector->setFocus();
    QTRY_VERIFY(m_form->field->hasFocus());
    QVERIFY(m_form->selector->hasFocus());

    QTest::keyClick(m_form->field, Qt::Key_Tab);
    QTRY_VERIFY(m_form->browse->hasFocus());
    QTest::keyClick(m_form->browse, Qt::Key_Tab);
    QTRY_VERIFY(m_form->open->hasFocus());

    m_form->selector->setFocus();
    m_form->selector->clearFocus();
    QVERIFY(!m_form->field->hasFocus());
}

void tst_PathSelector::captionLeadsToTheField()
{
    QVERIFY(open(PathSelector::File));
    m_form->open->setFocus();

    QTest::keyClick(m_form->windowHandle(), Qt::Key_F, Qt::AltModifier);

    QTRY_VERIFY(m_form->field->hasFocus());
}

void tst_PathSelector::setPathShowsAndAccepts()
{
    const Form form(PathSelector::File);
    form.selector->setPath(m_missing);

    QCOMPARE(form.selector->path(), m_missing);
    QCOMPARE(form.field->text(), m_missing);
    QCOMPARE(form.paths.count(), 1);
    QCOMPARE(form.changedPath(), m_missing);
    QCOMPARE(form.finished.count(), 0);
    QCOMPARE(form.errors.count(), 0);
}

void tst_PathSelector::setFileTypeIsReported()
{
    const Form form(PathSelector::File);
    const QSignalSpy types(form.selector, &PathSelector::fileTypeChanged);

    form.selector->setFileType(commonData::BinaryFile);

    QCOMPARE(form.selector->fileType(), commonData::BinaryFile);
    QCOMPARE(types.count(), 1);
    QCOMPARE(types.at(0).at(0).value<commonData::FileType>(), commonData::BinaryFile);
}

void tst_PathSelector::setEnabledEditingLeavesOpenFolderEnabled()
{
    const Form form(PathSelector::File);
    const QSignalSpy reported(form.selector, &PathSelector::isEnabledEditingChanged);

    form.selector->setEnabledEditing(false);
    QVERIFY(!form.selector->enabledEditing());
    QVERIFY(!form.field->isEnabled());
    QVERIFY(!form.browse->isEnabled());
    QVERIFY(form.open->isEnabled());

    form.selector->setEnabledEditing(true);
    QVERIFY(form.field->isEnabled());
    QVERIFY(form.browse->isEnabled());
    QCOMPARE(reported.count(), 2);
    QCOMPARE(reported.at(0).at(0).toBool(), false);
    QCOMPARE(reported.at(1).at(0).toBool(), true);
}

void tst_PathSelector::setPathLabelWidthFixesTheCaption()
{
    const Form form(PathSelector::File);
    const QSignalSpy widths(form.selector, &PathSelector::pathLabelWidthChanged);

    form.selector->setPathLabelWidth(123);

    QCOMPARE(form.caption->minimumWidth(), 123);
    QCOMPARE(form.caption->maximumWidth(), 123);
    QCOMPARE(widths.count(), 1);
    QCOMPARE(widths.at(0).at(0).toInt(), 123);
}

void tst_PathSelector::setPathLabelWidthTakesWidthsAboveZeroOnly_data()
{
    QTest::addColumn<int>("width");
    QTest::newRow("zero") << 0;
    QTest::newRow("negative") << -5;
}

void tst_PathSelector::setPathLabelWidthTakesWidthsAboveZeroOnly()
{
    QFETCH(int, width);
    const Form form(PathSelector::File);
    form.selector->setPathLabelWidth(77);
    const QSignalSpy widths(form.selector, &PathSelector::pathLabelWidthChanged);

    form.selector->setPathLabelWidth(width);

    QCOMPARE(form.caption->minimumWidth(), 77);
    QCOMPARE(widths.count(), 0);
}

void tst_PathSelector::propertiesCanBeSetByName()
{
    const Form form(PathSelector::File);
    QVERIFY(form.selector->setProperty("path", m_file));
    QVERIFY(form.selector->setProperty("enabledEditing", false));
    QVERIFY(form.selector->setProperty("fileType", QVariant::fromValue(commonData::BinaryFile)));

    QCOMPARE(form.selector->property("path").toString(), m_file);
    QCOMPARE(form.selector->property("enabledEditing").toBool(), false);
    QCOMPARE(form.selector->property("fileType").value<commonData::FileType>(),
             commonData::BinaryFile);
}

void tst_PathSelector::existingPathsAreAccepted_data()
{
    QTest::addColumn<PathSelector::PathKind>("kind");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("accepted");

    QTest::newRow("folder") << PathSelector::Folder << m_folder << m_folder;
    QTest::newRow("file") << PathSelector::File << m_file << m_file;
    QTest::newRow("blanks around it")
        << PathSelector::File << QStringLiteral(" \t%1  ").arg(m_file) << m_file;
    QTest::newRow("to be cleaned")
        << PathSelector::File << m_folder + QStringLiteral("/sub/..//./image.bin") << m_file;
    QTest::newRow("separator at the end")
        << PathSelector::Folder << m_folder + QLatin1Char('/') << m_folder;
    QTest::newRow("folder placeholder")
        << PathSelector::Folder << QStringLiteral("%Temp%/pack") << m_folder;
    QTest::newRow("file placeholder in other case")
        << PathSelector::File << QStringLiteral("%tMP%/pack/image.bin") << m_file;
}

void tst_PathSelector::existingPathsAreAccepted()
{
    QFETCH(PathSelector::PathKind, kind);
    QFETCH(QString, typed);
    QFETCH(QString, accepted);
    const Form form(kind);
    form.field->setText(typed);

    QVERIFY(form.selector->validatePath());

    QCOMPARE(form.field->text(), accepted);
    QCOMPARE(form.selector->path(), accepted);
    QCOMPARE(form.paths.count(), 1);
    QCOMPARE(form.changedPath(), accepted);
    QCOMPARE(form.finished.count(), 1);
    QCOMPARE(form.errors.count(), 0);
}

void tst_PathSelector::wrongPathsAreReported_data()
{
    QTest::addColumn<PathSelector::PathKind>("kind");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("message");

    const QString noFolder = QStringLiteral("\"%1\" folder doesn't exist.");
    const QString noFile = QStringLiteral("\"%1\" file doesn't exist.");
    QTest::newRow("missing folder") << PathSelector::Folder << m_missing << noFolder.arg(m_missing);
    QTest::newRow("file where a folder is due")
        << PathSelector::Folder << m_file << noFolder.arg(m_file);
    QTest::newRow("missing file") << PathSelector::File << m_missing << noFile.arg(m_missing);
    QTest::newRow("folder where a file is due")
        << PathSelector::File << m_folder
        << QStringLiteral("\"%1\" is a directory.\nPlease specify path to a file.").arg(m_folder);
    QTest::newRow("the message has the path that was looked for")
        << PathSelector::File << QStringLiteral(" %TEMP%/pack//missing ") << noFile.arg(m_missing);
    QTest::newRow("unknown placeholder") << PathSelector::File << QStringLiteral("%NOSUCH%/x.bin")
                                         << QStringLiteral("\"%1\" file doesn't exist.")
                                                .arg(native(QStringLiteral("%NOSUCH%/x.bin")));
    QTest::newRow("place marker in the path")
        << PathSelector::File << QStringLiteral("a%1b%2") << noFile.arg(QStringLiteral("a%1b%2"));
    const QString longPath(20000, QLatin1Char('x'));
    QTest::newRow("longer than any path") << PathSelector::File << longPath << noFile.arg(longPath);
#ifdef Q_OS_UNIX
    QTest::newRow("backslashes are part of a name")
        << PathSelector::File << QStringLiteral("C:\\pack\\image.bin")
        << noFile.arg(QStringLiteral("C:\\pack\\image.bin"));
    QTest::newRow("network path") << PathSelector::Folder
                                  << QStringLiteral("//no-such-server/share")
                                  << noFolder.arg(QStringLiteral("/no-such-server/share"));
#endif
}

void tst_PathSelector::wrongPathsAreReported()
{
    QFETCH(PathSelector::PathKind, kind);
    QFETCH(QString, typed);
    QFETCH(QString, message);
    const Form form(kind);
    form.selector->setPath(QStringLiteral("accepted before"));
    form.field->setText(typed);

    QVERIFY(!form.selector->validatePath());

    QCOMPARE(form.errors.count(), 1);
    QCOMPARE(form.error(), message);
    QCOMPARE(form.field->text(), typed);
    QCOMPARE(form.selector->path(), QStringLiteral("accepted before"));
    QCOMPARE(form.paths.count(), 1);
    QCOMPARE(form.finished.count(), 0);
}

void tst_PathSelector::aPastedNulMakesAPathThatDoesNotExist()
{
    QVERIFY(open(PathSelector::File));
    const QString pasted =
        native(QStringLiteral("/no/such") + QChar(QChar::Null) + QStringLiteral("/image.bin"));
    m_form->field->setText(pasted);

    QVERIFY(!m_form->selector->validatePath());
    QCOMPARE(m_form->error(), QStringLiteral("\"%1\" file doesn't exist.").arg(pasted));

    m_form->selector->openFolder();
    QVERIFY(m_form->error().startsWith(QLatin1String("The folder \"")));

    bool appeared = false;
    answerDialog([&appeared](QFileDialog &dialog) {
        appeared = true;
        dialog.reject();
    });
    m_form->selector->browsePath();
    QVERIFY(appeared);
    QCOMPARE(m_form->field->text(), pasted);
}

void tst_PathSelector::anEmptyFieldGivesNoMessage_data()
{
    QTest::addColumn<PathSelector::PathKind>("kind");
    QTest::addColumn<QString>("typed");
    QTest::newRow("empty, folder") << PathSelector::Folder << "";
    QTest::newRow("empty, file") << PathSelector::File << "";
    QTest::newRow("blanks, file") << PathSelector::File << "  \t ";
}

void tst_PathSelector::anEmptyFieldGivesNoMessage()
{
    QFETCH(PathSelector::PathKind, kind);
    QFETCH(QString, typed);
    QVERIFY(open(kind));
    m_form->selector->setPath(QStringLiteral("accepted before"));
    m_form->selector->setFocus();
    QTRY_VERIFY(m_form->field->hasFocus());
    m_form->field->clear();
    QTest::keyClicks(m_form->field, typed);

    QTest::keyClick(m_form->field, Qt::Key_Tab);

    QTRY_VERIFY(!m_form->field->hasFocus());
    QVERIFY(!m_form->selector->validatePath());
    QCOMPARE(m_form->errors.count(), 0);
    QCOMPARE(m_form->finished.count(), 0);
    QCOMPARE(m_form->selector->path(), QStringLiteral("accepted before"));
}

void tst_PathSelector::leavingTheFieldChecks()
{
    QVERIFY(open(PathSelector::File));
    m_form->selector->setFocus();
    QTRY_VERIFY(m_form->field->hasFocus());

    driver::enter(m_form->field, m_file);
    QCOMPARE(m_form->selector->path(), QString());
    QTest::keyClick(m_form->field, Qt::Key_Tab);

    QTRY_COMPARE(m_form->selector->path(), m_file);
    QCOMPARE(m_form->finished.count(), 1);
}

void tst_PathSelector::theEndOfTheSelectorChecksNothing()
{
    QVERIFY(open(PathSelector::File));
    m_form->selector->setFocus();
    QTRY_VERIFY(m_form->field->hasFocus());

    driver::enter(m_form->field, m_missing);
    delete m_form->selector;

    QCOMPARE(m_form->errors.count(), 0);
}

void tst_PathSelector::returnKeyChecks()
{
    QVERIFY(open(PathSelector::File));
    m_form->selector->setFocus();
    QTRY_VERIFY(m_form->field->hasFocus());

    driver::enter(m_form->field, m_folder);
    QTest::keyClick(m_form->field, Qt::Key_Return);

    QCOMPARE(
        m_form->error(),
        QStringLiteral("\"%1\" is a directory.\nPlease specify path to a file.").arg(m_folder));
}

void tst_PathSelector::theFieldIsSilentWhileTheOutcomeIsReported()
{
    const Form form(PathSelector::File);
    int reports = 0;
    const auto checkSilence = [&] {
        ++reports;
        QVERIFY(form.field->signalsBlocked());
    };
    connect(form.selector, &PathSelector::errorOccurred, this, checkSilence);
    connect(form.selector, &PathSelector::pathChanged, this, checkSilence);
    connect(form.selector, &PathSelector::editingFinished, this, checkSilence);

    form.field->setText(m_missing);
    QVERIFY(!form.selector->validatePath());
    form.field->setText(m_file);
    QVERIFY(form.selector->validatePath());

    QCOMPARE(reports, 3);
    QVERIFY(!form.field->signalsBlocked());
}

void tst_PathSelector::pathChangedComesBeforeEditingFinished()
{
    const Form form(PathSelector::Folder);
    QStringList order;
    connect(form.selector, &PathSelector::pathChanged, this,
            [&] { order << QStringLiteral("pathChanged"); });
    connect(form.selector, &PathSelector::editingFinished, this,
            [&] { order << QStringLiteral("editingFinished"); });

    form.field->setText(m_folder);
    QVERIFY(form.selector->validatePath());

    QCOMPARE(order,
             (QStringList{QStringLiteral("pathChanged"), QStringLiteral("editingFinished")}));
}

void tst_PathSelector::anUnknownKindAcceptsNothing()
{
    const Form form(static_cast<PathSelector::PathKind>(2));
    form.field->setText(m_file);

    QVERIFY(!form.selector->validatePath());
    form.selector->browsePath();

    QCOMPARE(form.errors.count(), 0);
    QCOMPARE(form.paths.count(), 0);
}

void tst_PathSelector::errorMarkIsOnThePathField()
{
    const Form form(PathSelector::File);
    QVERIFY(!form.selector->hasErrorMark());
    QVERIFY(qobject_cast<ErrorMark *>(form.field->graphicsEffect()) != nullptr);

    form.selector->setErrorMark(true);
    QVERIFY(form.selector->hasErrorMark());
    QVERIFY(form.field->graphicsEffect()->isEnabled());

    form.selector->setErrorMark(false);
    QVERIFY(!form.selector->hasErrorMark());
}

void tst_PathSelector::anAcceptedPathRemovesTheErrorMark()
{
    const Form form(PathSelector::File);
    form.selector->setErrorMark(true);
    form.field->setText(m_file);
    QVERIFY(form.selector->validatePath());
    QVERIFY(!form.selector->hasErrorMark());

    form.selector->setErrorMark(true);
    form.selector->setPath(m_file);
    QVERIFY(!form.selector->hasErrorMark());
}

void tst_PathSelector::aRefusedPathKeepsTheErrorMark()
{
    const Form form(PathSelector::File);
    form.selector->setErrorMark(true);
    form.field->setText(m_missing);
    QVERIFY(!form.selector->validatePath());
    QVERIFY(form.selector->hasErrorMark());
}

void tst_PathSelector::browsingForAFile()
{
    QVERIFY(open(PathSelector::File));
    const QSignalSpy texts(m_form->field, &QLineEdit::textChanged);
    answerDialog([this](QFileDialog &dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("&Firmware Path"));
        QVERIFY(dialog.parentWidget() == nullptr);
        QCOMPARE(dialog.fileMode(), QFileDialog::ExistingFile);
        choose(dialog, m_file);
    });

    QTest::mouseClick(m_form->browse, Qt::LeftButton);

    QCOMPARE(m_form->selector->path(), m_file);
    QCOMPARE(m_form->field->text(), m_file);
    QCOMPARE(m_form->changedPath(), m_file);
    // Once as the choice, once as the result of its check.
    QCOMPARE(m_form->paths.count(), 2);
    QCOMPARE(m_form->finished.count(), 1);
    QCOMPARE(m_form->errors.count(), 0);
    QCOMPARE(texts.count(), 0);
}

void tst_PathSelector::browsingForAFolder()
{
    QVERIFY(open(PathSelector::Folder));
    answerDialog([this](QFileDialog &dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("&Firmware Path"));
        QVERIFY(dialog.testOption(QFileDialog::ShowDirsOnly));
        QVERIFY(dialog.testOption(QFileDialog::DontResolveSymlinks));
        choose(dialog, m_folder);
    });

    QTest::mouseClick(m_form->browse, Qt::LeftButton);

    QCOMPARE(m_form->selector->path(), m_folder);
    QCOMPARE(m_form->field->text(), m_folder);
    QCOMPARE(m_form->paths.count(), 2);
    QCOMPARE(m_form->finished.count(), 1);
}

void tst_PathSelector::browsingStartsAtTheTypedPath()
{
    QVERIFY(open(PathSelector::File));
    m_form->field->setText(QStringLiteral(" %Temp%/pack/image.bin"));
    QString folder;
    QString name;
    answerDialog([&](QFileDialog &dialog) {
        folder = native(dialog.directory().path());
        name = dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->text();
        dialog.reject();
    });

    m_form->selector->browsePath();

    QCOMPARE(folder, m_folder);
    QCOMPARE(name, QStringLiteral("image.bin"));
}

void tst_PathSelector::cancellingTheDialogChangesNothing_data()
{
    QTest::addColumn<PathSelector::PathKind>("kind");
    QTest::newRow("folder") << PathSelector::Folder;
    QTest::newRow("file") << PathSelector::File;
}

void tst_PathSelector::cancellingTheDialogChangesNothing()
{
    QFETCH(PathSelector::PathKind, kind);
    QVERIFY(open(kind));
    m_form->browse->setFocus();
    QTRY_VERIFY(m_form->browse->hasFocus());
    m_form->selector->setPath(QStringLiteral("accepted before"));
    m_form->field->setText(QStringLiteral(" typed "));
    answerDialog([](QFileDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });

    QTest::keyClick(m_form->browse, Qt::Key_Space);

    QCOMPARE(m_form->field->text(), QStringLiteral(" typed "));
    QCOMPARE(m_form->selector->path(), QStringLiteral("accepted before"));
    QCOMPARE(m_form->paths.count(), 1);
    QCOMPARE(m_form->finished.count(), 0);
    QCOMPARE(m_form->errors.count(), 0);
}

void tst_PathSelector::fileDialogOffersTheFileType_data()
{
    QTest::addColumn<commonData::FileType>("type");
    QTest::addColumn<QString>("filter");
    QTest::newRow("any") << commonData::AnyFile << "All Files (*.*)";
    QTest::newRow("binary") << commonData::BinaryFile << "Binary Files (*.bin)";
}

void tst_PathSelector::fileDialogOffersTheFileType()
{
    QFETCH(commonData::FileType, type);
    QFETCH(QString, filter);
    QVERIFY(open(PathSelector::File));
    m_form->selector->setFileType(type);
    QStringList filters;
    answerDialog([&filters](QFileDialog &dialog) {
        filters = dialog.nameFilters();
        dialog.reject();
    });

    m_form->selector->browsePath();

    QCOMPARE(filters, QStringList{filter});
}

void tst_PathSelector::opensTheFolder()
{
    QVERIFY(open(PathSelector::Folder));
    m_form->field->setText(QStringLiteral(" %Temp%/pack/sub/.. "));

    QTest::mouseClick(m_form->open, Qt::LeftButton);

    QCOMPARE(m_opened, QList<QUrl>{QUrl::fromLocalFile(m_folder)});
    QCOMPARE(m_form->errors.count(), 0);
}

void tst_PathSelector::opensTheFolderOfTheFile()
{
    QVERIFY(open(PathSelector::File));
    m_form->field->setText(m_file);

    QTest::mouseClick(m_form->open, Qt::LeftButton);

    QCOMPARE(m_opened, QList<QUrl>{QUrl::fromLocalFile(m_folder)});
}

void tst_PathSelector::opensTheFolderOfAMissingFile()
{
    const Form form(PathSelector::File);
    form.field->setText(m_missing);

    form.selector->openFolder();

    QCOMPARE(m_opened, QList<QUrl>{QUrl::fromLocalFile(m_folder)});
    QCOMPARE(form.errors.count(), 0);
}

void tst_PathSelector::opensTheFolderWhileEditingIsDisabled()
{
    QVERIFY(open(PathSelector::File));
    m_form->selector->setPath(m_file);
    m_form->selector->setEnabledEditing(false);

    QTest::mouseClick(m_form->open, Qt::LeftButton);

    QCOMPARE(m_opened, QList<QUrl>{QUrl::fromLocalFile(m_folder)});
}

void tst_PathSelector::aMissingFolderIsNotOpened_data()
{
    QTest::addColumn<PathSelector::PathKind>("kind");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("folder");

    QTest::newRow("folder") << PathSelector::Folder << m_missing << m_missing;
    QTest::newRow("folder of a file")
        << PathSelector::File << m_missing + QStringLiteral("/x.bin") << m_missing;
    QTest::newRow("file where a folder is due") << PathSelector::Folder << m_file << m_file;
    QTest::newRow("empty, folder") << PathSelector::Folder << ""
                                   << "";
    QTest::newRow("empty, file") << PathSelector::File << ""
                                 << "";
}

void tst_PathSelector::aMissingFolderIsNotOpened()
{
    QFETCH(PathSelector::PathKind, kind);
    QFETCH(QString, typed);
    QFETCH(QString, folder);
    const Form form(kind);
    form.field->setText(typed);

    form.selector->openFolder();

    QCOMPARE(form.errors.count(), 1);
    QCOMPARE(form.error(), QStringLiteral("The folder \"%1\" doesn't exist.").arg(folder));
    QVERIFY(m_opened.isEmpty());
}

void tst_PathSelector::aFolderThatCannotBeOpenedIsReported()
{
    const Form form(PathSelector::Folder);
    form.field->setText(m_folder);
    // A handler that cannot be called is a desktop that fails.
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "noSuchMethod");
    expectWarning(QStringLiteral("No such method .*noSuchMethod"));

    form.selector->openFolder();

    QCOMPARE(form.error(), QStringLiteral("Failed to open the folder \"%1\".").arg(m_folder));
}

ZEL_TEST_MAIN(tst_PathSelector)
#include "tst_PathSelector.moc"
