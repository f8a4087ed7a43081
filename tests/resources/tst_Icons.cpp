#include "tests/support/ZelTest.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QtEndian>

#include <algorithm>
#include <cmath>

namespace {

struct Icon
{
    const char *name;
    /// Side at 192 dots per inch in the largest place where the icon is shown, in pixels.
    int shownSide;
    /// What the icon is shown on, besides a plain window.
    const char *background;
};

constexpr auto kSelectedMenuItem = "#edf4fc";
constexpr auto kTableHeader = "#fafbfd";
constexpr auto kTableRow = "#f0f8ff";
constexpr auto kWindow = "#ffffff";
constexpr auto kMenu = "#fbfcfd";

constexpr Icon kIcons[] = {
    {":/ZelFile", 256, kMenu},
    {":/New", 32, kSelectedMenuItem},
    {":/OpenFile", 32, kSelectedMenuItem},
    {":/SaveAs", 32, kSelectedMenuItem},
    {":/QtLogo", 32, kSelectedMenuItem},
    {":/Add", 48, kMenu},
    {":/AddHover", 48, kMenu},
    {":/Delete", 34, kTableRow},
    {":/DeleteInactive", 34, kTableRow},
    {":/SortUp", 32, kTableHeader},
    {":/SortDown", 32, kTableHeader},
    {":/OpenFolder", 32, kMenu},
    {":/InfoExpanded", 50, kMenu},
    {":/InfoExpandedHover", 50, kMenu},
    {":/InfoCollapsed", 50, kMenu},
    {":/InfoCollapsedHover", 50, kMenu},
};

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

QImage load(const QString &name)
{
    return QImage(name).convertToFormat(QImage::Format_ARGB32);
}

/// The icon as the toolkit shows it: scaled down to @p side and laid over @p background.
QImage shown(const QString &name, int side, const QColor &background)
{
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(background);
    QPainter painter(&image);
    painter.drawPixmap(0, 0, QIcon(name).pixmap(side));
    return image;
}

/// The smallest rectangle around everything that is drawn.
QRect drawnRect(const QImage &image)
{
    QRect rect;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) != 0) {
                rect |= QRect(x, y, 1, 1);
            }
        }
    }
    return rect;
}

/// The mean difference of two images of one size, per pixel and colour: 0 is equal, 1 is black on
/// white.
double meanDifference(const QImage &first, const QImage &second)
{
    int sum = 0;
    for (int y = 0; y < first.height(); ++y) {
        for (int x = 0; x < first.width(); ++x) {
            const QColor one = first.pixelColor(x, y);
            const QColor other = second.pixelColor(x, y);
            sum += std::abs(one.red() - other.red()) + std::abs(one.green() - other.green())
                   + std::abs(one.blue() - other.blue());
        }
    }
    return sum / (first.width() * first.height() * 3 * 255.0);
}

double linear(double component)
{
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &colour)
{
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF())
           + 0.0722 * linear(colour.blueF());
}

/// The contrast of two colours as accessibility guidelines measure it: 1 is none, 21 the most.
double contrast(const QColor &first, const QColor &second)
{
    const auto [darker, lighter] = std::minmax({luminance(first), luminance(second)});
    return (lighter + 0.05) / (darker + 0.05);
}

/// How many pixels of @p image stand out from @p background by at least @p least.
int contrastingPixels(const QImage &image, const QColor &background, double least)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += contrast(image.pixelColor(x, y), background) >= least ? 1 : 0;
        }
    }
    return count;
}

template <typename Number>
Number littleEndian(const QByteArray &bytes, int offset)
{
    return qFromLittleEndian<Number>(bytes.constData() + offset);
}

