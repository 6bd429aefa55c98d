#include "app/language/LangText.h"
#include "app/myapplication.h"
#include "app/widgets/WarningBox.h"
#include "pack/CustomCompleteDlg.h"
#include "support/CommandRecorder.h"
#include "support/Installation.h"
#include "support/Interposed.h"
#include "support/ModalScript.h"
#include "support/TestEntry.h"
#include "support/WindowPlay.h"

#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTextEdit>
#include <QToolButton>
#include <QtTest>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/types.h>

using windowplay::child;
using windowplay::runTest;
using windowplay::useLanguage;

namespace {

bool s_isElsewhere = false;
QByteArray s_executable; // null: nobody finds the executable

/// The test chooses where the executable seems to lie.
ssize_t movingReadlink(interposed::Readlink::Real real, const char* path, char* buffer, size_t size)
{
    if (!s_isElsewhere)
        return real(path, buffer, size);
    if (s_executable.isNull()) {
        errno = EACCES;
        return -1;
    }
    const size_t length = std::min(size, static_cast<size_t>(s_executable.size()));
    memcpy(buffer, s_executable.constData(), length);
    return static_cast<ssize_t>(length);
}

} // namespace

using installation::texts;

class TstCustomCompleteDlg : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void formHasTheseWidgets_data();
    void formHasTheseWidgets();
    void rowsHaveTheirWidgets_data();
    void rowsHaveTheirWidgets();
    void fixedTextsComeFromTheLanguageTable_data();
    void fixedTextsComeFromTheLanguageTable();
    void windowHasNoHelpButton();
    void maskChoosesRowsAndLine_data();
    void maskChoosesRowsAndLine();
    void placesStandInAllTextFields_data();
    void placesStandInAllTextFields();
    void placesAreTurnedFromUtf8();
    void placesStandWithoutTheDirectoryWhenItIsLost();
    void buttonOpensItsDirectory_data();
    void buttonOpensItsDirectory();
    void directoryIsQuotedAsItsBytes();
    void buttonStaysOnALowScreen_data();
    void buttonStaysOnALowScreen();
    void dialogStaysOpenBehindTheFileManager();
    void lostDirectoryIsTold_data();
    void lostDirectoryIsTold();
    void directoryHas255BytesAtMost_data();
    void directoryHas255BytesAtMost();
    void exitClosesTheWindow();
};

namespace {

struct RowNames
{
    const char* widget;
    const char* hint;
    const char* button;
    const char* place;
    const char* hintKey;
    const char* placeKey;
    const char* directory;
};

const RowNames s_rows[] = {
    {"widget_setup", "label_openSetupHint", "toolButton_setup", "textEdit_setup", "opensetup_hint",
     "NotOpenSetupDirHint", "OrvexSetup"},
    {"widget_update", "label_openUpdateHint", "toolButton_update", "textEdit_update", "openupdate_hint",
     "NotOpenUpdateDirHint", "OrvexUpdate"},
    {"widget_cusupd", "label_openCusUpdHint", "toolButton_cusupd", "textEdit_cusupd", "opencusupd_hint",
     "NotOpenCusUpdDirHint", "OrvexCusUpd"},
};

void addRows()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < 3; ++row)
        QTest::newRow(s_rows[row].directory) << row;
}

QString placeText(const QWidget& window, int row)
{
    return child<QTextEdit>(window, s_rows[row].place)->toPlainText();
}

void moveTo(const QByteArray& executable)
{
    s_executable = executable;
    s_isElsewhere = true;
}

void lose()
{
    moveTo(QByteArray());
}

/// The directory of the executable, with a slash, has `length` bytes.
QByteArray executableIn(int length)
{
    return '/' + QByteArray(length - 2, 'd') + "/e";
}

} // namespace

void TstCustomCompleteDlg::initTestCase()
{
    useLanguage(QStringLiteral("en"));
    QVERIFY(langText("complete_title") != QLatin1String("NULL"));
    // The log goes here as well while nobody finds the executable.
    QVERIFY(QDir::setCurrent(installation::root()));
}

void TstCustomCompleteDlg::init()
{
    installation::clear();
    QVERIFY(QDir().mkpath(installation::path(QStringLiteral("Log"))));
}

void TstCustomCompleteDlg::cleanup()
{
    s_isElsewhere = false;
    useLanguage(QStringLiteral("en"));
    installation::clear();
}

