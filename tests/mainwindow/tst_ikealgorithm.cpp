#include "mainwindow/MainWindowFixture.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"
#include "view/QShowVpnAdv.h"
#include "vpn/QVPNAdvProperty.h"
#include "xml/CustomInfoLoad.h"

#include <QComboBox>
#include <QLineEdit>

using windowplay::RecordHolder;

// The IKE algorithm on its whole road: from the editor by way of the document to the detail view.
class TstIkeAlgorithm : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { windowplay::useLanguage(QStringLiteral("en")); }

    void theAhListDecidesTheShownIkeAlgorithm_data();
    void theAhListDecidesTheShownIkeAlgorithm();
};

namespace {

void choose(const QWidget& window, const char* list, const QString& text)
{
    QComboBox* combo = child<QComboBox>(window, list);
    const int index = combo->findText(text);
    QVERIFY2(index >= 0, list);
    combo->setCurrentIndex(index);
}

} // namespace

void TstIkeAlgorithm::theAhListDecidesTheShownIkeAlgorithm_data()
{
    QTest::addColumn<QString>("ah");
    QTest::addColumn<QString>("ikeList"); // without effect
    QTest::addColumn<QString>("shown");
    QTest::newRow("first") << QStringLiteral("MD5") << QStringLiteral("SHA") << QStringLiteral("MD5");
    QTest::newRow("second") << QStringLiteral("SHA") << QStringLiteral("MD5") << QStringLiteral("SHA");
    QTest::newRow("third") << QStringLiteral("SHA256") << QStringLiteral("MD5") << QStringLiteral("SHA");
}

void TstIkeAlgorithm::theAhListDecidesTheShownIkeAlgorithm()
{
    QFETCH(QString, ah);
    QFETCH(QString, ikeList);
    RecordHolder opener;
    QVPNAdvProperty editor(&opener);
    editor.setInital();
    editor.show();
    choose(editor, "comboBox_IpsecProto", QStringLiteral("AH"));
    choose(editor, "comboBox_AH_Auth", ah);
    choose(editor, "comboBox_IkeAuth", ikeList);
    pressOk(editor);
    QVERIFY(!editor.isVisible());

    storeDocument(installation::root(), documentOf(opener.info), QStringLiteral("1700000000"));
    RecordHolder reader;
    reader.info.reset();
    utl_LoadCustomInfo(inHistory(QStringLiteral("1700000000/OrvexCustom.xml")).toLocal8Bit().constData(), reader.info);
    QShowVpnAdv view(&reader);
    view.setInital();
    QCOMPARE(child<QLineEdit>(view, "lineEdit_AH_Auth")->text(), ah);
    QTEST(child<QLineEdit>(view, "lineEdit_IkeAuth")->text(), "shown");
}

TEST_ENTRY(ikealgorithm, playTest<TstIkeAlgorithm>)

#include "tst_ikealgorithm.moc"
