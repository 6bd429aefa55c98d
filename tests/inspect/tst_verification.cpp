#include "inspect/InspectSupport.h"
#include "inspect/Verification.h"
#include "support/Installation.h"
#include "support/TestEntry.h"

#include <QtTest>

Q_DECLARE_METATYPE(Reason)
Q_DECLARE_METATYPE(FileBytes)

namespace {

FileBytes fileOf(const QByteArray& bytes)
{
    return {FileBytes::Read, bytes};
}

const FileBytes missing;
const FileBytes pipeOrDirectory = {FileBytes::NotRegular, QByteArray()};
const QByteArray document = "<msg><content><common><cusTimeStamp>12</cusTimeStamp></common></content></msg>";

QByteArray nested(int levels)
{
    QByteArray text;
    for (int i = 0; i < levels; ++i)
        text += "<a>";
    for (int i = 0; i < levels; ++i)
        text += "</a>";
    return text;
}

} // namespace

class TstVerification : public QObject
{
    Q_OBJECT

private slots:
    void eachReasonHasItsCode();
    void firstReasonInTheirOrderIsTold_data();
    void firstReasonInTheirOrderIsTold();
    void commonSectionIsReadOnlyWhenAllHolds();
    void nothingIsLogged();
};

void TstVerification::eachReasonHasItsCode()
{
    const QByteArrayList codes = {
        "",       "no-document", "no-verification", "not-regular", "verification-size", "document-size",
        "digest", "not-parsed"};
    const Reason reasons[] = {Reason::None,       Reason::NoDocument,       Reason::NoVerification,
                              Reason::NotRegular, Reason::VerificationSize, Reason::DocumentSize,
                              Reason::Digest,     Reason::NotParsed};
    QByteArrayList found;
    for (const Reason reason : reasons)
        found.append(reasonCode(reason));
    QCOMPARE(found, codes);
}

void TstVerification::firstReasonInTheirOrderIsTold_data()
{
    QTest::addColumn<FileBytes>("content");
    QTest::addColumn<FileBytes>("verification");
    QTest::addColumn<QByteArray>("code");
    const QByteArray good = inspecting::verificationOf(document);
    QByteArray wrong = good;
    wrong[3] = char(wrong.at(3) + 1);
    const QByteArray largest = document + QByteArray(40588 - document.size(), ' ');
    const auto verified = [](const QByteArray& bytes) { return fileOf(inspecting::verificationOf(bytes)); };

    QTest::newRow("good") << fileOf(document) << fileOf(good) << QByteArray();
    QTest::newRow("nothing there") << missing << missing << QByteArray("no-document");
    QTest::newRow("no document, a pipe beside") << missing << pipeOrDirectory << QByteArray("no-document");
    QTest::newRow("no verification") << fileOf(document) << missing << QByteArray("no-verification");
    QTest::newRow("no verification, document a pipe") << pipeOrDirectory << missing << QByteArray("no-verification");
    QTest::newRow("document a pipe") << pipeOrDirectory << fileOf(good.left(3)) << QByteArray("not-regular");
    QTest::newRow("verification a pipe") << fileOf(QByteArray(40589, 'x')) << pipeOrDirectory
                                         << QByteArray("not-regular");
    QTest::newRow("255 bytes") << fileOf(QByteArray(40589, 'x')) << fileOf(good.left(255))
                               << QByteArray("verification-size");
    QTest::newRow("257 bytes") << fileOf(document) << fileOf(good + 'x') << QByteArray("verification-size");
    QTest::newRow("no bytes") << fileOf(document) << fileOf(QByteArray()) << QByteArray("verification-size");
    QTest::newRow("40588 bytes") << fileOf(largest) << verified(largest) << QByteArray();
    QTest::newRow("40589 bytes") << fileOf(largest + ' ') << verified(largest + ' ') << QByteArray("document-size");
    QTest::newRow("digest") << fileOf(document) << fileOf(wrong) << QByteArray("digest");
    QTest::newRow("digest and no XML") << fileOf("<msg") << fileOf(good) << QByteArray("digest");
    QTest::newRow("empty") << fileOf(QByteArray()) << verified(QByteArray()) << QByteArray("not-parsed");
    QTest::newRow("no XML") << fileOf("<msg") << verified("<msg") << QByteArray("not-parsed");
    QTest::newRow("no content") << fileOf("<msg/>") << verified("<msg/>") << QByteArray("not-parsed");
    const QByteArray otherRoot = "<other><content/></other>";
    QTest::newRow("another root") << fileOf(otherRoot) << verified(otherRoot) << QByteArray();
    const QByteArray deep = "<msg><content>" + nested(1000) + "</content></msg>";
    QTest::newRow("a thousand nested elements") << fileOf(deep) << verified(deep) << QByteArray("not-parsed");
    const QByteArray entity = "<!DOCTYPE msg [<!ENTITY e 'x'>]><msg><content>&e;</content></msg>";
    QTest::newRow("entity") << fileOf(entity) << verified(entity) << QByteArray("not-parsed");
}

void TstVerification::firstReasonInTheirOrderIsTold()
{
    QFETCH(FileBytes, content);
    QFETCH(FileBytes, verification);
    QFETCH(QByteArray, code);
    QCOMPARE(QByteArray(reasonCode(verifyCustomisation(content, verification))), code);
}

void TstVerification::commonSectionIsReadOnlyWhenAllHolds()
{
    CommonInfo common;
    common.cusTimeStamp = 77;
    common.funcomVal = 5;
    const QByteArray good = inspecting::verificationOf(document);
    QCOMPARE(verifyCustomisation(fileOf(document + ' '), fileOf(good), &common), Reason::Digest);
    QCOMPARE(common.cusTimeStamp, quint64(77));
    QCOMPARE(verifyCustomisation(fileOf(document), fileOf(good), &common), Reason::None);
    QCOMPARE(common.cusTimeStamp, quint64(12));
    // An element that is missing from the section reads as 0; a missing section leaves all alone.
    QCOMPARE(common.funcomVal, quint64(0));
    const QByteArray bare = "<msg><content/></msg>";
    QCOMPARE(verifyCustomisation(fileOf(bare), fileOf(inspecting::verificationOf(bare)), &common), Reason::None);
    QCOMPARE(common.cusTimeStamp, quint64(12));
}

void TstVerification::nothingIsLogged()
{
    installation::clear();
    verifyCustomisation(missing, missing);
    verifyCustomisation(fileOf(document), fileOf(QByteArray(256, 'x')));
    verifyCustomisation(fileOf(document), fileOf(inspecting::verificationOf(document)));
    QVERIFY(!installation::namesIn(installation::root()).contains(QStringLiteral("Log")));
}

TEST_ENTRY(verification, runGuilessTest<TstVerification>)
#include "tst_verification.moc"
