#include "tlv/PackageBody_p.h"

#include "tests/support/ZelTest.h"
#include "tests/tlv/Wire.h"
#include "tlv/PackageRecord.h"

#include <QCoreApplication>
#include <QRandomGenerator>

using tlv::PackageRecord;
using tlv::parseBody;
using tlv::ParseResult;
using tlv::serializeBody;
using wire::entry;
using wire::forged;
using wire::hex;
using wire::u32;

Q_DECLARE_METATYPE(tlv::ParseResult)

class tst_PackageBody : public ZelTest
{
    Q_OBJECT

private slots:
    void noSectionsAreABareRoot();
    void rulesSectionHasTheseBytes();
    void emptyRuleListsAreTheirHeaders();
    void versions_data();
    void versions();
    void hardwareSectionHasTheseBytes();
    void firmwareFileSectionHasTheseBytes();
    void wholePackageHasTheseBytes();
    void sectionsFollowTheOrderOfTheirTags();
    void firmwareIsNoSectionOfItsOwn();
    void emptyByteArraysHaveTheCountZero();

    void readsBackWhatWasWritten_data();
    void readsBackWhatWasWritten();

    void resultCodesHaveTheseNumbers();
    void roots_data();
    void roots();
    void sectionsMayComeInAnyOrder();
    void firmwareFileSectionAloneLeavesTheRest();
    void rulesAreEmptiedFirst();
    void aRepeatedSectionAddsItsRules();
    void forgedSections_data();
    void forgedSections();
    void forgedRulesSections_data();
    void forgedRulesSections();
    void forgedMaskRules_data();
    void forgedMaskRules();
    void forgedTokenRules_data();
    void forgedTokenRules();
    void forgedOptions_data();
    void forgedOptions();
    void forgedHardware_data();
    void forgedHardware();
    void forgedFirmwareFiles_data();
    void forgedFirmwareFiles();
    void tagsOfPositionalEntriesAreNotLookedAt();
    void lengthsOfOptionEntriesAreNotLookedAt();
    void anyBoolButZeroIsTrue();
    void nullByteArraysAreReadAsEmpty();
    void aBodyCutAnywhereIsRefused();
    void anyByteChangedIsReadToAnEnd();

private:
    static void checkForgery();
};

