#pragma once

#include <QComboBox>

/// Offers the known hardware types and takes further ones as a decimal number.
///
/// Each item's user data is its type number, a quint32. Filling in the known types is the owner's
/// business.
class HardwareTypeComboBox final : public QComboBox
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HardwareTypeComboBox)

public:
    explicit HardwareTypeComboBox(QWidget *parent = nullptr);

    /// Selects the first item whose number is @p value. Without such an item, a new one labelled
    /// @p label comes to the top and is selected.
    void setHardwareType(const QString &label, quint32 value);

    bool event(QEvent *event) override;
    void showPopup() override;

public slots:
    /// Takes what is typed: a decimal number selects its type, which is added when it is new; any
    /// other text must be the full label of an item. Else errorOccurred() is emitted, the typed
    /// text stays and so does the selection.
    void insertNewHardwareType();

signals:
    void errorOccurred(const QString &message);

private:
    [[nodiscard]] bool selectIndex(int index);
};
