#include "app/language/LangText.h"
#include "support/ModalScript.h"
#include "support/TestEntry.h"
#include "vpn/VpnPlayer.h"

#include <QTreeWidget>

using namespace vpnplay;

namespace {

struct TextOf
{
    const char* widget;
    const char* key;
    const char* buddy; // null for a unit and for what is no label
};

const TextOf texts[] = {
    {"label_TunnelName", "VUI_L2TPTunnelName", "lineEdit_TunnelName"},
    {"label_AuthMode", "VUI_L2TPAuthMode", "comboBox_AuthMode"},
    {"label_HelloInterval", "VUI_L2TPHelloInterval", "lineEdit_HelloInterval"},
    {"label_Seconds", "VUI_StaticSeconds", nullptr},
    {"label_L2tpPort", "VUT_L2TPPORT", "lineEdit_L2tpPort"},
    {"checkBox_TunnelAuthOn", "VUI_L2TPUseTunnelPwd", nullptr},
    {"label_TunnelPwd", "VUI_L2TPTunnelPwd", "lineEdit_TunnelPwd"},
    {"checkBox_AVPHidden", "VUI_L2TPAVPHidden", nullptr},
    {"label_EncapMode", "VUI_IPSECEncapMode", "comboBox_EncapMode"},
    {"label_SaLifeTime", "VUI_IPSECSALifetime", "lineEdit_SaLifeTime"},
    {"label_SA_Seconds", "VUI_IKESecond", nullptr},
    {"label_IpsecProto", "VUI_IPSECAdopSecuriProto", "comboBox_IpsecProto"},
    {"label_ESP_Auth", "VUI_IPSECESPAuth", "comboBox_ESP_Auth"},
    {"label_ESP_Encrypt", "VUI_IPSECESPEncypt", "comboBox_ESP_Encrypt"},
    {"label_AH_Auth", "VUI_IPSECAHAuth", "comboBox_AH_Auth"},
    {"checkBox_UsePFS", "VUI_UsePFS", nullptr},
    {"label_PFS", "VUI_UsePFS", "comboBox_PFS"},
    {"checkBox_UseNAT", "VUI_IPSECUseNat", nullptr},
    {"label_IkeNeg", "VUI_IKENegMode", "comboBox_IkeNeg"},
    {"label_IDType", "VUI_IKEIDType", "comboBox_IDType"},
    {"label_IkeAuth", "VUI_IKEAuth", "comboBox_IkeAuth"},
    {"label_IkeEncrypt", "VUI_IKEEncrypt", "comboBox_IkeEncrypt"},
    {"label_DH", "VUI_IKEDHGroup", "comboBox_DH"},
    {"label_IkePort", "VUI_IKEPort", "lineEdit_IkePort"},
    {"label_ISAKMPSA", "VUI_IKEISAKMPSA", "lineEdit_ISAKMPSA"},
    {"label_ISAKMPSA_Seconds", "VUI_IKESecond", nullptr},
    {"label_LocalName", "VUI_IKELocalName", "lineEdit_LocalName"},
    {"label_PeerName", "VUI_IKERemoteName", "lineEdit_PeerName"},
    {"checkBox_KeepAliveOn", "VUI_IKESendKeepAlive", nullptr},
    {"label_TimeInterval", "VUI_IKETimeInterval", "lineEdit_TimeInterval"},
    {"label_TimeInterval_Seconds", "VUI_IKESecond", nullptr},
    {"checkBox_KeepAliveTimeout", "VUI_IKERecvKeepAlive", nullptr},
    {"label_TimeOut", "VUI_IKETimeout", "lineEdit_TimeOut"},
    {"label_TimeOutSeconds", "VUI_IKESecond", nullptr},
    {"label_RouteDes", "VUI_AddRoutePrincple", nullptr},
    {"pushButton_Add", "VUI_Add", nullptr},
    {"pushButton_Delete", "VUI_Delete", nullptr},
};

void addLanguages()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("English") << QStringLiteral("en");
    QTest::newRow("Chinese") << QStringLiteral("zh");
}