namespace {

constexpr quint32 kLie = 0xFFFFFFF0;

// The tree of a package, entry by entry.

QByteArray root(const QByteArray &sections)
{
    return entry(0xF0000001, sections);
}

QByteArray maskRule(quint32 key, const QByteArray &mask)
{
    return entry(0xF0000004, entry(0xF0000005, u32(key)) + entry(0xF0000006, mask));
}

QByteArray tokenRule(const QByteArray &token, const QByteArray &value)
{
    return entry(0xF0000008, entry(0xF0000009, token) + entry(0xF000000A, value));
}

QByteArray option(quint32 tag, const char *enabled, quint32 minimum, quint32 maximum)
{
    return entry(tag, entry(0xF0000010, hex(enabled)) + entry(0xF000000E, u32(minimum))
                          + entry(0xF000000F, u32(maximum)));
}

QByteArray options()
{
    return entry(0xF000000B, option(0xF000000C, "01", 0x0002000A, 0x00630063)
                                 + option(0xF000000D, "00", 0, 0x00010002));
}

QByteArray maskRules()
{
    return entry(0xF0000003, maskRule(0x061E0001, "A*") + maskRule(5, ""));
}

QByteArray tokenRules()
{
    return entry(0xF0000007, tokenRule("T", "1"));
}

QByteArray rulesSection()
{
    return entry(0xF0000002, maskRules() + tokenRules() + options());
}

QByteArray hardware()
{
    return entry(0xF0000012, entry(0x50564552, u32(1)) + entry(0x4D485756, u32(2))
                                 + entry(0x58485756, u32(3)) + entry(0x50485754, u32(4)));
}

QByteArray firmware()
{
    return entry(0xF0000013, entry(0x50414452, u32(0x08000000)) + entry(0x5042494E, "image"));
}

QByteArray hardwareSection()
{
    return entry(0xF0000011, hardware() + firmware());
}

QByteArray firmwareFileSection()
{
    return entry(0xF0000014, entry(0x5053495A, u32(5)) + entry(0xF0000015, "fw.bin")
                                 + entry(0xF0000016, "/a/fw.bin"));
}

/// The record that the tree above stands for.
PackageRecord sample()
{
    PackageRecord record;
    record.sections = {0xF0000002, 0xF0000011, 0xF0000014, 0xF0000013};
    record.maskRules = {{0x061E, 1, "A*"}, {0, 5, ""}};
    record.tokenRules = {{"T", "1"}};
    record.softwareOptions = {true, {2, 10}, {99, 99}, false, {0, 0}, {1, 2}};
    record.layoutVersion = 1;
    record.minimumHardwareVersion = 2;
    record.maximumHardwareVersion = 3;
    record.hardwareType = 4;
    record.firmwareAddress = 0x08000000;
    record.firmwareImage = "image";
    record.firmwareSize = 5;
    record.firmwareFileName = "fw.bin";
    record.firmwareFilePath = "/a/fw.bin";
    return record;
}

QByteArray bodyOf(const PackageRecord &record, const QVector<quint32> &sections)
{
    PackageRecord copy = record;
    copy.sections = sections;
    return serializeBody(copy);
}

/// What is compared of two records: all that a body carries.
QByteArray carried(const PackageRecord &record)
{
    return bodyOf(record, {0xF0000002, 0xF0000011, 0xF0000014});
}

ParseResult parsed(const QByteArray &body)
{
    PackageRecord record;
    return parseBody(body, record);
}

// Rows of forged sections, by what becomes of them.

void addForgeryColumns()
{
    QTest::addColumn<QByteArray>("sections");
    QTest::addColumn<ParseResult>("result");
}

void accepted(const char *name, const QByteArray &sections)
{
    QTest::newRow(name) << sections << ParseResult::Success;
}

void mismatch(const char *name, const QByteArray &sections)
{
    QTest::newRow(name) << sections << ParseResult::LengthMismatch;
}

void missing(const char *name, const QByteArray &sections)
{
    QTest::newRow(name) << sections << ParseResult::MissingTag;
}

void unknown(const char *name, const QByteArray &sections)
{
    QTest::newRow(name) << sections << ParseResult::UnknownSection;
}

/// A rules section of the right length around what takes the place of its parts.
QByteArray rules(const QByteArray &masks, const QByteArray &tokens,
                 const QByteArray &softwareOptions)
{
    return entry(0xF0000002, masks + tokens + softwareOptions);
}

QByteArray hardwareAndFirmware(const QByteArray &first, const QByteArray &second)
{
    return entry(0xF0000011, first + second);
}

} // namespace

void tst_PackageBody::noSectionsAreABareRoot()
{
    QCOMPARE(serializeBody(PackageRecord()), hex("F0000001 00000000"));
}

void tst_PackageBody::rulesSectionHasTheseBytes()
{
    PackageRecord record;
    record.maskRules = {{0x1234, 0xABCD, "1*"}};
    record.tokenRules = {{"A", "\xC3\xA9"}};
    record.softwareOptions = {true, {2, 10}, {3, 4}, false, {5, 6}, {7, 8}};
    QCOMPARE(bodyOf(record, {0xF0000002}).toHex(), hex("F0000001 000000AB"
                                                       "F0000002 000000A3"
                                                       "F0000003 0000001E"
                                                       "F0000004 00000016"
                                                       "F0000005 00000004 1234ABCD"
                                                       "F0000006 00000002 312A"
                                                       "F0000007 0000001B"
                                                       "F0000008 00000013"
                                                       "F0000009 00000001 41"
                                                       "F000000A 00000002 C3A9"
                                                       "F000000B 00000052"
                                                       "F000000C 00000021"
                                                       "F0000010 00000001 01"
                                                       "F000000E 00000004 0002000A"
                                                       "F000000F 00000004 00030004"
                                                       "F000000D 00000021"
                                                       "F0000010 00000001 00"
                                                       "F000000E 00000004 00050006"
                                                       "F000000F 00000004 00070008")
                                                       .toHex());
}

