#include "common/Version.h"
#include "support/ModalScript.h"
#include "support/TestEntry.h"
#include "view/AboutInfoDlg.h"
#include "view/ViewPlayer.h"

#include <QGroupBox>
#include <QLabel>
#include <QTextEdit>
#include <QToolButton>
#include <QTranslator>

using namespace viewplay;

/// Answers for the copyright sign in the context of the About box.
class SignTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* source, const char*, int) const override
    {
        const bool isSign = qstrcmp(context, "AboutInfoDlg") == 0 && qstrcmp(source, "\xC2\xA9") == 0;
        return isSign ? QStringLiteral("(C)") : QString();
    }
};

class TstAboutInfoDlg : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void hasItsSizeAndNoContextHelp();
    void textsComeFromTheirKeys();
    void showsTheDisplayVersion();
    void versionIsReadInTheLocalEncoding();
    void showsTheApplicationIcon();
    void brandChoosesNameRightsAndLogo_data();
    void brandChoosesNameRightsAndLogo();
    void copyrightSignIsTranslated();
    void rightsTextIsReadOnlyAndTransparent();
    void groupsAndButtonHaveTheirFont();
    void textsFit_data();
    void textsFit();

    void controlIShowsTheInternalVersion_data();
    void controlIShowsTheInternalVersion();
    void secondControlIChangesNothing();
    void otherKeysShowNothing_data();
    void otherKeysShowNothing();
    void otherKeysLeaveTheBoxOpen_data();
    void otherKeysLeaveTheBoxOpen();
    void openedAgainItShowsTheDisplayVersion();
    void buttonEndsIt();
    void closeControlOfTheWindowEndsIt();
};

namespace {

QString labelText(const AboutInfoDlg& dialog, const char* name)
{
    return child<QLabel>(dialog, name)->text();
}

QString rights(const AboutInfoDlg& dialog)
{
    return child<QTextEdit>(dialog, "textEdit_Right")->toPlainText();
}

QImage shownPicture(const AboutInfoDlg& dialog, const char* name)
{
    return child<QLabel>(dialog, name)->pixmap(Qt::ReturnByValue).toImage();
}

QImage resource(const char* name)
{
    return QPixmap(QLatin1String(":/OrvexManager/Resources/") + QLatin1String(name)).toImage();
}

} // namespace

void TstAboutInfoDlg::init()
{
    g_ucAreaCode = 0;
    utl_SetVersionStrings("V7.2-R0408E", "7.2.0408.115");
}

void TstAboutInfoDlg::cleanup()
{
    g_ucAreaCode = 0;
    useKeysAsTexts();
}

void TstAboutInfoDlg::hasItsSizeAndNoContextHelp()
{
    AboutInfoDlg dialog(nullptr);
    QCOMPARE(dialog.size(), QSize(316, 276));
    QVERIFY((dialog.windowFlags() & Qt::WindowContextHelpButtonHint) == 0);
    QVERIFY((dialog.windowFlags() & Qt::WindowCloseButtonHint) != 0);
}

void TstAboutInfoDlg::textsComeFromTheirKeys()
{
    AboutInfoDlg dialog(nullptr);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("[about_title]"));
    QCOMPARE(child<QGroupBox>(dialog, "groupBox_info")->title(), QStringLiteral("[product_info]"));
    QCOMPARE(child<QGroupBox>(dialog, "groupBox_right")->title(), QStringLiteral("[product_right]"));
    QCOMPARE(labelText(dialog, "label_ver"), QStringLiteral("[product_ver]"));
    QCOMPARE(child<QToolButton>(dialog, "toolButton")->text(), QStringLiteral("[ok_button]"));
}

void TstAboutInfoDlg::showsTheDisplayVersion()
{
    AboutInfoDlg dialog(nullptr);
    QCOMPARE(labelText(dialog, "label_detailVer"), QStringLiteral("Orvex PC 7.2 (E0408)"));
}

void TstAboutInfoDlg::versionIsReadInTheLocalEncoding()
{
    const QString version = QStringLiteral("7.2.0408.版");
    utl_SetVersionStrings("V7.2-R0408E", version.toLocal8Bit());
    AboutInfoDlg dialog(nullptr);
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_I, Qt::ControlModifier);
    QVERIFY(labelText(dialog, "label_detailVer").contains(QChar(0x7248)));
    QCOMPARE(labelText(dialog, "label_detailVer"), QString::fromLocal8Bit(utl_OrvexInterVerDisplay()));
}

