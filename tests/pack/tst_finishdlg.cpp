#include "app/language/LangText.h"
#include "app/myapplication.h"
#include "pack/FinishDlg.h"
#include "support/ModalScript.h"
#include "support/TestEntry.h"
#include "support/WindowPlay.h"
#include "xml/CustomInfo.h"

#include <QCheckBox>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

using windowplay::child;
using windowplay::runTest;
using windowplay::useLanguage;

class TstFinishDlg : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void formHasTheseWidgets_data();
    void formHasTheseWidgets();
    void textsComeFromTheLanguageTable_data();
    void textsComeFromTheLanguageTable();
    void windowHasNoHelpButton();
    void nothingIsChosenAtFirst();
    void remarkOfTheRecordIsShown();
    void withoutARecordTheRemarkStaysEmpty();
    void remarkHas120CharactersAtMost_data();
    void remarkHas120CharactersAtMost();
    void typedRemarkEndsAt120Characters();
    void pastedRemarkKeepsToTheCharactersOfADocument();
    void okAnswersTheMaskOfTheBoxes_data();
    void okAnswersTheMaskOfTheBoxes();
    void maskIsAddedToNotAssigned();
    void okWritesTheRemarkBeforeTheWindowIsAccepted();
    void okWritesTheCutRemark();
    void okMayEmptyTheRemark();
    void okWithoutARecordAcceptsAsWell();
    void okLeavesTheRestOfTheRecord();
    void cancelChangesNothing_data();
    void cancelChangesNothing();
    void returnInTheRemarkPressesOk();
    void focusGoesFromTopToBottom();
};

namespace {

QLineEdit* remark(const QWidget& window)
{
    return child<QLineEdit>(window, "lineEdit_addinfo");
}

QPushButton* button(const QWidget& window, QDialogButtonBox::StandardButton which)
{
    return child<QDialogButtonBox>(window, "buttonBox")->button(which);
}

/// A click on the box itself, not on the space behind its text.
void click(FinishDlg& window, const char* checkBox)
{
    QCheckBox* box = child<QCheckBox>(window, checkBox);
    QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(8, box->height() / 2));
}

void type(QLineEdit* field, const QString& text)
{
    for (const QChar& character : text)
        QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, QString(character), Qt::NoModifier);
}

/// What a text is shown by, whatever the class of its widget.
QString shownText(const QWidget& window, const QString& name)
{
    if (name.isEmpty())
        return window.windowTitle();
    const QWidget* widget = window.findChild<QWidget*>(name);
    if (!widget)
        qFatal("no %s", qPrintable(name));
    return widget->property(qobject_cast<const QGroupBox*>(widget) ? "title" : "text").toString();
}

/// Runs the window: the step plays it and must end it.
int run(FinishDlg& window, const std::function<void(FinishDlg&)>& play)
{
    ModalScript script;
    script.expect<FinishDlg>(play);
    const int result = window.exec();
    const QStringList complaints = script.complaints();
    if (!complaints.isEmpty())
        QTest::qFail(qPrintable(complaints.join(QLatin1Char('\n'))), __FILE__, __LINE__);
    return result;
}

void pressOk(FinishDlg& window)
{
    QTest::mouseClick(button(window, QDialogButtonBox::Ok), Qt::LeftButton);
}

} // namespace

void TstFinishDlg::initTestCase()
{
    useLanguage(QStringLiteral("en"));
    QVERIFY(langText("finish_title") != QLatin1String("NULL"));
}

void TstFinishDlg::cleanup()
{
    useLanguage(QStringLiteral("en"));
}

