#include "support/DistinctRecord.h"
#include "support/Installation.h"
#include "support/TestEntry.h"
#include "xml/XmlTestSupport.h"

#include <QtTest>

namespace {

struct Section
{
    const char* name;
    void (*format)(CustomXmlParser& parser, CustomInfo& record);
    int (*get)(CustomXmlParser& parser, const QString& path, CustomInfo& record);
    void (*take)(CustomInfo& record, const CustomInfo& source); // this section of the source
    const char* distinct;                                       // of the distinct record, with @PASSWORD@
    const char* byDefault;                                      // of a record with its defaults
    const char* keptByEmptySection;                             // fields that an empty section does not clear
};

const Section sections[] = {
    {"common", [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatXMLCommonInfo(record.common); },
     [](CustomXmlParser& parser, const QString& path, CustomInfo& record) {
         return parser.GetXMLCommonInfo(path, record.common);
     },
     [](CustomInfo& record, const CustomInfo& source) { record.common = source.common; },
     R"(        <common>
            <procomVal>63</procomVal>
            <funcomVal>5</funcomVal>
            <cusTimeStamp>1763610061</cusTimeStamp>
            <cusTimeString>2025-11-20 11:41:01</cusTimeString>
            <cusAddInfo>总部 &lt;first> &amp; "second"</cusAddInfo>
            <areaKey>1</areaKey>
        </common>
)",
     R"(        <common>
            <procomVal>3</procomVal>
            <funcomVal>1</funcomVal>
            <cusTimeStamp>0</cusTimeStamp>
            <cusTimeString></cusTimeString>
            <cusAddInfo></cusAddInfo>
            <areaKey>0</areaKey>
        </common>
)",
     ""},

    {"functions", [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatXMLFunctionInfo(record.function); },
     [](CustomXmlParser& parser, const QString& path, CustomInfo& record) {
         return parser.GetXMLFunctionInfo(path, record.function);
     },
     [](CustomInfo& record, const CustomInfo& source) { record.function = source.function; },
     R"(        <functions>
            <acl>301</acl>
            <wanControl>2</wanControl>
            <drvErr>302</drvErr>
            <dynamicPwdVerify>303</dynamicPwdVerify>
            <dynamicVifInfo>3</dynamicVifInfo>
            <msgAuthOpt>304</msgAuthOpt>
            <msgAuthInfo>305</msgAuthInfo>
            <msgAuthServIP>10.3.0.1</msgAuthServIP>
            <msgAuthServPort>308</msgAuthServPort>
            <passwordProtection>306</passwordProtection>
            <uninstallPassword>@PASSWORD@</uninstallPassword>
            <uninstallPasswordExtend>307</uninstallPasswordExtend>
            <wanControlEscape>309</wanControlEscape>
            <wanControlEscapePyxIp>10.3.0.2</wanControlEscapePyxIp>
            <wanControlEscapePyxPort>3100</wanControlEscapePyxPort>
            <wanControlEscapeDns>10.3.0.3</wanControlEscapeDns>
            <wanControlEscapePyxIpBackup>10.3.0.4</wanControlEscapePyxIpBackup>
        </functions>
)",
     R"(        <functions>
            <acl>0</acl>
            <wanControl>0</wanControl>
            <drvErr>0</drvErr>
            <dynamicPwdVerify>0</dynamicPwdVerify>
            <dynamicVifInfo>1</dynamicVifInfo>
            <msgAuthOpt>0</msgAuthOpt>
            <passwordProtection>0</passwordProtection>
            <wanControlEscape>0</wanControlEscape>
        </functions>
)",
     "msgAuthInfo msgAuthServIP msgAuthServPort uninstallPassword uninstallPasswordExtend wanControlEscapePyxIp "
     "wanControlEscapePyxPort wanControlEscapeDns wanControlEscapePyxIpBackup"},

    {"x1", [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatXML8021XInfo(record.x1); },
     [](CustomXmlParser& parser, const QString& path, CustomInfo& record) {
         return parser.GetXML8021XInfo(path, record.x1);
     },
     [](CustomInfo& record, const CustomInfo& source) { record.x1 = source.x1; },
     R"(        <x1>
            <upVer>203</upVer>
            <upIp>204</upIp>
            <unicastType>205</unicastType>
            <refreshIPAftCut>208</refreshIPAftCut>
            <broadLogOff>206</broadLogOff>
            <x1ResumeConn>207</x1ResumeConn>
            <reauthTimes>7</reauthTimes>
            <reauthInterval>9</reauthInterval>
            <keepConnPasswd>201</keepConnPasswd>
            <autoAuth>202</autoAuth>
            <advancedAuth>209</advancedAuth>
            <advancedAuthType>210</advancedAuthType>
            <defaultConnection>1</defaultConnection>
        </x1>
)",
     R"(        <x1>
            <upVer>1</upVer>
            <upIp>1</upIp>
            <unicastType>1</unicastType>
            <refreshIPAftCut>0</refreshIPAftCut>
            <broadLogOff>1</broadLogOff>
            <x1ResumeConn>1</x1ResumeConn>
            <reauthTimes>0</reauthTimes>
            <reauthInterval>0</reauthInterval>
            <keepConnPasswd>1</keepConnPasswd>
            <autoAuth>0</autoAuth>
            <advancedAuth>0</advancedAuth>
            <defaultConnection>0</defaultConnection>
        </x1>
)",
     "advancedAuthType"},

    {"domain", [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatXMLDomainInfo(record.domain); },
     [](CustomXmlParser& parser, const QString& path, CustomInfo& record) {
         return parser.GetXMLDomainInfo(path, record.domain);
     },
     [](CustomInfo& record, const CustomInfo& source) {
         record.domain = source.domain;
         record.domain.domainSlot = 0;
     },
     R"(        <domain>
            <domaindetail>
                <domaindetailItem>
                    <domainName>研发域</domainName>
                    <domainDesp>研发部门的域</domainDesp>
                </domaindetailItem>
                <domaindetailItem>
                    <domainName>sales</domainName>
                    <domainDesp>domain of the sales team</domainDesp>
                </domaindetailItem>
            </domaindetail>
            <domainDefault>503</domainDefault>
            <domainForce>502</domainForce>
        </domain>
)",
     R"(        <domain>
            <domaindetail/>
            <domainDefault>0</domainDefault>
            <domainForce>0</domainForce>
        </domain>
)",
     "domainSlot"},

    {"portal", [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatXMLPortalInfo(record.portal); },
     [](CustomXmlParser& parser, const QString& path, CustomInfo& record) {
         return parser.GetXMLPortalInfo(path, record.portal);
     },
     [](CustomInfo& record, const CustomInfo& source) { record.portal = source.portal; },
     R"(        <portal>
            <resumeConn>104</resumeConn>
            <upVer>103</upVer>
            <autoAuth>102</autoAuth>
            <keepConnPasswd>101</keepConnPasswd>
            <advancedAuth>105</advancedAuth>
            <advancedAuthType>106</advancedAuthType>
        </portal>
)",
     R"(        <portal>
            <resumeConn>1</resumeConn>
            <upVer>1</upVer>
            <autoAuth>0</autoAuth>
            <keepConnPasswd>1</keepConnPasswd>
            <advancedAuth>0</advancedAuth>
        </portal>
)",
     "advancedAuthType"},

    {"guiOptions", [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatXMLGUIInfo(record.gui); },
     [](CustomXmlParser& parser, const QString& path, CustomInfo& record) {
         return parser.GetXMLGUIInfo(path, record.gui);
     },
     [](CustomInfo& record, const CustomInfo& source) {
         record.gui = source.gui;
         record.gui.linuxDeskIconPath = installation::path(QStringLiteral("DeskIconLinux.png"));
         record.gui.macosDeskIconPath = installation::path(QStringLiteral("DeskIconMacos.icns"));
         record.gui.mainIconPath = installation::path(QStringLiteral("MainIcon.ico"));
     },
     R"(        <guiOptions>
            <linuxDeskIcon>true</linuxDeskIcon>
            <macosDeskIcon>true</macosDeskIcon>
            <mainIcon>true</mainIcon>
            <subTitle>网络接入</subTitle>
            <linuxDeskIconName>接入客户端</linuxDeskIconName>
            <macosDeskName>Access on the Mac</macosDeskName>
            <mainIconName>main icon</mainIconName>
            <hideCopyRight>true</hideCopyRight>
        </guiOptions>
)",
     R"(        <guiOptions>
            <linuxDeskIcon>false</linuxDeskIcon>
            <macosDeskIcon>false</macosDeskIcon>
            <mainIcon>false</mainIcon>
            <subTitle></subTitle>
            <linuxDeskIconName></linuxDeskIconName>
            <macosDeskName></macosDeskName>
            <mainIconName></mainIconName>
            <hideCopyRight>false</hideCopyRight>
        </guiOptions>
)",
     "linuxDeskIcon macosDeskIcon mainIcon hideCopyRight"},

    {"ZOA", [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatXMLZOAInfo(record.zoa); },
     [](CustomXmlParser& parser, const QString& path, CustomInfo& record) {
         return parser.GetXMLZOAInfo(path, record.zoa);
     },
     [](CustomInfo& record, const CustomInfo& source) { record.zoa = source.zoa; },
     R"(        <ZOA>
            <useZOA>801</useZOA>
            <switchZOARetryTimes>4</switchZOARetryTimes>
            <ZOAIP>10.8.0.1</ZOAIP>
            <ZOAPORT>9801</ZOAPORT>
            <standbyZOAIP>10.8.0.2</standbyZOAIP>
            <standbyZOAPORT>9802</standbyZOAPORT>
        </ZOA>
)",
     R"(        <ZOA>
            <useZOA>1</useZOA>
            <switchZOARetryTimes>4</switchZOARetryTimes>
            <ZOAIP></ZOAIP>
            <ZOAPORT>9019</ZOAPORT>
            <standbyZOAIP></standbyZOAIP>
            <standbyZOAPORT>9019</standbyZOAPORT>
        </ZOA>
)",
     ""},

    {"kef", [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatXMLKefInfo(record.kef); },
     [](CustomXmlParser& parser, const QString& path, CustomInfo& record) {
         return parser.GetXMLKefInfo(path, record.kef);
     },
     [](CustomInfo& record, const CustomInfo& source) { record.kef = source.kef; },
     R"(        <kef>
            <kefIP>10.9.0.1</kefIP>
            <kefPort>9901</kefPort>
            <customize>1</customize>
        </kef>
)",
     R"(        <kef>
            <kefIP></kefIP>
            <kefPort></kefPort>
            <customize>0</customize>
        </kef>
)",
     ""},
};

