#include "app/widgets/ReadablePalette.h"
#include "support/TestEntry.h"
#include "support/WindowPlay.h"

#include <QLineEdit>
#include <QStyle>

using windowplay::runTest;

class TstReadablePalette : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void applicationStartsReadable();
    void contrastIsThatOfTheStandard_data();
    void contrastIsThatOfTheStandard();
    void selectedTextBecomesReadable_data();
    void selectedTextBecomesReadable();
    void readableSelectionStays();
    void nothingElseOfThePaletteChanges();
    void aPaletteOfTheDesktopIsMended();
};

namespace {

QPalette paletteWith(const QColor& text, const QColor& selection)
{
    QPalette palette = QApplication::style()->standardPalette();
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        palette.setColor(group, QPalette::HighlightedText, text);
        palette.setColor(group, QPalette::Highlight, selection);
    }
    return palette;
}

} // namespace

void TstReadablePalette::cleanup()
{
    QApplication::setPalette(QApplication::style()->standardPalette());
}

// The first of all, since cleanup() sets a palette.
void TstReadablePalette::applicationStartsReadable()
{
    QCOMPARE(QApplication::style()->standardPalette().color(QPalette::HighlightedText), QColor(Qt::white));
    QCOMPARE(QApplication::palette().color(QPalette::HighlightedText), QColor(Qt::black));
}

// Published values: #767676 is the lightest grey that passes on white, #777777 the first that does not.
void TstReadablePalette::contrastIsThatOfTheStandard_data()
{
    QTest::addColumn<QColor>("one");
    QTest::addColumn<QColor>("other");
    QTest::addColumn<QString>("ratio");
    const auto row = [](const char* one, const char* other, const char* ratio) {
        QTest::addRow("%s and %s", one, other)
            << QColor(QLatin1String(one)) << QColor(QLatin1String(other)) << QString::fromLatin1(ratio);
    };
    row("#000000", "#ffffff", "21.00");
    row("#ffffff", "#000000", "21.00");
    row("#336699", "#336699", "1.00");
    row("#767676", "#ffffff", "4.54");
    row("#777777", "#ffffff", "4.48");
    row("#0000ff", "#ffffff", "8.59");
    row("#ff0000", "#ffffff", "4.00");
}

void TstReadablePalette::contrastIsThatOfTheStandard()
{
    QFETCH(QColor, one);
    QFETCH(QColor, other);
    QTEST(QString::number(contrast(one, other), 'f', 2), "ratio");
}

void TstReadablePalette::selectedTextBecomesReadable_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::addColumn<QColor>("text");
    QTest::newRow("the style's own") << QApplication::style()->standardPalette() << QColor(Qt::black);
    QTest::newRow("black on dark blue") << paletteWith(Qt::black, QColor(0, 60, 120)) << QColor(Qt::white);
    QTest::newRow("white on orange") << paletteWith(Qt::white, QColor(230, 126, 34)) << QColor(Qt::black);
    QTest::newRow("grey on grey") << paletteWith(QColor(118, 118, 118), QColor(119, 119, 119)) << QColor(Qt::black);
}

void TstReadablePalette::selectedTextBecomesReadable()
{
    QFETCH(QPalette, palette);
    QFETCH(QColor, text);
    const QPalette readable = withReadableSelection(palette);
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        QCOMPARE(readable.color(group, QPalette::HighlightedText), text);
        QVERIFY(contrast(text, readable.color(group, QPalette::Highlight)) >= leastContrast);
    }
}

void TstReadablePalette::readableSelectionStays()
{
    const QPalette palette = paletteWith(QColor(255, 255, 220), QColor(20, 70, 130));
    QVERIFY(withReadableSelection(palette) == palette);
}

void TstReadablePalette::nothingElseOfThePaletteChanges()
{
    const QPalette palette = QApplication::style()->standardPalette();
    QPalette readable = withReadableSelection(palette);
    QVERIFY(readable != palette);
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive})
        readable.setColor(group, QPalette::HighlightedText, palette.color(group, QPalette::HighlightedText));
    QVERIFY(readable == palette);
}

void TstReadablePalette::aPaletteOfTheDesktopIsMended()
{
    QLineEdit edit;
    QApplication::setPalette(paletteWith(Qt::black, QColor(0, 60, 120)));
    QCOMPARE(edit.palette().color(QPalette::HighlightedText), QColor(Qt::white));
    QCOMPARE(edit.palette().color(QPalette::Highlight), QColor(0, 60, 120));
    QApplication::setPalette(paletteWith(Qt::white, QColor(230, 126, 34)));
    QCOMPARE(edit.palette().color(QPalette::HighlightedText), QColor(Qt::black));
}

TEST_ENTRY(readablepalette, runTest<TstReadablePalette>)

#include "tst_readablepalette.moc"