void TstFinishDlg::formHasTheseWidgets_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("className");
    QTest::addColumn<bool>("isWrapped");
    QTest::addColumn<QString>("text");

    QTest::newRow("window") << ""
                            << "QDialog" << false << "FinishDlg";
    QTest::newRow("groupBox_addinfo") << "groupBox_addinfo"
                                      << "QGroupBox" << false << QStringLiteral("定制附加信息");
    QTest::newRow("label_addinfo") << "label_addinfo"
                                   << "QLabel" << true
                                   << QStringLiteral("为方便管理定制信息，建议为本次定制增加附加信息(如Orvex Vr1.0)");
    QTest::newRow("lineEdit_addinfo") << "lineEdit_addinfo"
                                      << "QLineEdit" << false << "";
    QTest::newRow("checkBox_cusSetup") << "checkBox_cusSetup"
                                       << "QCheckBox" << false << QStringLiteral("定制生成客户端安装包");
    QTest::newRow("label_cusSetup") << "label_cusSetup"
                                    << "QLabel" << true
                                    << QStringLiteral(
                                           "定制的客户端安装程序，用于在没有安装Orvex客户端的计算机上安装Orvex"
                                           "客户端或者将早期版本的客户端升级到当前版本。");
    QTest::newRow("checkBox_cusUpdate") << "checkBox_cusUpdate"
                                        << "QCheckBox" << false << QStringLiteral("定制生成客户端升级包");
    QTest::newRow("label_cusUpdate") << "label_cusUpdate"
                                     << "QLabel" << true
                                     << QStringLiteral(
                                            "定制的客户端升级包（必须部署到与客户端配套的服务器上）用于把早期"
                                            "版本的客户端自动升级到当前版本。");
    QTest::newRow("checkBox_cusCusUpd") << "checkBox_cusCusUpd"
                                        << "QCheckBox" << false << QStringLiteral("定制生成客户端轻量级升级包");
    QTest::newRow("label_cusCusUpd") << "label_cusCusUpd"
                                     << "QLabel" << true
                                     << QStringLiteral(
                                            "定制的客户端轻量级升级包（必须部署到与客户端配套的服务器上）用于把"
                                            "同一版本早期定制的客户端自动升级到当前定制版本。");
}

void TstFinishDlg::formHasTheseWidgets()
{
    QFETCH(const QString, name);
    QFETCH(const QString, className);
    QFETCH(const bool, isWrapped);
    QFETCH(const QString, text);
    QDialog window;
    Ui_FinishDlg form;
    form.setupUi(&window);
    QCOMPARE(window.size(), QSize(418, 535));
    QCOMPARE(shownText(window, name), text);
    const QWidget* widget = name.isEmpty() ? &window : window.findChild<QWidget*>(name);
    QCOMPARE(QString::fromLatin1(widget->metaObject()->className()), className);
    QCOMPARE(widget->property("wordWrap").toBool(), isWrapped);
    QCOMPARE(form.buttonBox->standardButtons(),
             QDialogButtonBox::StandardButtons(QDialogButtonBox::Ok | QDialogButtonBox::Cancel));
}

void TstFinishDlg::textsComeFromTheLanguageTable_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("Chinese") << "zh";
    QTest::newRow("English") << "en";
}

void TstFinishDlg::textsComeFromTheLanguageTable()
{
    QFETCH(const QString, language);
    useLanguage(language);
    const FinishDlg window(nullptr);
    const QVector<QPair<QString, const char*>> texts = {
        {QString(), "finish_title"},
        {QStringLiteral("groupBox_addinfo"), "CusAboutInfoComBox"},
        {QStringLiteral("label_addinfo"), "SetAddInfoHint"},
        {QStringLiteral("checkBox_cusSetup"), "GenSetupChk"},
        {QStringLiteral("label_cusSetup"), "IfGenSetupDes"},
        {QStringLiteral("checkBox_cusUpdate"), "GenUpdateChk"},
        {QStringLiteral("label_cusUpdate"), "GenUpdateHint"},
        {QStringLiteral("checkBox_cusCusUpd"), "GenCusUpdChk"},
        {QStringLiteral("label_cusCusUpd"), "GenCusUpdHint"},
    };
    for (const auto& text : texts)
        QCOMPARE(shownText(window, text.first), langText(text.second));
    QCOMPARE(button(window, QDialogButtonBox::Ok)->text(), langText("ok_button"));
    QCOMPARE(button(window, QDialogButtonBox::Cancel)->text(), langText("cancel_button"));
}

void TstFinishDlg::windowHasNoHelpButton()
{
    QWidget parent;
    const FinishDlg window(&parent);
    const QDialog usual(&parent);
    QCOMPARE(window.windowFlags(), usual.windowFlags() & ~Qt::WindowContextHelpButtonHint);
    QCOMPARE(window.parentWidget(), &parent);
}

void TstFinishDlg::nothingIsChosenAtFirst()
{
    const FinishDlg window(nullptr);
    QCOMPARE(window.m_iPackMask, 0);
    for (const char* name : {"checkBox_cusSetup", "checkBox_cusUpdate", "checkBox_cusCusUpd"})
        QVERIFY2(!child<QCheckBox>(window, name)->isChecked(), name);
    QCOMPARE(remark(window)->text(), QString());
    QCOMPARE(remark(window)->maxLength(), 120);
}

void TstFinishDlg::remarkOfTheRecordIsShown()
{
    CustomInfo info;
    info.common.cusAddInfo = QStringLiteral("east wing 东楼 <1>");
    FinishDlg window(nullptr);
    window.initalDialog(&info);
    QCOMPARE(remark(window)->text(), info.common.cusAddInfo);
    QCOMPARE(window.m_iPackMask, 0);
}