QByteArray distinctText(const Section& section)
{
    return QByteArray(section.distinct).replace("@PASSWORD@", enciphered("卸载 pass-1"));
}

void addRowForEachSection()
{
    QTest::addColumn<int>("number");
    int number = 0;
    for (const Section& section : sections)
        QTest::newRow(section.name) << number++;
}

/// Reads `<name>children</name>` through the reader of the section.
template <class Info>
int readSection(int (CustomXmlParser::*get)(const QString&, Info&), const char* name, const QByteArray& children,
                Info& info)
{
    CustomXmlParser parser;
    return (parser.*get)(documentWith("<" + QByteArray(name) + ">" + children + "</" + name + ">"), info);
}

int readFunctions(const QByteArray& children, BasicFunctionInfo& info)
{
    return readSection(&CustomXmlParser::GetXMLFunctionInfo, "functions", children, info);
}

QByteArray element(const char* name, const QByteArray& text)
{
    return "<" + QByteArray(name) + ">" + text + "</" + name + ">";
}

QByteArray writtenPassword(const QString& password)
{
    BasicFunctionInfo info;
    info.passwordProtection = 1;
    info.uninstallPassword = password;
    const QByteArray document = written([&](CustomXmlParser& parser) { parser.FormatXMLFunctionInfo(info); });
    const int begin = document.indexOf("<uninstallPassword>") + int(strlen("<uninstallPassword>"));
    return document.mid(begin, document.indexOf("</uninstallPassword>") - begin);
}

QString readPassword(const QByteArray& text)
{
    BasicFunctionInfo info;
    info.uninstallPassword = QStringLiteral("former");
    readFunctions("<passwordProtection>1</passwordProtection>" + element("uninstallPassword", text), info);
    return info.uninstallPassword;
}

} // namespace

class TstClientSections : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void distinctSectionIsWrittenByteForByte_data();
    void distinctSectionIsWrittenByteForByte();
    void defaultSectionIsWrittenByteForByte_data();
    void defaultSectionIsWrittenByteForByte();
    void literalSectionIsRead_data();
    void literalSectionIsRead();
    void orderOfTheElementsDoesNotCountOnReading_data();
    void orderOfTheElementsDoesNotCountOnReading();
    void missingElementsReadAsZeroOrEmpty_data();
    void missingElementsReadAsZeroOrEmpty();
    void emptyElementsReadAsMissing_data();
    void emptyElementsReadAsMissing();

    void wideNumberIsCutTo32BitsOnWriting_data();
    void wideNumberIsCutTo32BitsOnWriting();
    void numberFrom2To31UpIsWrittenNegative();
    void timeStampFromTheYear2038ReadsAsZero();
    void numberIsReadAs32Bits_data();
    void numberIsReadAs32Bits();
    void textPassesUnchanged_data();
    void textPassesUnchanged();

    void closedGateKeepsTheField_data();
    void closedGateKeepsTheField();
    void gateIsThatOfTheDocumentNotOfTheRecord();
    void openGateClearsMissingFields();
    void gateOtherThanOneIsOpen_data();
    void gateOtherThanOneIsOpen();
    void gatesOfTheFunctionsAreIndependent_data();
    void gatesOfTheFunctionsAreIndependent();

    void passwordOfFifteenBytesIsEncipheredAndOneOfSixteenStandsInClear_data();
    void passwordOfFifteenBytesIsEncipheredAndOneOfSixteenStandsInClear();
    void passwordInClearThatIsTextOfACipherReadsAsMeaninglessBytes();
    void passwordIsUtf8WhateverTheLocale();
    void passwordReadsUpToItsFirstZeroByte();
    void passwordMayFillTheRoomOnReading_data();
    void passwordMayFillTheRoomOnReading();
    void damagedPasswordReadsAsEmpty_data();
    void damagedPasswordReadsAsEmpty();

    void defaultConnectionIsAnyNumberButZero_data();
    void defaultConnectionIsAnyNumberButZero();
    void kefCustomizeIsAnyNumberButZero_data();
    void kefCustomizeIsAnyNumberButZero();

    void domainFlagsAreReadIn64Bits_data();
    void domainFlagsAreReadIn64Bits();
    void domainWithoutRowsIsAnEmptyList();
    void domainRowsAreAppended();
    void domainRowWithoutElementsHasEmptyTexts();
    void domainRowsAreTheItemsOfTheFirstList();
    void utf8TextIsThatOfTheLocalCodec();

    void iconIsWrittenAsThere_data();
    void iconIsWrittenAsThere();
    void iconPathIsTheCopyBesideTheDocument();
    void pathWithoutASlashGivesTheNameOfTheIconAlone();
    void iconFlagIsBooleanText_data();
    void iconFlagIsBooleanText();
    void hideCopyRightKeepsItsValueForOtherWords_data();
    void hideCopyRightKeepsItsValueForOtherWords();
    void guiWithoutSubTitleEmptiesIt();

    void retryTimesOfZoaAreAlwaysFourAndNeverRead();
};

