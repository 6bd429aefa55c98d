#include "advanced/CustomAdvPlayer.h"
#include "support/TestEntry.h"

using namespace advplay;

namespace {

struct FlagCase
{
    const char* box;
    const char* field;
    std::function<bool(const CustomInfo&)> isOn;
    std::function<void(CustomInfo&, quint32)> set;
};

template <class Section, class Number>
FlagCase flagCase(const char* box, const char* field, Section CustomInfo::*section, Number Section::*flag)
{
    return {box, field, [=](const CustomInfo& info) { return info.*section.*flag == 1; },
            [=](CustomInfo& info, quint32 value) { info.*section.*flag = Number(value); }};
}

// clang-format off
const QVector<FlagCase>& flagCases()
{
    using X1 = X1OptionsInfo;
    using Portal = PortalOptionsInfo;
    static const QVector<FlagCase> cases = {
        flagCase("checkBox_1xSaveUser",        "x1/keepConnPasswd",    &CustomInfo::x1, &X1::keepConnPasswd),
        flagCase("checkBox_1xUpVer",           "x1/upVer",             &CustomInfo::x1, &X1::upVer),
        flagCase("checkBox_1xUpIp",            "x1/upIp",              &CustomInfo::x1, &X1::upIp),
        flagCase("checkBox_1xUseBroadLogoff",  "x1/broadLogOff",       &CustomInfo::x1, &X1::broadLogOff),
        flagCase("checkBox_1xAutoConn",        "x1/autoAuth",          &CustomInfo::x1, &X1::autoAuth),
        flagCase("checkBox_1xRenewIPAfterCut", "x1/refreshIPAftCut",   &CustomInfo::x1, &X1::refreshIPAftCut),
        flagCase("checkBox_1xResumeConn",      "x1/x1ResumeConn",      &CustomInfo::x1, &X1::x1ResumeConn),
        flagCase("checkBox_DefaultConn",       "x1/defaultConnection", &CustomInfo::x1, &X1::defaultConnection),
        flagCase("checkBox_1xAdvancedAuth",    "x1/advancedAuth",      &CustomInfo::x1, &X1::advancedAuth),
        flagCase("checkBox_PortalSaveUser",        "portal/keepConnPasswd", &CustomInfo::portal,
                 &Portal::keepConnPasswd),
        flagCase("checkBox_PortalUpVer",           "portal/upVer",          &CustomInfo::portal, &Portal::upVer),
        flagCase("checkBox_PortalAutoConn",        "portal/autoAuth",       &CustomInfo::portal, &Portal::autoAuth),
        flagCase("checkBox_PortalReConnAftNetErr", "portal/resumeConn",     &CustomInfo::portal, &Portal::resumeConn),
        flagCase("checkBox_PortalAdvancedAuth",    "portal/advancedAuth",   &CustomInfo::portal, &Portal::advancedAuth),
    };
    return cases;
}
// clang-format on

CustomInfo start()
{
    CustomInfo info = recordFor(procom::x1 | procom::portal);
    // As OK stores it without the L2TP tab.
    info.vpn.ikecfg.IKEAuthMethod.clear();
    return info;
}

/// All flags at this value.
CustomInfo allFlags(quint32 value)
{
    CustomInfo info = start();
    for (const FlagCase& flag : flagCases())
        flag.set(info, value);
    return info;
}

} // namespace

class TstCustomAdvPropertyAccess : public QObject
{
    Q_OBJECT

private slots:
    void flagIsLoadedAndStored_data();
    void flagIsLoadedAndStored();
    void defaultsOfTheRecordAreShown();
    void packetTypeIsLoadedAndStored_data();
    void packetTypeIsLoadedAndStored();
    void combosHaveTheirItems();
    void retryListsStoreTheirPositions_data();
    void retryListsStoreTheirPositions();
    void advancedAuthEnablesItsCombo_data();
    void advancedAuthEnablesItsCombo();
    void advancedAuthTypeIsStored_data();
    void advancedAuthTypeIsStored();
    void untickedAdvancedAuthLeavesTheTypeUntouched_data();
    void untickedAdvancedAuthLeavesTheTypeUntouched();
    void positionsBeyondTheListsStay();
};

void TstCustomAdvPropertyAccess::flagIsLoadedAndStored_data()
{
    QTest::addColumn<int>("index");
    for (int index = 0; index < flagCases().size(); ++index)
        QTest::newRow(flagCases()[index].field) << index;
}