void tst_PackageBody::emptyRuleListsAreTheirHeaders()
{
    const QByteArray body = bodyOf(PackageRecord(), {0xF0000002});
    QCOMPARE(body.mid(8, 24).toHex(), hex("F0000002 0000006A"
                                          "F0000003 00000000"
                                          "F0000007 00000000")
                                          .toHex());
    QCOMPARE(body.mid(32, 8), hex("F000000B 00000052"));
    QCOMPARE(body.size(), 8 + 8 + 0x6A);
}

void tst_PackageBody::versions_data()
{
    QTest::addColumn<int>("major");
    QTest::addColumn<int>("minor");
    QTest::addColumn<quint32>("wire");

    QTest::newRow("00.00") << 0 << 0 << 0x00000000U;
    QTest::newRow("02.10") << 2 << 10 << 0x0002000AU;
    QTest::newRow("99.99") << 99 << 99 << 0x00630063U;
    QTest::newRow("the largest") << 0xFFFF << 0xFFFE << 0xFFFFFFFEU;
}

void tst_PackageBody::versions()
{
    QFETCH(int, major);
    QFETCH(int, minor);
    QFETCH(quint32, wire);

    const tlv::SoftwareVersion version{static_cast<quint16>(major), static_cast<quint16>(minor)};
    PackageRecord record;
    record.softwareOptions = {false, version, version, false, version, version};
    const QByteArray versionBytes = u32(wire);
    const QByteArray body = bodyOf(record, {0xF0000002});
    QCOMPARE(body.right(33).toHex(), (hex("F0000010 00000001 00"
                                          "F000000E 00000004")
                                      + versionBytes + hex("F000000F 00000004") + versionBytes)
                                         .toHex());

    PackageRecord readBack;
    QCOMPARE(parseBody(body, readBack), ParseResult::Success);
    QVERIFY(readBack.softwareOptions == record.softwareOptions);
}

void tst_PackageBody::hardwareSectionHasTheseBytes()
{
    PackageRecord record;
    record.layoutVersion = 1;
    record.minimumHardwareVersion = 0x01020304;
    record.maximumHardwareVersion = 0xFFFFFFFF;
    record.hardwareType = 9;
    record.firmwareAddress = 0x08004000;
    record.firmwareImage = QByteArray("\0\xFF", 2);
    QCOMPARE(bodyOf(record, {0xF0000011}).toHex(), hex("F0000001 0000005E"
                                                       "F0000011 00000056"
                                                       "F0000012 00000030"
                                                       "50564552 00000004 00000001"
                                                       "4D485756 00000004 01020304"
                                                       "58485756 00000004 FFFFFFFF"
                                                       "50485754 00000004 00000009"
                                                       "F0000013 00000016"
                                                       "50414452 00000004 08004000"
                                                       "5042494E 00000002 00FF")
                                                       .toHex());
}

void tst_PackageBody::firmwareFileSectionHasTheseBytes()
{
    PackageRecord record;
    record.firmwareSize = 0x00010203;
    record.firmwareFileName = "\xC3\xBC.bin";
    record.firmwareFilePath = "/\xC3\xBC.bin";
    QCOMPARE(bodyOf(record, {0xF0000014}).toHex(), hex("F0000001 00000031"
                                                       "F0000014 00000029"
                                                       "5053495A 00000004 00010203"
                                                       "F0000015 00000006 C3BC2E62696E"
                                                       "F0000016 00000007 2FC3BC2E62696E")
                                                       .toHex());
}

void tst_PackageBody::wholePackageHasTheseBytes()
{
    QCOMPARE(serializeBody(sample()),
             root(rulesSection() + hardwareSection() + firmwareFileSection()));
}

void tst_PackageBody::sectionsFollowTheOrderOfTheirTags()
{
    QCOMPARE(bodyOf(sample(), {0xF0000014, 0xF0000013, 0xF0000011, 0xF0000002}),
             root(firmwareFileSection() + hardwareSection() + rulesSection()));
    QCOMPARE(bodyOf(sample(), {0xF0000011}), root(hardwareSection()));
}