/// The side of an icon file's image in pixels, 0 when it is not square or not 32 bits deep.
int sideOfImage(const QByteArray &image)
{
    if (image.startsWith("\x89PNG\r\n\x1a\n")) {
        const QImage decoded = QImage::fromData(image, "PNG");
        return decoded.width() == decoded.height() && decoded.hasAlphaChannel() ? decoded.width()
                                                                                : 0;
    }
    constexpr quint32 kHeaderSize = 40;
    const auto width = littleEndian<qint32>(image, 4);
    // A bitmap inside an icon file counts its colour rows and its mask rows together.
    const bool isSquare = littleEndian<qint32>(image, 8) == 2 * width;
    const bool isDeep = littleEndian<quint16>(image, 14) == 32;
    return littleEndian<quint32>(image, 0) == kHeaderSize && isSquare && isDeep ? width : 0;
}

} // namespace

class tst_Icons : public ZelTest
{
    Q_OBJECT

private slots:
    void collectionHoldsExactlyTheIcons();
    void imageIsFitForUse_data();
    void imageIsFitForUse();
    void drawingIsWhole_data();
    void drawingIsWhole();
    void scalesToEverySize_data();
    void scalesToEverySize();
    void visibleAtSixteenPixels_data();
    void visibleAtSixteenPixels();
    void deleteIconStandsOutFromSelectedRow();
    void statesDiffer_data();
    void statesDiffer();
    void statesCoverTheSameArea_data();
    void statesCoverTheSameArea();
    void iconFileHoldsEverySize_data();
    void iconFileHoldsEverySize();

private:
    static void addIconRows();
};

void tst_Icons::addIconRows()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("shownSide");
    for (const Icon &icon : kIcons) {
        QTest::newRow(icon.name) << text(icon.name) << icon.shownSide;
    }
}

void tst_Icons::collectionHoldsExactlyTheIcons()
{
    QStringList expected;
    for (const Icon &icon : kIcons) {
        expected.append(text(icon.name).mid(2));
    }
    expected.sort();

    const QStringList held =
        QDir(QStringLiteral(":/")).entryList(QDir::Files, QDir::SortFlag::Name);

    QCOMPARE(held, expected);
}

void tst_Icons::imageIsFitForUse_data()
{
    addIconRows();
}

void tst_Icons::imageIsFitForUse()
{
    QFETCH(QString, name);
    QFETCH(int, shownSide);

    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QImage image = QImage::fromData(file.readAll(), "PNG");
    QVERIFY(!image.isNull());
    QCOMPARE(image.width(), image.height());
    QVERIFY2(image.width() >= shownSide, "the icon would stay small at 192 dots per inch");

    QVERIFY(image.hasAlphaChannel());
    QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
    bool hasOpaquePixel = false;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            hasOpaquePixel = hasOpaquePixel || qAlpha(image.pixel(x, y)) == 255;
        }
    }
    QVERIFY(hasOpaquePixel);
}

void tst_Icons::drawingIsWhole_data()
{
    addIconRows();
}

void tst_Icons::drawingIsWhole()
{
    QFETCH(QString, name);

    const QImage image = load(name);
    const QRect drawn = drawnRect(image);
    QVERIFY2(image.rect().adjusted(1, 1, -1, -1).contains(drawn), "clipped at an edge");
    QVERIFY2(2 * drawn.width() > image.width(), "lost in its square");
}

void tst_Icons::scalesToEverySize_data()
{
    addIconRows();
}

void tst_Icons::scalesToEverySize()
{
    QFETCH(QString, name);
    QFETCH(int, shownSide);

    const QIcon icon(name);
    for (const int side : {16, 20, 24, 32, shownSide}) {
        QCOMPARE(icon.pixmap(side).size(), QSize(side, side));
    }
}

void tst_Icons::visibleAtSixteenPixels_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QColor>("background");
    for (const Icon &icon : kIcons) {
        for (const char *background : {kWindow, icon.background}) {
            QTest::addRow("%s on %s", icon.name, background)
                << text(icon.name) << QColor(text(background));
        }
    }
}

void tst_Icons::visibleAtSixteenPixels()
{
    QFETCH(QString, name);
    QFETCH(QColor, background);

    // What accessibility guidelines ask of a graphic, on as many pixels as a short line has.
    QVERIFY(contrastingPixels(shown(name, 16, background), background, 3.0) >= 16);
}

