#include "support/TestEntry.h"
#include "view/ShowDetailDlg.h"
#include "view/ViewPlayer.h"

#include <QListWidget>

using namespace viewplay;

using Setter = void (*)(BasicFunctionInfo&);
Q_DECLARE_METATYPE(Setter)

/// The list of the functions that are on.
class TstShowDetailDlgFunction : public QObject
{
    Q_OBJECT

private slots:
    void showsTheFunction_data();
    void showsTheFunction();
    void showsNothingWithoutFunctions();
    void showsTheFunctionsInTheirOrder();
    void filledAnewTheListDoesNotGrow();
    void longTextsWrap();
};

namespace {

QStringList items(const BasicFunctionInfo& function)
{
    CustomInfo info = bareRecord();
    info.function = function;
    ShowDetailDlg dialog(nullptr);
    dialog.onInitDialog(info);
    const auto* list = child<QListWidget>(dialog, "listWidget_func");
    QStringList texts;
    for (int row = 0; row < list->count(); ++row)
        texts.append(list->item(row)->text());
    return texts;
}

} // namespace

void TstShowDetailDlgFunction::showsTheFunction_data()
{
    QTest::addColumn<Setter>("set");
    QTest::addColumn<QString>("text");
    const auto row = [](const char* name, Setter set, const char* text) {
        QTest::newRow(name) << set << QString::fromLatin1(text);
    };

    row(
        "acl", [](BasicFunctionInfo& function) { function.acl = 7; }, "[AclOpt]");
    row(
        "wanControl 1", [](BasicFunctionInfo& function) { function.wanControl = 1; }, "[WanControlOpt1]");
    row(
        "wanControl 2", [](BasicFunctionInfo& function) { function.wanControl = 2; }, "[WanControlOpt2]");
    row(
        "wanControl of any other value", [](BasicFunctionInfo& function) { function.wanControl = 3; },
        "[WanControlOpt2]");
    row(
        "drvErr", [](BasicFunctionInfo& function) { function.drvErr = 7; }, "[DrvErrOpt]");

    row(
        "dynamic password without options",
        [](BasicFunctionInfo& function) {
            function.dynamicPwdVerify = 7;
            function.dynamicVifInfo = 0;
        },
        "[CUS_FuncName.DynamicpwdVerify]");
    row(
        "dynamic password, changeable",
        [](BasicFunctionInfo& function) {
            function.dynamicPwdVerify = 1;
            function.dynamicVifInfo = 1;
        },
        "[CUS_FuncName.DynamicpwdVerify][VUI_ZuoKuoHao][CUS_ChangeEnable][VUI_YouKuoHao]");
    row(
        "dynamic password, selected by default",
        [](BasicFunctionInfo& function) {
            function.dynamicPwdVerify = 1;
            function.dynamicVifInfo = 2;
        },
        "[CUS_FuncName.DynamicpwdVerify][VUI_ZuoKuoHao][CUS_DefaultChecked][VUI_YouKuoHao]");
    row(
        "dynamic password with both options",
        [](BasicFunctionInfo& function) {
            function.dynamicPwdVerify = 1;
            function.dynamicVifInfo = 3;
        },
        "[CUS_FuncName.DynamicpwdVerify][VUI_ZuoKuoHao][CUS_DefaultChecked];[CUS_ChangeEnable][VUI_YouKuoHao]");
    row(
        "dynamic password with neither bit of a value",
        [](BasicFunctionInfo& function) {
            function.dynamicPwdVerify = 1;
            function.dynamicVifInfo = 4;
        },
        "[CUS_FuncName.DynamicpwdVerify][VUI_ZuoKuoHao][VUI_YouKuoHao]");

    row(
        "messages without options",
        [](BasicFunctionInfo& function) {
            function.msgAuthOpt = 7;
            function.msgAuthInfo = 0;
            function.msgAuthServIP = QStringLiteral("10.1.2.3");
            function.msgAuthServPort = 1812;
        },
        "[CUS_FuncName.MsgAuth][VUI_ZuoKuoHao][CUS_MsgAuthServIPShow]10.1.2.3;[CUS_MsgAuthServDomainShow]1812"
        "[VUI_YouKuoHao]");
    row(
        "messages, changeable",
        [](BasicFunctionInfo& function) {
            function.msgAuthOpt = 1;
            function.msgAuthInfo = 1;
        },
        "[CUS_FuncName.MsgAuth][VUI_ZuoKuoHao][CUS_ChangeEnable];[CUS_MsgAuthServIPShow];"
        "[CUS_MsgAuthServDomainShow]0[VUI_YouKuoHao]");
    row(
        "messages, selected by default",
        [](BasicFunctionInfo& function) {
            function.msgAuthOpt = 1;
            function.msgAuthInfo = 2;
        },
        "[CUS_FuncName.MsgAuth][VUI_ZuoKuoHao][CUS_DefaultChecked];[CUS_MsgAuthServIPShow];"
        "[CUS_MsgAuthServDomainShow]0[VUI_YouKuoHao]");
    row(
        "messages with both options",
        [](BasicFunctionInfo& function) {
            function.msgAuthOpt = 1;
            function.msgAuthInfo = 3;
            function.msgAuthServIP = QStringLiteral("10.1.2.3");
            function.msgAuthServPort = 4294967295U;
        },
        "[CUS_FuncName.MsgAuth][VUI_ZuoKuoHao][CUS_DefaultChecked];[CUS_ChangeEnable];[CUS_MsgAuthServIPShow]10.1.2.3;"
        "[CUS_MsgAuthServDomainShow]4294967295[VUI_YouKuoHao]");

    row(
        "password protection",
        [](BasicFunctionInfo& function) {
            function.passwordProtection = 7;
            function.uninstallPassword = QStringLiteral("never shown");
        },
        "[CUS_Uinstall_Password_Enable]");
    row(
        "password protection with the extended password",
        [](BasicFunctionInfo& function) {
            function.passwordProtection = 1;
            function.uninstallPasswordExtend = 2;
        },
        "[CUS_Uinstall_Password_Enable]: [CUS_Uinstall_Password_Extend]");

    row(
        "escape from WAN control",
        [](BasicFunctionInfo& function) {
            function.wanControlEscape = 7;
            function.wanControlEscapePyxIp = QStringLiteral("10.0.0.1");
            function.wanControlEscapePyxIpBackup = QStringLiteral("10.0.0.2");
            function.wanControlEscapePyxPort = QStringLiteral("8080");
            function.wanControlEscapeDns = QStringLiteral("10.0.0.3");
        },
        "[CUS_Wancotrol_Escape][VUI_ZuoKuoHao][CUS_Wancotrol_Escape_Pyx]10.0.0.1;"
        "[CUS_Wancotrol_Escape_Pyx_bak]10.0.0.2;[CUS_Wancotrol_Escape_Pyx_Port]8080; "
        "[CUS_Wancotrol_Escape_Dns]10.0.0.3[VUI_YouKuoHao]");
}

