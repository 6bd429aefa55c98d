#include "advanced/CustomAdvProperty.h"
#include "mainwindow/MainWindowFixture.h"
#include "mainwindow/tst_sweep_rows.h"
#include "pack/CustomCompleteDlg.h"
#include "pack/FinishDlg.h"
#include "pack/PackingWait.h"
#include "support/DistinctRecord.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"
#include "vpn/QVPNAdvProperty.h"
#include "xml/CustomInfoLoad.h"

#include <QComboBox>
#include <QRegularExpression>

#include <memory>

using windowplay::click;

using namespace sweep;

namespace {

/// How the windows of a visit end.
using End = void (*)(QWidget& dialog, const char* buttonBox);

void nothing(QWidget&, ModalScript&)
{
}

/// Opens the window of this place, plays the step there and ends what is open.
QStringList visit(OrvexManager& window, Place place, const Step& step, End end)
{
    ModalScript script;
    const char* opener = "toolButton_adv";
    switch (place) {
    case Place::Page:
        step(window, script);
        return script.complaints();
    case Place::Advanced:
        script.expect<CustomAdvProperty>([&](CustomAdvProperty& dialog) {
            step(dialog, script);
            end(dialog, "buttonBox_adv");
        });
        break;
    case Place::Vpn:
        script.expect<CustomAdvProperty>([&](CustomAdvProperty& dialog) {
            script.expect<QVPNAdvProperty>([&](QVPNAdvProperty& vpn) {
                step(vpn, script);
                end(vpn, "buttonBox");
            });
            pressIn(dialog, "pushButton_Adv");
            end(dialog, "buttonBox_adv");
        });
        break;
    case Place::Finish:
        opener = "toolButton_finish";
        script.expect<FinishDlg>([&](FinishDlg& dialog) {
            step(dialog, script);
            end(dialog, "buttonBox");
        });
        if (end == pressOk) {
            script.expect<CustomCompleteDlg>([](CustomCompleteDlg& report) { click(report, "pushButton_exit"); });
            script.tolerate<PackingWait>();
        }
    }
    click(window, opener);
    return script.complaints();
}

CustomInfo load(qint64 stamp)
{
    const QString path = installation::path(QStringLiteral("UpdateCustom/%1/OrvexCustom.xml").arg(stamp));
    CustomInfo record;
    utl_LoadCustomInfo(path.toLocal8Bit().constData(), record);
    return record;
}

/// Takes the stored customisation of this time as the starting point.
void takeOver(const OrvexManager& window, const char* time)
{
    QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    combo->setCurrentIndex(combo->findText(QString::fromLatin1(time), Qt::MatchStartsWith));
}

CustomInfo changed(CustomInfo record, const Changes& changes)
{
    for (const Change& change : changes)
        change(record);
    return record;
}

/// A base customisation, stored and chosen in a fresh main window.
class Session
{
public:
    explicit Session(const Changes& changes)
    {
        prepareInstallation();
        const CustomInfo record = changed(baseRecord(), changes);
        storeCustomisation(installation::root(), record);
        if (!record.gui.macosDeskIconPath.isEmpty())
            installation::writeFile(record.gui.macosDeskIconPath, "an icon");
        base = load(baseStamp);
        m_window = std::make_unique<OrvexManager>(nullptr);
        m_window->show();
        takeOver(*m_window, baseTime);
    }

    CustomInfo base;        // as the document holds it
    CustomInfo stored;      // what the commit has stored
    QStringList complaints; // of all windows

    const OrvexManager& window() const { return *m_window; }

    /// Plays the step in its window, and Ok everywhere; commits and chooses what was stored.
    void set(Place place, const Step& step)
    {
        if (place == Place::Page)
            complaints += visit(*m_window, Place::Page, step, pressOk);
        complaints += visit(*m_window, place == Place::Vpn ? Place::Vpn : Place::Advanced,
                            place == Place::Vpn || place == Place::Advanced ? step : nothing, pressOk);
        commit(place == Place::Finish ? step : nothing);
        takeOver(*m_window, newTime);
    }

    /// Opens the window anew and cancels it.
    QString read(const Row& row)
    {
        QString value;
        complaints += visit(
            *m_window, row.place, [&](QWidget& window, ModalScript&) { value = shownBy(window, row.shown); },
            pressCancel);
        return value;
    }

private:
    void commit(const Step& step)
    {
        frozenTime = newStamp;
        complaints += visit(*m_window, Place::Finish, step, pressOk);
        stored = load(newStamp);
    }

    std::unique_ptr<OrvexManager> m_window;
};

const QStringList& alwaysChanging()
{
    static const QStringList names = {QStringLiteral("common/cusTimeStamp"), QStringLiteral("common/cusTimeString")};
    return names;
}

/// What a commit of the base makes of it, with the changes of a row.
CustomInfo expectedRecord(const CustomInfo& base, const Changes& changes)
{
    CustomInfo record = changed(base, changes);
    record.common.cusTimeStamp = newStamp;
    record.common.cusTimeString = QString::fromLatin1(newTime);
    return record;
}

/// One text, so that a failed comparison shows the names.
QString listed(QStringList names)
{
    names.sort();
    return names.join(QLatin1Char(' '));
}

QString differing(const CustomInfo& one, const CustomInfo& other)
{
    return listed(differences(one, other));
}

/// Each name once, whatever the rows of the lists.
QStringList plain(QStringList names)
{
    names.replaceInStrings(QRegularExpression(QStringLiteral("/\\d+/")), QStringLiteral("/*/"));
    names.removeDuplicates();
    return names;
}

QStringList without(QStringList names, const QStringList& others)
{
    for (const QString& other : others)
        names.removeAll(other);
    return names;
}

} // namespace

