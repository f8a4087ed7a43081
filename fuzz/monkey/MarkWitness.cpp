#include "fuzz/monkey/MarkWitness.h"

#include "app/ZelCreator.h"
#include "fuzz/monkey/DialogKeeper.h"
#include "models/MaskValidationModel.h"
#include "models/TokenValidationModel.h"
#include "tlv/ZelFile.h"
#include "widgets/PathSelector.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>

#include <utility>

namespace {

const QString kProgram = QStringLiteral("ZEL File Creator");

/// The rules as one value each.
QVariant toVariant(const QList<MaskValidationRule> &rules)
{
    QVariantList values;
    for (const MaskValidationRule &rule : rules) {
        values << rule.parameter << rule.index << rule.mask;
    }
    return values;
}

QVariant toVariant(const QList<TokenValidationRule> &rules)
{
    QVariantList values;
    for (const TokenValidationRule &rule : rules) {
        values << rule.token << rule.value;
    }
    return values;
}

/// The text that the toolkit shows for a title: doubled marks stand for themselves.
QString literal(QString name)
{
    return name.replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
}

} // namespace

MarkWitness::MarkWitness(ZelCreator *window, QString startPath, QObject *parent)
    : QObject(parent)
    , m_window(window)
    , m_message(window->findChild<QLabel *>(QStringLiteral("messageLabel")))
    , m_path(std::move(startPath))
    , m_baseline(content())
    , m_titleBefore(window->windowTitle())
    , m_pathIsStale(m_titleBefore == kProgram)
{
    connect(window->findChild<MaskValidationModel *>(), &QAbstractItemModel::modelReset, this,
            [this] { ++m_resets; });
}

MarkWitness::~MarkWitness() = default;

void MarkWitness::beforeEvent()
{
    m_resets = 0;
    m_titleBefore = m_window->windowTitle();
    m_message->clear();
}

QString MarkWitness::afterEvent(const DialogKeeper &dialogs)
{
    const bool wasReplaced = m_resets > 0;
    const bool wasSaved = this->wasSaved(dialogs.savedPath());
    if (wasReplaced) {
        // Only a package that was read replaces the rules, and New.
        m_path = QDir::toNativeSeparators(dialogs.openedPath());
        m_openCount += m_path.isEmpty() ? 0 : 1;
    } else if (wasSaved) {
        m_path = QDir::toNativeSeparators(dialogs.savedPath());
        ++m_saveCount;
    }
    if (wasReplaced || wasSaved) {
        m_baseline = content();
        m_pathIsStale = false;
    }
    const QString problem = checkTitle(wasReplaced || wasSaved);
    return problem.isEmpty() && wasSaved ? checkSavedPackage() : problem;
}

/// What a package made of the form would hold.
QVariantList MarkWitness::content() const
{
    QVariantList values;
    for (const char *name :
         {"optionAMinimum", "optionAMaximum", "optionBMinimum", "optionBMaximum"}) {
        values << m_window->findChild<QLineEdit *>(QLatin1String(name))->text();
    }
    for (const char *name : {"optionACheckBox", "optionBCheckBox"}) {
        values << m_window->findChild<QCheckBox *>(QLatin1String(name))->isChecked();
    }
    for (const char *name : {"minimumHardwareVersion", "maximumHardwareVersion"}) {
        values << m_window->findChild<QSpinBox *>(QLatin1String(name))->value();
    }
    values << m_window->findChild<QComboBox *>(QStringLiteral("hardwareType"))->currentData()
           << m_window->findChild<QLineEdit *>(QStringLiteral("firmwareAddress"))->text()
           << m_window->findChild<PathSelector *>(QStringLiteral("firmwarePath"))->path();
    values << toVariant(m_window->findChild<MaskValidationModel *>()->rules())
           << toVariant(m_window->findChild<TokenValidationModel *>()->rules());
    return values;
}

bool MarkWitness::wasSaved(const QString &path) const
{
    return !path.isEmpty()
           && m_message->text()
                  == QStringLiteral("ZEL file was successfully saved to\n%1.")
                         .arg(QDir::toNativeSeparators(path));
}

QString MarkWitness::checkTitle(bool isFresh) const
{
    const QString title = m_window->windowTitle();
    const QString name = literal(QFileInfo(m_path).baseName());
    const QString clean =
        m_path.isEmpty() ? kProgram : QStringLiteral("%1 - %2").arg(name, kProgram);
    const QString marked =
        m_path.isEmpty() ? kProgram : QStringLiteral("%1* - %2").arg(name, kProgram);
    const QString report = QStringLiteral("the title is \"%1\", and %2").arg(title);
    if (title != clean && title != marked && !(m_pathIsStale && title == kProgram)) {
        return report.arg(QStringLiteral("should be of \"%1\"").arg(m_path));
    }
    if (isFresh) {
        return title == clean ? QString() : report.arg(QStringLiteral("nothing was changed yet"));
    }
    if (title != marked && content() != m_baseline) {
        return report.arg(QStringLiteral("the form was changed"));
    }
    if (m_titleBefore == marked && title != marked) {
        return report.arg(QStringLiteral("nothing has taken the mark away"));
    }
    return {};
}

QString MarkWitness::checkSavedPackage() const
{
    const QFileInfo file(m_path);
    // A device takes all and gives nothing back; a name with two dots is refused.
    if (!file.isFile() || file.completeSuffix() != QLatin1String("zel")) {
        return {};
    }
    tlv::ZelFile package;
    QString message;
    if (!package.load(m_path, message)) {
        return QStringLiteral("\"%1\" was saved and cannot be read: %2").arg(m_path, message);
    }
    const QVariantList expected = {toVariant(package.maskRules()), toVariant(package.tokenRules())};
    return m_baseline.mid(m_baseline.size() - expected.size()) == expected
               ? QString()
               : QStringLiteral("\"%1\" holds other rules than the form").arg(m_path);
}
