#include "widgets/PathSelector.h"

#include "common/Paths.h"
#include "resources/ProgramIcon.h"
#include "widgets/ErrorMark.h"

#include <QDesktopServices>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontMetrics>
#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QUrl>
#include <QVBoxLayout>

namespace {

constexpr int kErrorMarkRoom = 4;

/// A path that the file system can be asked about: none that was pasted with a NUL in it.
bool isPath(const QString &text)
{
    return !text.contains(QChar(QChar::Null));
}

/// What the file system knows of @p path.
QFileInfo infoOf(const QString &path)
{
    return isPath(path) ? QFileInfo(path) : QFileInfo();
}

} // namespace

PathSelector::PathSelector(const QString &caption, PathKind kind, QWidget *parent)
    : QWidget(parent)
    , m_captionLabel(new QLabel(caption, this))
    , m_pathField(new QLineEdit(this))
    , m_browseButton(new QPushButton(QStringLiteral("..."), this))
    , m_openFolderButton(
          new QPushButton(programIcon(QStringLiteral(":/OpenFolder")), QString(), this))
    , m_outerLayout(new QVBoxLayout(this))
    , m_filters({{commonData::AnyFile, tr("All Files (*.*)")},
                 {commonData::BinaryFile, tr("Binary Files (*.bin)")}})
    , m_caption(caption)
    , m_scale(logicalDpiX())
    , m_kind(kind)
{
    qRegisterMetaType<commonData::FileType>("commonData::FileType");
    setUpField();
    setUpButtons();
    arrange();

    connect(m_pathField, &QLineEdit::editingFinished, this, &PathSelector::validatePath);
    connect(m_browseButton, &QPushButton::clicked, this, &PathSelector::browsePath);
    connect(m_openFolderButton, &QPushButton::clicked, this, &PathSelector::openFolder);
}

PathSelector::~PathSelector()
{
    // The field is in focus until the base class ends, and would have its text checked then.
    m_pathField->disconnect(this);
}

void PathSelector::setUpField()
{
    m_captionLabel->setObjectName(QStringLiteral("captionLabel"));
    m_captionLabel->setBuddy(m_pathField);
    m_pathField->setObjectName(QStringLiteral("pathField"));
    m_pathField->setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::Preferred);
    m_pathField->setFocusPolicy(Qt::StrongFocus);
    new ErrorMark(m_pathField);
    setFocusProxy(m_pathField);
}

void PathSelector::setUpButtons()
{
    m_browseButton->setObjectName(QStringLiteral("browseButton"));
    m_browseButton->setToolTip(tr("Browse..."));
    m_openFolderButton->setObjectName(QStringLiteral("openFolderButton"));
    m_openFolderButton->setToolTip(tr("Open folder"));
    for (QPushButton *const button : {m_browseButton, m_openFolderButton}) {
        button->setAccessibleName(button->toolTip());
        button->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Preferred);
    }
    updateBrowseButtonWidth();

    // Deliberately given to no widget: the buttons keep their default style.
    const QString padding =
        QStringLiteral("QPushButton { padding: %1 %2px; }").arg(m_scale.px(4)).arg(m_scale.px(7));
    Q_UNUSED(padding)
}

void PathSelector::arrange()
{
    auto *const row = new QGridLayout;
    row->addWidget(m_captionLabel, 0, 0);
    row->addWidget(m_pathField, 0, 1);
    row->addWidget(m_browseButton, 0, 2);
    row->addWidget(m_openFolderButton, 0, 3);
    m_outerLayout->setContentsMargins(0, 0, 0, 0);
    m_outerLayout->addLayout(row);
    m_outerLayout->setAlignment(row, Qt::AlignVCenter);
}

QString PathSelector::enteredPath() const
{
    return m_pathField->text();
}

void PathSelector::setPath(const QString &path)
{
    m_pathField->setText(path);
    m_path = path;
    setErrorMark(false);
    emit pathChanged(path);
}

void PathSelector::setFileType(commonData::FileType fileType)
{
    m_fileType = fileType;
    emit fileTypeChanged(fileType);
}

