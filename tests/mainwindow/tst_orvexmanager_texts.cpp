#include "mainwindow/MainWindowFixture.h"
#include "support/TestEntry.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolBar>
#include <QToolButton>

namespace {

struct Control
{
    const char* name;
    const char* key;
    const char* defaultText; // null: not laid down
};
const Control controls[] = {
    {"label_cusClientTitle", "CusClient", "客户端定制"},
    {"groupBox_selDefaultCus", "DefaultCus", "请选择本次定制的缺省配置"},
    {"groupBox_proComp", "AccessComComBox", "网络接入组件"},
    {"label_proCompDes", "AccessComDes", "Orvex客户端支持多种网络接入方式，请选择需要的组件。"},
    {"checkBox_8021xPro", "X1ComName", "802.1x，支持标准802.1x和扩展的802.1x协议。"},
    {"checkBox_portalPro", "PortalComName", "Portal，支持Portal协议"},
    {"checkBox_sslvpnPro", "SslvpnComName", "SSL VPN，支持SSL VPN协议"},
    {"checkBox_wlanPro", "WlanComName", "无线接入，支持无线网络接入协议"},
    {"checkBox_ipsecvpnPro", "IpsecvpnComName", "L2TP IPSec VPN，支持L2TP IPSec VPN协议"},
    {"checkBox_zoaPro", "ZoaDirectComName", "ZOA直连，支持安全认证"},
    {"groupBox_funcComp", "FuncComComBox", "功能组件"},
    {"label_funcCompDes", "FuncComDes", "Orvex客户端支持以下功能组件，请选择需要的组件"},
    {"checkBox_zoafunc", "ZOAComName", nullptr},
    {"checkBox_keffunc", "KEFComName", nullptr},
    {"label_advDes", "PressAdvanDes", "单击<高级定制...>进行更多功能和界面定制。"},
    {"label_finishDes", "PressFinishDes", "单击<完成>完成本次客户端定制。"},
    {"toolButton_adv", "AdvancedCusBtn", "高级定制..."},
    {"toolButton_finish", "FinishBtn", "完成"},
    {"label_cusHisTitle", "CusUpdateTitle", "管理历史的定制信息"},
    {"groupBox_allCusHisInfo", "AllCusComBox", "当前所有定制"},
    {"label_cusHisDes", "CusListHint", "每次定制由该定制的生成时间唯一标识。"},
    {"toolButton_deleteall", "DeleteAll", "全部删除"},
    {"checkBox_allSelect", "SelectAll", "全部选中"},
    {"toolButton_detail", "ShowCustomDetailBtn", "详细"},
    {"toolButton_delete", "DeleteCustomBtn", "删除"},
};

QString textOf(const QWidget& window, const char* name)
{
    const QWidget* widget = child<QWidget>(window, name);
    return widget->property(qobject_cast<const QGroupBox*>(widget) ? "title" : "text").toString();
}

/// Language files in which each key stands for itself behind the mark of the language.
void installTellingLanguages()
{
    const QList<QByteArray> keys =
        installation::readFile(QStringLiteral(ORVEX_SOURCE_DIR "/tests/data/language_keys.txt")).split('\n');
    for (const QByteArray& language : {QByteArray("en"), QByteArray("zh")}) {
        QByteArray file = "<texts>\n";
        for (const QByteArray& key : keys)
            file += "<control key=\"" + key + "\">" + language + ' ' + key + "</control>\n";
        installation::writeFile(
            installation::path(QStringLiteral("Resources/Language_%1.xml").arg(QString::fromLatin1(language))),
            file + "</texts>\n");
    }
}

QStringList menuTexts(const OrvexManager& window)
{
    QStringList texts;
    for (const QAction* title : child<QMenuBar>(window, "menuBar")->actions()) {
        texts.append(title->text());
        for (const QAction* entry : title->menu()->actions())
            texts.append(entry->isSeparator() ? QStringLiteral("-") : entry->text());
    }
    return texts;
}

/// All that the window shows, a line each.
QStringList shownTexts(const OrvexManager& window)
{
    QStringList texts{QLatin1String("window: ") + window.windowTitle()};
    for (const Control& control : controls)
        texts.append(QLatin1String(control.name) + QLatin1String(": ") + textOf(window, control.name));
    for (const QString& text : menuTexts(window))
        texts.append(QLatin1String("menu: ") + text);
    for (const QAction* action : window.findChild<QToolBar*>()->actions())
        texts.append(QStringLiteral("tool bar: %1, %2").arg(action->text(), action->toolTip()));
    const QListWidget* selector = child<QListWidget>(window, "listWidget");
    for (int row = 0; row < selector->count(); ++row)
        texts.append(QLatin1String("selector: ") + selector->item(row)->text());
    for (int column = 0; column < 3; ++column)
        texts.append(QLatin1String("head: ") + historyTree(window)->headerItem()->text(column));
    texts.append(QLatin1String("combo box: ") + child<QComboBox>(window, "comboBox_defaultCus")->accessibleName());
    return texts;
}

QStringList expectedTexts(const QString& language)
{
    const QString mark = language + QLatin1Char(' ');
    QStringList texts{QLatin1String("window: ") + mark + QLatin1String("manager_title")};
    for (const Control& control : controls)
        texts.append(QLatin1String(control.name) + QLatin1String(": ") + mark + QLatin1String(control.key));
    for (const char* key : {"menu_file", "menu_cusclient", "menu_cushistory", "-", "menu_exit", "menu_view",
                            "menu_toolbar", "-", "menu_viewClientLoc", "menu_viewUpdLoc", "menu_viewCusUpdLoc",
                            "menu_Language", "menu_English", "menu_Chinese", "menu_help", "menu_about"})
        texts.append(QLatin1String("menu: ") + (*key == '-' ? QString() : mark) + QLatin1String(key));
    for (const char* key : {"cusclient_tooltip", "-", "cusHis_tooltip", "-", "about_tooltip"}) {
        const QString text = *key == '-' ? QString() : mark + QLatin1String(key);
        texts.append(QStringLiteral("tool bar: %1, %1").arg(text));
    }
    for (const char* key : {"cusclient_tooltip", "cusHis_tooltip"})
        texts.append(QLatin1String("selector: ") + mark + QLatin1String(key));
    for (const char* key : {"CusTime", "CusComponents", "CusAddInfo"})
        texts.append(QLatin1String("head: ") + mark + QLatin1String(key));
    texts.append(QLatin1String("combo box: ") + mark + QLatin1String("DefaultCus"));
    return texts;
}

QImage picture(const QIcon& icon)
{
    return icon.pixmap(32, 32).toImage();
}

QImage resource(const char* name)
{
    return picture(QIcon(QLatin1String(":/OrvexManager/Resources/") + QLatin1String(name)));
}

constexpr QSize largeScreen(1920, 1200);

/// How far the components can be scrolled, in both areas together.
QSize scrolledAway(const OrvexManager& window)
{
    QSize away(0, 0);
    for (const char* name : {"scrollArea_proComp", "scrollArea_funcComp"}) {
        const QScrollArea* area = child<QScrollArea>(window, name);
        away += QSize(area->horizontalScrollBar()->maximum(), area->verticalScrollBar()->maximum());
    }
    return away;
}

} // namespace