void TstFinishDlg::withoutARecordTheRemarkStaysEmpty()
{
    FinishDlg window(nullptr);
    window.initalDialog(nullptr);
    QCOMPARE(remark(window)->text(), QString());
}

void TstFinishDlg::remarkHas120CharactersAtMost_data()
{
    QTest::addColumn<QString>("loaded");
    QTest::addColumn<QString>("shown");
    QTest::newRow("119") << QString(119, QLatin1Char('a')) << QString(119, QLatin1Char('a'));
    QTest::newRow("120") << QString(120, QLatin1Char('a')) << QString(120, QLatin1Char('a'));
    QTest::newRow("121") << QString(120, QLatin1Char('a')) + QLatin1Char('b') << QString(120, QLatin1Char('a'));
    QTest::newRow("1000") << QString(1000, QLatin1Char('a')) << QString(120, QLatin1Char('a'));
    QTest::newRow("121 Chinese") << QString(121, QChar(0x5b9a)) << QString(120, QChar(0x5b9a));
}

void TstFinishDlg::remarkHas120CharactersAtMost()
{
    QFETCH(const QString, loaded);
    QFETCH(const QString, shown);
    CustomInfo info;
    info.common.cusAddInfo = loaded;
    FinishDlg window(nullptr);
    window.initalDialog(&info);
    QCOMPARE(remark(window)->text(), shown);
    // Showing it changes nothing in the record.
    QCOMPARE(info.common.cusAddInfo, loaded);
}

void TstFinishDlg::typedRemarkEndsAt120Characters()
{
    FinishDlg window(nullptr);
    type(remark(window), QString(119, QLatin1Char('a')) + QStringLiteral("bc"));
    QCOMPARE(remark(window)->text(), QString(119, QLatin1Char('a')) + QLatin1Char('b'));
}

void TstFinishDlg::pastedRemarkKeepsToTheCharactersOfADocument()
{
    CustomInfo info;
    FinishDlg window(nullptr);
    window.initalDialog(&info);
    window.show();
    QApplication::clipboard()->setText(QStringLiteral("Beijing\u0001\noffice"));
    remark(window)->paste();
    QCOMPARE(remark(window)->text(), QStringLiteral("Beijing office"));
}

void TstFinishDlg::okAnswersTheMaskOfTheBoxes_data()
{
    QTest::addColumn<int>("mask");
    for (int mask = 0; mask < 8; ++mask)
        QTest::addRow("%d", mask) << mask;
}

void TstFinishDlg::okAnswersTheMaskOfTheBoxes()
{
    QFETCH(const int, mask);
    CustomInfo info;
    FinishDlg window(nullptr);
    window.initalDialog(&info);
    const int result = run(window, [mask](FinishDlg& shown) {
        if (mask & 1)
            click(shown, "checkBox_cusSetup");
        if (mask & 2)
            click(shown, "checkBox_cusUpdate");
        if (mask & 4)
            click(shown, "checkBox_cusCusUpd");
        pressOk(shown);
    });
    QCOMPARE(result, int(QDialog::Accepted));
    QCOMPARE(window.m_iPackMask, mask);
}

// Contract: the mask counts up; the dialog is shown once a construction.
void TstFinishDlg::maskIsAddedToNotAssigned()
{
    CustomInfo info;
    FinishDlg window(nullptr);
    window.initalDialog(&info);
    window.m_iPackMask = 16;
    child<QCheckBox>(window, "checkBox_cusUpdate")->setChecked(true);
    window.showCompleteDlg();
    QCOMPARE(window.m_iPackMask, 18);
    window.showCompleteDlg();
    QCOMPARE(window.m_iPackMask, 20);
}

void TstFinishDlg::okWritesTheRemarkBeforeTheWindowIsAccepted()
{
    CustomInfo info;
    info.common.cusAddInfo = QStringLiteral("earlier");
    FinishDlg window(nullptr);
    window.initalDialog(&info);
    QString atAcceptance;
    int maskAtAcceptance = -1;
    connect(&window, &QDialog::accepted, this, [&] {
        atAcceptance = info.common.cusAddInfo;
        maskAtAcceptance = window.m_iPackMask;
    });
    QString whileOpen;
    run(window, [&](FinishDlg& shown) {
        click(shown, "checkBox_cusSetup");
        remark(shown)->clear();
        type(remark(shown), QStringLiteral("Orvex Vr1.0 定制"));
        whileOpen = info.common.cusAddInfo;
        pressOk(shown);
    });
    QCOMPARE(whileOpen, QStringLiteral("earlier"));
    QCOMPARE(atAcceptance, QStringLiteral("Orvex Vr1.0 定制"));
    QCOMPARE(maskAtAcceptance, 1);
    QCOMPARE(info.common.cusAddInfo, QStringLiteral("Orvex Vr1.0 定制"));
}

