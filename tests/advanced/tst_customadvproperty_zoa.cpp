#include "advanced/CustomAdvPlayer.h"
#include "support/TestEntry.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QTemporaryDir>

using namespace advplay;

namespace {

QStringList edits()
{
    return words("lineEdit_ZOAIp lineEdit_ZOAport lineEdit_standby_ZOAIp lineEdit_standby_ZOAport");
}

/// As OK stores it without the L2TP tab.
CustomInfo start(quint64 procomVal = procom::wlan, quint64 funcomVal = funcom::zoa)
{
    CustomInfo info = recordFor(procomVal, funcomVal);
    info.vpn.ikecfg.IKEAuthMethod.clear();
    return info;
}

QStringList textsOf(const OpenDialog& open)
{
    QStringList texts;
    for (const QString& edit : edits())
        texts.append(open.textOf(edit.toLatin1().constData()));
    return texts;
}

QStringList textsOf(const ZOAOptionsInfo& zoa)
{
    return {zoa.ZOAIP, zoa.ZOAPORT, zoa.standbyZOAIP, zoa.standbyZOAPORT};
}

} // namespace

class TstCustomAdvPropertyZoa : public QObject
{
    Q_OBJECT

private slots:
    void fieldsAreLoaded_data();
    void fieldsAreLoaded();
    void formHoldsThePortsAndTheirLengths();
    void okStoresTheFields();
    void absentTabKeepsItsFields();
    void switchedOffZoaOpensDisabledAndIsSwitchedOnByOk();
    void addressesAreChecked_data();
    void addressesAreChecked();
    void portsAreChecked_data();
    void portsAreChecked();
    void checksStoreInOrder_data();
    void checksStoreInOrder();
    void addressWithADotBehindItIsRefused();
    void everythingMayBeEmpty();
    void portTakesMoreThanFiveCharacters();
    void hiddenBoxDisablesTheLabels();
    void guiFieldsAreLoadedAndStored();
    void guiEditsHaveNeitherValidatorNorLimit();
    void macosRowIsHiddenAndKept();
    void guiFieldsAreStoredUnchecked();
    void browseButtonsTellApartWhatTheySelect();
    void browseButtonsFillTheirEdits_data();
    void browseButtonsFillTheirEdits();
    void cancelledBrowseLeavesTheEdit();
};

void TstCustomAdvPropertyZoa::fieldsAreLoaded_data()
{
    QTest::addColumn<int>("procomVal");
    QTest::addColumn<int>("funcomVal");
    QTest::newRow("ZOA direct") << 32 << 0;
    QTest::newRow("ZOA function") << 8 << 1;
}

void TstCustomAdvPropertyZoa::fieldsAreLoaded()
{
    QFETCH(int, procomVal);
    QFETCH(int, funcomVal);
    CustomInfo before = start(quint64(procomVal), quint64(funcomVal));
    before.zoa.useZOA = 5;
    before.zoa.ZOAIP = QString(300, QLatin1Char('1'));
    before.zoa.ZOAPORT = QStringLiteral("1234567");
    before.zoa.standbyZOAIP = QStringLiteral("10.0.0.2");
    before.zoa.standbyZOAPORT = QStringLiteral("no port");
    OpenDialog open(before);
    QCOMPARE(textsOf(open), QStringList({QString(255, QLatin1Char('1')), before.zoa.ZOAPORT, before.zoa.standbyZOAIP,
                                         before.zoa.standbyZOAPORT}));
    QCOMPARE(open.enabledOf(edits()), edits());
    for (const QString& edit : edits())
        QCOMPARE(open.widget<QLineEdit>(edit.toLatin1().constData())->maxLength(), 255);
}

void TstCustomAdvPropertyZoa::formHoldsThePortsAndTheirLengths()
{
    CustomAdvProperty dialog(nullptr);
    for (const char* port : {"lineEdit_ZOAport", "lineEdit_standby_ZOAport"}) {
        QCOMPARE(child<QLineEdit>(dialog, port)->text(), QStringLiteral("9019"));
        QCOMPARE(child<QLineEdit>(dialog, port)->maxLength(), 5);
    }
}