void TstClientSections::init()
{
    installation::clearLog();
    QFile::remove(documentPath());
}

void TstClientSections::distinctSectionIsWrittenByteForByte_data()
{
    addRowForEachSection();
}

void TstClientSections::distinctSectionIsWrittenByteForByte()
{
    QFETCH(int, number);
    CustomInfo record = distinctRecord();
    QCOMPARE(written([&](CustomXmlParser& parser) { sections[number].format(parser, record); }),
             frame(distinctText(sections[number])));
}

void TstClientSections::defaultSectionIsWrittenByteForByte_data()
{
    addRowForEachSection();
}

void TstClientSections::defaultSectionIsWrittenByteForByte()
{
    QFETCH(int, number);
    CustomInfo record;
    QCOMPARE(written([&](CustomXmlParser& parser) { sections[number].format(parser, record); }),
             frame(sections[number].byDefault));
}

void TstClientSections::literalSectionIsRead_data()
{
    addRowForEachSection();
}

void TstClientSections::literalSectionIsRead()
{
    QFETCH(int, number);
    const QString path = documentWith(distinctText(sections[number]));
    CustomInfo record;
    CustomXmlParser parser;
    QCOMPARE(sections[number].get(parser, path, record), 1);
    CustomInfo expected;
    sections[number].take(expected, distinctRecord());
    QCOMPARE(differences(record, expected), QStringList());
}

void TstClientSections::orderOfTheElementsDoesNotCountOnReading_data()
{
    addRowForEachSection();
}

void TstClientSections::orderOfTheElementsDoesNotCountOnReading()
{
    QFETCH(int, number);
    QByteArrayList children = distinctText(sections[number]).split('\n');
    children.removeFirst();
    children = children.mid(0, children.size() - 2);
    QByteArrayList turned;
    for (int row = 0; row < children.size(); ++row) {
        // A list of rows stays in one piece.
        QByteArray child = children.at(row);
        if (child.trimmed() == "<domaindetail>") {
            while (!child.endsWith("</domaindetail>"))
                child += children.at(++row);
        }
        turned.prepend(child);
    }
    QCOMPARE(turned.size(), sections[number].name == QByteArray("domain") ? 3 : children.size());
    CustomInfo record;
    CustomXmlParser parser;
    const QByteArray name = sections[number].name;
    QCOMPARE(sections[number].get(parser, documentWith("<" + name + ">" + turned.join() + "</" + name + ">"), record),
             1);
    CustomInfo expected;
    sections[number].take(expected, distinctRecord());
    QCOMPARE(differences(record, expected), QStringList());
}

void TstClientSections::missingElementsReadAsZeroOrEmpty_data()
{
    addRowForEachSection();
}

void TstClientSections::missingElementsReadAsZeroOrEmpty()
{
    QFETCH(int, number);
    const QString path =
        documentWith(QByteArray("<") + sections[number].name + "><other/></" + sections[number].name + ">");
    // All fields of the section, as differences of the whole section to an untouched record tell.
    CustomInfo record = distinctRecord();
    CustomXmlParser parser;
    QCOMPARE(sections[number].get(parser, path, record), 1);
    const CustomInfo zero = [] {
        CustomInfo info;
        info.common.procomVal = info.common.funcomVal = 0;
        info.function.dynamicVifInfo = 0;
        info.x1.keepConnPasswd = info.x1.upVer = info.x1.upIp = info.x1.unicastType = 0;
        info.x1.broadLogOff = info.x1.x1ResumeConn = 0;
        info.portal.keepConnPasswd = info.portal.upVer = info.portal.resumeConn = 0;
        info.domain.domaindetail = distinctRecord().domain.domaindetail;
        info.zoa.useZOA = 0;
        info.zoa.ZOAPORT.clear();
        info.zoa.standbyZOAPORT.clear();
        return info;
    }();
    CustomInfo cleared = distinctRecord();
    sections[number].take(cleared, zero);
    if (sections[number].name == QByteArray("guiOptions"))
        cleared.gui = zero.gui;
    QStringList kept;
    for (const QString& field : differences(record, cleared))
        kept.append(field.section(QLatin1Char('/'), 1));
    const QStringList expected =
        QString::fromLatin1(sections[number].keptByEmptySection).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QCOMPARE(kept, expected);

    // What is kept has its former value.
    for (const QString& field : differences(record, distinctRecord()))
        QVERIFY2(!expected.contains(field.section(QLatin1Char('/'), 1)), qPrintable(field));
}

void TstClientSections::emptyElementsReadAsMissing_data()
{
    addRowForEachSection();
}

void TstClientSections::emptyElementsReadAsMissing()
{
    QFETCH(int, number);
    const QByteArray name = sections[number].name;
    QByteArray emptied = distinctText(sections[number]);
    for (int begin = emptied.indexOf('>'); begin >= 0; begin = emptied.indexOf('>', begin + 1)) {
        const int end = emptied.indexOf('<', begin);
        if (end > 0)
            emptied.remove(begin + 1, end - begin - 1);
    }
    emptied.replace("<domaindetailItem><domainName></domainName><domainDesp></domainDesp></domaindetailItem>", "");
    QVERIFY(emptied.contains("></"));
    CustomXmlParser parser;
    CustomInfo fromEmptied = distinctRecord();
    QCOMPARE(sections[number].get(parser, documentWith(emptied), fromEmptied), 1);
    CustomInfo fromNothing = distinctRecord();
    QCOMPARE(sections[number].get(parser, documentWith("<" + name + "/>"), fromNothing), 1);
    QCOMPARE(differences(fromEmptied, fromNothing), QStringList());
}

void TstClientSections::wideNumberIsCutTo32BitsOnWriting_data()
{
    addRowForEachSection();
}