void tst_PackageBody::firmwareIsNoSectionOfItsOwn()
{
    QCOMPARE(bodyOf(sample(), {0xF0000013}), root(QByteArray()));
}

void tst_PackageBody::emptyByteArraysHaveTheCountZero()
{
    PackageRecord record;
    record.maskRules = {{0, 0, QByteArray()}};
    record.tokenRules = {{QByteArray(), QByteArray()}};
    const QByteArray body = carried(record);
    QVERIFY(!body.contains(hex("FFFFFFFF")));
    for (const char *emptyEntry : {"F0000006 00000000", "F0000009 00000000", "F000000A 00000000",
                                   "5042494E 00000000", "F0000015 00000000", "F0000016 00000000"}) {
        QVERIFY2(body.contains(hex(emptyEntry)), emptyEntry);
    }
}

void tst_PackageBody::readsBackWhatWasWritten_data()
{
    QTest::addColumn<int>("rules");
    QTest::addColumn<int>("imageSize");
    QTest::addColumn<int>("options");

    for (const int rules : {0, 1, 2, 300}) {
        for (const int imageSize : {0, 1, 255, 256, 65536}) {
            for (int options = 0; options < 4; ++options) {
                QTest::addRow("%d rules, %d bytes, options %d", rules, imageSize, options)
                    << rules << imageSize << options;
            }
        }
    }
}

void tst_PackageBody::readsBackWhatWasWritten()
{
    QFETCH(int, rules);
    QFETCH(int, imageSize);
    QFETCH(int, options);

    QRandomGenerator generator(static_cast<quint32>(rules + imageSize + options));
    const auto text = [&generator](int size) {
        return QString(size, QChar(static_cast<ushort>(generator.bounded(0x21, 0x2000)))).toUtf8();
    };
    const auto word = [&generator] { return static_cast<quint16>(generator.generate()); };
    PackageRecord record = sample();
    record.maskRules.clear();
    record.tokenRules.clear();
    for (int i = 0; i < rules; ++i) {
        record.maskRules.append({word(), word(), text(i % 5)});
        record.tokenRules.append({text(i % 3), text(i % 7)});
    }
    record.softwareOptions.optionAEnabled = (options & 1) != 0;
    record.softwareOptions.optionBEnabled = (options & 2) != 0;
    record.firmwareImage = text(imageSize).left(imageSize);
    record.firmwareFileName = text(40);
    record.firmwareFilePath = text(400);

    PackageRecord readBack;
    QCOMPARE(parseBody(serializeBody(record), readBack), ParseResult::Success);
    QVERIFY(readBack.sections.isEmpty());
    QVERIFY(readBack.maskRules == record.maskRules);
    QVERIFY(readBack.tokenRules == record.tokenRules);
    QVERIFY(readBack.softwareOptions == record.softwareOptions);
    QCOMPARE(readBack.layoutVersion, record.layoutVersion);
    QCOMPARE(readBack.minimumHardwareVersion, record.minimumHardwareVersion);
    QCOMPARE(readBack.maximumHardwareVersion, record.maximumHardwareVersion);
    QCOMPARE(readBack.hardwareType, record.hardwareType);
    QCOMPARE(readBack.firmwareAddress, record.firmwareAddress);
    QVERIFY(readBack.firmwareImage == record.firmwareImage);
    QCOMPARE(readBack.firmwareSize, record.firmwareSize);
    QCOMPARE(readBack.firmwareFileName, record.firmwareFileName);
    QCOMPARE(readBack.firmwareFilePath, record.firmwareFilePath);
}

void tst_PackageBody::resultCodesHaveTheseNumbers()
{
    QCOMPARE(static_cast<int>(ParseResult::Success), 0);
    QCOMPARE(static_cast<int>(ParseResult::WrongRootTag), 1);
    QCOMPARE(static_cast<int>(ParseResult::WrongRootLength), 2);
    QCOMPARE(static_cast<int>(ParseResult::LengthMismatch), 3);
    QCOMPARE(static_cast<int>(ParseResult::MissingTag), 4);
    QCOMPARE(static_cast<int>(ParseResult::UnknownSection), 5);
}