void PathSelector::setEnabledEditing(bool enabled)
{
    m_enabledEditing = enabled;
    m_pathField->setEnabled(enabled);
    m_browseButton->setEnabled(enabled);
    emit isEnabledEditingChanged(enabled);
}

void PathSelector::setPathLabelWidth(int width)
{
    if (width <= 0) {
        return;
    }
    m_captionLabel->setFixedWidth(width);
    emit pathLabelWidthChanged(width);
}

bool PathSelector::hasErrorMark() const
{
    return ErrorMark::isMarked(m_pathField);
}

void PathSelector::setErrorMark(bool marked)
{
    ErrorMark::setMarked(m_pathField, marked);
}

QSize PathSelector::minimumSizeHint() const
{
    return {QWidget::minimumSizeHint().width(),
            sizeHint().height() + 2 * m_scale.px(kErrorMarkRoom)};
}

bool PathSelector::validatePath()
{
    const QString path = expandedPath();
    if (path.isEmpty() || (m_kind != Folder && m_kind != File)) {
        return false;
    }
    // Whoever hears of the outcome may take the focus from the field, which must not check again.
    const QSignalBlocker blocker(m_pathField);
    const QString problem = problemWith(path);
    if (!problem.isEmpty()) {
        emit errorOccurred(problem);
        return false;
    }
    setPath(path);
    emit editingFinished();
    return true;
}

void PathSelector::browsePath()
{
    const QString entered = expandedPath();
    const QString chosen = choosePath(isPath(entered) ? entered : QString());
    if (chosen.isEmpty()) {
        return;
    }
    const QSignalBlocker blocker(m_pathField);
    setPath(QDir::toNativeSeparators(chosen));
    validatePath();
}

void PathSelector::openFolder()
{
    QString folder = expandedPath();
    if (m_kind == File && !folder.isEmpty()) {
        folder = QDir::toNativeSeparators(QFileInfo(folder).path());
    }
    if (!infoOf(folder).isDir()) {
        emit errorOccurred(tr("The folder \"%1\" doesn't exist.").arg(folder));
    } else if (!QDesktopServices::openUrl(QUrl::fromLocalFile(QDir(folder).absolutePath()))) {
        emit errorOccurred(tr("Failed to open the folder \"%1\".").arg(folder));
    }
}

void PathSelector::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        updateBrowseButtonWidth();
    }
}

void PathSelector::updateBrowseButtonWidth()
{
    const QFontMetrics metrics = m_browseButton->fontMetrics();
    m_browseButton->setFixedWidth(metrics.horizontalAdvance(m_browseButton->text())
                                  + metrics.height());
}

/// What is typed, without surrounding white space, cleaned, and with its placeholder expanded.
QString PathSelector::expandedPath() const
{
    const QString typed = m_pathField->text().trimmed();
    return expandPlaceholder(QDir::toNativeSeparators(QDir::cleanPath(typed)));
}

/// Why @p path cannot be accepted; empty if it can.
QString PathSelector::problemWith(const QString &path) const
{
    const QFileInfo info = infoOf(path);
    if (m_kind == Folder) {
        return info.isDir() ? QString() : tr("\"%1\" folder doesn't exist.").arg(path);
    }
    if (info.isDir()) {
        return tr("\"%1\" is a directory.\nPlease specify path to a file.").arg(path);
    }
    return info.exists() ? QString() : tr("\"%1\" file doesn't exist.").arg(path);
}

/// What the user chooses in the dialog for the kind of path; empty when the dialog is cancelled.
QString PathSelector::choosePath(const QString &start) const
{
    const QString title = m_caption + tr(" Path");
    switch (m_kind) {
    case Folder:
        return QFileDialog::getExistingDirectory(
            nullptr, title, start, QFileDialog::ShowDirsOnly | QFileDialog::DontResolveSymlinks);
    case File:
        return QFileDialog::getOpenFileName(
            nullptr, title, start, m_filters.value(m_fileType, m_filters[commonData::AnyFile]));
    }
    return {};
}