void TstClientSections::wideNumberIsCutTo32BitsOnWriting()
{
    QFETCH(int, number);
    const quint64 high = quint64(0xABCD) << 32;
    CustomInfo record = distinctRecord();
    for (quint64* field : {&record.common.procomVal, &record.common.funcomVal, &record.common.cusTimeStamp,
                           &record.domain.domainDefault, &record.domain.domainForce, &record.zoa.useZOA})
        *field += high;
    QCOMPARE(written([&](CustomXmlParser& parser) { sections[number].format(parser, record); }),
             frame(distinctText(sections[number])));
}

void TstClientSections::numberFrom2To31UpIsWrittenNegative()
{
    CustomInfo record;
    record.common.procomVal = 2147483647;
    record.common.funcomVal = 2147483648;
    record.common.cusTimeStamp = 4294967295;
    record.common.areaKey = 4294967294;
    record.domain.domainDefault = 2147483648;
    record.domain.domainForce = quint64(-1);
    const QByteArray document = written([&](CustomXmlParser& parser) {
        parser.FormatXMLCommonInfo(record.common);
        parser.FormatXMLDomainInfo(record.domain);
    });
    QVERIFY(document.contains("<procomVal>2147483647</procomVal>"));
    QVERIFY(document.contains("<funcomVal>-2147483648</funcomVal>"));
    QVERIFY(document.contains("<cusTimeStamp>-1</cusTimeStamp>"));
    QVERIFY(document.contains("<areaKey>-2</areaKey>"));
    QVERIFY(document.contains("<domainDefault>-2147483648</domainDefault>"));
    QVERIFY(document.contains("<domainForce>-1</domainForce>"));

    CustomInfo read = distinctRecord();
    CustomXmlParser parser;
    QCOMPARE(parser.GetXMLCommonInfo(documentPath(), read.common), 1);
    QCOMPARE(parser.GetXMLDomainInfo(documentPath(), read.domain), 1);
    QCOMPARE(read.common.procomVal, quint64(2147483647));
    QCOMPARE(read.common.funcomVal, quint64(0));
    QCOMPARE(read.common.cusTimeStamp, quint64(0));
    QCOMPARE(read.common.areaKey, quint32(0));
    QCOMPARE(read.domain.domainDefault, quint64(0));
    QCOMPARE(read.domain.domainForce, quint64(0));
}

void TstClientSections::timeStampFromTheYear2038ReadsAsZero()
{
    CommonInfo common;
    CustomXmlParser parser;
    common.cusTimeStamp = 2147483647; // 2038-01-19 03:14:07 UTC
    written([&](CustomXmlParser& writer) { writer.FormatXMLCommonInfo(common); });
    CommonInfo read;
    QCOMPARE(parser.GetXMLCommonInfo(documentPath(), read), 1);
    QCOMPARE(read.cusTimeStamp, quint64(2147483647));

    common.cusTimeStamp = 2147483648;
    QVERIFY(written([&](CustomXmlParser& writer) {
                writer.FormatXMLCommonInfo(common);
            }).contains("<cusTimeStamp>-2147483648</cusTimeStamp>"));
    QCOMPARE(parser.GetXMLCommonInfo(documentPath(), read), 1);
    QCOMPARE(read.cusTimeStamp, quint64(0));
}

void TstClientSections::numberIsReadAs32Bits_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<quint64>("number");
    QTest::newRow("decimal") << QByteArray("1701") << quint64(1701);
    QTest::newRow("from 2^31") << QByteArray("2147483648") << quint64(2147483648);
    QTest::newRow("largest") << QByteArray("4294967295") << quint64(4294967295);
    QTest::newRow("beyond 32 bits") << QByteArray("4294967296") << quint64(0);
    QTest::newRow("negative") << QByteArray("-1") << quint64(0);
    QTest::newRow("no number") << QByteArray("abc") << quint64(0);
    QTest::newRow("word") << QByteArray("true") << quint64(0);
}

void TstClientSections::numberIsReadAs32Bits()
{
    QFETCH(QByteArray, text);
    QFETCH(quint64, number);
    CommonInfo common;
    QCOMPARE(readSection(&CustomXmlParser::GetXMLCommonInfo, "common",
                         element("procomVal", text) + element("funcomVal", text) + element("cusTimeStamp", text) +
                             element("areaKey", text),
                         common),
             1);
    QCOMPARE(common.procomVal, number);
    QCOMPARE(common.funcomVal, number);
    QCOMPARE(common.cusTimeStamp, number);
    QCOMPARE(quint64(common.areaKey), number);
    ZOAOptionsInfo zoa;
    QCOMPARE(readSection(&CustomXmlParser::GetXMLZOAInfo, "ZOA", element("useZOA", text), zoa), 1);
    QCOMPARE(zoa.useZOA, number);
    X1OptionsInfo x1;
    QCOMPARE(readSection(&CustomXmlParser::GetXML8021XInfo, "x1", element("reauthTimes", text), x1), 1);
    QCOMPARE(quint64(x1.reauthTimes), number);
}

void TstClientSections::textPassesUnchanged_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("Chinese") << QStringLiteral("客户端 中文");
    QTest::newRow("beyond 16 bits") << QStringLiteral("😀𠮷");
    QTest::newRow("markup") << QStringLiteral("<a b=\"c\">&amp;</a>");
    QTest::newRow("end of unparsed characters") << QStringLiteral("]]>");
    QTest::newRow("lines") << QStringLiteral("one\ntwo\r\nthree\rfour\tfive");
    QTest::newRow("blanks around") << QStringLiteral("  x  ");
    QTest::newRow("comment") << QStringLiteral("<!-- -->");
}

void TstClientSections::textPassesUnchanged()
{
    QFETCH(QString, text);
    CustomInfo record;
    record.common.cusAddInfo = text;
    record.kef.kefIP = text;
    record.zoa.ZOAIP = text;
    record.domain.domaindetail = {{text, text}};
    written([&](CustomXmlParser& parser) {
        parser.FormatXMLCommonInfo(record.common);
        parser.FormatXMLDomainInfo(record.domain);
        parser.FormatXMLZOAInfo(record.zoa);
        parser.FormatXMLKefInfo(record.kef);
    });
    CustomInfo read;
    CustomXmlParser parser;
    QCOMPARE(parser.GetXMLCommonInfo(documentPath(), read.common), 1);
    QCOMPARE(parser.GetXMLDomainInfo(documentPath(), read.domain), 1);
    QCOMPARE(parser.GetXMLZOAInfo(documentPath(), read.zoa), 1);
    QCOMPARE(parser.GetXMLKefInfo(documentPath(), read.kef), 1);
    QCOMPARE(differences(read, record), QStringList());
}

void TstClientSections::closedGateKeepsTheField_data()
{
    QTest::addColumn<QByteArray>("gate");
    QTest::newRow("0") << QByteArray("0");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("word") << QByteArray("true");
    QTest::newRow("negative") << QByteArray("-1");
    QTest::newRow("beyond 32 bits") << QByteArray("4294967296");
}