void tst_PackageBody::roots_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<ParseResult>("result");

    const QByteArray sections = hardwareSection();
    const auto length = static_cast<quint32>(sections.size());
    QTest::newRow("right") << root(sections) << ParseResult::Success;
    QTest::newRow("no sections") << root(QByteArray()) << ParseResult::Success;
    QTest::newRow("nothing at all") << QByteArray() << ParseResult::WrongRootTag;
    QTest::newRow("half a tag") << hex("F000") << ParseResult::WrongRootTag;
    QTest::newRow("another tag") << entry(0xF0000002, sections) << ParseResult::WrongRootTag;
    QTest::newRow("tag alone") << hex("F0000001") << ParseResult::WrongRootLength;
    QTest::newRow("one byte too long")
        << forged(0xF0000001, length + 1, sections) << ParseResult::WrongRootLength;
    QTest::newRow("one byte too short")
        << forged(0xF0000001, length - 1, sections) << ParseResult::WrongRootLength;
    QTest::newRow("wraps around to the right size")
        << forged(0xF0000001, 0xFFFFFFF8, QByteArray()) << ParseResult::WrongRootLength;
    QTest::newRow("bytes after the root") << root(sections) + "x" << ParseResult::WrongRootLength;
    QTest::newRow("two roots") << root(sections) + root(sections) << ParseResult::WrongRootLength;
}

void tst_PackageBody::roots()
{
    QFETCH(QByteArray, body);
    QFETCH(ParseResult, result);

    QCOMPARE(parsed(body), result);
}

void tst_PackageBody::sectionsMayComeInAnyOrder()
{
    const QByteArray sections[] = {rulesSection(), hardwareSection(), firmwareFileSection()};
    const int orders[][3] = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
    for (const auto &order : orders) {
        PackageRecord record;
        QCOMPARE(
            parseBody(root(sections[order[0]] + sections[order[1]] + sections[order[2]]), record),
            ParseResult::Success);
        QCOMPARE(carried(record), carried(sample()));
    }
}

void tst_PackageBody::firmwareFileSectionAloneLeavesTheRest()
{
    PackageRecord record;
    record.hardwareType = 77;
    record.firmwareImage = "kept";
    record.softwareOptions.optionBMaximum = {8, 9};
    QCOMPARE(parseBody(root(firmwareFileSection()), record), ParseResult::Success);
    QCOMPARE(record.firmwareSize, 5U);
    QCOMPARE(record.firmwareFileName, QByteArrayLiteral("fw.bin"));
    QCOMPARE(record.firmwareFilePath, QByteArrayLiteral("/a/fw.bin"));
    QCOMPARE(record.hardwareType, 77U);
    QCOMPARE(record.firmwareImage, QByteArrayLiteral("kept"));
    QVERIFY((record.softwareOptions.optionBMaximum == tlv::SoftwareVersion{8, 9}));
}

void tst_PackageBody::rulesAreEmptiedFirst()
{
    PackageRecord record = sample();
    QCOMPARE(parseBody(root(firmwareFileSection()), record), ParseResult::Success);
    QVERIFY(record.sections.isEmpty());
    QVERIFY(record.maskRules.isEmpty());
    QVERIFY(record.tokenRules.isEmpty());
}

void tst_PackageBody::aRepeatedSectionAddsItsRules()
{
    PackageRecord record;
    QCOMPARE(parseBody(root(rulesSection() + rulesSection()), record), ParseResult::Success);
    QCOMPARE(record.maskRules, sample().maskRules + sample().maskRules);
    QCOMPARE(record.tokenRules, sample().tokenRules + sample().tokenRules);
}

void tst_PackageBody::forgedSections_data()
{
    addForgeryColumns();
    unknown("firmware as a section", firmware());
    unknown("tag 0", entry(0, "x"));
    unknown("root in root", root(rulesSection()));
    unknown("after a good one", hardwareSection() + entry(0xF0000015, "x"));
    unknown("a tag that is cut", hex("F00000"));
}

void tst_PackageBody::forgedSections()
{
    checkForgery();
}

