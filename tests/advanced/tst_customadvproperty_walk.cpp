#include "advanced/CustomAdvPlayer.h"
#include "support/TestEntry.h"

#include <QAbstractButton>
#include <QFileDialog>
#include <QLineEdit>
#include <QRadioButton>
#include <QRandomGenerator>
#include <QTimer>

#include <algorithm>
#include <memory>

using namespace advplay;

namespace {

constexpr int s_steps = 2000;
constexpr int s_tries = 3; // OK presses in one small dialog before it is cancelled

QStringList s_warnings;

// The platform plugin of the tests says this of every window with size limits.
void noteWarning(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type != QtDebugMsg && type != QtInfoMsg && !message.contains(QLatin1String("propagateSizeHints")))
        s_warnings.append(message);
}

/// The part of the record that only OK may write.
QStringList writtenByOkOnly(const CustomInfo& before, const CustomInfo& after)
{
    QStringList names = changes(before, after);
    names.erase(std::remove_if(names.begin(), names.end(),
                               [](const QString& name) {
                                   return name.startsWith(QLatin1String("functions/")) ||
                                          name.startsWith(QLatin1String("vpn"));
                               }),
                names.end());
    return names;
}

/// An administrator who does anything that the windows allow, in any order.
class Walker
{
public:
    explicit Walker(quint32 seed) : m_random(seed)
    {
        m_info.common.procomVal = 63;
        m_info.common.funcomVal = 5;
        m_stored = m_info;
        open();
        play();
    }

    ~Walker() { *m_isAlive = false; }

    /// One action; its name.
    QString step();
    /// The first invariant that does not hold; empty when all do.
    QString violation() const;
    int windowsPlayed() const { return m_windows; }
    int dialogsAccepted() const { return m_accepted; }
    int mostGateways() const { return m_mostGateways; }
    int mostDomains() const { return m_mostDomains; }

private:
    int below(int bound) { return m_random.bounded(bound); }
    bool chance(int percent) { return below(100) < percent; }
    template <class Item> Item any(const QVector<Item>& items) { return items.at(below(items.size())); }
    template <class Widget> Widget* named(const char* name) const { return child<Widget>(*m_dialog, name); }
    template <class Widget> QVector<Widget*> usable(const QWidget& window) const;
    bool isOn(const char* name) const { return named<QAbstractButton>(name)->isChecked(); }
    int ticked(const QStringList& names) const;

    void open();
    void close();
    void pressOk();
    void mend();
    void clickOn(QAbstractButton* button);
    void clickOn(const char* name) { clickOn(named<QAbstractButton>(name)); }
    void typeAny();
    void selectAnyRow(const char* tree);
    QString textFor(const QLineEdit* edit);

    void play();
    void playWindow(QWidget& window);
    void playDialog(QDialog& dialog);

    QString gatewayViolation() const;
    QString authViolation() const;
    QString domainViolation() const;
    QString enableViolation() const;

    QRandomGenerator m_random;
    CustomInfo m_info;
    CustomInfo m_stored; // as the last OK left it, or as it was when the dialog opened
    std::unique_ptr<CustomAdvProperty> m_dialog;
    QVector<QPointer<QWidget>> m_inPlay;
    std::shared_ptr<bool> m_isAlive = std::make_shared<bool>(true);
    QString m_problem;
    int m_windows = 0;
    int m_accepted = 0;
    int m_mostGateways = 0;
    int m_mostDomains = 0;
};

void Walker::open()
{
    if (chance(20)) {
        // Numbers that no dialog stored.
        m_info.x1.reauthTimes = m_random.generate();
        m_info.x1.reauthInterval = m_random.generate();
        m_info.x1.advancedAuthType = m_random.generate();
        m_info.portal.advancedAuthType = m_random.generate();
        m_info.sslvpn.TLSVersion = m_random.generate64();
        m_info.sslvpn.retryInterval = m_random.generate64();
        m_info.sslvpn.authDefaultMode = m_random.generate64();
        m_info.zoa.useZOA = quint64(below(2));
    }
    m_dialog = std::make_unique<CustomAdvProperty>(nullptr);
    m_dialog->initalDialog(&m_info);
    m_dialog->show();
    QCoreApplication::processEvents();
    m_stored = m_info;
}