void TstCustomCompleteDlg::formHasTheseWidgets_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("text");
    QTest::newRow("success line") << "label_customSuccHint"
                                  << "QLabel"
                                  << QStringLiteral("定制成功，并生成新的客户端定制安装程序、升级包和轻量级升级包。");
    QTest::newRow("setup hint") << "label_openSetupHint"
                                << "QLabel" << QStringLiteral("单击以下按钮可以查看生成的客户端定制安装程序。");
    QTest::newRow("update hint") << "label_openUpdateHint"
                                 << "QLabel" << QStringLiteral("单击以下按钮可以查看生成的客户端定制升级包。");
    QTest::newRow("customised update hint")
        << "label_openCusUpdHint"
        << "QLabel" << QStringLiteral("单击以下按钮可以查看生成的客户端轻量级升级包。");
    for (const RowNames& row : s_rows)
        QTest::newRow(row.button) << QString::fromLatin1(row.button) << "QToolButton" << QStringLiteral("查找目标...");
    QTest::newRow("exit") << "pushButton_exit"
                          << "QPushButton" << QStringLiteral("退出");
}

void TstCustomCompleteDlg::formHasTheseWidgets()
{
    QFETCH(const QString, name);
    QFETCH(const QString, className);
    QFETCH(const QString, text);
    QDialog window;
    Ui_CustomCompleteDlg form;
    form.setupUi(&window);
    QCOMPARE(window.size(), QSize(370, 456));
    const QWidget* widget = window.findChild<QWidget*>(name);
    QVERIFY(widget);
    QCOMPARE(QString::fromLatin1(widget->metaObject()->className()), className);
    QCOMPARE(widget->property("text").toString(), text);
}

void TstCustomCompleteDlg::rowsHaveTheirWidgets_data()
{
    addRows();
}

void TstCustomCompleteDlg::rowsHaveTheirWidgets()
{
    QFETCH(const int, row);
    const RowNames& names = s_rows[row];
    const CustomCompleteDlg window(nullptr);
    const QWidget* widget = child<QWidget>(window, names.widget);
    QCOMPARE(QString::fromLatin1(widget->metaObject()->className()), QStringLiteral("QWidget"));
    const QToolButton* button = child<QToolButton>(window, names.button);
    QVERIFY(button->minimumWidth() >= 100);
    const QTextEdit* place = child<QTextEdit>(window, names.place);
    QVERIFY(place->isReadOnly());
    for (const QWidget* inside : {static_cast<const QWidget*>(button), static_cast<const QWidget*>(place),
                                  static_cast<const QWidget*>(child<QLabel>(window, names.hint))})
        QVERIFY(widget->isAncestorOf(inside));

    const QPixmap icon(QStringLiteral(":/OrvexManager/Resources/icon6.ico"));
    QVERIFY(!icon.isNull());
    QList<const QLabel*> icons;
    for (const QLabel* label : widget->findChildren<QLabel*>()) {
        if (label->pixmap(Qt::ReturnByValue).toImage() == icon.toImage())
            icons.append(label);
    }
    QCOMPARE(icons.size(), 1);
}

void TstCustomCompleteDlg::fixedTextsComeFromTheLanguageTable_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("Chinese") << "zh";
    QTest::newRow("English") << "en";
}

void TstCustomCompleteDlg::fixedTextsComeFromTheLanguageTable()
{
    QFETCH(const QString, language);
    useLanguage(language);
    const CustomCompleteDlg window(nullptr);
    QCOMPARE(window.windowTitle(), langText("complete_title"));
    QCOMPARE(child<QPushButton>(window, "pushButton_exit")->text(), langText("exitBtnTitle"));
    for (const RowNames& row : s_rows) {
        QCOMPARE(child<QLabel>(window, row.hint)->text(), langText(row.hintKey));
        // Contract: all three buttons bear this one text.
        QCOMPARE(child<QToolButton>(window, row.button)->text(), langText("CheckSetupBtnTitle"));
    }
}

void TstCustomCompleteDlg::windowHasNoHelpButton()
{
    QWidget parent;
    const CustomCompleteDlg window(&parent);
    const QDialog usual(&parent);
    QCOMPARE(window.windowFlags(), usual.windowFlags() & ~Qt::WindowContextHelpButtonHint);
    QCOMPARE(window.parentWidget(), &parent);
}

void TstCustomCompleteDlg::maskChoosesRowsAndLine_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<bool>("showsLine");
    QTest::addColumn<QByteArray>("key");
    const char* const keys[] = {"CusCfgOnlySuccHint",         "CusSuccHint",
                                "GenUpdateSuccHint",          "GenUpdateAndSetupSuccHint",
                                "GenCusUpdSuccHint",          "GenSetupAndCusUpdSuccHint",
                                "GenCusUpdAndUpdateSuccHint", "GenCusUpdAndSetupAndUpdateSuccHint"};
    for (int mask = 0; mask < 8; ++mask) {
        QTest::addRow("%d, with the line", mask) << mask << true << QByteArray(keys[mask]);
        QTest::addRow("%d, without the line", mask) << mask << false << QByteArray(keys[mask]);
    }
}