/// Everything that the pages may hold before they are loaded: no item, no text, nothing ticked.
bool pagesAreEmpty(const QVPNAdvProperty& dialog)
{
    for (const QComboBox* combo : dialog.findChildren<QComboBox*>()) {
        if (combo->count() != 0)
            return false;
    }
    for (const QLineEdit* edit : dialog.findChildren<QLineEdit*>()) {
        if (!edit->text().isEmpty())
            return false;
    }
    for (const QCheckBox* box : dialog.findChildren<QCheckBox*>()) {
        if (box->isChecked())
            return false;
    }
    return child<QTreeWidget>(dialog, "treeWidget_RouteList")->topLevelItemCount() == 0;
}

/// Runs the dialog under any parent, pressing Ok at once.
int runUnder(QWidget* parent, bool& wasEmpty, QString& title, QStringList& complaints)
{
    QVPNAdvProperty dialog(parent);
    dialog.setInital();
    wasEmpty = pagesAreEmpty(dialog);
    title = dialog.windowTitle();
    ModalScript script;
    script.expect<QVPNAdvProperty>([](QVPNAdvProperty& opened) {
        QTest::mouseClick(child<QDialogButtonBox>(opened, "buttonBox")->button(QDialogButtonBox::Ok), Qt::LeftButton);
    });
    const int result = dialog.exec();
    complaints = script.complaints();
    return result;
}

} // namespace

class TstQVPNAdvProperty : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void opensOnTheFirstTab();
    void framesTextsComeFromTheLanguageTable_data();
    void framesTextsComeFromTheLanguageTable();
    void pagesTextsComeFromTheLanguageTable_data();
    void pagesTextsComeFromTheLanguageTable();
    void nothingIsClippedInEitherLanguage_data();
    void nothingIsClippedInEitherLanguage();
    void labelsAreBuddiesOfTheirFields();
    void tabsRunFromTopToBottom_data();
    void tabsRunFromTopToBottom();
    void formHasItsSize();
    void aWheelInPassingChangesNoList();
    void aListThatGotTheFocusFromALeftPageIsNoLessGuarded();
    void checkBoxesAreHeardOnlyWhenClicked_data();
    void checkBoxesAreHeardOnlyWhenClicked();
    void okWithoutChangeKeepsTheRecord();
    void okWithoutChangeOnDefaults();
    void cancelLeavesTheRecordAsItWas();
    void theDialogClosesWhateverThePagesReport();
    void pagesBehindARefusedOneAreStored();
    void withoutAParentNothingHappens();
    void underAnotherParentNothingHappens();
    void withoutARecordNothingHappens();
    void theRecordOfTheParentIsRead();
};

void TstQVPNAdvProperty::cleanup()
{
    useLanguage(QStringLiteral("en"));
}

void TstQVPNAdvProperty::opensOnTheFirstTab()
{
    RecordHolder holder;
    QVPNAdvProperty dialog(&holder);
    QTabWidget* tabs = child<QTabWidget>(dialog, "tabWidget");
    tabs->setCurrentIndex(2);
    dialog.setInital();
    QCOMPARE(tabs->currentIndex(), 0);
    QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
}

void TstQVPNAdvProperty::framesTextsComeFromTheLanguageTable_data()
{
    addLanguages();
}