void TstClientSections::closedGateKeepsTheField()
{
    QFETCH(QByteArray, gate);
    CustomInfo record;
    QCOMPARE(readFunctions(element("msgAuthOpt", gate) +
                               "<msgAuthInfo>9</msgAuthInfo><msgAuthServIP>9</msgAuthServIP>"
                               "<msgAuthServPort>9</msgAuthServPort>" +
                               element("passwordProtection", gate) + element("uninstallPassword", enciphered("9")) +
                               "<uninstallPasswordExtend>9</uninstallPasswordExtend>" +
                               element("wanControlEscape", gate) +
                               "<wanControlEscapePyxIp>9</wanControlEscapePyxIp>"
                               "<wanControlEscapePyxPort>9</wanControlEscapePyxPort>"
                               "<wanControlEscapeDns>9</wanControlEscapeDns>"
                               "<wanControlEscapePyxIpBackup>9</wanControlEscapePyxIpBackup>"
                               "<dynamicVifInfo>1</dynamicVifInfo>",
                           record.function),
             1);
    QCOMPARE(record.function.msgAuthInfo, quint32(1));
    QCOMPARE(differences(record, CustomInfo()), QStringList());

    record = distinctRecord();
    CustomInfo expected = record;
    expected.x1 = X1OptionsInfo();
    expected.x1.advancedAuthType = 210;
    QCOMPARE(readSection(&CustomXmlParser::GetXML8021XInfo, "x1",
                         "<advancedAuthType>9</advancedAuthType><upVer>1</upVer><upIp>1</upIp>"
                         "<unicastType>1</unicastType><broadLogOff>1</broadLogOff><x1ResumeConn>1</x1ResumeConn>"
                         "<keepConnPasswd>1</keepConnPasswd>" +
                             element("advancedAuth", gate),
                         record.x1),
             1);
    expected.portal = PortalOptionsInfo();
    expected.portal.advancedAuthType = 106;
    QCOMPARE(readSection(&CustomXmlParser::GetXMLPortalInfo, "portal",
                         "<advancedAuthType>9</advancedAuthType><upVer>1</upVer><resumeConn>1</resumeConn>"
                         "<keepConnPasswd>1</keepConnPasswd>" +
                             element("advancedAuth", gate),
                         record.portal),
             1);
    QCOMPARE(differences(record, expected), QStringList());
}

void TstClientSections::gateIsThatOfTheDocumentNotOfTheRecord()
{
    BasicFunctionInfo function;
    readFunctions("<msgAuthServPort>9</msgAuthServPort><msgAuthOpt>1</msgAuthOpt>", function);
    QCOMPARE(function.msgAuthServPort, quint32(9));
    readFunctions("<msgAuthServPort>10</msgAuthServPort><msgAuthOpt>0</msgAuthOpt>", function);
    QCOMPARE(function.msgAuthServPort, quint32(9));
    QCOMPARE(function.msgAuthOpt, quint32(0));
}

void TstClientSections::openGateClearsMissingFields()
{
    CustomInfo record = distinctRecord();
    readFunctions("<msgAuthOpt>1</msgAuthOpt><passwordProtection>1</passwordProtection>"
                  "<wanControlEscape>1</wanControlEscape>",
                  record.function);
    CustomInfo expected = distinctRecord();
    expected.function = BasicFunctionInfo();
    expected.function.dynamicVifInfo = 0;
    expected.function.msgAuthInfo = 0;
    expected.function.msgAuthOpt = expected.function.passwordProtection = expected.function.wanControlEscape = 1;

    readSection(&CustomXmlParser::GetXMLPortalInfo, "portal", "<advancedAuth>1</advancedAuth>", record.portal);
    expected.portal = PortalOptionsInfo();
    expected.portal.keepConnPasswd = expected.portal.upVer = expected.portal.resumeConn = 0;
    expected.portal.advancedAuth = 1;
    QCOMPARE(differences(record, expected), QStringList());
    readSection(&CustomXmlParser::GetXML8021XInfo, "x1", "<advancedAuth>1</advancedAuth>", record.x1);
    QCOMPARE(record.x1.advancedAuthType, quint32(0));
}

void TstClientSections::gateOtherThanOneIsOpen_data()
{
    QTest::addColumn<quint32>("gate");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("1") << quint32(1) << QByteArray("1");
    QTest::newRow("2") << quint32(2) << QByteArray("2");
    QTest::newRow("largest that reads back") << quint32(2147483647) << QByteArray("2147483647");
    QTest::newRow("negative on writing") << quint32(4294967295) << QByteArray("-1");
}

void TstClientSections::gateOtherThanOneIsOpen()
{
    QFETCH(quint32, gate);
    QFETCH(QByteArray, text);
    PortalOptionsInfo portal;
    portal.advancedAuth = gate;
    portal.advancedAuthType = 1;
    const QByteArray document = written([&](CustomXmlParser& parser) { parser.FormatXMLPortalInfo(portal); });
    QVERIFY(document.contains("            " + element("advancedAuth", text) +
                              "\n            <advancedAuthType>1</advancedAuthType>\n"));
    PortalOptionsInfo read;
    CustomXmlParser parser;
    QCOMPARE(parser.GetXMLPortalInfo(documentPath(), read), 1);
    QCOMPARE(read.advancedAuthType, quint32(text.startsWith('-') ? 0 : 1));
}

void TstClientSections::gatesOfTheFunctionsAreIndependent_data()
{
    QTest::addColumn<quint32>("msgAuth");
    QTest::addColumn<quint32>("password");
    QTest::addColumn<quint32>("escape");
    for (quint32 mask = 0; mask < 8; ++mask)
        QTest::addRow("%u%u%u", mask & 1, mask >> 1 & 1, mask >> 2) << (mask & 1) << (mask >> 1 & 1) << (mask >> 2);
}

void TstClientSections::gatesOfTheFunctionsAreIndependent()
{
    QFETCH(quint32, msgAuth);
    QFETCH(quint32, password);
    QFETCH(quint32, escape);
    BasicFunctionInfo function = distinctRecord().function;
    function.msgAuthOpt = msgAuth;
    function.passwordProtection = password;
    function.wanControlEscape = escape;
    const QByteArray document = written([&](CustomXmlParser& parser) { parser.FormatXMLFunctionInfo(function); });
    for (const char* name : {"<msgAuthInfo>", "<msgAuthServIP>", "<msgAuthServPort>"})
        QCOMPARE(document.contains(name), msgAuth != 0);
    for (const char* name : {"<uninstallPassword>", "<uninstallPasswordExtend>"})
        QCOMPARE(document.contains(name), password != 0);
    for (const char* name : {"<wanControlEscapePyxIp>", "<wanControlEscapePyxPort>", "<wanControlEscapeDns>",
                             "<wanControlEscapePyxIpBackup>"})
        QCOMPARE(document.contains(name), escape != 0);
    for (const char* name : {"<msgAuthOpt>", "<passwordProtection>", "<wanControlEscape>"})
        QCOMPARE(document.count(name), 1);
}