void TstCustomCompleteDlg::maskChoosesRowsAndLine()
{
    QFETCH(const int, mask);
    QFETCH(const bool, showsLine);
    QFETCH(const QByteArray, key);
    CustomCompleteDlg window(nullptr);
    window.initalDialog(mask, showsLine);
    QVERIFY(langText(key.constData()) != QLatin1String("NULL"));
    const QLabel* line = child<QLabel>(window, "label_customSuccHint");
    QCOMPARE(line->text(), langText(key.constData()));
    window.show();
    QCOMPARE(line->isVisible(), showsLine);
    for (int row = 0; row < 3; ++row)
        QCOMPARE(child<QWidget>(window, s_rows[row].widget)->isVisible(), (mask & (1 << row)) != 0);
    QVERIFY(child<QPushButton>(window, "pushButton_exit")->isVisible());
}

void TstCustomCompleteDlg::placesStandInAllTextFields_data()
{
    QTest::addColumn<int>("mask");
    QTest::newRow("all rows") << 7;
    QTest::newRow("hidden rows too") << 0;
}

void TstCustomCompleteDlg::placesStandInAllTextFields()
{
    QFETCH(const int, mask);
    CustomCompleteDlg window(nullptr);
    window.initalDialog(mask, true);
    for (int row = 0; row < 3; ++row)
        QCOMPARE(placeText(window, row),
                 langText(s_rows[row].placeKey) + installation::path(QLatin1String(s_rows[row].directory)));
}

void TstCustomCompleteDlg::placesAreTurnedFromUtf8()
{
    moveTo("/opt/安装 目录 <b>/管理");
    CustomCompleteDlg window(nullptr);
    window.initalDialog(7, true);
    for (int row = 0; row < 3; ++row)
        QCOMPARE(placeText(window, row), langText(s_rows[row].placeKey) + QStringLiteral("/opt/安装 目录 <b>/") +
                                             QLatin1String(s_rows[row].directory));
}

void TstCustomCompleteDlg::placesStandWithoutTheDirectoryWhenItIsLost()
{
    CustomCompleteDlg window(nullptr);
    lose();
    window.initalDialog(7, true);
    for (int row = 0; row < 3; ++row)
        QCOMPARE(placeText(window, row), langText(s_rows[row].placeKey) + QLatin1String(s_rows[row].directory));
}

void TstCustomCompleteDlg::buttonOpensItsDirectory_data()
{
    addRows();
}

void TstCustomCompleteDlg::buttonOpensItsDirectory()
{
    QFETCH(const int, row);
    const CommandRecorder recorder(CommandRecorder::RecordOnly);
    CustomCompleteDlg window(nullptr);
    window.initalDialog(7, true);
    window.show();
    QTest::mouseClick(child<QToolButton>(window, s_rows[row].button), Qt::LeftButton);
    QCOMPARE(installation::withoutRoot(recorder.commands()),
             QStringList(QStringLiteral("nautilus \"{root}%1\" &").arg(QLatin1String(s_rows[row].directory))));
}

void TstCustomCompleteDlg::directoryIsQuotedAsItsBytes()
{
    const CommandRecorder recorder(CommandRecorder::RecordOnly);
    CustomCompleteDlg window(nullptr);
    moveTo("/opt/\xb6\xa8\xd6\xc6 a  b/manager");
    window.onViewSetup();
    window.onViewUpdate();
    window.onViewCusUpd();
    QCOMPARE(recorder.commands(), QByteArrayList({"nautilus \"/opt/\xb6\xa8\xd6\xc6 a  b/OrvexSetup\" &",
                                                  "nautilus \"/opt/\xb6\xa8\xd6\xc6 a  b/OrvexUpdate\" &",
                                                  "nautilus \"/opt/\xb6\xa8\xd6\xc6 a  b/OrvexCusUpd\" &"}));
}

void TstCustomCompleteDlg::buttonStaysOnALowScreen_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<int>("placeHeight");
    QTest::newRow("one package") << 1 << 96;
    QTest::newRow("three packages, of which the places scroll") << 7 << 48;
}

void TstCustomCompleteDlg::buttonStaysOnALowScreen()
{
    QFETCH(int, mask);
    QFETCH(int, placeHeight);
    const windowplay::ApplicationFont font(9);
    CustomCompleteDlg window(nullptr);
    QCOMPARE(window.screen()->availableSize(), QSize(800, 600));
    window.initalDialog(mask, true);
    window.show();
    QCoreApplication::processEvents();
    QVERIFY(window.height() < 580);
    QVERIFY(window.rect().contains(child<QPushButton>(window, "pushButton_exit")->geometry()));
    for (int row = 0; row < 3; ++row) {
        const QLabel* hint = child<QLabel>(window, s_rows[row].hint);
        if (!hint->isVisible())
            continue;
        QVERIFY(hint->height() >= hint->heightForWidth(hint->width()));
        QCOMPARE(child<QTextEdit>(window, s_rows[row].place)->height(), placeHeight);
    }
}