void TstQVPNAdvProperty::framesTextsComeFromTheLanguageTable()
{
    QFETCH(QString, language);
    useLanguage(language);
    inspect(CustomInfo(), [](QVPNAdvProperty& dialog) {
        QCOMPARE(dialog.windowTitle(), langText("VUI_AdvancedSettings"));
        const QTabWidget* tabs = child<QTabWidget>(dialog, "tabWidget");
        const struct
        {
            const char* page;
            const char* key;
        } pages[] = {{"tab", "VUI_L2TPPAGETITLE"},
                     {"tab_2", "VUI_IPSECPAGETITLE"},
                     {"tab_3", "VUI_IKEPAGETITLE"},
                     {"tab_4", "VUI_RouteSetting"}};
        QCOMPARE(tabs->count(), 4);
        for (int index = 0; index < 4; ++index) {
            QCOMPARE(tabs->widget(index), child<QWidget>(dialog, pages[index].page));
            QCOMPARE(tabs->tabText(index), langText(pages[index].key));
            QVERIFY(tabs->tabText(index) != QLatin1String("NULL"));
        }
        const QDialogButtonBox* buttons = child<QDialogButtonBox>(dialog, "buttonBox");
        QCOMPARE(buttons->standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
        QCOMPARE(buttons->button(QDialogButtonBox::Ok)->text(), langText("ok_button"));
        QCOMPARE(buttons->button(QDialogButtonBox::Cancel)->text(), langText("cancel_button"));
        const QTreeWidgetItem* header = child<QTreeWidget>(dialog, "treeWidget_RouteList")->headerItem();
        QCOMPARE(header->text(0), langText("VUI_IP"));
        QCOMPARE(header->text(1), langText("VUI_Mask"));
    });
}

void TstQVPNAdvProperty::pagesTextsComeFromTheLanguageTable_data()
{
    addLanguages();
}

void TstQVPNAdvProperty::pagesTextsComeFromTheLanguageTable()
{
    QFETCH(QString, language);
    useLanguage(language);
    inspect(CustomInfo(), [](QVPNAdvProperty& dialog) {
        for (const TextOf& row : texts) {
            const QString shownText = child<QWidget>(dialog, row.widget)->property("text").toString();
            QVERIFY2(shownText == langText(row.key), row.widget);
            QVERIFY2(shownText != QLatin1String("NULL"), row.key);
        }
    });
}

void TstQVPNAdvProperty::nothingIsClippedInEitherLanguage_data()
{
    addLanguages();
}

void TstQVPNAdvProperty::nothingIsClippedInEitherLanguage()
{
    QFETCH(QString, language);
    useLanguage(language);
    inspect(tellingRecord(), [](QVPNAdvProperty& dialog) {
        QTabWidget* tabs = child<QTabWidget>(dialog, "tabWidget");
        for (int page = 0; page < tabs->count(); ++page) {
            tabs->setCurrentIndex(page);
            QCoreApplication::processEvents();
            for (const QWidget* widget : tabs->widget(page)->findChildren<QWidget*>()) {
                const bool showsText = qobject_cast<const QLabel*>(widget) || qobject_cast<const QComboBox*>(widget) ||
                                       qobject_cast<const QAbstractButton*>(widget);
                if (!showsText || widget->objectName().isEmpty())
                    continue;
                const QLabel* label = qobject_cast<const QLabel*>(widget);
                const int neededHeight = label && label->wordWrap() ? label->heightForWidth(label->width())
                                                                    : widget->minimumSizeHint().height();
                QVERIFY2(widget->height() >= neededHeight, qPrintable(widget->objectName()));
                if (!label || !label->wordWrap())
                    QVERIFY2(widget->width() >= widget->sizeHint().width(), qPrintable(widget->objectName()));
            }
        }
        const QLineEdit* time = child<QLineEdit>(dialog, "lineEdit_TimeOut");
        QVERIFY(time->width() >= time->fontMetrics().horizontalAdvance(QStringLiteral("28800")) + 12);
    });
}

void TstQVPNAdvProperty::labelsAreBuddiesOfTheirFields()
{
    inspect(CustomInfo(), [](QVPNAdvProperty& dialog) {
        for (const TextOf& row : texts) {
            if (!row.buddy)
                continue;
            QWidget* buddy = child<QLabel>(dialog, row.widget)->buddy();
            QVERIFY2(buddy && buddy->objectName() == QLatin1String(row.buddy), row.widget);
        }
        QCOMPARE(child<QTreeWidget>(dialog, "treeWidget_RouteList")->accessibleName(), langText("VUI_RouteSetting"));
    });
}

void TstQVPNAdvProperty::tabsRunFromTopToBottom_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<QStringList>("order");
    QTest::newRow("L2TP") << 0
                          << words("lineEdit_TunnelName comboBox_AuthMode lineEdit_HelloInterval lineEdit_L2tpPort "
                                   "checkBox_TunnelAuthOn lineEdit_TunnelPwd checkBox_AVPHidden");
    QTest::newRow("IPsec") << 1
                           << words(
                                  "comboBox_EncapMode lineEdit_SaLifeTime comboBox_IpsecProto comboBox_ESP_Auth "
                                  "comboBox_ESP_Encrypt comboBox_AH_Auth checkBox_UsePFS comboBox_PFS checkBox_UseNAT");
    QTest::newRow("IKE") << 2
                         << words("comboBox_IkeNeg comboBox_IDType comboBox_IkeAuth comboBox_IkeEncrypt comboBox_DH "
                                  "lineEdit_IkePort lineEdit_ISAKMPSA lineEdit_LocalName lineEdit_PeerName "
                                  "checkBox_KeepAliveOn lineEdit_TimeInterval checkBox_KeepAliveTimeout "
                                  "lineEdit_TimeOut");
    QTest::newRow("routes") << 3 << words("treeWidget_RouteList pushButton_Add pushButton_Delete");
}

