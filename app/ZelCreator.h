#pragma once

#include "common/Scale.h"

#include <QMainWindow>

#include <initializer_list>

class MaskValidationModel;
class MessagePopupWidget;
class TokenValidationModel;
class ZelCreatorForm;
struct OptionFields;
struct RuleSection;

namespace tlv {
class ZelFile;
}

/// The program's window: one form that describes a firmware-update package, and what can be done
/// with it. Every message to the user goes to the window's one popup.
class ZelCreator : public QMainWindow
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ZelCreator)

public:
    /// Builds the form, restores the settings and, unless @p startPath is empty, reads that package
    /// into the form. A package that cannot be read is reported in the popup; the form stays empty.
    explicit ZelCreator(const QString &startPath, QWidget *parent = nullptr);
    ~ZelCreator() override;

    /// Sends a mouse press on the window's own surface to where it ends any editing in progress.
    bool eventFilter(QObject *watched, QEvent *event) override;

public slots:
    /// Checks the form and writes the package to the current path. With an empty current path the
    /// writer chooses one beside the firmware file. True when the file was written.
    bool saveFile();
    /// Reads the package at @p filePath into the form. On failure nothing changes, the reason is
    /// shown and false is returned.
    bool decodeFile(const QString &filePath);
    /// Asks for a package and reads it into the form, without a question about unsaved changes.
    void openZelFile();
    /// Checks the form, asks for a path and saves the package there.
    void saveZelFileAs();
    /// Shows the base name of the current path, with an asterisk after it when modified.
    void updateTitle();
    /// Marks the form as modified by the user.
    void updateProjectStatus();
    /// True when option A's minimum version, read as a decimal number, is at most its maximum.
    /// Marks both fields and shows the outcome, as do the two checks after it.
    bool validateOptionASoftwareVersions();
    bool validateOptionBSoftwareVersions();
    bool validateOptionSideHardwareVersions();
    /// True when the firmware address has exactly 8 characters. Fails without a message unless
    /// @p showErrorPopup.
    bool validateFirmwareAddress(bool showErrorPopup = true);

protected:
    /// Writes the settings and always accepts; unsaved changes are discarded without a question.
    void closeEvent(QCloseEvent *event) override;

private:
    [[nodiscard]] MessagePopupWidget *createMessagePopup();
    void createMenus();
    void connectForm();
    void connectRules(const RuleSection &section);
    void setInitialSize();
    void loadSettings();
    void saveSettings() const;

    void newFile();
    void exitProgram();
    void showAboutQt();
    void addRule(const RuleSection &section);
    void leaveTables();
    void leaveFields();
    void finishEditing();

    [[nodiscard]] bool validateForm();
    [[nodiscard]] bool validateFirmwarePath();
    [[nodiscard]] bool validateHardwareType();
    bool validateOption(const OptionFields &option, const QString &message);
    bool showOutcome(bool passed, std::initializer_list<QWidget *> fields, const QString &message);

    [[nodiscard]] QString askForSavePath();
    [[nodiscard]] bool write(QString &path, QString &message) const;
    [[nodiscard]] tlv::ZelFile packageFromForm() const;
    void fillForm(const tlv::ZelFile &package);
    void clearErrorMarks();
    void showFirmwareSize(const QString &firmwarePath);
    void showError(const QString &message);

    QString m_currentFilePath;
    bool m_modified = false;
    bool m_filling = false; ///< While the program, not the user, changes the rules.
    Scale m_scale;
    MaskValidationModel *m_maskModel = nullptr;
    TokenValidationModel *m_tokenModel = nullptr;
    ZelCreatorForm *m_form = nullptr;
    MessagePopupWidget *m_messagePopup = nullptr;
};
