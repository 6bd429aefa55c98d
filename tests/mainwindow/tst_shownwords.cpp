#include "common/Version.h"
#include "mainwindow/MainWindowFixture.h"
#include "support/DistinctRecord.h"
#include "support/EveryWindow.h"
#include "support/TestEntry.h"
#include "view/AboutInfoDlg.h"

#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QRegularExpression>
#include <QTabBar>
#include <QTabWidget>
#include <QTextDocumentFragment>
#include <QTextEdit>
#include <QTreeWidget>

namespace {

// clang-format off
/// Words that come from no language file, and why they stand on the screen all the same.
const char* const ownWords[] = {
    // components in the summary of the history, the same in every language
    "802.1X", "Portal", "L2TP IPsec VPN", "WLAN", "SSLVPN", "ZOADirect", "ZOA", "KEF",
    // names of protocols and algorithms, which are the values of the record
    "Local", "AD", "LDAP", "RADIUS", "TLS1.2", "TLS1.0", "PAP", "CHAP",
    "Tunnel", "Transport", "ESP", "AH", "AH-ESP", "MD5", "SHA", "SHA256", "NULL", "DES", "3DES", "dh-group1", "dh-group2",
    "Main", "Aggressive", "ip", "name", "DES-CBC", "3DES-CBC", "Group1", "Group2",
};
// clang-format on

/// What is left of a text without the texts of the language table, which stand between the two marks.
QString withoutTableTexts(QString text)
{
    static const QRegularExpression marked(QStringLiteral("⟦[^⟦⟧]*⟧"));
    return text.remove(marked).trimmed();
}

/// Walks everything that a window shows or tells, and keeps what came neither from the language table nor from the
/// values of the record.
class Walk
{
public:
    Walk()
    {
        const CustomInfo record = distinctContents().record;
        for (const QString& path : fieldPaths(record))
            m_known.append(fieldValue(record, path));
        // What the domain dialog opens with.
        m_known += installation::texts({"staff.example", "Staff"});
        for (const char* word : ownWords)
            m_known.append(QString::fromLatin1(word));
        m_known.append(QString::fromLocal8Bit(utl_OrvexVerDisplay()));
        m_known.append(QString::fromLocal8Bit(utl_OrvexInterVerDisplay()));
    }

    void window(const QWidget& window)
    {
        m_place = QString::fromLatin1(window.metaObject()->className());
        see(window, "title", window.windowTitle());
        widget(window);
        for (const QWidget* child : window.findChildren<QWidget*>()) {
            // The arrows of a row of tabs are named by the toolkit.
            if (!qobject_cast<const QTabBar*>(child->parent()))
                widget(*child);
        }
        for (const QAction* action : window.findChildren<QAction*>()) {
            // Actions of line edits and text edits are the toolkit's.
            if (!action->parent()->inherits("QLineEdit"))
                for (const QString& text :
                     {action->text(), action->toolTip(), action->statusTip(), action->whatsThis()})
                    see(*action, "action", text);
        }
    }

    int texts() const { return m_texts; }
    QString strays() const { return m_strays.join(QLatin1Char('\n')); }

private:
    void see(const QObject& object, const char* what, const QString& text)
    {
        QString rest =
            withoutTableTexts(Qt::mightBeRichText(text) ? QTextDocumentFragment::fromHtml(text).toPlainText() : text);
        m_texts += text.contains(QStringLiteral("⟦")) ? 1 : 0;
        for (const QString& part : rest.split(QStringLiteral("  "), Qt::SkipEmptyParts)) {
            static const QRegularExpression letter(QStringLiteral("\\p{L}"));
            // The sign of the rights text is no letter.
            if (part.contains(letter) && !m_known.contains(part.trimmed()) && !isPath(part))
                m_strays.append(
                    QStringLiteral("%1, %2 %3: %4").arg(m_place, object.objectName(), QLatin1String(what), part));
        }
    }

    static bool isPath(const QString& text) { return text.startsWith(installation::root()); }