void TstQVPNAdvProperty::tabsRunFromTopToBottom()
{
    QFETCH(int, page);
    QFETCH(QStringList, order);
    inspect(tellingRecord(), [&](QVPNAdvProperty& dialog) {
        child<QTabWidget>(dialog, "tabWidget")->setCurrentIndex(page);
        child<QWidget>(dialog, order.first().toLatin1().constData())->setFocus();
        QStringList walked = {dialog.focusWidget()->objectName()};
        for (int step = 1; step < order.size(); ++step) {
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
            walked.append(dialog.focusWidget()->objectName());
        }
        QCOMPARE(walked, order);
        const QDialogButtonBox* buttons = child<QDialogButtonBox>(dialog, "buttonBox");
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
        QCOMPARE(dialog.focusWidget(), static_cast<QWidget*>(buttons->button(QDialogButtonBox::Ok)));
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
        QCOMPARE(dialog.focusWidget(), static_cast<QWidget*>(buttons->button(QDialogButtonBox::Cancel)));
    });
}

void TstQVPNAdvProperty::formHasItsSize()
{
    RecordHolder holder;
    const QVPNAdvProperty dialog(&holder);
    QCOMPARE(dialog.size(), QSize(423, 360));
}

void TstQVPNAdvProperty::aWheelInPassingChangesNoList()
{
    inspect(tellingRecord(), [](QVPNAdvProperty& dialog) {
        const QList<QComboBox*> combos = dialog.findChildren<QComboBox*>();
        QCOMPARE(combos.size(), 12);
        for (QComboBox* combo : combos) {
            bringToFront(combo);
            const int index = combo->currentIndex();
            windowplay::turnWheel(combo, -120);
            QVERIFY2(combo->currentIndex() == index, qPrintable(combo->objectName()));
            windowplay::turnWheel(combo, 120);
            QVERIFY2(combo->currentIndex() == index, qPrintable(combo->objectName()));
        }
    });
}

void TstQVPNAdvProperty::aListThatGotTheFocusFromALeftPageIsNoLessGuarded()
{
    inspect(tellingRecord(), [](QVPNAdvProperty& dialog) {
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QTabBar* tabs = child<QTabWidget>(dialog, "tabWidget")->tabBar();
        type(dialog, "lineEdit_TunnelName", QStringLiteral("t"));
        QTest::mouseClick(tabs, Qt::LeftButton, Qt::NoModifier, tabs->tabRect(2).center());
        QComboBox* combo = child<QComboBox>(dialog, "comboBox_IkeNeg");
        QVERIFY(combo->hasFocus());
        QCOMPARE(combo->currentIndex(), 1);
        windowplay::turnWheel(combo, 120);
        QCOMPARE(combo->currentIndex(), 1);
        // By the keys the focus is the user's.
        QTest::keyClick(combo, Qt::Key_Tab);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Backtab);
        QVERIFY(combo->hasFocus());
        windowplay::turnWheel(combo, 120);
        QCOMPARE(combo->currentIndex(), 0);
    });
}

