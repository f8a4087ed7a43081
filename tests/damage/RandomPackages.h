#pragma once

#include <QByteArray>
#include <QList>
#include <QtGlobal>

#include <random>

/// Makes package files, about half of which the format allows, that do everything that it leaves
/// open. A seed gives the same packages again.
class RandomPackages final
{
public:
    explicit RandomPackages(quint32 seed);

    [[nodiscard]] QByteArray next();

private:
    [[nodiscard]] QByteArray body();
    [[nodiscard]] QByteArray rulesSection();
    [[nodiscard]] QByteArray maskRule();
    [[nodiscard]] QByteArray tokenRule();
    [[nodiscard]] QByteArray option(quint32 tag);
    [[nodiscard]] QByteArray hardwareSection();
    [[nodiscard]] QByteArray firmwareFileSection();

    [[nodiscard]] QByteArray bytesEntry(quint32 tag, const QByteArray &value);
    [[nodiscard]] QByteArray looseEntry(quint32 tag, const QByteArray &payload);
    [[nodiscard]] QByteArray text();
    [[nodiscard]] QByteArray integer();
    [[nodiscard]] quint32 looseTag(quint32 tag);

    [[nodiscard]] QByteArray block(const QByteArray &body);
    [[nodiscard]] QByteArray damaged(QByteArray bytes);
    [[nodiscard]] QByteArray damagedTree(const QByteArray &body);

    [[nodiscard]] quint32 any() { return static_cast<quint32>(m_random()); }
    [[nodiscard]] quint32 below(quint32 limit) { return any() % limit; }
    [[nodiscard]] bool oneIn(quint32 count) { return below(count) == 0; }

    std::mt19937 m_random;
};