void TstShowDetailDlgFunction::showsTheFunction()
{
    QFETCH(Setter, set);
    QFETCH(QString, text);
    BasicFunctionInfo function;
    set(function);
    QCOMPARE(items(function), QStringList(text));
}

void TstShowDetailDlgFunction::showsNothingWithoutFunctions()
{
    QCOMPARE(items(BasicFunctionInfo()), QStringList());
}

void TstShowDetailDlgFunction::showsTheFunctionsInTheirOrder()
{
    BasicFunctionInfo function;
    function.acl = function.wanControl = function.drvErr = function.dynamicPwdVerify = function.msgAuthOpt = 1;
    function.passwordProtection = function.wanControlEscape = 1;
    QStringList heads;
    for (const QString& item : items(function))
        heads.append(item.section(QLatin1Char(']'), 0, 0));
    QCOMPARE(heads.join(QLatin1Char(' ')),
             QStringLiteral("[AclOpt [WanControlOpt1 [DrvErrOpt [CUS_FuncName.DynamicpwdVerify [CUS_FuncName.MsgAuth "
                            "[CUS_Uinstall_Password_Enable [CUS_Wancotrol_Escape"));
}

void TstShowDetailDlgFunction::filledAnewTheListDoesNotGrow()
{
    CustomInfo info = fullRecord();
    ShowDetailDlg dialog(nullptr);
    dialog.onInitDialog(info);
    const int count = child<QListWidget>(dialog, "listWidget_func")->count();
    QVERIFY(count > 0);
    dialog.onInitDialog(info);
    QCOMPARE(child<QListWidget>(dialog, "listWidget_func")->count(), count);
}

void TstShowDetailDlgFunction::longTextsWrap()
{
    useLanguage(QStringLiteral("en"));
    CustomInfo info = fullRecord();
    ShowDetailDlg dialog(nullptr);
    dialog.onInitDialog(info);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    auto* list = child<QListWidget>(dialog, "listWidget_func");
    QCOMPARE(list->count(), 7);
    const int line = list->fontMetrics().lineSpacing();
    for (int row = 0; row < list->count(); ++row) {
        const QRect place = list->visualItemRect(list->item(row));
        QVERIFY2(place.width() <= list->viewport()->width(), qPrintable(list->item(row)->text()));
        const int lines = list->fontMetrics().horizontalAdvance(list->item(row)->text()) / place.width() + 1;
        QVERIFY2(place.height() >= lines * line, qPrintable(list->item(row)->text()));
    }
    useKeysAsTexts();
}

TEST_ENTRY(showdetaildlg_function, runTest<TstShowDetailDlgFunction>)

#include "tst_showdetaildlg_function.moc"