void tst_Icons::deleteIconStandsOutFromSelectedRow()
{
    const QColor row(0x38, 0x99, 0xfa);
    QVERIFY(contrastingPixels(shown(QStringLiteral(":/DeleteInactive"), 17, row), row, 2.5) >= 34);
}

void tst_Icons::statesDiffer_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<double>("leastDifference");

    const auto addPair = [](const char *first, const char *second, double leastDifference) {
        QTest::addRow("%s and %s", first, second) << text(first) << text(second) << leastDifference;
    };
    addPair(":/Add", ":/AddHover", 0.1);
    addPair(":/InfoExpanded", ":/InfoExpandedHover", 0.05);
    addPair(":/InfoCollapsed", ":/InfoCollapsedHover", 0.05);
    addPair(":/Delete", ":/DeleteInactive", 0.1);
    addPair(":/InfoExpanded", ":/InfoCollapsed", 0.01);
    addPair(":/InfoExpandedHover", ":/InfoCollapsedHover", 0.01);
    addPair(":/SortUp", ":/SortDown", 0.05);
    addPair(":/OpenFile", ":/OpenFolder", 0.05);
}

void tst_Icons::statesDiffer()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(double, leastDifference);

    for (const int side : {16, 32}) {
        const double difference =
            meanDifference(shown(first, side, Qt::white), shown(second, side, Qt::white));
        QVERIFY2(difference >= leastDifference, QByteArray::number(difference).constData());
    }
}

void tst_Icons::statesCoverTheSameArea_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");

    QTest::newRow("add") << ":/Add"
                         << ":/AddHover";
    QTest::newRow("delete") << ":/Delete"
                            << ":/DeleteInactive";
    QTest::newRow("expanded") << ":/InfoExpanded"
                              << ":/InfoExpandedHover";
    QTest::newRow("collapsed") << ":/InfoCollapsed"
                               << ":/InfoCollapsedHover";
}

void tst_Icons::statesCoverTheSameArea()
{
    QFETCH(QString, first);
    QFETCH(QString, second);

    QCOMPARE(drawnRect(load(second)), drawnRect(load(first)));
}

void tst_Icons::iconFileHoldsEverySize_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("program") << ":/test/ZelFile.ico";
    QTest::newRow("document") << ":/test/ZelDocument.ico";
}

void tst_Icons::iconFileHoldsEverySize()
{
    QFETCH(QString, path);

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    constexpr int kHeaderSize = 6;
    constexpr int kEntrySize = 16;
    QVERIFY(bytes.size() > kHeaderSize);
    QCOMPARE(bytes.left(4), QByteArray("\x00\x00\x01\x00", 4));
    const int count = littleEndian<quint16>(bytes, 4);
    QVERIFY(bytes.size() > kHeaderSize + count * kEntrySize);

    QList<int> sides;
    for (int i = 0; i < count; ++i) {
        const QByteArray entry = bytes.mid(kHeaderSize + i * kEntrySize, kEntrySize);
        const auto size = littleEndian<quint32>(entry, 8);
        const auto offset = littleEndian<quint32>(entry, 12);
        QVERIFY(quint64{offset} + size <= static_cast<quint64>(bytes.size()));
        const QByteArray image = bytes.mid(static_cast<int>(offset), static_cast<int>(size));
        const int side = sideOfImage(image);
        // The directory has one byte for a side; 0 stands for 256.
        QCOMPARE(int{static_cast<quint8>(entry.at(0))}, side % 256);
        QCOMPARE(int{static_cast<quint8>(entry.at(1))}, side % 256);
        QCOMPARE(image.startsWith("\x89PNG"), side == 256);
        sides.append(side);
    }
    QCOMPARE(sides, (QList<int>{16, 20, 24, 32, 40, 48, 64, 128, 256}));
}

ZEL_TEST_MAIN_WITH(QGuiApplication, tst_Icons)
#include "tst_Icons.moc"