void TstCustomAdvPropertyAccess::flagIsLoadedAndStored()
{
    QFETCH(int, index);
    const FlagCase& flag = flagCases()[index];
    {
        CustomInfo off = allFlags(0);
        flag.set(off, 3);
        OpenDialog open(off);
        QStringList boxes;
        for (const FlagCase& other : flagCases())
            boxes.append(QLatin1String(other.box));
        QCOMPARE(open.tickedOf(boxes), QStringList(QLatin1String(flag.box)));
    }
    {
        OpenDialog open(allFlags(0));
        open.tick(flag.box);
        QCOMPARE(changes(allFlags(0), open.info), QStringList());
        open.pressOk();
        QCOMPARE(open.shown(), QStringList());
        QCOMPARE(changes(allFlags(0), open.info), QStringList(QLatin1String(flag.field)));
        QVERIFY(flag.isOn(open.info));
    }
    OpenDialog open(allFlags(1));
    open.tick(flag.box, false);
    open.pressOk();
    QCOMPARE(changes(allFlags(1), open.info), QStringList(QLatin1String(flag.field)));
    QVERIFY(!flag.isOn(open.info));
}

void TstCustomAdvPropertyAccess::defaultsOfTheRecordAreShown()
{
    OpenDialog open(start());
    QStringList boxes;
    for (const FlagCase& flag : flagCases())
        boxes.append(QLatin1String(flag.box));
    QCOMPARE(
        open.tickedOf(boxes),
        words("checkBox_1xSaveUser checkBox_1xUpVer checkBox_1xUpIp checkBox_1xUseBroadLogoff "
              "checkBox_1xResumeConn checkBox_PortalSaveUser checkBox_PortalUpVer checkBox_PortalReConnAftNetErr"));
    QVERIFY(open.isOn("radioButton_uniPkt"));
    QVERIFY(!open.isOn("radioButton_multiPkt"));
    QCOMPARE(open.choiceOf("comboBox_RetryTimes"), QStringLiteral("3"));
    QCOMPARE(open.choiceOf("comboBox_RetryInterval"), langText("CMN_5Minutes"));
    QCOMPARE(open.choiceOf("comboBox_1xAdvancedAuth"), langText("chk_MacAuth"));
    QCOMPARE(open.choiceOf("comboBox_PortalAdvancedAuth"), langText("chk_MacAuth"));
    open.pressOk();
    QCOMPARE(changes(start(), open.info), QStringList());
}

void TstCustomAdvPropertyAccess::packetTypeIsLoadedAndStored_data()
{
    QTest::addColumn<quint32>("loaded");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("clicked");
    QTest::addColumn<quint32>("stored");
    QTest::newRow("multicast") << 0u << "radioButton_multiPkt"
                               << "" << 0u;
    QTest::newRow("unicast") << 1u << "radioButton_uniPkt"
                             << "" << 1u;
    QTest::newRow("any other") << 2u << "radioButton_uniPkt"
                               << "" << 1u;
    QTest::newRow("to unicast") << 0u << "radioButton_multiPkt"
                                << "radioButton_uniPkt" << 1u;
    QTest::newRow("to multicast") << 1u << "radioButton_uniPkt"
                                  << "radioButton_multiPkt" << 0u;
}

void TstCustomAdvPropertyAccess::packetTypeIsLoadedAndStored()
{
    QFETCH(quint32, loaded);
    QFETCH(QString, shown);
    QFETCH(QString, clicked);
    QFETCH(quint32, stored);
    CustomInfo before = start();
    before.x1.unicastType = loaded;
    OpenDialog open(before);
    QCOMPARE(open.tickedOf(words("radioButton_uniPkt radioButton_multiPkt")), QStringList(shown));
    if (!clicked.isEmpty())
        open.clickOn(clicked.toLatin1().constData());
    open.pressOk();
    QCOMPARE(open.info.x1.unicastType, stored);
}

void TstCustomAdvPropertyAccess::combosHaveTheirItems()
{
    OpenDialog open(start());
    QCOMPARE(open.itemsOf("comboBox_RetryTimes"),
             words("3 5 10 15 20 25 30 45 60 80 100") + QStringList(langText("CMN_NoLimite")));
    QStringList intervals;
    for (const char* key :
         {"CMN_5Minutes", "CMN_10Minutes", "CMN_15Minutes", "CMN_20Minutes", "CMN_25Minutes", "CMN_30Minutes",
          "CMN_45Minutes", "CMN_1hour", "CMN_2hours", "CMN_3hours", "CMN_4hours", "CMN_5hours"})
        intervals.append(langText(key));
    QCOMPARE(open.itemsOf("comboBox_RetryInterval"), intervals);
    const QStringList types = {langText("chk_MacAuth"), langText("CMN_CertificateRdShort")};
    QCOMPARE(open.itemsOf("comboBox_1xAdvancedAuth"), types);
    QCOMPARE(open.itemsOf("comboBox_PortalAdvancedAuth"), types);
    QCOMPARE(open.widget<QComboBox>("comboBox_RetryTimes")->insertPolicy(), QComboBox::InsertAtBottom);
    QCOMPARE(open.widget<QComboBox>("comboBox_RetryInterval")->insertPolicy(), QComboBox::InsertAtBottom);
}