void TstClientSections::passwordOfFifteenBytesIsEncipheredAndOneOfSixteenStandsInClear_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("clear");
    const auto row = [](const char* name, const QString& password, bool clear) {
        QTest::newRow(name) << password << clear;
    };
    row("empty", QString(), false);
    row("1 byte", QStringLiteral("x"), false);
    row("7 bytes", QStringLiteral("1234567"), false);
    row("8 bytes", QStringLiteral("12345678"), false);
    row("15 bytes", QStringLiteral("123456789012345"), false);
    row("16 bytes", QStringLiteral("1234567890123456"), true);
    row("17 bytes", QStringLiteral("12345678901234567"), true);
    row("64 bytes", QString(64, QLatin1Char('x')), true);
    row("15 bytes in 5 characters", QStringLiteral("一二三四五"), false);
    row("16 bytes in 6 characters", QStringLiteral("一二三四五x"), true);
    row("markup in clear", QStringLiteral("<password> & more"), true);
}

void TstClientSections::passwordOfFifteenBytesIsEncipheredAndOneOfSixteenStandsInClear()
{
    QFETCH(QString, password);
    QFETCH(bool, clear);
    const QByteArray text = writtenPassword(password);
    BasicFunctionInfo read;
    read.uninstallPassword = QStringLiteral("former");
    CustomXmlParser parser;
    QCOMPARE(parser.GetXMLFunctionInfo(documentPath(), read), 1);
    if (clear) {
        QCOMPARE(text, password.toUtf8().replace('&', "&amp;").replace('<', "&lt;"));
        QCOMPARE(read.uninstallPassword, QString());
    } else {
        QCOMPARE(text, enciphered(password.toUtf8()));
        QCOMPARE(deciphered(text), password.toUtf8());
        QCOMPARE(read.uninstallPassword, password);
    }
    QCOMPARE(installation::log(), QByteArray());
}

void TstClientSections::passwordInClearThatIsTextOfACipherReadsAsMeaninglessBytes()
{
    const QString password = QString::fromLatin1(enciphered("meaningless"));
    QCOMPARE(password.size(), 24);
    QCOMPARE(writtenPassword(password), password.toLatin1());
    QCOMPARE(readPassword(password.toLatin1()), QStringLiteral("meaningless"));
}

void TstClientSections::passwordIsUtf8WhateverTheLocale()
{
    const LocaleCodec codec(s_latin1);
    QCOMPARE(writtenPassword(QStringLiteral("密码é")), enciphered("密码é"));
    QCOMPARE(readPassword(enciphered("密码é")), QStringLiteral("密码é"));
    QCOMPARE(writtenPassword(QStringLiteral("很长很长的密码")), QByteArray("很长很长的密码"));
}

void TstClientSections::passwordReadsUpToItsFirstZeroByte()
{
    QCOMPARE(readPassword(enciphered(QByteArray("ab\0cd", 5))), QStringLiteral("ab"));
    QCOMPARE(readPassword(enciphered(QByteArray("\0cd", 3))), QString());
}

void TstClientSections::passwordMayFillTheRoomOnReading_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("fits");
    QTest::newRow("16 bytes") << 16 << true;
    QTest::newRow("31 bytes") << 31 << true;
    QTest::newRow("32 bytes, without a terminator") << 32 << true;
    QTest::newRow("33 bytes") << 33 << false;
    QTest::newRow("39 bytes") << 39 << false;
    QTest::newRow("40 bytes") << 40 << false;
}

void TstClientSections::passwordMayFillTheRoomOnReading()
{
    QFETCH(int, length);
    QFETCH(bool, fits);
    const QByteArray password(length, 'p');
    QCOMPARE(readPassword(enciphered(password)), fits ? QString::fromLatin1(password) : QString());
}

void TstClientSections::damagedPasswordReadsAsEmpty_data()
{
    QTest::addColumn<QByteArray>("text");
    const QByteArray good = enciphered("password");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no base64") << QByteArray("!!!!");
    QTest::newRow("Chinese") << QByteArray("密码密码");
    QTest::newRow("one character less") << good.chopped(1);
    QTest::newRow("four characters less") << good.chopped(4);
    QTest::newRow("line feed at the end") << good + '\n';
    QTest::newRow("blank before") << ' ' + good;
    QTest::newRow("megabyte") << QByteArray(1 << 20, 'A');
}

void TstClientSections::damagedPasswordReadsAsEmpty()
{
    QFETCH(QByteArray, text);
    QCOMPARE(readPassword(text), QString());
    QCOMPARE(installation::log(), QByteArray());
}

void TstClientSections::defaultConnectionIsAnyNumberButZero_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("flag");
    QTest::newRow("1") << QByteArray("1") << true;
    QTest::newRow("2") << QByteArray("2") << true;
    QTest::newRow("4294967295") << QByteArray("4294967295") << true;
    QTest::newRow("0") << QByteArray("0") << false;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("true") << QByteArray("true") << false;
    QTest::newRow("-1") << QByteArray("-1") << false;
    QTest::newRow("4294967296") << QByteArray("4294967296") << false;
}

void TstClientSections::defaultConnectionIsAnyNumberButZero()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, flag);
    for (const bool former : {false, true}) {
        X1OptionsInfo x1;
        x1.defaultConnection = former;
        QCOMPARE(readSection(&CustomXmlParser::GetXML8021XInfo, "x1", element("defaultConnection", text), x1), 1);
        QCOMPARE(x1.defaultConnection, flag);
    }
}

void TstClientSections::kefCustomizeIsAnyNumberButZero_data()
{
    defaultConnectionIsAnyNumberButZero_data();
}

void TstClientSections::kefCustomizeIsAnyNumberButZero()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, flag);
    for (const bool former : {false, true}) {
        KEFOptionsInfo kef;
        kef.customize = former;
        QCOMPARE(readSection(&CustomXmlParser::GetXMLKefInfo, "kef", element("customize", text), kef), 1);
        QCOMPARE(kef.customize, flag);
    }
}

void TstClientSections::domainFlagsAreReadIn64Bits_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<quint64>("number");
    QTest::newRow("1") << QByteArray("1") << quint64(1);
    QTest::newRow("beyond 32 bits") << QByteArray("4294967297") << quint64(4294967297);
    QTest::newRow("largest") << QByteArray("18446744073709551615") << quint64(18446744073709551615ULL);
    QTest::newRow("beyond 64 bits") << QByteArray("18446744073709551616") << quint64(0);
    QTest::newRow("negative") << QByteArray("-1") << quint64(0);
    QTest::newRow("no number") << QByteArray("true") << quint64(0);
}

void TstClientSections::domainFlagsAreReadIn64Bits()
{
    QFETCH(QByteArray, text);
    QFETCH(quint64, number);
    SUIDomainInfo domain;
    domain.domainDefault = domain.domainForce = 9;
    const auto get = &CustomXmlParser::GetXMLDomainInfo;
    QCOMPARE(readSection(get, "domain", element("domainDefault", text), domain), 1);
    QCOMPARE(domain.domainDefault, number);
    QCOMPARE(domain.domainForce, quint64(0));
    QCOMPARE(readSection(get, "domain", element("domainForce", text), domain), 1);
    QCOMPARE(domain.domainForce, number);
    QCOMPARE(domain.domainDefault, quint64(0));
}