void TstCustomAdvPropertyZoa::okStoresTheFields()
{
    OpenDialog open(start());
    QCOMPARE(textsOf(open), QStringList({QString(), QStringLiteral("9019"), QString(), QStringLiteral("9019")}));
    const QStringList typed = words("10.0.0.1 1 10.0.0.2 65535");
    for (int index = 0; index < typed.size(); ++index)
        open.typeInto(edits()[index].toLatin1().constData(), typed[index]);
    QCOMPARE(changes(start(), open.info), QStringList());
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOpen());
    QCOMPARE(textsOf(open.info.zoa), typed);
    QCOMPARE(changes(start(), open.info), words("ZOA/ZOAIP ZOA/ZOAPORT ZOA/standbyZOAIP ZOA/standbyZOAPORT"));
}

void TstCustomAdvPropertyZoa::absentTabKeepsItsFields()
{
    CustomInfo before = start(procom::portal, funcom::kef);
    before.zoa.useZOA = 0;
    before.zoa.ZOAIP = QStringLiteral("not an address");
    before.zoa.ZOAPORT = QStringLiteral("0");
    before.zoa.standbyZOAIP = QStringLiteral("neither");
    before.zoa.standbyZOAPORT = QStringLiteral("x");
    OpenDialog open(before);
    QVERIFY(!open.tabs().contains(QStringLiteral("tab_Zoa")));
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOpen());
    QCOMPARE(changes(before, open.info), QStringList());
}

void TstCustomAdvPropertyZoa::switchedOffZoaOpensDisabledAndIsSwitchedOnByOk()
{
    CustomInfo before = start();
    before.zoa.useZOA = 0;
    before.zoa.ZOAIP = QStringLiteral("10.0.0.1");
    before.zoa.ZOAPORT = QStringLiteral("1");
    before.zoa.standbyZOAIP = QStringLiteral("10.0.0.2");
    before.zoa.standbyZOAPORT = QStringLiteral("2");
    OpenDialog open(before);
    const QStringList formTexts = {QString(), QStringLiteral("9019"), QString(), QStringLiteral("9019")};
    QCOMPARE(open.enabledOf(edits()), QStringList());
    QCOMPARE(textsOf(open), formTexts);
    QVERIFY(open.widget<QWidget>("checkBox_UseZoa")->isHidden());
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.info.zoa.useZOA, quint64(1));
    QCOMPARE(textsOf(open.info.zoa), formTexts);
}

void TstCustomAdvPropertyZoa::addressesAreChecked_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("passes");
    QTest::newRow("lowest") << "0.0.0.0" << true;
    QTest::newRow("highest") << "255.255.255.255" << true;
    QTest::newRow("leading zeros") << "010.001.000.255" << true;
    QTest::newRow("signs and blanks") << "+1. 2.3 .-0" << true;
    QTest::newRow("256") << "1.2.3.256" << false;
    QTest::newRow("negative") << "1.2.3.-1" << false;
    QTest::newRow("three parts") << "1.2.3" << false;
    QTest::newRow("five parts") << "1.2.3.4.5" << false;
    QTest::newRow("empty part") << "1..3.4" << false;
    QTest::newRow("word") << "a.b.c.d" << false;
    QTest::newRow("blank") << " " << false;
}

void TstCustomAdvPropertyZoa::addressesAreChecked()
{
    QFETCH(QString, address);
    QFETCH(bool, passes);
    for (bool isStandby : {false, true}) {
        const char* edit = isStandby ? "lineEdit_standby_ZOAIp" : "lineEdit_ZOAIp";
        OpenDialog open(start());
        open.typeInto(edit, address);
        open.widget<QWidget>("checkBox_DrvErr")->setFocus();
        if (!passes)
            open.expectBox();
        open.pressOk();
        QCOMPARE(open.isOpen(), !passes);
        if (passes) {
            QCOMPARE(open.shown(), QStringList());
            QCOMPARE(isStandby ? open.info.zoa.standbyZOAIP : open.info.zoa.ZOAIP, address);
        } else {
            QCOMPARE(open.shown(),
                     QStringList(warning(nullptr, isStandby ? "VUI_IllegalStandbyZOAIP" : "VUI_IllegalZOAIP")));
            QCOMPARE(focusOf(open.dialog), QLatin1String(edit));
            QCOMPARE(changes(start(), open.info), QStringList());
        }
    }
}