void Walker::close()
{
    switch (below(3)) {
    case 0:
        press(*m_dialog, QDialogButtonBox::Cancel);
        break;
    case 1:
        QTest::keyClick(m_dialog.get(), Qt::Key_Escape);
        break;
    default:
        m_dialog->close();
    }
    if (m_dialog->isVisible() || m_dialog->result() != QDialog::Rejected)
        m_problem = QStringLiteral("Cancel left the dialog open or accepted");
    if (!writtenByOkOnly(m_stored, m_info).isEmpty())
        m_problem = QStringLiteral("Cancel stored ") + writtenByOkOnly(m_stored, m_info).join(QLatin1Char(' '));
    open();
}

void Walker::pressOk()
{
    const QVector<SSLVPNRemoteInfo> gateways = m_dialog->gatewayList;
    const int domains = m_dialog->domainInfo.domaindetail.size();
    press(*m_dialog, QDialogButtonBox::Ok);
    m_stored = m_info;
    if (m_dialog->isVisible())
        return;
    ++m_accepted;
    const SSLVPNOptionsInfo& sslvpn = m_info.sslvpn;
    if (m_dialog->result() != QDialog::Accepted || sslvpn.remote.size() != gateways.size() ||
        (gateways.isEmpty() != (sslvpn.defaultAddress == 0)) || sslvpn.defaultAddress > quint64(gateways.size()) ||
        m_info.domain.domaindetail.size() != domains || m_info.zoa.useZOA != 1 || sslvpn.retryInterval == 0)
        m_problem = QStringLiteral("OK stored a record that does not fit together");
    open();
}

/// Gives the fields that OK checks a chance.
void Walker::mend()
{
    for (const char* edit :
         {"lineEdit_ZOAIp", "lineEdit_standby_ZOAIp", "lineEdit_ZOAport", "lineEdit_standby_ZOAport"}) {
        if (named<QWidget>(edit)->isEnabled())
            type(*m_dialog, edit, QString());
    }
    type(*m_dialog, "lineEdit_reconnInterval", QStringLiteral("7"));
    type(*m_dialog, "lineEdit_getSysVryInterval", QStringLiteral("60"));
    if (!isOn("checkBox_Local"))
        clickOn("checkBox_Local");
    if (!isOn("checkBox_Password"))
        clickOn("checkBox_Password");
    named<QComboBox>("comboBox_defaultType")->setCurrentIndex(0);
    named<QComboBox>("comboBox_defaultMode")->setCurrentIndex(0);
}

void Walker::clickOn(QAbstractButton* button)
{
    bringToFront(button);
    click(button);
}

/// The widgets of this class that a user could reach, on any tab.
template <class Widget> QVector<Widget*> Walker::usable(const QWidget& window) const
{
    QVector<Widget*> widgets;
    for (Widget* widget : window.findChildren<Widget*>()) {
        if (widget->window() == &window && widget->isEnabled() && !widget->isHidden() &&
            !widget->objectName().startsWith(QLatin1String("qt_")))
            widgets.append(widget);
    }
    return widgets;
}

QString Walker::textFor(const QLineEdit* edit)
{
    static const QVector<const char*> addresses = {"10.0.0.1",  "10.0.0.2",  "192.168.1.1", "1.2.3.4",    "",
                                                   "300.1.1.1", "127.0.0.1", "1.2.3.4.",    "169.254.0.0"};
    static const QVector<const char*> numbers = {"1", "80", "443", "65535", "65536", "0", "", "5", "181", "x", "-1"};
    static const QVector<const char*> names = {"a",
                                               "b",
                                               "c",
                                               "d",
                                               "e",
                                               "f",
                                               "g",
                                               "h",
                                               "i",
                                               "j",
                                               "k",
                                               "l",
                                               "m",
                                               "",
                                               " ",
                                               "a (default)",
                                               "long long long long long long text",
                                               "%1"};
    const QString name = edit->objectName();
    if (name.contains(QLatin1String("port"), Qt::CaseInsensitive) || name.contains(QLatin1String("Interval")) ||
        name.contains(QLatin1String("Times")))
        return QLatin1String(any(numbers));
    if (name.contains(QLatin1String("ip"), Qt::CaseInsensitive) && !name.contains(QLatin1String("disname")))
        return QLatin1String(chance(80) ? addresses[below(4)] : any(addresses));
    return chance(50) ? QStringLiteral("n%1").arg(below(50)) : QLatin1String(any(names));
}

void Walker::typeAny()
{
    QLineEdit* edit = any(usable<QLineEdit>(*m_dialog));
    bringToFront(edit);
    type(*m_dialog, edit->objectName().toLatin1().constData(), textFor(edit));
}

