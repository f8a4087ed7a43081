#pragma once

#include "common/FileType.h"
#include "common/Scale.h"

#include <QMap>
#include <QString>
#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

/// A row in which the user names a folder or a file: a caption, a path field, a button that browses
/// for the path and a button that opens the folder.
///
/// What is typed is checked when editing ends. A path that exists is accepted: only then it becomes
/// path(). Paths may begin with a folder placeholder such as "%Temp%".
class PathSelector final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PathSelector)
    Q_PROPERTY(bool enabledEditing READ enabledEditing WRITE setEnabledEditing NOTIFY
                   isEnabledEditingChanged)
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY pathChanged)
    Q_PROPERTY(commonData::FileType fileType READ fileType WRITE setFileType NOTIFY fileTypeChanged)

public:
    /// What the path names.
    enum PathKind : quint8 {
        Folder = 0,
        File = 1,
    };
    Q_ENUM(PathKind)

    PathSelector(const QString &caption, PathKind kind, QWidget *parent = nullptr);
    ~PathSelector() override;

    /// The path accepted last, not what is being typed.
    [[nodiscard]] QString path() const { return m_path; }
    /// What the field shows: the accepted path, or what was typed and has not been accepted.
    [[nodiscard]] QString enteredPath() const;
    /// Shows @p path and accepts it unchecked.
    void setPath(const QString &path);

    /// Which files the file dialog offers.
    [[nodiscard]] commonData::FileType fileType() const { return m_fileType; }
    void setFileType(commonData::FileType fileType);

    [[nodiscard]] bool enabledEditing() const { return m_enabledEditing; }
    /// Whether the path can be typed and browsed for. The folder can be opened either way.
    void setEnabledEditing(bool enabled);

    /// Fixes the width of the caption, in pixels, so that the fields of several rows line up. Only
    /// a width above 0 has an effect.
    void setPathLabelWidth(int width);

    [[nodiscard]] bool hasErrorMark() const;
    /// Marks the path field as wrong. The next accepted path removes the mark.
    void setErrorMark(bool marked);

    /// Leaves room above and below the field for its error mark, which sizeHint() does without.
    [[nodiscard]] QSize minimumSizeHint() const override;

public slots:
    /// Checks what is typed and, when it exists and is of the right kind, accepts it. Otherwise
    /// reports why not, unless the field is empty, and returns false.
    bool validatePath();
    /// Lets the user choose the path in a dialog.
    void browsePath();
    /// Shows the folder, or the folder that contains the file, on the desktop.
    void openFolder();

signals:
    void isEnabledEditingChanged(bool enabled);
    void pathChanged(const QString &path);
    void pathLabelWidthChanged(int width);
    void fileTypeChanged(commonData::FileType fileType);
    /// An edited path was accepted.
    void editingFinished();
    void errorOccurred(const QString &message);

protected:
    void changeEvent(QEvent *event) override;

private:
    void setUpField();
    void setUpButtons();
    void arrange();
    void updateBrowseButtonWidth();
    [[nodiscard]] QString expandedPath() const;
    [[nodiscard]] QString problemWith(const QString &path) const;
    [[nodiscard]] QString choosePath(const QString &start) const;

    QLabel *const m_captionLabel;
    QLineEdit *const m_pathField;
    QPushButton *const m_browseButton;
    QPushButton *const m_openFolderButton;
    QVBoxLayout *const m_outerLayout;
    const QMap<commonData::FileType, QString> m_filters;
    const QString m_caption;
    QString m_path;
    const Scale m_scale;
    const PathKind m_kind;
    commonData::FileType m_fileType = commonData::AnyFile;
    bool m_enabledEditing = true;
};