void tst_PackageBody::forgedRulesSections_data()
{
    addForgeryColumns();
    mismatch("rules section one byte short",
             forged(0xF0000002, static_cast<quint32>(rulesSection().size()) - 9,
                    maskRules() + tokenRules() + options()));
    mismatch("rules section one byte long",
             forged(0xF0000002, static_cast<quint32>(rulesSection().size()) - 7,
                    maskRules() + tokenRules() + options()));
    mismatch("rules section with more behind its parts",
             rules(maskRules(), tokenRules(), options() + "more"));
    missing("rules section without mask rules", rules("", tokenRules(), options()));
    missing("rules section without token rules", rules(maskRules(), "", options()));
    missing("rules section without options", rules(maskRules(), tokenRules(), ""));
    missing("rules section in another order", rules(tokenRules(), maskRules(), options()));
}

void tst_PackageBody::forgedRulesSections()
{
    checkForgery();
}

void tst_PackageBody::forgedMaskRules_data()
{
    addForgeryColumns();
    const QByteArray rule = maskRule(1, "mask");
    const auto ruleSize = static_cast<quint32>(rule.size());
    mismatch("mask list one byte short",
             rules(forged(0xF0000003, ruleSize - 1, rule), tokenRules(), options()));
    mismatch("mask list one byte short, in its second rule",
             rules(forged(0xF0000003, 2 * ruleSize - 1, rule + rule), tokenRules(), options()));
    missing("mask list one byte long",
            rules(forged(0xF0000003, ruleSize + 1, rule), tokenRules(), options()));
    missing("mask list without end",
            rules(forged(0xF0000003, kLie, rule), tokenRules(), options()));
    missing("mask list without end, at the end",
            rules(forged(0xF0000003, 0xFFFFFFFF, rule), "", ""));
    missing("mask list of length 0 with a rule",
            rules(forged(0xF0000003, 0, rule), tokenRules(), options()));
    missing("mask list with a token rule",
            rules(entry(0xF0000003, tokenRule("a", "b")), tokenRules(), options()));
    missing("mask rule without a key",
            rules(entry(0xF0000003, entry(0xF0000004, entry(0xF0000006, "12345678"))), tokenRules(),
                  options()));
    missing("mask rule without a mask",
            rules(entry(0xF0000003, entry(0xF0000004, entry(0xF0000005, u32(1)))), tokenRules(),
                  options()));
    mismatch("mask that is too long for the body",
             rules(entry(0xF0000003,
                         forged(0xF0000004, 24,
                                entry(0xF0000005, u32(1)) + forged(0xF0000006, kLie, "mask"))),
                   tokenRules(), options()));
    accepted("mask rule whose own length lies",
             rules(entry(0xF0000003, forged(0xF0000004, kLie,
                                            entry(0xF0000005, u32(1)) + entry(0xF0000006, "m"))),
                   tokenRules(), options()));
    accepted("mask key whose own length lies",
             rules(entry(0xF0000003, entry(0xF0000004, forged(0xF0000005, kLie, u32(1))
                                                           + entry(0xF0000006, "m"))),
                   tokenRules(), options()));
}

void tst_PackageBody::forgedMaskRules()
{
    checkForgery();
}

void tst_PackageBody::forgedTokenRules_data()
{
    addForgeryColumns();
    const QByteArray token = tokenRule("ab", "cd");
    const auto tokenSize = static_cast<quint32>(token.size());
    mismatch("token list one byte short",
             rules(maskRules(), forged(0xF0000007, tokenSize - 1, token), options()));
    missing("token list one byte long",
            rules(maskRules(), forged(0xF0000007, tokenSize + 1, token), options()));
    missing("token list without end",
            rules(maskRules(), forged(0xF0000007, kLie, token), options()));
    missing("token list with a mask rule",
            rules(maskRules(), entry(0xF0000007, maskRule(1, "mask")), options()));
    missing("token rule without a name",
            rules(maskRules(), entry(0xF0000007, entry(0xF0000008, entry(0xF000000A, "v"))),
                  options()));
    missing("token rule without a value",
            rules(maskRules(), entry(0xF0000007, entry(0xF0000008, entry(0xF0000009, "t"))),
                  options()));
}

void tst_PackageBody::forgedTokenRules()
{
    checkForgery();
}