void TstAboutInfoDlg::showsTheApplicationIcon()
{
    AboutInfoDlg dialog(nullptr);
    dialog.show();
    QVERIFY(!resource("Orvex.ico").isNull());
    QCOMPARE(shownPicture(dialog, "label"), resource("Orvex.ico"));
    QCOMPARE(child<QLabel>(dialog, "label")->size(), QSize(40, 40));
}

void TstAboutInfoDlg::brandChoosesNameRightsAndLogo_data()
{
    QTest::addColumn<int>("areaCode");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("rightsText");
    QTest::addColumn<QByteArray>("logo");
    const QString tqm = QStringLiteral("[CopyRight]\u00A9[CompanyStatic]");
    QTest::newRow("tqm") << 0 << QStringLiteral("[product_name]") << tqm << QByteArray("tqmlogo.png");
    QTest::newRow("wy") << 1 << QStringLiteral("[AppNameStatic]") << QStringLiteral("\u00A9[WYCompanyStatic]")
                        << QByteArray("wylogo_32.png");
    QTest::newRow("any other value") << 2 << QStringLiteral("[product_name]") << tqm << QByteArray("tqmlogo.png");
    QTest::newRow("the last value") << 255 << QStringLiteral("[product_name]") << tqm << QByteArray("tqmlogo.png");
}

void TstAboutInfoDlg::brandChoosesNameRightsAndLogo()
{
    QFETCH(int, areaCode);
    QFETCH(QByteArray, logo);
    g_ucAreaCode = static_cast<unsigned char>(areaCode);
    AboutInfoDlg dialog(nullptr);
    QTEST(labelText(dialog, "label_name"), "name");
    QTEST(rights(dialog), "rightsText");
    QVERIFY(!resource(logo.constData()).isNull());
    QCOMPARE(shownPicture(dialog, "label_logo"), resource(logo.constData()));
}

void TstAboutInfoDlg::copyrightSignIsTranslated()
{
    SignTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    AboutInfoDlg tqm(nullptr);
    QCOMPARE(rights(tqm), QStringLiteral("[CopyRight](C)[CompanyStatic]"));
    g_ucAreaCode = 1;
    AboutInfoDlg wy(nullptr);
    QCOMPARE(rights(wy), QStringLiteral("(C)[WYCompanyStatic]"));
    QCoreApplication::removeTranslator(&translator);
}

void TstAboutInfoDlg::rightsTextIsReadOnlyAndTransparent()
{
    AboutInfoDlg dialog(nullptr);
    const auto* text = child<QTextEdit>(dialog, "textEdit_Right");
    QVERIFY(text->isReadOnly());
    QCOMPARE(text->styleSheet(), QStringLiteral("background-color:transparent;"));
    QCOMPARE(text->accessibleName(), QStringLiteral("[product_right]"));
}

void TstAboutInfoDlg::groupsAndButtonHaveTheirFont()
{
    AboutInfoDlg dialog(nullptr);
    for (const char* name : {"groupBox_info", "groupBox_right", "toolButton"})
        QCOMPARE(child<QWidget>(dialog, name)->font().family(), QStringLiteral("微软雅黑"));
    QVERIFY(child<QWidget>(dialog, "toolButton")->minimumWidth() >= 75);
}

void TstAboutInfoDlg::textsFit_data()
{
    QTest::addColumn<QByteArray>("language");
    QTest::addColumn<int>("areaCode");
    QTest::addColumn<bool>("internal");
    for (const char* language : {"en", "zh"}) {
        for (const int areaCode : {0, 1}) {
            QTest::addRow("%s, brand %d", language, areaCode) << QByteArray(language) << areaCode << false;
            QTest::addRow("%s, brand %d, internal", language, areaCode) << QByteArray(language) << areaCode << true;
        }
    }
}

void TstAboutInfoDlg::textsFit()
{
    QFETCH(QByteArray, language);
    QFETCH(int, areaCode);
    QFETCH(bool, internal);
    useLanguage(QString::fromLatin1(language));
    g_ucAreaCode = static_cast<unsigned char>(areaCode);
    AboutInfoDlg dialog(nullptr);
    if (internal)
        QTest::keyClick(&dialog, Qt::Key_I, Qt::ControlModifier);
    QCOMPARE(clippedTexts(dialog), QString());
    const auto* text = child<QTextEdit>(dialog, "textEdit_Right");
    QVERIFY(text->document()->size().height() <= text->viewport()->height());
    QVERIFY(text->document()->idealWidth() <= text->viewport()->width());
    QVERIFY(!text->toPlainText().contains(QLatin1String("NULL")));
}

