#include "advanced/CustomAdvPlayer.h"
#include "support/TestEntry.h"

#include <QScreen>
#include <QStyle>

using advplay::recordFor;

namespace {

QSize s_available; // what a screen leaves to windows; invalid: as the platform has it

} // namespace

// Stands before the library's: the dialog is told of a screen of any size.
QSize QScreen::availableSize() const
{
    return s_available.isValid() ? s_available : availableGeometry().size();
}

class TstCustomAdvPropertyOpening : public QObject
{
    Q_OBJECT

private slots:
    void theFormHasItsHeightWhereATitleBarFits_data();
    void theFormHasItsHeightWhereATitleBarFits();
    void aNarrowScreenBoundsTheWidth();
};

namespace {

int titleBar()
{
    return QApplication::style()->pixelMetric(QStyle::PM_TitleBarHeight);
}

/// The size of the dialog, opened on such a screen.
QSize openedOn(const QSize& available)
{
    s_available = available;
    const windowplay::ApplicationFont font(6);
    CustomInfo record = recordFor(procom::portal);
    CustomAdvProperty dialog(nullptr);
    dialog.initalDialog(&record);
    dialog.show();
    return dialog.size();
}

} // namespace

void TstCustomAdvPropertyOpening::theFormHasItsHeightWhereATitleBarFits_data()
{
    QTest::addColumn<int>("available");
    QTest::addColumn<int>("height");
    QTest::newRow("wide screen") << 1200 << 991;
    QTest::newRow("1280 by 1024") << 1024 << 991;
    QTest::newRow("just as high") << 991 + titleBar() << 991;
    QTest::newRow("too low by one") << 990 + titleBar() << 990 - titleBar();
    QTest::newRow("low screen") << 768 << 768 - 2 * titleBar();
}

void TstCustomAdvPropertyOpening::theFormHasItsHeightWhereATitleBarFits()
{
    QFETCH(int, available);
    QFETCH(int, height);
    QCOMPARE(openedOn(QSize(1280, available)), QSize(726, height));
}

void TstCustomAdvPropertyOpening::aNarrowScreenBoundsTheWidth()
{
    QCOMPARE(openedOn(QSize(640, 1024)), QSize(640 - titleBar(), 991));
}

TEST_ENTRY(customadvproperty_opening, advplay::runTest<TstCustomAdvPropertyOpening>)

#include "tst_customadvproperty_opening.moc"