void TstCustomAdvPropertyZoa::portsAreChecked_data()
{
    QTest::addColumn<QString>("port");
    QTest::addColumn<bool>("passes");
    QTest::newRow("lowest") << "1" << true;
    QTest::newRow("highest") << "65535" << true;
    QTest::newRow("empty") << "" << true;
    QTest::newRow("leading zeros") << "00000009019" << true;
    QTest::newRow("sign") << "+80" << true;
    QTest::newRow("blanks around") << " 80 " << true;
    QTest::newRow("zero") << "0" << false;
    QTest::newRow("above") << "65536" << false;
    QTest::newRow("negative") << "-1" << false;
    QTest::newRow("beyond an int") << "4294967297" << false;
    QTest::newRow("word") << "port" << false;
    QTest::newRow("blank") << " " << false;
    QTest::newRow("blank within") << "8 0" << false;
    QTest::newRow("hexadecimal") << "0x10" << false;
}

void TstCustomAdvPropertyZoa::portsAreChecked()
{
    QFETCH(QString, port);
    QFETCH(bool, passes);
    for (bool isStandby : {false, true}) {
        const char* edit = isStandby ? "lineEdit_standby_ZOAport" : "lineEdit_ZOAport";
        OpenDialog open(start());
        open.typeInto(edit, port);
        open.widget<QWidget>("checkBox_DrvErr")->setFocus();
        if (!passes)
            open.expectBox();
        open.pressOk();
        QCOMPARE(open.isOpen(), !passes);
        if (passes) {
            QCOMPARE(open.shown(), QStringList());
            QCOMPARE(isStandby ? open.info.zoa.standbyZOAPORT : open.info.zoa.ZOAPORT, port);
        } else {
            QCOMPARE(open.shown(),
                     QStringList(warning(nullptr, isStandby ? "VUI_IllegalStandbyZOAPort" : "VUI_IllegalZOAPort")));
            QCOMPARE(focusOf(open.dialog), QLatin1String(edit));
            QCOMPARE(changes(start(), open.info), QStringList());
        }
    }
}

void TstCustomAdvPropertyZoa::checksStoreInOrder_data()
{
    QTest::addColumn<int>("bad");
    QTest::addColumn<QString>("stored");
    QTest::newRow("address") << 0 << "ZOA/useZOA";
    QTest::newRow("port") << 1 << "ZOA/useZOA ZOA/ZOAIP";
    QTest::newRow("standby address") << 2 << "ZOA/useZOA ZOA/ZOAIP ZOA/ZOAPORT";
    QTest::newRow("standby port") << 3 << "ZOA/useZOA ZOA/ZOAIP ZOA/ZOAPORT ZOA/standbyZOAIP";
}

void TstCustomAdvPropertyZoa::checksStoreInOrder()
{
    QFETCH(int, bad);
    QFETCH(QString, stored);
    CustomInfo before = start();
    before.zoa.useZOA = 2;
    OpenDialog open(before);
    const QStringList good = words("10.0.0.1 81 10.0.0.2 82");
    for (int index = 0; index < 4; ++index)
        open.typeInto(edits()[index].toLatin1().constData(), index < bad ? good[index] : QStringLiteral("bad"));
    open.tick("checkBox_DrvErr");
    open.expectBox();
    open.pressOk();
    const char* const keys[] = {"VUI_IllegalZOAIP", "VUI_IllegalZOAPort", "VUI_IllegalStandbyZOAIP",
                                "VUI_IllegalStandbyZOAPort"};
    QCOMPARE(open.shown(), QStringList(warning(nullptr, keys[bad])));
    QCOMPARE(focusOf(open.dialog), edits()[bad]);
    QVERIFY(open.isOpen());
    QCOMPARE(changes(before, open.info), words(stored.toLatin1().constData()));
    QCOMPARE(open.info.zoa.useZOA, quint64(1));
}

void TstCustomAdvPropertyZoa::addressWithADotBehindItIsRefused()
{
    OpenDialog open(start());
    open.typeInto("lineEdit_ZOAIp", QStringLiteral("1.2.3.4."));
    open.expectBox();
    open.pressOk();
    QCOMPARE(open.shown(), QStringList(warning(nullptr, "VUI_IllegalZOAIP")));
    QVERIFY(open.isOpen());
}

void TstCustomAdvPropertyZoa::everythingMayBeEmpty()
{
    OpenDialog open(start());
    for (const QString& edit : edits())
        open.typeInto(edit.toLatin1().constData(), QString());
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOpen());
    QCOMPARE(textsOf(open.info.zoa), QStringList({QString(), QString(), QString(), QString()}));
}

