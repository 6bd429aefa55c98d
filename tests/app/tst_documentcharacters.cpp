#include "app/myapplication.h"
#include "app/widgets/DocumentCharacters.h"
#include "support/TestEntry.h"
#include "support/WindowPlay.h"

#include <QClipboard>
#include <QLineEdit>
#include <QXmlStreamReader>
#include <QtTest>

using windowplay::runTest;

class TstDocumentCharacters : public QObject
{
    Q_OBJECT

private slots:
    void everyCharacterThatIsKeptComesBackFromADocument();
    void textIsKeptAsFarAsADocumentHoldsIt_data();
    void textIsKeptAsFarAsADocumentHoldsIt();
    void pastedTextLosesItsControlCharacters();
    void cursorStaysBehindThePastedText();
    void passwordsAreNoException();
    void ordinaryTypingCanBeUndone();
};

void TstDocumentCharacters::everyCharacterThatIsKeptComesBackFromADocument()
{
    for (uint code = 1; code <= 0x10FFFF; code += code < 0x10000 ? 1 : 0xFFF) {
        if (QChar::isSurrogate(code))
            continue;
        const QString character = code < 0x10000 ? QString(QChar(code)) : QString::fromUcs4(&code, 1);
        const QString kept = documentCharacters(character);
        const bool isLineBreak = code == '\t' || code == '\n' || code == '\r';
        QVERIFY2(kept.isEmpty() || kept == (isLineBreak ? QStringLiteral(" ") : character),
                 qPrintable(QString::number(code, 16)));

        QXmlStreamReader reader(QStringLiteral("<a>x%1x</a>").arg(character.toHtmlEscaped()).toUtf8());
        reader.readNextStartElement();
        const QString read = reader.readElementText();
        const bool canBeRead = !reader.hasError() && read == QLatin1Char('x') + character + QLatin1Char('x');
        QVERIFY2(isLineBreak || kept.isEmpty() == !canBeRead, qPrintable(QString::number(code, 16)));
    }
}

void TstDocumentCharacters::textIsKeptAsFarAsADocumentHoldsIt_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("kept");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("words in two scripts")
        << QStringLiteral("Orvex \u5B9A\u5236 & <b>") << QStringLiteral("Orvex \u5B9A\u5236 & <b>");
    QTest::newRow("start of heading") << QStringLiteral("a\u0001b") << QStringLiteral("ab");
    QTest::newRow("escape sequence") << QStringLiteral("\u001B[1mbold") << QStringLiteral("[1mbold");
    QTest::newRow("null character") << QString(QChar(0)) + QLatin1Char('a') << QStringLiteral("a");
    QTest::newRow("lines") << QStringLiteral("a\nb\tc\rd") << QStringLiteral("a b c d");
    QTest::newRow("a whole line") << QStringLiteral(" 10.1.1.1 \r\n") << QStringLiteral(" 10.1.1.1 ");
    QTest::newRow("line breaks alone") << QStringLiteral("\n\n") << QString();
    QTest::newRow("outside the first plane")
        << QString::fromUtf8("\xF0\x9F\x8C\x90") << QString::fromUtf8("\xF0\x9F\x8C\x90");
    QTest::newRow("half a pair") << QString(QChar(0xD83C)) + QLatin1Char('a') + QChar(0xDF10) << QStringLiteral("a");
    QTest::newRow("no character") << QString(QChar(0xFFFE)) + QChar(0xFFFF) << QString();
}

void TstDocumentCharacters::textIsKeptAsFarAsADocumentHoldsIt()
{
    QFETCH(QString, text);
    QFETCH(QString, kept);
    QCOMPARE(documentCharacters(text), kept);
}

void TstDocumentCharacters::pastedTextLosesItsControlCharacters()
{
    QLineEdit edit;
    edit.show();
    QApplication::clipboard()->setText(QStringLiteral("Beijing\u0001 office\u0000"));
    edit.paste();
    QCOMPARE(edit.text(), QStringLiteral("Beijing office"));
}

void TstDocumentCharacters::cursorStaysBehindThePastedText()
{
    QLineEdit edit;
    edit.show();
    edit.setText(QStringLiteral("office"));
    edit.setCursorPosition(0);
    QApplication::clipboard()->setText(QStringLiteral("\u0001Bei\u0002jing "));
    edit.paste();
    QCOMPARE(edit.text(), QStringLiteral("Beijing office"));
    QCOMPARE(edit.cursorPosition(), 8);
    QApplication::clipboard()->setText(QStringLiteral("main\n"));
    edit.paste();
    QCOMPARE(edit.text(), QStringLiteral("Beijing main office"));
    QCOMPARE(edit.cursorPosition(), 13);
}

void TstDocumentCharacters::passwordsAreNoException()
{
    QLineEdit edit;
    edit.setEchoMode(QLineEdit::Password);
    edit.show();
    QApplication::clipboard()->setText(QStringLiteral("a password of more than 16 bytes\u0002"));
    edit.paste();
    QCOMPARE(edit.text(), QStringLiteral("a password of more than 16 bytes"));
}

void TstDocumentCharacters::ordinaryTypingCanBeUndone()
{
    QLineEdit edit;
    edit.show();
    QTest::keyClicks(&edit, QStringLiteral("office"));
    QCOMPARE(edit.text(), QStringLiteral("office"));
    edit.undo();
    QCOMPARE(edit.text(), QString());
}

TEST_ENTRY(documentcharacters, runTest<TstDocumentCharacters>)

#include "tst_documentcharacters.moc"