// What the window says, and how its form stands.
class TstOrvexManagerTexts : public QObject
{
    Q_OBJECT

private slots:
    void init() { prepareInstallation(); }

    void theFormBearsItsDefaultTexts_data();
    void theFormBearsItsDefaultTexts();
    void theFormStandsAsDescribed();
    void noBoxIsTickedInTheForm();
    void eachTextComesFromItsKeyInBothLanguages();
    void rowsAndEntriesAreNotTranslated();
    void picturesAreThoseOfTheResources();
    void bothLanguagesLeaveTheWindowItsSize();
    void everyComponentIsInSightOnALargeScreen_data();
    void everyComponentIsInSightOnALargeScreen();
    void theWindowGrowsAsFarAsTheScreenHasRoom();
    void anotherLanguageDoesNotPushTheWindowOffTheScreen();
    void theSmallestWindowStillShowsAllByScrolling_data();
    void theSmallestWindowStillShowsAllByScrolling();
    void aMaximisedWindowStaysSo();
};

void TstOrvexManagerTexts::theFormBearsItsDefaultTexts_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    for (const Control& control : controls) {
        if (control.defaultText)
            QTest::newRow(control.name) << QString::fromLatin1(control.name) << QString::fromUtf8(control.defaultText);
    }
}

void TstOrvexManagerTexts::theFormBearsItsDefaultTexts()
{
    QFETCH(QString, name);
    QMainWindow plain;
    Ui_OrvexManagerClass form;
    form.setupUi(&plain);
    QTEST(textOf(plain, name.toLatin1().constData()), "text");
}