void TstCustomAdvPropertyZoa::portTakesMoreThanFiveCharacters()
{
    OpenDialog open(start());
    open.typeInto("lineEdit_ZOAport", QStringLiteral("123456"));
    QCOMPARE(open.textOf("lineEdit_ZOAport"), QStringLiteral("123456"));
    open.expectBox();
    open.pressOk();
    QCOMPARE(open.shown(), QStringList(warning(nullptr, "VUI_IllegalZOAPort")));
    open.typeInto("lineEdit_ZOAport", QStringLiteral("0012345"));
    open.pressOk();
    QVERIFY(!open.isOpen());
    QCOMPARE(open.info.zoa.ZOAPORT, QStringLiteral("0012345"));
}

void TstCustomAdvPropertyZoa::hiddenBoxDisablesTheLabels()
{
    OpenDialog open(start());
    auto* box = open.widget<QAbstractButton>("checkBox_UseZoa");
    const QStringList labels = words("label_ZOAIp label_ZOAport label_standby_ZOAIp label_standby_ZOAport");
    // Only a click runs the slot, not a tick of the program.
    box->setChecked(true);
    QCOMPARE(open.enabledOf(labels), labels);
    box->setChecked(false);
    QCOMPARE(open.enabledOf(labels), labels);
    box->setChecked(true);
    box->click();
    QCOMPARE(open.enabledOf(labels), words("label_standby_ZOAIp label_standby_ZOAport"));
    QCOMPARE(open.enabledOf(edits()), edits());
    box->click();
    QCOMPARE(open.enabledOf(labels), labels);
}

void TstCustomAdvPropertyZoa::guiFieldsAreLoadedAndStored()
{
    const char* const guiEdits[] = {"lineEdit_deskIcon_dir_Linux", "lineEdit_mainIcon_dir", "lineEdit_cusTitle"};
    CustomInfo before = start(procom::portal, 0);
    before.gui.linuxDeskIconPath = QStringLiteral("/linux.png");
    before.gui.macosDeskIconPath = QStringLiteral("/mac.icns");
    before.gui.mainIconPath = QStringLiteral("/main.ico");
    before.gui.subTitle = QStringLiteral("标题");
    before.gui.hideCopyRight = true;
    OpenDialog open(before);
    QStringList shown;
    for (const char* edit : guiEdits)
        shown.append(open.textOf(edit));
    QCOMPARE(shown, QStringList({QStringLiteral("/linux.png"), QStringLiteral("/main.ico"), QStringLiteral("标题")}));
    QVERIFY(open.isOn("checkBox_HideCopyRight"));
    open.typeInto("lineEdit_deskIcon_dir_Linux", QStringLiteral("a"));
    open.typeInto("lineEdit_mainIcon_dir", QStringLiteral("b"));
    open.typeInto("lineEdit_cusTitle", QStringLiteral("c"));
    open.tick("checkBox_HideCopyRight", false);
    QCOMPARE(changes(before, open.info), QStringList());
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(changes(before, open.info),
             words("guiOptions/linuxDeskIcon guiOptions/mainIcon guiOptions/subTitle guiOptions/hideCopyRight"));
    QCOMPARE(open.info.gui.linuxDeskIconPath, QStringLiteral("a"));
    QCOMPARE(open.info.gui.mainIconPath, QStringLiteral("b"));
    QCOMPARE(open.info.gui.subTitle, QStringLiteral("c"));
    QCOMPARE(open.info.gui.hideCopyRight, false);
}

void TstCustomAdvPropertyZoa::guiEditsHaveNeitherValidatorNorLimit()
{
    OpenDialog open(start(procom::portal, 0));
    for (const char* name :
         {"lineEdit_mainIcon_dir", "lineEdit_deskIcon_dir_Linux", "lineEdit_deskIcon_dir_Macos", "lineEdit_cusTitle"}) {
        const auto* edit = open.widget<QLineEdit>(name);
        QVERIFY2(!edit->validator(), name);
        QCOMPARE(edit->inputMask(), QString());
        QCOMPARE(edit->maxLength(), 32767);
    }
}

void TstCustomAdvPropertyZoa::macosRowIsHiddenAndKept()
{
    CustomInfo before = start(procom::portal, 0);
    const QString end = QStringLiteral(" & 桌面 图标.icns ");
    before.gui.macosDeskIconPath = QStringLiteral("/mac ").leftJustified(300 - end.size(), QLatin1Char('x')) + end;
    OpenDialog open(before);
    for (const char* widget : {"label_cusdeskIconM", "lineEdit_deskIcon_dir_Macos", "pushButton_deskIconM_locate"})
        QVERIFY2(open.widget<QWidget>(widget)->isHidden(), widget);
    for (const char* widget : {"label_cusdeskIconL", "lineEdit_mainIcon_dir", "pushButton_deskIconL_locate"})
        QVERIFY2(!open.widget<QWidget>(widget)->isHidden(), widget);
    open.pressOk();
    QCOMPARE(changes(before, open.info), QStringList());
}