void TstAboutInfoDlg::controlIShowsTheInternalVersion_data()
{
    QTest::addColumn<QByteArray>("focus");
    QTest::newRow("wherever the focus is at first") << QByteArray();
    QTest::newRow("focus on the rights") << QByteArray("textEdit_Right");
    QTest::newRow("focus on the button") << QByteArray("toolButton");
}

void TstAboutInfoDlg::controlIShowsTheInternalVersion()
{
    QFETCH(QByteArray, focus);
    AboutInfoDlg dialog(nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    if (!focus.isEmpty())
        child<QWidget>(dialog, focus.constData())->setFocus();
    QWidget* target = dialog.focusWidget() ? dialog.focusWidget() : &dialog;
    QTest::keyClick(target, Qt::Key_I, Qt::ControlModifier);
    QCOMPARE(labelText(dialog, "label_ver"), QStringLiteral("[product_Inver]"));
    QCOMPARE(labelText(dialog, "label_detailVer"), QStringLiteral("7.2.0408.115"));
}

void TstAboutInfoDlg::secondControlIChangesNothing()
{
    AboutInfoDlg dialog(nullptr);
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_I, Qt::ControlModifier);
    QTest::keyClick(&dialog, Qt::Key_I, Qt::ControlModifier);
    QCOMPARE(labelText(dialog, "label_ver"), QStringLiteral("[product_Inver]"));
    QCOMPARE(labelText(dialog, "label_detailVer"), QStringLiteral("7.2.0408.115"));
}

void TstAboutInfoDlg::otherKeysShowNothing_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    const auto row = [](const char* name, Qt::Key key, Qt::KeyboardModifiers modifiers) {
        QTest::newRow(name) << int(key) << int(modifiers);
    };
    row("I alone", Qt::Key_I, Qt::NoModifier);
    row("Shift and I", Qt::Key_I, Qt::ShiftModifier);
    row("Control, Shift and I", Qt::Key_I, Qt::ControlModifier | Qt::ShiftModifier);
    row("Control, Alt and I", Qt::Key_I, Qt::ControlModifier | Qt::AltModifier);
    row("Control and J", Qt::Key_J, Qt::ControlModifier);
}

void TstAboutInfoDlg::otherKeysShowNothing()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    AboutInfoDlg dialog(nullptr);
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QCOMPARE(labelText(dialog, "label_ver"), QStringLiteral("[product_ver]"));
    QCOMPARE(labelText(dialog, "label_detailVer"), QStringLiteral("Orvex PC 7.2 (E0408)"));
}

void TstAboutInfoDlg::otherKeysLeaveTheBoxOpen_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Escape") << int(Qt::Key_Escape);
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
    QTest::newRow("Tab") << int(Qt::Key_Tab);
}

void TstAboutInfoDlg::otherKeysLeaveTheBoxOpen()
{
    QFETCH(int, key);
    AboutInfoDlg dialog(nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QTest::keyClick(&dialog, Qt::Key(key));
    QVERIFY(dialog.isVisible());
    for (const char* name : {"textEdit_Right", "toolButton"}) {
        QWidget* widget = child<QWidget>(dialog, name);
        widget->setFocus();
        QTest::keyClick(widget, Qt::Key(key));
        QVERIFY(dialog.isVisible());
    }
}

void TstAboutInfoDlg::openedAgainItShowsTheDisplayVersion()
{
    {
        AboutInfoDlg dialog(nullptr);
        dialog.show();
        QTest::keyClick(&dialog, Qt::Key_I, Qt::ControlModifier);
        QCOMPARE(labelText(dialog, "label_detailVer"), QStringLiteral("7.2.0408.115"));
    }
    AboutInfoDlg dialog(nullptr);
    QCOMPARE(labelText(dialog, "label_ver"), QStringLiteral("[product_ver]"));
    QCOMPARE(labelText(dialog, "label_detailVer"), QStringLiteral("Orvex PC 7.2 (E0408)"));
}

void TstAboutInfoDlg::buttonEndsIt()
{
    AboutInfoDlg dialog(nullptr);
    ModalScript script;
    script.expect<AboutInfoDlg>(
        [](AboutInfoDlg& opened) { QTest::mouseClick(child<QToolButton>(opened, "toolButton"), Qt::LeftButton); });
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
}

void TstAboutInfoDlg::closeControlOfTheWindowEndsIt()
{
    AboutInfoDlg dialog(nullptr);
    ModalScript script;
    script.expect<AboutInfoDlg>([](AboutInfoDlg& opened) { QCoreApplication::postEvent(&opened, new QCloseEvent); });
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
}

TEST_ENTRY(aboutinfodlg, runTest<TstAboutInfoDlg>)

#include "tst_aboutinfodlg.moc"