void TstOrvexManagerTexts::theFormStandsAsDescribed()
{
    QMainWindow plain;
    Ui_OrvexManagerClass form;
    form.setupUi(&plain);
    QCOMPARE(plain.objectName(), QStringLiteral("OrvexManagerClass"));
    QCOMPARE(plain.size(), QSize(694, 551));
    QCOMPARE(form.stackedWidget->indexOf(form.clientCustom), 0);
    QCOMPARE(form.stackedWidget->indexOf(form.historyCustom), 1);
    QCOMPARE(form.listWidget->count(), 2);
    QCOMPARE(form.listWidget->minimumWidth(), 170);
    QVERIFY(form.listWidget->font().bold());
    QCOMPARE(form.listWidget->font().pointSize(), 10);
    QCOMPARE(form.comboBox_defaultCus->count(), 0);
    QVERIFY(!form.comboBox_defaultCus->hasFrame());
    const QString border = QStringLiteral("border-image: url(:/OrvexManager/Resources/%1);");
    for (const QLabel* label : {form.label_2, form.label_5}) {
        QCOMPARE(label->minimumSize(), QSize(24, 24));
        QCOMPARE(label->maximumSize(), QSize(24, 24));
        QCOMPARE(label->text(), QString());
    }
    QCOMPARE(form.label_2->styleSheet(), border.arg(QLatin1String("icon4.ico")));
    QCOMPARE(form.label_5->styleSheet(), border.arg(QLatin1String("63.ico")));
    for (const QScrollArea* area : {form.scrollArea_proComp, form.scrollArea_funcComp})
        QCOMPARE(area->styleSheet(), QStringLiteral("background-color: rgb(255, 255, 255);"));
    for (const QLabel* title : {form.label_cusClientTitle, form.label_cusHisTitle})
        QVERIFY(title->font().bold());
    for (const QToolButton* button :
         {form.toolButton_adv, form.toolButton_finish, form.toolButton_detail, form.toolButton_delete})
        QCOMPARE(button->minimumSize(), QSize(75, 23));
    QCOMPARE(form.toolButton_deleteall->minimumHeight(), 23);
}

void TstOrvexManagerTexts::noBoxIsTickedInTheForm()
{
    QMainWindow plain;
    Ui_OrvexManagerClass form;
    form.setupUi(&plain);
    const QList<QCheckBox*> boxes = plain.findChildren<QCheckBox*>();
    QCOMPARE(boxes.size(), 9);
    for (const QCheckBox* box : boxes)
        QVERIFY2(!box->isChecked(), qPrintable(box->objectName()));
}

void TstOrvexManagerTexts::eachTextComesFromItsKeyInBothLanguages()
{
    installTellingLanguages();
    OrvexManager window(nullptr);
    QCOMPARE(shownTexts(window).join(QLatin1Char('\n')), expectedTexts(QStringLiteral("en")).join(QLatin1Char('\n')));
    window.changZhLanguage();
    QCOMPARE(shownTexts(window).join(QLatin1Char('\n')), expectedTexts(QStringLiteral("zh")).join(QLatin1Char('\n')));
    window.changEnLanguage();
    QCOMPARE(shownTexts(window).join(QLatin1Char('\n')), expectedTexts(QStringLiteral("en")).join(QLatin1Char('\n')));
}

void TstOrvexManagerTexts::rowsAndEntriesAreNotTranslated()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    OrvexManager window(nullptr);
    window.show();
    const QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    const QString entry = combo->itemText(1);
    const QString summary = historyTree(window)->topLevelItem(0)->text(1);
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    clickRow(window, 0);
    window.changZhLanguage();
    // Nothing is filled anew, so that what is chosen stays chosen.
    QCOMPARE(combo->itemText(1), entry);
    QCOMPARE(combo->currentIndex(), 1);
    QCOMPARE(window.record().common.cusAddInfo, QStringLiteral("one"));
    QCOMPARE(historyTree(window)->topLevelItem(0)->text(1), summary);
    QVERIFY(historyTree(window)->topLevelItem(0)->isSelected());
}

void TstOrvexManagerTexts::picturesAreThoseOfTheResources()
{
    const OrvexManager window(nullptr);
    const QImage client = resource("icon4.ico");
    const QImage history = resource("63.ico");
    QVERIFY(!client.isNull() && !history.isNull() && client != history && client != resource("icon6.ico"));
    const QList<QAction*> actions = window.findChild<QToolBar*>()->actions();
    QCOMPARE(actions.size(), 5);
    QCOMPARE(picture(actions.at(0)->icon()), client);
    QVERIFY(actions.at(1)->isSeparator());
    QCOMPARE(picture(actions.at(2)->icon()), history);
    QVERIFY(actions.at(3)->isSeparator());
    QCOMPARE(picture(actions.at(4)->icon()), resource("Toolbarabout.ico"));
    const QListWidget* selector = child<QListWidget>(window, "listWidget");
    QCOMPARE(picture(selector->item(0)->icon()), client);
    QCOMPARE(picture(selector->item(1)->icon()), history);
    QVERIFY(window.testAttribute(Qt::WA_SetWindowIcon));
    QCOMPARE(picture(window.windowIcon()), resource("Orvex.ico"));
}

void TstOrvexManagerTexts::bothLanguagesLeaveTheWindowItsSize()
{
    const ApplicationFont font(9);
    OrvexManager window(nullptr);
    window.show();
    QCOMPARE(window.size(), QSize(694, 551));
    window.changZhLanguage();
    QCoreApplication::processEvents();
    QCOMPARE(window.size(), QSize(694, 551));
}