void TstCustomAdvPropertyAccess::retryListsStoreTheirPositions_data()
{
    QTest::addColumn<int>("times");
    QTest::addColumn<int>("interval");
    for (int position = 0; position < 12; ++position)
        QTest::newRow(qPrintable(QStringLiteral("positions %1 and %2").arg(position).arg(11 - position)))
            << position << 11 - position;
}

void TstCustomAdvPropertyAccess::retryListsStoreTheirPositions()
{
    QFETCH(int, times);
    QFETCH(int, interval);
    {
        OpenDialog open(start());
        open.choose("comboBox_RetryTimes", times);
        open.choose("comboBox_RetryInterval", interval);
        open.pressOk();
        QCOMPARE(open.info.x1.reauthTimes, quint32(times));
        QCOMPARE(open.info.x1.reauthInterval, quint32(interval));
    }
    CustomInfo before = start();
    before.x1.reauthTimes = quint32(times);
    before.x1.reauthInterval = quint32(interval);
    OpenDialog open(before);
    QCOMPARE(open.indexOf("comboBox_RetryTimes"), times);
    QCOMPARE(open.indexOf("comboBox_RetryInterval"), interval);
    open.pressOk();
    QCOMPARE(changes(before, open.info), QStringList());
}

void TstCustomAdvPropertyAccess::advancedAuthEnablesItsCombo_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("combo");
    QTest::addColumn<QString>("field");
    QTest::newRow("802.1X") << "checkBox_1xAdvancedAuth"
                            << "comboBox_1xAdvancedAuth"
                            << "x1/advancedAuth";
    QTest::newRow("portal") << "checkBox_PortalAdvancedAuth"
                            << "comboBox_PortalAdvancedAuth"
                            << "portal/advancedAuth";
}

void TstCustomAdvPropertyAccess::advancedAuthEnablesItsCombo()
{
    QFETCH(QString, box);
    QFETCH(QString, combo);
    const QByteArray boxName = box.toLatin1();
    const QByteArray comboName = combo.toLatin1();
    for (bool isOn : {false, true}) {
        OpenDialog open(allFlags(isOn ? 1 : 0));
        QCOMPARE(open.isEnabled(comboName.constData()), isOn);
        open.clickOn(boxName.constData());
        QCOMPARE(open.isEnabled(comboName.constData()), !isOn);
        open.clickOn(boxName.constData());
        QCOMPARE(open.isEnabled(comboName.constData()), isOn);
    }
}

void TstCustomAdvPropertyAccess::advancedAuthTypeIsStored_data()
{
    advancedAuthEnablesItsCombo_data();
}

void TstCustomAdvPropertyAccess::advancedAuthTypeIsStored()
{
    QFETCH(QString, combo);
    QFETCH(QString, field);
    OpenDialog open(allFlags(1));
    open.choose(combo.toLatin1().constData(), 1);
    open.pressOk();
    QCOMPARE(changes(allFlags(1), open.info), QStringList(field + QLatin1String("Type")));
    QCOMPARE(open.info.x1.advancedAuthType + open.info.portal.advancedAuthType, 1u);
}

void TstCustomAdvPropertyAccess::untickedAdvancedAuthLeavesTheTypeUntouched_data()
{
    advancedAuthEnablesItsCombo_data();
}

// The combo box shows the type also while it is disabled.
void TstCustomAdvPropertyAccess::untickedAdvancedAuthLeavesTheTypeUntouched()
{
    QFETCH(QString, box);
    QFETCH(QString, combo);
    QFETCH(QString, field);
    const QByteArray comboName = combo.toLatin1();
    CustomInfo before = allFlags(0);
    before.x1.advancedAuthType = 1;
    before.portal.advancedAuthType = 1;
    {
        OpenDialog open(before);
        QCOMPARE(open.indexOf(comboName.constData()), 1);
        open.clickOn(box.toLatin1().constData());
        open.choose(comboName.constData(), 0);
        open.clickOn(box.toLatin1().constData());
        open.pressOk();
        QCOMPARE(changes(before, open.info), QStringList());
    }
    OpenDialog open(before);
    open.clickOn(box.toLatin1().constData());
    open.choose(comboName.constData(), 0);
    open.pressOk();
    QCOMPARE(changes(before, open.info), QStringList({field, field + QLatin1String("Type")}));
}

void TstCustomAdvPropertyAccess::positionsBeyondTheListsStay()
{
    CustomInfo before = allFlags(1);
    before.x1.reauthTimes = 12;
    before.x1.reauthInterval = 4294967295u;
    before.x1.advancedAuthType = 2147483648u;
    before.portal.advancedAuthType = 2;
    OpenDialog open(before);
    for (const char* combo :
         {"comboBox_RetryTimes", "comboBox_RetryInterval", "comboBox_1xAdvancedAuth", "comboBox_PortalAdvancedAuth"})
        QCOMPARE(open.indexOf(combo), -1);
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(changes(before, open.info), QStringList());
}

TEST_ENTRY(customadvproperty_access, runTest<TstCustomAdvPropertyAccess>)

#include "tst_customadvproperty_access.moc"