void Walker::selectAnyRow(const char* name)
{
    QTreeWidget* tree = named<QTreeWidget>(name);
    bringToFront(tree);
    if (tree->topLevelItemCount() == 0)
        return;
    if (chance(5)) {
        tree->clearSelection();
        return;
    }
    QTreeWidgetItem* item = tree->topLevelItem(below(tree->topLevelItemCount()));
    tree->scrollToItem(item);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, tree->visualItemRect(item).center());
}

QString Walker::step()
{
    m_mostGateways = qMax(m_mostGateways, m_dialog->gatewayList.size());
    m_mostDomains = qMax(m_mostDomains, m_dialog->domainInfo.domaindetail.size());
    const int choice = below(100);
    if (choice < 22) {
        QAbstractButton* button = chance(85) ? static_cast<QAbstractButton*>(any(usable<QCheckBox>(*m_dialog)))
                                             : any(usable<QRadioButton>(*m_dialog));
        const QString action = QStringLiteral("click ") + button->objectName();
        clickOn(button);
        return action;
    }
    if (choice < 30) {
        QComboBox* combo = any(usable<QComboBox>(*m_dialog));
        if (combo->count() > 0)
            combo->setCurrentIndex(below(combo->count()));
        return QStringLiteral("choose in ") + combo->objectName();
    }
    if (choice < 42) {
        typeAny();
        return QStringLiteral("type");
    }
    if (choice < 88) {
        const bool isDomain = chance(50);
        const char* const tree = isDomain ? "treeWidget_Domain" : "treeWidget_SSLIP";
        const char* const buttons[] = {isDomain ? "pushButton_Add_2" : "pushButton_Add",
                                       isDomain ? "pushButton_Edit_2" : "pushButton_Edit",
                                       isDomain ? "pushButton_Delete_2" : "pushButton_Delete"};
        const int which = below(100);
        const char* const button = buttons[which < 55 ? 0 : which < 80 ? 1 : 2];
        if (chance(70))
            selectAnyRow(tree);
        clickOn(button);
        return QStringLiteral("press ") + QLatin1String(button);
    }
    if (choice < 90) {
        clickOn("pushButton_Adv");
        return QStringLiteral("VPN dialog");
    }
    if (choice < 91) {
        clickOn("pushButton_mainIcon_locate");
        return QStringLiteral("browse");
    }
    if (choice < 97) {
        if (chance(60))
            mend();
        pressOk();
        return QStringLiteral("OK");
    }
    close();
    return QStringLiteral("Cancel");
}

// A fresh single shot each time, since the windows nest.
void Walker::play()
{
    const std::shared_ptr<bool> isAlive = m_isAlive;
    QTimer::singleShot(1, [this, isAlive] {
        if (!*isAlive)
            return;
        play();
        QWidget* window = QApplication::activeModalWidget();
        if (!window || !window->isVisible() || m_inPlay.contains(window))
            return;
        m_inPlay.append(window);
        ++m_windows;
        playWindow(*window);
    });
}

void Walker::playWindow(QWidget& window)
{
    if (auto* box = qobject_cast<QMessageBox*>(&window)) {
        if (box->text().isEmpty() || box->text() == QLatin1String("NULL") || box->icon() != QMessageBox::Warning ||
            box->standardButtons() != QMessageBox::Ok)
            m_problem = QStringLiteral("a box: ") + describe(*box);
        QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    } else if (auto* files = qobject_cast<QFileDialog*>(&window)) {
        files->reject();
    } else if (auto* dialog = qobject_cast<QDialog*>(&window)) {
        playDialog(*dialog);
    } else {
        m_problem = QStringLiteral("unknown modal window ") + window.objectName();
        window.close();
    }
}

void Walker::playDialog(QDialog& dialog)
{
    for (int attempt = 0; attempt < s_tries && dialog.isVisible(); ++attempt) {
        for (QAbstractButton* button : usable<QAbstractButton>(dialog)) {
            const bool isChoice = qobject_cast<QCheckBox*>(button) || qobject_cast<QRadioButton*>(button);
            if (isChoice && button->isVisible() && chance(30))
                QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(8, button->height() / 2));
        }
        for (QLineEdit* edit : usable<QLineEdit>(dialog)) {
            if (edit->isVisible() && edit->isEnabled() && chance(85))
                type(dialog, edit->objectName().toLatin1().constData(), textFor(edit));
        }
        press(dialog, chance(90) ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel);
    }
    if (dialog.isVisible())
        press(dialog, QDialogButtonBox::Cancel);
}