void TstQVPNAdvProperty::checkBoxesAreHeardOnlyWhenClicked_data()
{
    QTest::addColumn<QByteArray>("box");
    QTest::addColumn<QStringList>("switched");
    QTest::newRow("tunnel authentication")
        << QByteArray("checkBox_TunnelAuthOn") << words("label_TunnelPwd lineEdit_TunnelPwd checkBox_AVPHidden");
    QTest::newRow("PFS") << QByteArray("checkBox_UsePFS") << words("label_PFS comboBox_PFS");
    QTest::newRow("NAT") << QByteArray("checkBox_UseNAT") << words("comboBox_IpsecProto comboBox_EncapMode");
    QTest::newRow("send keep-alive") << QByteArray("checkBox_KeepAliveOn")
                                     << words("label_TimeInterval lineEdit_TimeInterval label_TimeInterval_Seconds");
    QTest::newRow("receive keep-alive") << QByteArray("checkBox_KeepAliveTimeout")
                                        << words("label_TimeOut lineEdit_TimeOut label_TimeOutSeconds");
}

void TstQVPNAdvProperty::checkBoxesAreHeardOnlyWhenClicked()
{
    QFETCH(QByteArray, box);
    QFETCH(QStringList, switched);
    inspect(CustomInfo(), [&](QVPNAdvProperty& dialog) {
        const QStringList before = enabledOf(dialog, switched);
        QCheckBox* checkBox = child<QCheckBox>(dialog, box.constData());
        checkBox->setChecked(true);
        QCOMPARE(enabledOf(dialog, switched), before);
        checkBox->setChecked(false);
        click(dialog, box.constData());
        QVERIFY(enabledOf(dialog, switched) != before);
    });
}

void TstQVPNAdvProperty::okWithoutChangeKeepsTheRecord()
{
    const Session session = pressOkAfter(tellingRecord(), [](QVPNAdvProperty&) {});
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.result, int(QDialog::Accepted));
    QCOMPARE(changes(tellingRecord(), session.info), QStringList());
}

void TstQVPNAdvProperty::okWithoutChangeOnDefaults()
{
    const Session session = pressOkAfter(CustomInfo(), [](QVPNAdvProperty&) {});
    QCOMPARE(session.complaints, QStringList());
    // The AH combo box stands at its first item.
    QCOMPARE(changes(CustomInfo(), session.info), QStringList(QStringLiteral("IKEAuthAlgorithm: SHA -> MD5")));
}