void tst_PackageBody::forgedOptions_data()
{
    addForgeryColumns();
    const QByteArray optionA = option(0xF000000C, "01", 0, 0);
    const QByteArray optionB = option(0xF000000D, "01", 0, 0);
    missing("options without option A",
            rules(maskRules(), tokenRules(), entry(0xF000000B, optionB)));
    missing("options without option B",
            rules(maskRules(), tokenRules(), entry(0xF000000B, optionA)));
    missing("options in another order",
            rules(maskRules(), tokenRules(), entry(0xF000000B, optionB + optionA)));
    mismatch("option B cut",
             rules(maskRules(), tokenRules(), entry(0xF000000B, optionA + optionB.chopped(1))));
    mismatch("option B cut behind its header",
             rules(maskRules(), tokenRules(), entry(0xF000000B, optionA + optionB.left(8))));
}

void tst_PackageBody::forgedOptions()
{
    checkForgery();
}

void tst_PackageBody::forgedHardware_data()
{
    addForgeryColumns();
    const auto sectionSize = static_cast<quint32>(hardwareSection().size() - 8);
    mismatch("hardware section one byte short",
             forged(0xF0000011, sectionSize - 1, hardware() + firmware()));
    mismatch("hardware section one byte long",
             forged(0xF0000011, sectionSize + 1, hardware() + firmware()));
    missing("hardware section without hardware", hardwareAndFirmware("", firmware()));
    missing("hardware section without firmware", hardwareAndFirmware(hardware(), ""));
    missing("hardware section in another order", hardwareAndFirmware(firmware(), hardware()));
    mismatch("hardware of 47 bytes",
             hardwareAndFirmware(forged(0xF0000012, 47, hardware().mid(8)), firmware()));
    mismatch("hardware of 49 bytes",
             hardwareAndFirmware(forged(0xF0000012, 49, hardware().mid(8)), firmware()));
    mismatch("firmware one byte short",
             hardwareAndFirmware(hardware(), forged(0xF0000013, 24, firmware().mid(8))));
    mismatch("firmware one byte long",
             hardwareAndFirmware(hardware(), forged(0xF0000013, 26, firmware().mid(8))));
    mismatch("image that is too long for the body",
             hardwareAndFirmware(
                 hardware(), forged(0xF0000013, 25,
                                    entry(0x50414452, u32(0)) + forged(0x5042494E, 6, "image"))));
    mismatch("image of almost 4 GiB",
             hardwareAndFirmware(hardware(), forged(0xF0000013, 25,
                                                    entry(0x50414452, u32(0))
                                                        + forged(0x5042494E, kLie, "image"))));
    mismatch("lengths that wrap around to an image without bytes",
             forged(0xF0000011, 84,
                    hardware()
                        + forged(0xF0000013, 20,
                                 entry(0x50414452, u32(0)) + forged(0x5042494E, kLie, ""))));
}

void tst_PackageBody::forgedHardware()
{
    checkForgery();
}

void tst_PackageBody::forgedFirmwareFiles_data()
{
    addForgeryColumns();
    accepted("firmware file section whose own length lies",
             forged(0xF0000014, kLie, firmwareFileSection().mid(8)));
    mismatch("firmware file section cut in its path", firmwareFileSection().chopped(1));
    mismatch("firmware file section without entries", forged(0xF0000014, 0, ""));
    mismatch("firmware file name of almost 4 GiB",
             entry(0xF0000014, entry(0x5053495A, u32(5)) + forged(0xF0000015, kLie, "fw.bin")));
    mismatch("section tag alone", hex("F0000014"));
}

void tst_PackageBody::forgedFirmwareFiles()
{
    checkForgery();
}

void tst_PackageBody::checkForgery()
{
    QFETCH(QByteArray, sections);
    QFETCH(ParseResult, result);

    QCOMPARE(parsed(root(sections)), result);
}