QString Walker::violation() const
{
    if (!m_problem.isEmpty())
        return m_problem;
    if (!m_dialog->isVisible())
        return QStringLiteral("the dialog has gone");
    if (QApplication::activeModalWidget())
        return QStringLiteral("a window is left over");
    const QStringList written = writtenByOkOnly(m_stored, m_info);
    if (!written.isEmpty())
        return QStringLiteral("stored without OK: ") + written.join(QLatin1Char(' '));
    for (const QString& found : {gatewayViolation(), authViolation(), domainViolation(), enableViolation()}) {
        if (!found.isEmpty())
            return found;
    }
    return QString();
}

QString Walker::gatewayViolation() const
{
    const QTreeWidget* tree = named<QTreeWidget>("treeWidget_SSLIP");
    const QVector<SSLVPNRemoteInfo>& gateways = m_dialog->gatewayList;
    const int defaultIndex = m_dialog->defaultGatewayIndex;
    if (tree->topLevelItemCount() != gateways.size())
        return QStringLiteral("gateway rows and list differ in number");
    if (defaultIndex < 0 || defaultIndex > gateways.size())
        return QStringLiteral("the default gateway is not in the list");
    for (int row = 0; row < gateways.size(); ++row) {
        const QTreeWidgetItem* item = tree->topLevelItem(row);
        const QString suffix = row + 1 == defaultIndex ? langText("SSL_DEFAULTNAME") : QString();
        if (item->text(0) != QString::number(row + 1) || item->text(1) != gateways[row].iPDes + suffix ||
            item->text(2) != gateways[row].ip || item->text(3) != gateways[row].port)
            return QStringLiteral("gateway row %1 differs from the list").arg(row + 1);
    }
    if (named<QWidget>("pushButton_Add")->isEnabled() != (gateways.size() < 20))
        return QStringLiteral("gateways: the Add button");
    if (!gateways.isEmpty() &&
        !(named<QWidget>("pushButton_Edit")->isEnabled() && named<QWidget>("pushButton_Delete")->isEnabled()))
        return QStringLiteral("gateways: the Edit or Delete button");
    return QString();
}

int Walker::ticked(const QStringList& names) const
{
    return int(std::count_if(names.begin(), names.end(),
                             [this](const QString& name) { return isOn(name.toLatin1().constData()); }));
}

QString Walker::authViolation() const
{
    const int types = ticked(words("checkBox_Local checkBox_AD checkBox_LDAP checkBox_RADIUS"));
    const int modes = ticked(words("checkBox_Password checkBox_PwdCert checkBox_Cert"));
    if (m_dialog->authTypeCount != types)
        return QStringLiteral("%1 types ticked, %2 counted").arg(types).arg(m_dialog->authTypeCount);
    if (m_dialog->authModeCount != modes)
        return QStringLiteral("%1 modes ticked, %2 counted").arg(modes).arg(m_dialog->authModeCount);
    const QComboBox* typeList = named<QComboBox>("comboBox_defaultType");
    if (typeList->count() != types || (types > 0 && typeList->currentIndex() < 0))
        return QStringLiteral("the list of default types");
    // The mode list may go on listing the certificate mode.
    const int listed = named<QComboBox>("comboBox_defaultMode")->count();
    if (listed < modes || listed > modes + 1)
        return QStringLiteral("the list of default modes");
    const bool isRadiusAlone = types == 1 && isOn("checkBox_RADIUS");
    if (named<QWidget>("checkBox_Cert")->isEnabled() == isRadiusAlone)
        return QStringLiteral("the certificate mode beside RADIUS");
    return QString();
}

QString Walker::domainViolation() const
{
    const QTreeWidget* tree = named<QTreeWidget>("treeWidget_Domain");
    const SUIDomainInfo& domain = m_dialog->domainInfo;
    const int count = domain.domaindetail.size();
    if (tree->topLevelItemCount() != count)
        return QStringLiteral("domain rows and list differ in number");
    if (domain.domainDefault != 0 && count == 0)
        return QStringLiteral("a default domain in an empty list");
    QVector<int> numbers;
    for (int row = 0; row < count; ++row) {
        const QTreeWidgetItem* item = tree->topLevelItem(row);
        const QString suffix = row == 0 && domain.domainDefault != 0 ? langText("CUS_Default") : QString();
        if (item->text(1) != domain.domaindetail[row].domainName + suffix ||
            item->text(2) != domain.domaindetail[row].domainDesp)
            return QStringLiteral("domain row %1 differs from the list").arg(row + 1);
        numbers.append(item->text(0).toInt());
    }
    std::sort(numbers.begin(), numbers.end());
    for (int row = 0; row < count; ++row) {
        if (numbers[row] != row + 1)
            return QStringLiteral("the numbers of the domains");
    }
    if (count < 10 && !named<QWidget>("pushButton_Add_2")->isEnabled())
        return QStringLiteral("domains: the Add button");
    if (count > 0 &&
        !(named<QWidget>("pushButton_Edit_2")->isEnabled() && named<QWidget>("pushButton_Delete_2")->isEnabled()))
        return QStringLiteral("domains: the Edit or Delete button");
    return QString();
}