    void widget(const QWidget& shown)
    {
        see(shown, "tool tip", shown.toolTip());
        see(shown, "status tip", shown.statusTip());
        see(shown, "help", shown.whatsThis());
        see(shown, "name", shown.accessibleName());
        see(shown, "description", shown.accessibleDescription());
        if (const auto* label = qobject_cast<const QLabel*>(&shown))
            see(shown, "text", label->text());
        if (const auto* button = qobject_cast<const QAbstractButton*>(&shown))
            see(shown, "text", button->text());
        if (const auto* box = qobject_cast<const QGroupBox*>(&shown))
            see(shown, "title", box->title());
        if (const auto* edit = qobject_cast<const QLineEdit*>(&shown)) {
            see(shown, "value", edit->text());
            see(shown, "placeholder", edit->placeholderText());
        }
        if (const auto* edit = qobject_cast<const QTextEdit*>(&shown)) {
            see(shown, "value", edit->toPlainText());
            see(shown, "placeholder", edit->placeholderText());
        }
        if (const auto* combo = qobject_cast<const QComboBox*>(&shown)) {
            for (int i = 0; i < combo->count(); ++i)
                see(shown, "entry", combo->itemText(i));
        }
        if (const auto* tabs = qobject_cast<const QTabWidget*>(&shown)) {
            for (int i = 0; i < tabs->count(); ++i) {
                see(shown, "tab", tabs->tabText(i));
                see(shown, "tab's tip", tabs->tabToolTip(i));
            }
        }
        if (const auto* view = qobject_cast<const QAbstractItemView*>(&shown))
            items(*view);
    }

    void items(const QAbstractItemView& view)
    {
        const QAbstractItemModel* model = view.model();
        for (int column = 0; model && column < model->columnCount(); ++column) {
            if (qobject_cast<const QTreeWidget*>(&view))
                see(view, "head", model->headerData(column, Qt::Horizontal).toString());
            for (int row = 0; row < model->rowCount(); ++row) {
                for (int role : {Qt::DisplayRole, Qt::ToolTipRole, Qt::StatusTipRole, Qt::AccessibleTextRole})
                    see(view, "item", model->index(row, column).data(role).toString());
            }
        }
    }

    QStringList m_known;
    QStringList m_strays;
    QString m_place;
    int m_texts = 0;
};

} // namespace

// Whatever a window shows or tells comes from the language files or is a value.
class TstShownWords : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { g_ucAreaCode = 0; }

    void windowShowsTextsOfTheTable_data();
    void windowShowsTextsOfTheTable();
    void emptyHistoryShowsTextsOfTheTable();
    void aboutBoxShowsTextsOfTheTableInBothBrands();
    void aTextOfTheSourcesIsFound();
};

void TstShownWords::init()
{
    prepareInstallation();
    windowplay::showKeysAsTexts("⟦", "⟧");
    // The main window reads the file of its language anew.
    const QByteArray marked = installation::readFile(installation::path(QStringLiteral("keys.xml")));
    for (const char* name : {"Resources/Language_en.xml", "Resources/Language_zh.xml"})
        installation::writeFile(installation::path(QLatin1String(name)), marked);
}

void TstShownWords::windowShowsTextsOfTheTable_data()
{
    QTest::addColumn<QString>("window");
    for (const ProgramWindow& each : everyWindow())
        QTest::newRow(each.name) << QString::fromLatin1(each.name);
}

void TstShownWords::windowShowsTextsOfTheTable()
{
    QFETCH(QString, window);
    Contents contents = distinctContents();
    const std::shared_ptr<QWidget> shown = openWindow(window, contents);
    Walk walk;
    walk.window(*shown);
    QVERIFY2(walk.strays().isEmpty(), qPrintable(walk.strays()));
    QVERIFY(walk.texts() > 1);
}

void TstShownWords::emptyHistoryShowsTextsOfTheTable()
{
    Contents contents = distinctContents();
    const std::shared_ptr<QWidget> shown = openWindow(QStringLiteral("main"), contents);
    const QTreeWidget* history = child<QTreeWidget>(*shown, "treeWidget_cusHis");
    QCOMPARE(history->topLevelItemCount(), 0);
    QCOMPARE(history->accessibleDescription(), QStringLiteral("⟦CusListEmpty⟧"));
    Walk walk;
    walk.window(*shown);
    QVERIFY2(walk.strays().isEmpty(), qPrintable(walk.strays()));
}

void TstShownWords::aboutBoxShowsTextsOfTheTableInBothBrands()
{
    for (unsigned char brand : {0, 1}) {
        g_ucAreaCode = brand;
        AboutInfoDlg about(nullptr);
        Walk walk;
        walk.window(about);
        QTest::keyClick(&about, Qt::Key_I, Qt::ControlModifier);
        walk.window(about);
        QVERIFY2(walk.strays().isEmpty(), qPrintable(walk.strays()));
    }
}

void TstShownWords::aTextOfTheSourcesIsFound()
{
    QWidget window;
    QLabel label(QStringLiteral("⟦key⟧ and more"), &window);
    label.setToolTip(QStringLiteral("a tip"));
    Walk walk;
    walk.window(window);
    QCOMPARE(walk.strays(), QStringLiteral("QWidget,  tool tip: a tip\nQWidget,  text: and more"));
}

TEST_ENTRY(shownwords, playTest<TstShownWords>)

#include "tst_shownwords.moc"