void tst_PackageBody::tagsOfPositionalEntriesAreNotLookedAt()
{
    QByteArray body = root(rulesSection() + hardwareSection() + firmwareFileSection());
    for (const char *tag :
         {"F0000010", "F000000E", "F000000F", "50564552", "4D485756", "58485756", "50485754",
          "50414452", "5042494E", "5053495A", "F0000015", "F0000016"}) {
        QVERIFY(body.contains(hex(tag)));
        body.replace(hex(tag), hex("DEADBEEF"));
    }
    PackageRecord record;
    QCOMPARE(parseBody(body, record), ParseResult::Success);
    QCOMPARE(carried(record), carried(sample()));
}

void tst_PackageBody::lengthsOfOptionEntriesAreNotLookedAt()
{
    const QByteArray lengths = hex("F0000010 00000001");
    QByteArray body = root(rulesSection());
    body.replace(lengths, hex("F0000010 FFFFFFFF"));
    body.replace(hex("F000000E 00000004"), hex("F000000E 00000000"));
    body.replace(hex("F000000C 00000021"), hex("F000000C 7FFFFFFF"));
    body.replace(hex("F000000B 00000052"), hex("F000000B 00000000"));
    PackageRecord record;
    QCOMPARE(parseBody(body, record), ParseResult::Success);
    QVERIFY(record.softwareOptions == sample().softwareOptions);
}

void tst_PackageBody::anyBoolButZeroIsTrue()
{
    for (const char *byte : {"01", "02", "7F", "80", "FF"}) {
        PackageRecord record;
        const QByteArray softwareOptions =
            entry(0xF000000B, option(0xF000000C, byte, 0, 0) + option(0xF000000D, "00", 0, 0));
        QCOMPARE(parseBody(root(entry(0xF0000002, entry(0xF0000003, "") + entry(0xF0000007, "")
                                                      + softwareOptions)),
                           record),
                 ParseResult::Success);
        QVERIFY(record.softwareOptions.optionAEnabled);
        QVERIFY(!record.softwareOptions.optionBEnabled);
    }
}

void tst_PackageBody::nullByteArraysAreReadAsEmpty()
{
    const QByteArray body =
        root(entry(0xF0000011, hardware()
                                   + entry(0xF0000013, entry(0x50414452, u32(7))
                                                           + forged(0x5042494E, 0xFFFFFFFF, "")))
             + entry(0xF0000014, entry(0x5053495A, u32(0)) + forged(0xF0000015, 0xFFFFFFFF, "")
                                     + forged(0xF0000016, 0xFFFFFFFF, "")));
    PackageRecord record = sample();
    QCOMPARE(parseBody(body, record), ParseResult::Success);
    QVERIFY(record.firmwareImage.isEmpty());
    QVERIFY(record.firmwareFileName.isEmpty());
    QVERIFY(record.firmwareFilePath.isEmpty());
    QVERIFY(!carried(record).contains(hex("FFFFFFFF")));
}

void tst_PackageBody::aBodyCutAnywhereIsRefused()
{
    const QByteArray sections = rulesSection() + hardwareSection() + firmwareFileSection();
    const int firstEnd = rulesSection().size();
    const int secondEnd = firstEnd + hardwareSection().size();
    for (int size = 0; size < sections.size(); ++size) {
        const bool isWhole = size == 0 || size == firstEnd || size == secondEnd;
        QVERIFY2((parsed(root(sections.left(size))) == ParseResult::Success) == isWhole,
                 qPrintable(QString::number(size)));
        QVERIFY(parsed(root(sections).left(8 + size)) == ParseResult::WrongRootLength);
    }
}

void tst_PackageBody::anyByteChangedIsReadToAnEnd()
{
    const QByteArray body = root(rulesSection() + hardwareSection() + firmwareFileSection());
    for (int position = 0; position < body.size(); ++position) {
        for (const char value : {'\x00', '\x01', '\x7F', '\x80', '\xFF'}) {
            QByteArray damaged = body;
            damaged[position] = value;
            PackageRecord record;
            const ParseResult result = parseBody(damaged, record);
            QVERIFY(result <= ParseResult::UnknownSection);
            if (result == ParseResult::Success) {
                QVERIFY(record.maskRules.size() <= 2);
                QVERIFY(record.firmwareImage.size() <= body.size());
            }
        }
    }
}

ZEL_CORE_TEST_MAIN(tst_PackageBody)
#include "tst_PackageBody.moc"