void TstClientSections::domainWithoutRowsIsAnEmptyList()
{
    SUIDomainInfo domain;
    const QByteArray document = written([&](CustomXmlParser& parser) { parser.FormatXMLDomainInfo(domain); });
    QVERIFY(document.contains("<domaindetail/>"));
    SUIDomainInfo read;
    CustomXmlParser parser;
    QCOMPARE(parser.GetXMLDomainInfo(documentPath(), read), 1);
    QCOMPARE(read.domaindetail.size(), 0);
}

void TstClientSections::domainRowsAreAppended()
{
    CustomInfo record;
    record.domain.domaindetail = {{QStringLiteral("former"), QStringLiteral("row")}};
    record.domain.domainSlot = 7;
    CustomInfo source = distinctRecord();
    written([&](CustomXmlParser& parser) { parser.FormatXMLDomainInfo(source.domain); });
    CustomXmlParser parser;
    QCOMPARE(parser.GetXMLDomainInfo(documentPath(), record.domain), 1);
    CustomInfo expected;
    expected.domain = source.domain;
    expected.domain.domaindetail.prepend({QStringLiteral("former"), QStringLiteral("row")});
    expected.domain.domainSlot = 7;
    QCOMPARE(differences(record, expected), QStringList());
}

void TstClientSections::domainRowWithoutElementsHasEmptyTexts()
{
    SUIDomainInfo domain;
    QCOMPARE(readSection(&CustomXmlParser::GetXMLDomainInfo, "domain",
                         "<domaindetail><domaindetailItem/>"
                         "<domaindetailItem><domainDesp>second</domainDesp></domaindetailItem></domaindetail>",
                         domain),
             1);
    QCOMPARE(domain.domaindetail.size(), 2);
    QCOMPARE(domain.domaindetail.at(0).domainName, QString());
    QCOMPARE(domain.domaindetail.at(0).domainDesp, QString());
    QCOMPARE(domain.domaindetail.at(1).domainName, QString());
    QCOMPARE(domain.domaindetail.at(1).domainDesp, QStringLiteral("second"));
}

void TstClientSections::domainRowsAreTheItemsOfTheFirstList()
{
    SUIDomainInfo domain;
    QCOMPARE(readSection(&CustomXmlParser::GetXMLDomainInfo, "domain",
                         "<domaindetailItem><domainName>outside</domainName></domaindetailItem>"
                         "<domaindetail>text<other><domaindetailItem/></other>"
                         "<domaindetailItem><domainName>1</domainName></domaindetailItem><other/>"
                         "<domaindetailItem><domainName>2</domainName></domaindetailItem></domaindetail>"
                         "<domaindetail><domaindetailItem><domainName>3</domainName></domaindetailItem></domaindetail>",
                         domain),
             1);
    QCOMPARE(domain.domaindetail.size(), 2);
    QCOMPARE(domain.domaindetail.at(0).domainName, QStringLiteral("1"));
    QCOMPARE(domain.domaindetail.at(1).domainName, QStringLiteral("2"));

    QCOMPARE(readSection(&CustomXmlParser::GetXMLDomainInfo, "domain", "<domaindetailItem/>", domain), 1);
    QCOMPARE(domain.domaindetail.size(), 2);
}

void TstClientSections::utf8TextIsThatOfTheLocalCodec()
{
    // Under another locale than one with UTF-8 the utf8 texts change, the others do not.
    const LocaleCodec codec(s_latin1);
    CustomInfo record = distinctRecord();
    BasicFunctionInfo& function = record.function;
    GUIOptionsInfo& gui = record.gui;
    for (QString* text :
         {&record.common.cusTimeString, &record.common.cusAddInfo, &function.msgAuthServIP,
          &function.wanControlEscapePyxIp, &function.wanControlEscapePyxPort, &function.wanControlEscapeDns,
          &function.wanControlEscapePyxIpBackup, &gui.subTitle, &gui.linuxDeskIconName, &gui.macosDeskName,
          &gui.mainIconName, &record.kef.kefIP, &record.kef.kefPort, &record.zoa.ZOAIP, &record.zoa.ZOAPORT,
          &record.zoa.standbyZOAIP, &record.zoa.standbyZOAPORT})
        *text = QStringLiteral("é");
    record.domain.domaindetail = {{QStringLiteral("é"), QStringLiteral("é")}};
    const QByteArray document = written([&](CustomXmlParser& parser) {
        for (const Section& section : sections)
            section.format(parser, record);
    });
    for (const char* name : {"cusTimeString", "cusAddInfo", "msgAuthServIP", "wanControlEscapePyxIp",
                             "wanControlEscapePyxPort", "wanControlEscapeDns", "wanControlEscapePyxIpBackup",
                             "subTitle", "linuxDeskIconName", "macosDeskName", "mainIconName", "kefIP", "kefPort"})
        QVERIFY2(document.contains(element(name, "é")), name);
    for (const char* name : {"domainName", "domainDesp", "ZOAIP", "ZOAPORT", "standbyZOAIP", "standbyZOAPORT"})
        QVERIFY2(document.contains(element(name, "Ã©")), name);
    CustomInfo read;
    CustomXmlParser parser;
    parser.GetXMLDomainInfo(documentPath(), read.domain);
    parser.GetXMLZOAInfo(documentPath(), read.zoa);
    QCOMPARE(read.domain.domaindetail.at(0).domainName, QStringLiteral("Ã©"));
    QCOMPARE(read.zoa.ZOAIP, QStringLiteral("Ã©"));
}

void TstClientSections::iconIsWrittenAsThere_data()
{
    QTest::addColumn<QString>("linuxPath");
    QTest::addColumn<QString>("macosPath");
    QTest::addColumn<QString>("mainPath");
    QTest::newRow("Linux") << QStringLiteral("/missing.png") << QString() << QString();
    QTest::newRow("macOS") << QString() << QStringLiteral(" ") << QString();
    QTest::newRow("main") << QString() << QString() << QStringLiteral("图标");
}

void TstClientSections::iconIsWrittenAsThere()
{
    QFETCH(QString, linuxPath);
    QFETCH(QString, macosPath);
    QFETCH(QString, mainPath);
    GUIOptionsInfo gui;
    gui.linuxDeskIconPath = linuxPath;
    gui.macosDeskIconPath = macosPath;
    gui.mainIconPath = mainPath;
    const auto word = [](const QString& path) { return path.isEmpty() ? QByteArray("false") : QByteArray("true"); };
    const QByteArray document = written([&](CustomXmlParser& parser) { parser.FormatXMLGUIInfo(gui); });
    QVERIFY(document.contains(element("linuxDeskIcon", word(linuxPath))));
    QVERIFY(document.contains(element("macosDeskIcon", word(macosPath))));
    QVERIFY(document.contains(element("mainIcon", word(mainPath))));
    QVERIFY(!document.contains("Path"));
    QVERIFY(mainPath.isEmpty() || !document.contains("图标"));

    GUIOptionsInfo read;
    CustomXmlParser parser;
    QCOMPARE(parser.GetXMLGUIInfo(documentPath(), read), 1);
    const auto copy = [](const QString& path, const char* name) {
        return path.isEmpty() ? QString() : installation::path(QLatin1String(name));
    };
    QCOMPARE(read.linuxDeskIconPath, copy(linuxPath, "DeskIconLinux.png"));
    QCOMPARE(read.macosDeskIconPath, copy(macosPath, "DeskIconMacos.icns"));
    QCOMPARE(read.mainIconPath, copy(mainPath, "MainIcon.ico"));
}