void TstFinishDlg::okWritesTheCutRemark()
{
    CustomInfo info;
    info.common.cusAddInfo = QString(130, QLatin1Char('a'));
    FinishDlg window(nullptr);
    window.initalDialog(&info);
    run(window, pressOk);
    QCOMPARE(info.common.cusAddInfo, QString(120, QLatin1Char('a')));
}

void TstFinishDlg::okMayEmptyTheRemark()
{
    CustomInfo info;
    info.common.cusAddInfo = QStringLiteral("earlier");
    FinishDlg window(nullptr);
    window.initalDialog(&info);
    run(window, [](FinishDlg& shown) {
        remark(shown)->clear();
        pressOk(shown);
    });
    QCOMPARE(info.common.cusAddInfo, QString());
}

void TstFinishDlg::okWithoutARecordAcceptsAsWell()
{
    FinishDlg window(nullptr);
    window.initalDialog(nullptr);
    const int result = run(window, [](FinishDlg& shown) {
        click(shown, "checkBox_cusCusUpd");
        pressOk(shown);
    });
    QCOMPARE(result, int(QDialog::Accepted));
    QCOMPARE(window.m_iPackMask, 4);
}

void TstFinishDlg::okLeavesTheRestOfTheRecord()
{
    CustomInfo info;
    info.common.procomVal = 37;
    info.common.funcomVal = 5;
    info.common.cusTimeStamp = 77;
    info.common.cusTimeString = QStringLiteral("then");
    FinishDlg window(nullptr);
    window.initalDialog(&info);
    run(window, [](FinishDlg& shown) {
        click(shown, "checkBox_cusSetup");
        pressOk(shown);
    });
    QCOMPARE(int(info.common.procomVal), 37);
    QCOMPARE(int(info.common.funcomVal), 5);
    QCOMPARE(int(info.common.cusTimeStamp), 77);
    QCOMPARE(info.common.cusTimeString, QStringLiteral("then"));
}

void TstFinishDlg::cancelChangesNothing_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("button") << false;
    QTest::newRow("Escape") << true;
}

void TstFinishDlg::cancelChangesNothing()
{
    QFETCH(const bool, byKey);
    CustomInfo info;
    info.common.cusAddInfo = QStringLiteral("earlier");
    FinishDlg window(nullptr);
    window.initalDialog(&info);
    const int result = run(window, [byKey](FinishDlg& shown) {
        click(shown, "checkBox_cusSetup");
        remark(shown)->clear();
        type(remark(shown), QStringLiteral("later"));
        if (byKey)
            QTest::keyClick(&shown, Qt::Key_Escape);
        else
            QTest::mouseClick(button(shown, QDialogButtonBox::Cancel), Qt::LeftButton);
    });
    QCOMPARE(result, int(QDialog::Rejected));
    QCOMPARE(window.m_iPackMask, 0);
    QCOMPARE(info.common.cusAddInfo, QStringLiteral("earlier"));
}

void TstFinishDlg::returnInTheRemarkPressesOk()
{
    CustomInfo info;
    FinishDlg window(nullptr);
    window.initalDialog(&info);
    const int result = run(window, [](FinishDlg& shown) {
        type(remark(shown), QStringLiteral("typed"));
        QTest::keyClick(remark(shown), Qt::Key_Return);
    });
    QCOMPARE(result, int(QDialog::Accepted));
    QCOMPARE(info.common.cusAddInfo, QStringLiteral("typed"));
}

void TstFinishDlg::focusGoesFromTopToBottom()
{
    FinishDlg window(nullptr);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    int y = -1;
    for (const char* name : {"lineEdit_addinfo", "checkBox_cusSetup", "checkBox_cusUpdate", "checkBox_cusCusUpd"}) {
        QCOMPARE(window.focusWidget()->objectName(), QLatin1String(name));
        const int top = window.focusWidget()->mapTo(&window, QPoint()).y();
        QVERIFY2(top > y, name);
        y = top;
        QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    }
    QVERIFY(child<QDialogButtonBox>(window, "buttonBox")->isAncestorOf(window.focusWidget()));
    QCOMPARE(child<QLabel>(window, "label_addinfo")->buddy(), remark(window));
}

TEST_ENTRY(finishdlg, runTest<TstFinishDlg>)

#include "tst_finishdlg.moc"
