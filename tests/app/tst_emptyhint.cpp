#include "app/widgets/EmptyHint.h"
#include "support/TestEntry.h"

#include <QPixmap>
#include <QTest>
#include <QTreeWidget>

class TstEmptyHint : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void emptyViewShowsTheHint();
    void hintHasTheFontOfTheWidgetAround();
    void hintIsNoRow();
    void hintGoesWithTheFirstRow();
    void hintComesBackWithTheLastRow();
    void aLaterHintTakesItsPlace();
    void hintIsTheDescriptionOfTheEmptyView();

private:
    /// Whether the view shows the same as one without rows and hint.
    bool isBlank() const;
    QImage shown(QTreeWidget& tree) const;

    QTreeWidget* m_tree = nullptr;
};

void TstEmptyHint::init()
{
    m_tree = new QTreeWidget(new QWidget);
    m_tree->resize(300, 200);
    setEmptyHint(*m_tree, QStringLiteral("Rows will stand here"));
}

void TstEmptyHint::cleanup()
{
    delete m_tree->parentWidget();
}

QImage TstEmptyHint::shown(QTreeWidget& tree) const
{
    return tree.viewport()->grab().toImage();
}

bool TstEmptyHint::isBlank() const
{
    QTreeWidget plain;
    plain.resize(m_tree->size());
    return shown(*m_tree) == shown(plain);
}

void TstEmptyHint::emptyViewShowsTheHint()
{
    QVERIFY(!isBlank());
}

void TstEmptyHint::hintHasTheFontOfTheWidgetAround()
{
    m_tree->setHeaderHidden(true); // its height follows the font of the view
    const QImage before = shown(*m_tree);
    QFont font = m_tree->font();
    font.setPointSize(6);
    m_tree->setFont(font);
    QCOMPARE(shown(*m_tree), before);
}

void TstEmptyHint::hintIsNoRow()
{
    QCOMPARE(m_tree->topLevelItemCount(), 0);
    QCOMPARE(m_tree->model()->rowCount(), 0);
    QVERIFY(!m_tree->itemAt(m_tree->viewport()->rect().center()));
}

void TstEmptyHint::hintGoesWithTheFirstRow()
{
    QTreeWidget plain;
    plain.resize(m_tree->size());
    for (QTreeWidget* tree : {m_tree, &plain})
        new QTreeWidgetItem(tree, {QStringLiteral("row")});
    QCOMPARE(shown(*m_tree), shown(plain));
}

void TstEmptyHint::hintComesBackWithTheLastRow()
{
    const QImage before = shown(*m_tree);
    new QTreeWidgetItem(m_tree, {QStringLiteral("row")});
    m_tree->clear();
    QCOMPARE(shown(*m_tree), before);
}

void TstEmptyHint::aLaterHintTakesItsPlace()
{
    const QImage before = shown(*m_tree);
    setEmptyHint(*m_tree, QStringLiteral("Another"));
    QVERIFY(shown(*m_tree) != before);
    setEmptyHint(*m_tree, QString());
    QVERIFY(isBlank());
}

void TstEmptyHint::hintIsTheDescriptionOfTheEmptyView()
{
    QCOMPARE(m_tree->accessibleDescription(), QStringLiteral("Rows will stand here"));
    auto* row = new QTreeWidgetItem(m_tree, {QStringLiteral("row")});
    QCOMPARE(m_tree->accessibleDescription(), QString());
    setEmptyHint(*m_tree, QStringLiteral("Another"));
    QCOMPARE(m_tree->accessibleDescription(), QString());
    delete row;
    QCOMPARE(m_tree->accessibleDescription(), QStringLiteral("Another"));
    new QTreeWidgetItem(m_tree, {QStringLiteral("row")});
    m_tree->clear();
    QCOMPARE(m_tree->accessibleDescription(), QStringLiteral("Another"));
}

TEST_ENTRY(emptyhint, runWindowTest<TstEmptyHint>)

#include "tst_emptyhint.moc"