void TstCustomAdvPropertyZoa::guiFieldsAreStoredUnchecked()
{
    const QString endless(40000, QLatin1Char('x'));
    OpenDialog open(start(procom::portal, 0));
    open.typeInto("lineEdit_mainIcon_dir", QStringLiteral("/no/such/file"));
    open.widget<QLineEdit>("lineEdit_cusTitle")->setText(endless);
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOpen());
    QCOMPARE(open.info.gui.mainIconPath, QStringLiteral("/no/such/file"));
    QCOMPARE(open.info.gui.subTitle, endless.left(32767)); // the limit of every edit
}

void TstCustomAdvPropertyZoa::browseButtonsTellApartWhatTheySelect()
{
    OpenDialog open(start(procom::portal, 0));
    const struct
    {
        const char* button;
        const char* key;
    } rows[] = {{"pushButton_mainIcon_locate", "GUI_SelectMainIcon"},
                {"pushButton_deskIconL_locate", "GUI_SelectLinuxIcon"},
                {"pushButton_deskIconM_locate", "GUI_SelectMacIcon"}};
    for (const auto& row : rows) {
        const auto* button = open.widget<QPushButton>(row.button);
        QCOMPARE(button->text(), langText("Cus_Browse"));
        QCOMPARE(button->accessibleName(), langText(row.key));
    }
}

void TstCustomAdvPropertyZoa::browseButtonsFillTheirEdits_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("edit");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("filter");
    QTest::newRow("main") << "pushButton_mainIcon_locate"
                          << "lineEdit_mainIcon_dir"
                          << "GUI_SelectMainIcon"
                          << "ico";
    QTest::newRow("Linux") << "pushButton_deskIconL_locate"
                           << "lineEdit_deskIcon_dir_Linux"
                           << "GUI_SelectLinuxIcon"
                           << "png";
    QTest::newRow("macOS") << "pushButton_deskIconM_locate"
                           << "lineEdit_deskIcon_dir_Macos"
                           << "GUI_SelectMacIcon"
                           << "icns";
}

void TstCustomAdvPropertyZoa::browseButtonsFillTheirEdits()
{
    QFETCH(QString, button);
    QFETCH(QString, edit);
    QFETCH(QString, caption);
    QFETCH(QString, filter);
    QTemporaryDir directory;
    const QString path = QDir(directory.path()).canonicalPath() + QLatin1String("/icon.") + filter;
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    OpenDialog open(start(procom::portal, 0));
    QString title;
    QStringList filters;
    QString startDirectory;
    QObject* parent = nullptr;
    open.expect<QFileDialog>([&](QFileDialog& dialog) {
        title = dialog.windowTitle();
        filters = dialog.nameFilters();
        startDirectory = dialog.directory().path();
        parent = dialog.parent();
        child<QLineEdit>(dialog, "fileNameEdit")->setText(path);
        QMetaObject::invokeMethod(&dialog, "accept");
    });
    // The macOS row is hidden: its button can only be clicked by the program.
    open.widget<QAbstractButton>(button.toLatin1().constData())->click();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(title, langText(caption.toLatin1().constData()));
    QCOMPARE(filters, QStringList(QStringLiteral("Image Files (*.%1)").arg(filter)));
    QCOMPARE(startDirectory, QStringLiteral("/"));
    QCOMPARE(parent, &open.dialog);
    QCOMPARE(open.textOf(edit.toLatin1().constData()), path);
}

void TstCustomAdvPropertyZoa::cancelledBrowseLeavesTheEdit()
{
    OpenDialog open(start(procom::portal, 0));
    open.typeInto("lineEdit_mainIcon_dir", QStringLiteral("typed"));
    open.expect<QFileDialog>([](QFileDialog& dialog) { dialog.reject(); });
    open.clickOn("pushButton_mainIcon_locate");
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.textOf("lineEdit_mainIcon_dir"), QStringLiteral("typed"));
}

TEST_ENTRY(customadvproperty_zoa, runTest<TstCustomAdvPropertyZoa>)

#include "tst_customadvproperty_zoa.moc"