void TstCustomCompleteDlg::dialogStaysOpenBehindTheFileManager()
{
    const CommandRecorder recorder(CommandRecorder::RecordOnly);
    CustomCompleteDlg window(nullptr);
    window.initalDialog(7, true);
    bool isStillOpen = false;
    ModalScript script;
    script.expect<CustomCompleteDlg>([&](CustomCompleteDlg& shown) {
        // The directories do not exist, which is not looked at.
        for (const RowNames& row : s_rows)
            QTest::mouseClick(child<QToolButton>(shown, row.button), Qt::LeftButton);
        isStillOpen = shown.isVisible();
        QTest::mouseClick(child<QPushButton>(shown, "pushButton_exit"), Qt::LeftButton);
    });
    window.exec();
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(isStillOpen);
    QCOMPARE(recorder.commands().size(), 3);
}

void TstCustomCompleteDlg::lostDirectoryIsTold_data()
{
    addRows();
}

// Contract: the same text serves all three directories.
void TstCustomCompleteDlg::lostDirectoryIsTold()
{
    QFETCH(const int, row);
    const CommandRecorder recorder(CommandRecorder::RecordOnly);
    CustomCompleteDlg window(nullptr);
    window.initalDialog(7, true);
    window.show();
    QString title;
    QString text;
    QMessageBox::StandardButtons buttons;
    bool okIsDefault = false;
    bool isWarning = false;
    const QWidget* parent = nullptr;
    ModalScript script;
    script.expect<QMessageBox>([&](QMessageBox& box) {
        title = box.windowTitle();
        text = box.text();
        buttons = box.standardButtons();
        okIsDefault = box.defaultButton() == box.button(QMessageBox::Ok);
        isWarning = box.icon() == QMessageBox::Warning;
        parent = box.parentWidget();
        QTest::mouseClick(box.button(QMessageBox::Ok), Qt::LeftButton);
    });
    lose();
    QTest::mouseClick(child<QToolButton>(window, s_rows[row].button), Qt::LeftButton);
    s_isElsewhere = false;
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(langText("NotFindSetup") != QLatin1String("NULL"));
    QCOMPARE(title, langText("manager_title"));
    QCOMPARE(text, langText("NotFindSetup"));
    QCOMPARE(buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QVERIFY(okIsDefault);
    QVERIFY(isWarning);
    QCOMPARE(parent, &window);
    QCOMPARE(recorder.commands(), QByteArrayList());
    QVERIFY(window.isVisible());
}

void TstCustomCompleteDlg::directoryHas255BytesAtMost_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("length"); // of the directory with what is appended
    QTest::addColumn<bool>("isOpened");
    for (int row = 0; row < 3; ++row) {
        QTest::addRow("%s, 255 bytes", s_rows[row].directory) << row << 255 << true;
        QTest::addRow("%s, 256 bytes", s_rows[row].directory) << row << 256 << false;
    }
}

void TstCustomCompleteDlg::directoryHas255BytesAtMost()
{
    QFETCH(const int, row);
    QFETCH(const int, length);
    QFETCH(const bool, isOpened);
    const QByteArray name = s_rows[row].directory;
    const QByteArray executable = executableIn(length - name.size());
    CustomCompleteDlg window(nullptr);
    QByteArrayList commands;
    {
        const CommandRecorder recorder(CommandRecorder::RecordOnly);
        moveTo(executable);
        QToolButton* button = child<QToolButton>(window, s_rows[row].button);
        button->click();
        s_isElsewhere = false;
        commands = recorder.commands();
    }
    QByteArrayList expected;
    if (isOpened)
        expected.append("nautilus \"" + executable.left(executable.size() - 1) + name + "\" &");
    QCOMPARE(commands, expected);
}

void TstCustomCompleteDlg::exitClosesTheWindow()
{
    CustomCompleteDlg window(nullptr);
    window.initalDialog(0, true);
    ModalScript script;
    script.expect<CustomCompleteDlg>([](CustomCompleteDlg& shown) {
        QTest::mouseClick(child<QPushButton>(shown, "pushButton_exit"), Qt::LeftButton);
    });
    QCOMPARE(window.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(!window.isVisible());
}

static int run(int argc, char** argv)
{
    interposed::onReadlink = movingReadlink;
    return runTest<TstCustomCompleteDlg>(argc, argv);
}

TEST_ENTRY(customcompletedlg, run)

#include "tst_customcompletedlg.moc"
