#pragma once

#include <QObject>
#include <QString>

class QDialog;
class QFileDialog;
class QTimer;

/// Answers whatever dialog comes up while an event is handled, so that the event returns.
class DialogKeeper final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DialogKeeper)

public:
    explicit DialogKeeper(QObject *parent = nullptr);
    ~DialogKeeper() override;

    /// Sets what is answered until the next call, and forgets what was answered so far: a file
    /// dialog gets @p path, or is cancelled when that is empty; a question is agreed to or not, as
    /// is a menu that has to be closed first, with its entry @p choice.
    void prepare(const QString &path, bool agrees, int choice);

    /// The path that a dialog for opening took since prepare(); empty when there was none.
    [[nodiscard]] QString openedPath() const { return m_openedPath; }
    /// The same for a dialog for saving.
    [[nodiscard]] QString savedPath() const { return m_savedPath; }

private:
    void look();
    void answer(QDialog *dialog);
    void choose(QWidget *popup) const;
    void answerFileDialog(QFileDialog *dialog);
    void noteAnswer(const QFileDialog &dialog);

    QTimer *m_timer = nullptr;
    QString m_path;
    bool m_agrees = false;
    int m_choice = 0;
    int m_looks = 0; ///< At dialogs, since prepare().
    int m_looksAtPopups = 0;
    QString m_openedPath;
    QString m_savedPath;
};