void TstQVPNAdvProperty::cancelLeavesTheRecordAsItWas()
{
    const Session session = pressCancelAfter(tellingRecord(), [](QVPNAdvProperty& dialog) {
        type(dialog, "lineEdit_TunnelName", QStringLiteral("other"));
        click(dialog, "checkBox_TunnelAuthOn");
        type(dialog, "lineEdit_SaLifeTime", QStringLiteral("99"));
        choose(dialog, "comboBox_IpsecProto", 1);
        click(dialog, "checkBox_UseNAT");
        type(dialog, "lineEdit_ISAKMPSA", QStringLiteral("99"));
        choose(dialog, "comboBox_DH", 0);
        click(dialog, "checkBox_KeepAliveOn");
        QTreeWidget* routes = child<QTreeWidget>(dialog, "treeWidget_RouteList");
        routes->topLevelItem(0)->setText(0, QStringLiteral("9.9.9.9"));
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.result, int(QDialog::Rejected));
    QCOMPARE(changes(tellingRecord(), session.info), QStringList());
}

void TstQVPNAdvProperty::theDialogClosesWhateverThePagesReport()
{
    const Session session = pressOkAfter(
        tellingRecord(),
        [](QVPNAdvProperty& dialog) {
            type(dialog, "lineEdit_TunnelName", QString());
            type(dialog, "lineEdit_SaLifeTime", QString());
            type(dialog, "lineEdit_ISAKMPSA", QString());
            child<QTreeWidget>(dialog, "treeWidget_RouteList")->topLevelItem(1)->setText(1, QStringLiteral("m"));
        },
        3);
    QCOMPARE(session.complaints, QStringList());
    compareWarning(session.boxes.value(0), "VUI_AdvancedSettings", "VUI_InvalidTunnelName");
    compareWarning(session.boxes.value(1), "VUI_AdvancedSettings", "VUI_InputValidPLS");
    compareWarning(session.boxes.value(2), "VUI_AdvancedSettings", "VUI_InputValidISAKMPSA");
    QCOMPARE(session.result, int(QDialog::Accepted));
    QCOMPARE(changes(tellingRecord(), session.info),
             QStringList(QStringLiteral("vpnRoutes: 10.1.0.0/255.255.0.0 10.2.0.0/255.254.0.0 -> "
                                        "10.1.0.0/255.255.0.0 10.2.0.0/m")));
}

void TstQVPNAdvProperty::pagesBehindARefusedOneAreStored()
{
    const Session session = pressOkAfter(
        tellingRecord(),
        [](QVPNAdvProperty& dialog) {
            type(dialog, "lineEdit_TunnelName", QString());
            type(dialog, "lineEdit_L2tpPort", QStringLiteral("1"));
            type(dialog, "lineEdit_SaLifeTime", QStringLiteral("31"));
            type(dialog, "lineEdit_ISAKMPSA", QStringLiteral("62"));
            child<QTreeWidget>(dialog, "treeWidget_RouteList")->topLevelItem(1)->setText(1, QStringLiteral("m"));
        },
        1);
    QCOMPARE(session.complaints, QStringList());
    compareWarning(session.boxes.value(0), "VUI_AdvancedSettings", "VUI_InvalidTunnelName");
    QCOMPARE(session.result, int(QDialog::Accepted));
    const QStringList expected = {
        QStringLiteral("IPSECSALifetime: 4567 -> 31"),
        QStringLiteral("IKEISAKMPLifetime: 7654 -> 62"),
        QStringLiteral("vpnRoutes: 10.1.0.0/255.255.0.0 10.2.0.0/255.254.0.0 -> "
                       "10.1.0.0/255.255.0.0 10.2.0.0/m"),
    };
    QCOMPARE(changes(tellingRecord(), session.info), expected);
}

void TstQVPNAdvProperty::withoutAParentNothingHappens()
{
    bool wasEmpty = false;
    QString title;
    QStringList complaints;
    QCOMPARE(runUnder(nullptr, wasEmpty, title, complaints), int(QDialog::Accepted));
    QCOMPARE(complaints, QStringList());
    QVERIFY(wasEmpty);
    QCOMPARE(title, langText("VUI_AdvancedSettings"));
}

void TstQVPNAdvProperty::underAnotherParentNothingHappens()
{
    QDialog parent;
    bool wasEmpty = false;
    QString title;
    QStringList complaints;
    QCOMPARE(runUnder(&parent, wasEmpty, title, complaints), int(QDialog::Accepted));
    QCOMPARE(complaints, QStringList());
    QVERIFY(wasEmpty);
    QCOMPARE(title, langText("VUI_AdvancedSettings"));
}

void TstQVPNAdvProperty::withoutARecordNothingHappens()
{
    RecordHolder parent;
    parent.info = tellingRecord();
    parent.lends = false;
    bool wasEmpty = false;
    QString title;
    QStringList complaints;
    QCOMPARE(runUnder(&parent, wasEmpty, title, complaints), int(QDialog::Accepted));
    QCOMPARE(complaints, QStringList());
    QVERIFY(wasEmpty);
    QCOMPARE(changes(tellingRecord(), parent.info), QStringList());
}

void TstQVPNAdvProperty::theRecordOfTheParentIsRead()
{
    RecordHolder parent;
    parent.info = tellingRecord();
    bool wasEmpty = true;
    QString title;
    QStringList complaints;
    QCOMPARE(runUnder(&parent, wasEmpty, title, complaints), int(QDialog::Accepted));
    QCOMPARE(complaints, QStringList());
    QVERIFY(!wasEmpty);
}

TEST_ENTRY(qvpnadvproperty, runTest<TstQVPNAdvProperty>)

#include "tst_qvpnadvproperty.moc"