void TstOrvexManagerTexts::everyComponentIsInSightOnALargeScreen_data()
{
    QTest::addColumn<int>("pointSize");
    QTest::addColumn<QByteArray>("language");
    for (int pointSize : {9, 10, 12, 16}) {
        QTest::addRow("%d points, English", pointSize) << pointSize << QByteArray("1033");
        QTest::addRow("%d points, Chinese", pointSize) << pointSize << QByteArray("2052");
    }
}

void TstOrvexManagerTexts::everyComponentIsInSightOnALargeScreen()
{
    QFETCH(int, pointSize);
    QFETCH(QByteArray, language);
    writeSettings("Area=tqm\nLangCode=" + language + "\n");
    const ApplicationFont font(pointSize);
    OrvexManager window(nullptr);
    window.growForComponents(largeScreen);
    window.show();
    QCoreApplication::processEvents();
    QCOMPARE(scrolledAway(window), QSize(0, 0));
    // The other language, too, while the window is open.
    if (language == "1033")
        window.changZhLanguage();
    else
        window.changEnLanguage();
    window.growForComponents(largeScreen);
    QCoreApplication::processEvents();
    QCOMPARE(scrolledAway(window), QSize(0, 0));
    for (const char* name : {"label_proCompDes", "label_funcCompDes", "label_advDes", "label_finishDes"}) {
        const QLabel* label = child<QLabel>(window, name);
        QVERIFY2(label->height() >= label->heightForWidth(label->width()), name);
    }
}

void TstOrvexManagerTexts::theWindowGrowsAsFarAsTheScreenHasRoom()
{
    const ApplicationFont font(16);
    OrvexManager window(nullptr);
    window.growForComponents(largeScreen);
    const QSize needed = window.size();
    QVERIFY(needed.width() > 695 && needed.height() > 552);
    const auto shrink = [&window] {
        window.setMinimumSize(0, 0);
        window.resize(694, 551);
    };
    for (const QSize& missing : {QSize(1, 0), QSize(0, 1)}) {
        shrink();
        window.growForComponents(needed - missing);
        QCOMPARE(window.size(), needed - missing);
    }
    shrink();
    window.growForComponents(QSize(640, 480));
    QCOMPARE(window.size(), QSize(694, 551));
    QCOMPARE(window.minimumSize(), QSize(640, 480));
}

void TstOrvexManagerTexts::anotherLanguageDoesNotPushTheWindowOffTheScreen()
{
    const ApplicationFont font(9);
    OrvexManager window(nullptr);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const int bottom = window.screen()->availableGeometry().bottom();
    window.setGeometry(0, bottom - 550, 694, 551);
    const ApplicationFont larger(12);
    window.changZhLanguage();
    QCoreApplication::processEvents();
    QCOMPARE(window.geometry().bottom(), bottom);
}

void TstOrvexManagerTexts::theSmallestWindowStillShowsAllByScrolling_data()
{
    everyComponentIsInSightOnALargeScreen_data();
}

void TstOrvexManagerTexts::theSmallestWindowStillShowsAllByScrolling()
{
    QFETCH(int, pointSize);
    QFETCH(QByteArray, language);
    writeSettings("Area=tqm\nLangCode=" + language + "\n");
    const ApplicationFont font(pointSize);
    OrvexManager window(nullptr);
    window.growForComponents(largeScreen);
    const QSize needed = window.size();
    window.show();
    window.resize(1, 1);
    QCoreApplication::processEvents();
    QVERIFY(window.width() <= needed.width() && window.height() < needed.height());
    // The components that may be scrolled, up and down, are those of the network access.
    const QScrollArea* access = child<QScrollArea>(window, "scrollArea_proComp");
    QCOMPARE(scrolledAway(window), QSize(0, access->verticalScrollBar()->maximum()));
    for (const char* name : {"scrollArea_proComp", "scrollArea_funcComp", "label_proCompDes", "label_funcCompDes"}) {
        const QWidget* widget = child<QWidget>(window, name);
        QVERIFY2(widget->parentWidget()->rect().contains(widget->geometry()), name);
        QVERIFY2(widget->height() >= widget->heightForWidth(widget->width()), name);
    }
}

void TstOrvexManagerTexts::aMaximisedWindowStaysSo()
{
    const ApplicationFont font(16);
    OrvexManager window(nullptr);
    window.showMaximized();
    const QSize size = window.size();
    window.growForComponents(largeScreen);
    QCOMPARE(window.size(), size);
    QVERIFY(window.isMaximized());
}

TEST_ENTRY(orvexmanager_texts, playTest<TstOrvexManagerTexts>)

#include "tst_orvexmanager_texts.moc"