class TstSweep : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_noPainting.reset(new windowplay::NoPainting); }
    void cleanup() { frozenTime = 0; }
    void cleanupTestCase() { m_noPainting.reset(); }

    void okEverywhereAndFinishChangeNothing();
    void eachFieldComesThrough_data();
    void eachFieldComesThrough();
    void aFixedFieldIsSetByNoWindow_data();
    void aFixedFieldIsSetByNoWindow();
    void withoutItsTabTheZoaFlagSurvives();
    void theListOfIkeAlgorithmsHasNoEffect();
    void everyValueOfTheTableTells();
    void tableAndListNameEveryFieldOnce();

private:
    QScopedPointer<windowplay::NoPainting> m_noPainting;
};

void TstSweep::okEverywhereAndFinishChangeNothing()
{
    Session session({});
    QCOMPARE(differing(session.base, baseRecord()), QString());
    QCOMPARE(differing(session.window().record(), session.base), QString());
    session.set(Place::Vpn, nothing);
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(differing(session.stored, session.base), listed(alwaysChanging()));
    QCOMPARE(differing(session.stored, expectedRecord(session.base, {})), QString());
}

void TstSweep::eachFieldComesThrough_data()
{
    QTest::addColumn<int>("index");
    const QVector<Row> table = rows();
    for (int index = 0; index < table.size(); ++index)
        QTest::newRow(table.at(index).name().toUtf8().constData()) << index;
}

void TstSweep::eachFieldComesThrough()
{
    QFETCH(int, index);
    const Row row = rows().at(index);
    Session session(row.base);
    QString before;
    session.set(row.place, [&](QWidget& window, ModalScript& script) {
        before = shownBy(window, row.shown);
        row.set(window, script);
    });
    QCOMPARE(session.complaints, QStringList());

    const CustomInfo expected = expectedRecord(session.base, row.outcome);
    QCOMPARE(differing(session.stored, expected), QString());
    QCOMPARE(differing(session.stored, session.base), listed(alwaysChanging() + row.along << row.field));

    QCOMPARE(differing(session.window().record(), expected), QString());
    QCOMPARE(session.read(row), row.shown.value);
    QCOMPARE(before != row.shown.value, row.isShownAlone);
    QCOMPARE(session.complaints, QStringList());
}

void TstSweep::aFixedFieldIsSetByNoWindow_data()
{
    QTest::addColumn<int>("index");
    const QVector<FixedField> fields = fixedFields();
    for (int index = 0; index < fields.size(); ++index) {
        const QString name = fields.at(index).field + QLatin1String(": ") + QLatin1String(fields.at(index).why);
        QTest::newRow(name.toUtf8().constData()) << index;
    }
}

void TstSweep::aFixedFieldIsSetByNoWindow()
{
    QFETCH(int, index);
    const FixedField field = fixedFields().at(index);
    QVERIFY(differences(changed(baseRecord(), field.base), defaultsLike(baseRecord())).contains(field.field));
    Session session(field.base);
    QCOMPARE(differences(session.base, defaultsLike(session.base)).contains(field.field), field.isInDocument);
    session.set(Place::Vpn, nothing);
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(differing(session.stored, expectedRecord(session.base, field.outcome)), QString());
}

void TstSweep::withoutItsTabTheZoaFlagSurvives()
{
    const Change withoutZoa = [](CustomInfo& record) {
        record.common.procomVal = 31;
        record.common.funcomVal = 4;
        record.zoa.useZOA = 801;
    };
    Session session({withoutZoa});
    session.set(Place::Vpn, nothing);
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.stored.zoa.useZOA, quint64(801));
    QCOMPARE(differing(session.stored, expectedRecord(session.base, {})), QString());
}

void TstSweep::theListOfIkeAlgorithmsHasNoEffect()
{
    Session session({});
    QCOMPARE(session.base.vpn.ikecfg.IKEAuthAlgorithm, QStringLiteral("SHA"));
    QString shown;
    session.set(Place::Vpn, [&](QWidget& window, ModalScript&) {
        const Control md5 = combo("comboBox_IkeAuth", 0);
        operate(window, md5);
        shown = shownBy(window, md5);
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(shown, QStringLiteral("0"));
    QCOMPARE(differing(session.stored, expectedRecord(session.base, {})), QString());
}

void TstSweep::everyValueOfTheTableTells()
{
    for (const Row& row : rows()) {
        const CustomInfo base = changed(baseRecord(), row.base);
        const CustomInfo result = changed(base, row.outcome);
        QVERIFY2(differences(result, base).contains(row.field), qPrintable(row.name()));
        QVERIFY2(row.field.endsWith(QLatin1String(".size")) ||
                     differences(result, defaultsLike(result)).contains(row.field),
                 qPrintable(row.name()));
    }
}

void TstSweep::tableAndListNameEveryFieldOnce()
{
    // The catalogue's, the lengths of the lists and the slots.
    const CustomInfo distinct = distinctRecord();
    const QStringList all =
        plain(fieldPaths(distinct) + differences(distinct, CustomInfo()).filter(QStringLiteral(".size")));
    QVERIFY(all.size() > 100);
    QStringList settable;
    for (const Row& row : rows())
        settable.append(row.field);
    QStringList fixed;
    for (const FixedField& field : fixedFields())
        fixed.append(field.field);
    const QStringList inNeither = without(all, plain(settable + fixed));
    const QStringList inBoth = without(plain(fixed), without(plain(fixed), plain(settable)));
    QCOMPARE(listed(inNeither), QString());
    QCOMPARE(listed(inBoth), QString());
    QCOMPARE(listed(without(plain(settable + fixed), all)), QString());
}

TEST_ENTRY(sweep, playTest<TstSweep>)

#include "tst_sweep.moc"