QString Walker::enableViolation() const
{
    const auto isEnabled = [this](const char* name) { return named<QWidget>(name)->isEnabled(); };
    if (isOn("checkBox_Wancontrol") && !isOn("checkBox_AclOpt"))
        return QStringLiteral("WAN control without ACL");
    if (isOn("checkBox_DynPwdVry") && isOn("checkBox_MsgAuth"))
        return QStringLiteral("both kinds of dynamic password");
    if (isEnabled("comboBox_1xAdvancedAuth") != isOn("checkBox_1xAdvancedAuth") ||
        isEnabled("comboBox_PortalAdvancedAuth") != isOn("checkBox_PortalAdvancedAuth"))
        return QStringLiteral("an advanced authentication list");
    const bool useIpsec = isOn("checkBox_EnableIpSec");
    for (const char* name :
         {"radioButton_useLNS", "radioButton_useOtherLNS", "label_AuthMethod", "comboBox_authMethod"}) {
        if (isEnabled(name) != useIpsec)
            return QStringLiteral("IPsec and ") + QLatin1String(name);
    }
    const bool usesKey = useIpsec && named<QComboBox>("comboBox_authMethod")->currentIndex() == 0;
    if (isEnabled("lineEdit_preshareKey") != usesKey || isEnabled("label_Authenticator") != usesKey)
        return QStringLiteral("the pre-shared key");
    if (useIpsec && isEnabled("lineEdit_IPSECServerIP") != isOn("radioButton_useOtherLNS"))
        return QStringLiteral("the other IPsec server");
    if (isOn("radioButton_useLNS") == isOn("radioButton_useOtherLNS"))
        return QStringLiteral("the IPsec server");
    return QString();
}

} // namespace

class TstCustomAdvPropertyWalk : public QObject
{
    Q_OBJECT

private slots:
    void anyWalkKeepsTheInvariants();
};

void TstCustomAdvPropertyWalk::anyWalkKeepsTheInvariants()
{
    bool isGiven = false;
    const uint given = qEnvironmentVariable("ORVEX_WALK_SEED").toUInt(&isGiven);
    const quint32 seed = isGiven ? given : QRandomGenerator::system()->generate();
    qInfo("ORVEX_WALK_SEED=%u", seed);

    s_warnings.clear();
    const QtMessageHandler handler = qInstallMessageHandler(noteWarning);
    const windowplay::NoPainting noPainting;
    QString problem;
    QStringList actions;
    int windows = 0;
    int accepted = 0;
    int gateways = 0;
    int domains = 0;
    {
        Walker walker(seed);
        for (int step = 1; step <= s_steps && problem.isEmpty(); ++step) {
            actions.append(QStringLiteral("%1 %2").arg(step).arg(walker.step()));
            problem = walker.violation();
        }
        windows = walker.windowsPlayed();
        accepted = walker.dialogsAccepted();
        gateways = walker.mostGateways();
        domains = walker.mostDomains();
    }
    qInstallMessageHandler(handler);

    const QString last = QStringList(actions.mid(actions.size() - 10)).join(QLatin1String(", "));
    QVERIFY2(problem.isEmpty(), qPrintable(QStringLiteral("seed %1: %2, after %3").arg(seed).arg(problem, last)));
    QCOMPARE(s_warnings, QStringList());
    QCOMPARE(actions.size(), s_steps);
    // A walk that met no window, stored nothing and kept short lists would prove nothing.
    qInfo("%d windows, %d times accepted, up to %d gateways and %d domains", windows, accepted, gateways, domains);
    QVERIFY(windows > 200);
    QVERIFY(accepted > 10);
    QVERIFY(gateways > 5);
    QVERIFY(domains > 5);
}

TEST_ENTRY(customadvproperty_walk, runTest<TstCustomAdvPropertyWalk>)

#include "tst_customadvproperty_walk.moc"