void TstClientSections::iconPathIsTheCopyBesideTheDocument()
{
    const QString path = installation::path(QStringLiteral("UpdateCustom/1700000000/OrvexCustom.xml"));
    installation::writeFile(path, frame("<guiOptions><linuxDeskIcon>true</linuxDeskIcon><mainIcon>true</mainIcon>"
                                        "<macosDeskIcon>true</macosDeskIcon></guiOptions>"));
    GUIOptionsInfo gui;
    gui.mainIconPath = QStringLiteral("/source.ico");
    CustomXmlParser parser;
    QCOMPARE(parser.GetXMLGUIInfo(path, gui), 1);
    const QString directory = installation::path(QStringLiteral("UpdateCustom/1700000000/"));
    QCOMPARE(gui.linuxDeskIconPath, directory + QStringLiteral("DeskIconLinux.png"));
    QCOMPARE(gui.macosDeskIconPath, directory + QStringLiteral("DeskIconMacos.icns"));
    QCOMPARE(gui.mainIconPath, directory + QStringLiteral("MainIcon.ico"));
}

void TstClientSections::pathWithoutASlashGivesTheNameOfTheIconAlone()
{
    documentWith("<guiOptions><linuxDeskIcon>true</linuxDeskIcon><mainIcon>1</mainIcon></guiOptions>");
    const QString former = QDir::currentPath();
    QVERIFY(QDir::setCurrent(installation::root()));
    GUIOptionsInfo gui;
    CustomXmlParser parser;
    const int result = parser.GetXMLGUIInfo(QStringLiteral("document.xml"), gui);
    QVERIFY(QDir::setCurrent(former));
    QCOMPARE(result, 1);
    QCOMPARE(gui.linuxDeskIconPath, QStringLiteral("DeskIconLinux.png"));
    QCOMPARE(gui.mainIconPath, QStringLiteral("MainIcon.ico"));
    QCOMPARE(gui.macosDeskIconPath, QString());
}

void TstClientSections::iconFlagIsBooleanText_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("there");
    QTest::newRow("true") << QByteArray("true") << true;
    QTest::newRow("TRUE") << QByteArray("TRUE") << true;
    QTest::newRow("1") << QByteArray("1") << true;
    QTest::newRow("false") << QByteArray("false") << false;
    QTest::newRow("0") << QByteArray("0") << false;
    QTest::newRow("2") << QByteArray("2") << false;
    QTest::newRow("yes") << QByteArray("yes") << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void TstClientSections::iconFlagIsBooleanText()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, there);
    GUIOptionsInfo gui;
    gui.linuxDeskIconPath = gui.macosDeskIconPath = gui.mainIconPath = QStringLiteral("/former");
    QCOMPARE(readSection(&CustomXmlParser::GetXMLGUIInfo, "guiOptions",
                         element("linuxDeskIcon", text) + element("macosDeskIcon", text) + element("mainIcon", text),
                         gui),
             1);
    const auto expected = [&](const char* name) {
        return there ? installation::path(QLatin1String(name)) : QStringLiteral("/former");
    };
    QCOMPARE(gui.linuxDeskIconPath, expected("DeskIconLinux.png"));
    QCOMPARE(gui.macosDeskIconPath, expected("DeskIconMacos.icns"));
    QCOMPARE(gui.mainIconPath, expected("MainIcon.ico"));
}

void TstClientSections::hideCopyRightKeepsItsValueForOtherWords_data()
{
    QTest::addColumn<QByteArray>("children");
    QTest::addColumn<bool>("fromFalse");
    QTest::addColumn<bool>("fromTrue");
    const auto row = [](const char* name, const QByteArray& children, bool fromFalse, bool fromTrue) {
        QTest::newRow(name) << children << fromFalse << fromTrue;
    };
    row("true", element("hideCopyRight", "true"), true, true);
    row("TRUE", element("hideCopyRight", "TRUE"), true, true);
    row("1", element("hideCopyRight", "1"), true, true);
    row("false", element("hideCopyRight", "false"), false, false);
    row("FALSE", element("hideCopyRight", "FALSE"), false, false);
    row("0", element("hideCopyRight", "0"), false, false);
    row("2", element("hideCopyRight", "2"), false, true);
    row("yes", element("hideCopyRight", "yes"), false, true);
    row("empty", element("hideCopyRight", ""), false, true);
    row("missing", "<other/>", false, true);
}

void TstClientSections::hideCopyRightKeepsItsValueForOtherWords()
{
    QFETCH(QByteArray, children);
    QFETCH(bool, fromFalse);
    QFETCH(bool, fromTrue);
    GUIOptionsInfo gui;
    gui.hideCopyRight = false;
    QCOMPARE(readSection(&CustomXmlParser::GetXMLGUIInfo, "guiOptions", children, gui), 1);
    QCOMPARE(gui.hideCopyRight, fromFalse);
    gui.hideCopyRight = true;
    QCOMPARE(readSection(&CustomXmlParser::GetXMLGUIInfo, "guiOptions", children, gui), 1);
    QCOMPARE(gui.hideCopyRight, fromTrue);
}

void TstClientSections::guiWithoutSubTitleEmptiesIt()
{
    CustomInfo record = distinctRecord();
    CustomXmlParser parser;
    QCOMPARE(parser.GetXMLGUIInfo(documentWith("<portal/>"), record.gui), 1);
    QCOMPARE(differences(record, distinctRecord()), QStringList());
    QCOMPARE(parser.GetXMLGUIInfo(documentWith("<guiOptions><mainIconName>n</mainIconName></guiOptions>"), record.gui),
             1);
    QCOMPARE(record.gui.subTitle, QString());
    QCOMPARE(record.gui.mainIconName, QStringLiteral("n"));
}

void TstClientSections::retryTimesOfZoaAreAlwaysFourAndNeverRead()
{
    CustomInfo record;
    CustomXmlParser parser;
    QCOMPARE(parser.GetXMLZOAInfo(documentWith("<ZOA><useZOA>1</useZOA><switchZOARetryTimes>9</switchZOARetryTimes>"
                                               "<ZOAPORT>9019</ZOAPORT><standbyZOAPORT>9019</standbyZOAPORT></ZOA>"),
                                  record.zoa),
             1);
    QCOMPARE(differences(record, CustomInfo()), QStringList());
    QVERIFY(written([&](CustomXmlParser& writer) {
                writer.FormatXMLZOAInfo(record.zoa);
            }).contains("<switchZOARetryTimes>4</switchZOARetryTimes>"));
}

TEST_ENTRY(clientsections, runGuilessTest<TstClientSections>)
#include "tst_clientsections.moc"
