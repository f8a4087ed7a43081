#pragma once

#include "models/MaskValidationRule.h"

#include <QAbstractTableModel>
#include <QList>

#include <utility>

/// The least that a table over a list of mask rules can be: the floor of what the program's own
/// models are measured by.
class PlainTableModel final : public QAbstractTableModel
{
    Q_DISABLE_COPY_MOVE(PlainTableModel)

public:
    explicit PlainTableModel(QObject *parent)
        : QAbstractTableModel(parent)
    {
    }

    void setRules(QList<MaskValidationRule> rules)
    {
        beginResetModel();
        m_rules = std::move(rules);
        endResetModel();
    }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : m_rules.size();
    }

    [[nodiscard]] int columnCount(const QModelIndex & /*parent*/ = {}) const override { return 4; }

    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override
    {
        if (role != Qt::DisplayRole && role != Qt::EditRole) {
            return {};
        }
        const MaskValidationRule &rule = m_rules.at(index.row());
        switch (index.column()) {
        case 0:
            return int{rule.parameter};
        case 1:
            return int{rule.index};
        case 2:
            return rule.mask;
        default:
            return {};
        }
    }

    bool setData(const QModelIndex &index, const QVariant &value, int /*role*/) override
    {
        MaskValidationRule &rule = m_rules[index.row()];
        switch (index.column()) {
        case 0:
            rule.parameter = static_cast<quint16>(value.toUInt());
            break;
        case 1:
            rule.index = static_cast<quint16>(value.toUInt());
            break;
        default:
            rule.mask = value.toByteArray();
        }
        emit dataChanged(index, index, {Qt::EditRole});
        return true;
    }

    bool insertRows(int row, int count, const QModelIndex &parent) override
    {
        beginInsertRows(parent, row, row + count - 1);
        for (int inserted = 0; inserted < count; ++inserted) {
            m_rules.insert(row, MaskValidationRule());
        }
        endInsertRows();
        return true;
    }

    bool removeRows(int row, int count, const QModelIndex &parent) override
    {
        beginRemoveRows(parent, row, row + count - 1);
        m_rules.erase(m_rules.begin() + row, m_rules.begin() + row + count);
        endRemoveRows();
        return true;
    }

private:
    QList<MaskValidationRule> m_rules;
};
