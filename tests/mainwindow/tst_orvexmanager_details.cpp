#include "mainwindow/MainWindowFixture.h"

#include "app/language/LangText.h"
#include "support/DistinctRecord.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"
#include "view/QShowVpnAdv.h"
#include "view/ShowDetailDlg.h"
#include "xml/CustomInfo.h"

#include <QCheckBox>
#include <QDateTime>
#include <QDirIterator>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QtTest>

using windowplay::click;

/// The detail view as the history opens it, over a stored customisation.
class TstOrvexManagerDetails : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void detailShowsTheFieldsOfTheStoredDocument();
    void detailShowsTheIconsBesideTheDocument();
    void lookingAtADetailLeavesTheStoreAsItWas();
};

namespace {

constexpr quint64 s_stamp = 1700000000;
/// The slots are not stored, and the icons are the copies beside the document.
constexpr char s_notInTheDocument[] = "guiOptions/linuxDeskIcon guiOptions/macosDeskIcon guiOptions/mainIcon "
                                      "sslvpn/remote/0/remoteSlot sslvpn/remote/1/remoteSlot "
                                      "sslvpn/remote/2/remoteSlot domain/domainSlot";

/// Every component, every gate open, and no two fields of the same value.
CustomInfo tellingRecord()
{
    CustomInfo record = distinctRecord();
    record.common.procomVal = 63;
    record.common.funcomVal = funcom::zoa | funcom::kef;
    record.common.cusTimeStamp = s_stamp;
    record.common.cusTimeString = QStringLiteral("then");
    return record;
}

void store(const CustomInfo& record)
{
    storeCustomisation(installation::root(), record);
    for (const char* icon : {"DeskIconLinux.png", "DeskIconMacos.icns", "MainIcon.ico"})
        QImage(8, 8, QImage::Format_RGB32)
            .save(inHistory(QStringLiteral("%1/").arg(s_stamp)) + QLatin1String(icon), "PNG");
}

/// Opens the details of the one stored customisation and its VPN parameters, looks at both and closes them.
QStringList openDetails(const std::function<void(ShowDetailDlg&)>& look,
                        const std::function<void(QShowVpnAdv&)>& lookAtVpn)
{
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, 0);
    ModalScript script;
    script.expect<ShowDetailDlg>([&](ShowDetailDlg& dialog) {
        look(dialog);
        child<QAbstractButton>(dialog, "pushButton_Adv_S")->click();
        click(dialog, "toolButton");
    });
    script.expect<QShowVpnAdv>([&](QShowVpnAdv& dialog) {
        lookAtVpn(dialog);
        click(dialog, "pushButton");
    });
    click(window, "toolButton_detail");
    return script.complaints();
}

QString textOf(const QWidget& window, const char* edit)
{
    return child<QLineEdit>(window, edit)->text();
}

/// Path, bytes and time of every file of the history.
QStringList storeAsItStands()
{
    QStringList lines = installation::describeTree(inHistory());
    QDirIterator each(inHistory(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (each.hasNext()) {
        const QString path = each.next();
        lines.append(path + QLatin1Char(' ') + each.fileInfo().lastModified().toString(Qt::ISODateWithMs));
    }
    return lines;
}

/// Clicks every check box and radio button, whatever tab it is on.
int clickEveryBox(QWidget& window)
{
    int clicked = 0;
    for (QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
        if (qobject_cast<QCheckBox*>(button) || qobject_cast<QRadioButton*>(button)) {
            button->click();
            ++clicked;
        }
    }
    return clicked;
}

} // namespace

void TstOrvexManagerDetails::init()
{
    prepareInstallation();
}

void TstOrvexManagerDetails::detailShowsTheFieldsOfTheStoredDocument()
{
    const CustomInfo record = tellingRecord();
    store(record);
    QStringList unlike;
    QStringList shown;
    const QStringList complaints = openDetails(
        [&](ShowDetailDlg& dialog) {
            unlike = differences(*dialog.customInfo(), record);
            shown.append(child<QListWidget>(dialog, "listWidget_func")->item(0)->text());
            for (const char* edit : {"lineEdit_LNSIp_S", "lineEdit_preshareKey_S"})
                shown.append(textOf(dialog, edit));
        },
        [&](QShowVpnAdv& dialog) { shown.append(textOf(dialog, "lineEdit_TunnelPwd")); });
    QCOMPARE(complaints, QStringList());
    QCOMPARE(unlike, QString::fromLatin1(s_notInTheDocument).split(QLatin1Char(' ')));
    QCOMPARE(shown, QStringList({langText("AclOpt"), record.vpn.basecfg.LNSIP, record.vpn.basecfg.preSharedKey,
                                 record.vpn.l2tpcfg.L2TPTunnelPwd}));
}

void TstOrvexManagerDetails::detailShowsTheIconsBesideTheDocument()
{
    store(tellingRecord());
    QSize linux;
    QSize main;
    const QStringList complaints = openDetails(
        [&](ShowDetailDlg& dialog) {
            linux = child<QLabel>(dialog, "label_deskIcon_Linux")->pixmap(Qt::ReturnByValue).size();
            main = child<QLabel>(dialog, "label_MainIcon")->pixmap(Qt::ReturnByValue).size();
        },
        [](QShowVpnAdv&) {});
    QCOMPARE(complaints, QStringList());
    QCOMPARE(linux, QSize(32, 32));
    QCOMPARE(main, QSize(32, 32));
}

void TstOrvexManagerDetails::lookingAtADetailLeavesTheStoreAsItWas()
{
    store(tellingRecord());
    const QStringList before = storeAsItStands();
    QVERIFY(before.size() > 8);
    int clicked = 0;
    const QStringList complaints = openDetails([&](ShowDetailDlg& dialog) { clicked += clickEveryBox(dialog); },
                                               [&](QShowVpnAdv& dialog) { clicked += clickEveryBox(dialog); });
    QCOMPARE(complaints, QStringList());
    QVERIFY(clicked > 20);
    QCOMPARE(storeAsItStands(), before);
}

TEST_ENTRY(orvexmanager_details, playTest<TstOrvexManagerDetails>)

#include "tst_orvexmanager_details.moc"
