#include "screenshots/Complaints.h"
#include "support/TestEntry.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <QStyle>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>

/// Windows built wrong on purpose, one fault each, and the same windows without it.
class TstComplaints : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void goodWindowGetsNone();
    void windowWithoutItsTitle();
    void windowThatIsNotDrawn();
    void textThatIsMissing();
    void textThatIsWiderThanItsWidget();
    void wrappedTextThatIsHigherThanItsWidget();
    void buttonThatIsTooNarrow();
    void tabThatIsTooNarrow();
    void textThatReachesOutOfItsParent();
    void textThatIsHiddenAltogether();
    void lineEditThatCutsOff();
    void cellThatEndsInDots();
    void cellThatEndsInDotsThoughThereIsRoom();
    void headerThatEndsInDots();
    void whatScrollsIsNotClipped();
    void areaThatScrollsSidewaysThoughThereIsRoom();
    void widgetsThatOverlap();
    void contrastOnTheGroundOfTheWindow_data();
    void contrastOnTheGroundOfTheWindow();
    void contrastOnAStyleSheet();
    void contrastOfATranslucentText();
    void contrastOfAPlaceholder();
    void contrastOfSelectedCells();
    void contrastOfASelectionInALineEdit();
    void disabledTextsAreExempt();
    void disabledEntriesAreExempt();
    void underlineOfAMnemonicIsNoGround();
    void hiddenPagesDoNotCount();

private:
    /// What is said of the window, which is laid out first.
    QStringList complaints();
    /// A child of that name at a fixed place.
    template <class Widget> Widget* place(const char* name, const QRect& where, QWidget* parent = nullptr)
    {
        auto* widget = new Widget(parent ? parent : m_window);
        widget->setObjectName(QLatin1String(name));
        widget->setGeometry(where);
        return widget;
    }
    QLabel* label(const QString& text, const QRect& where);

    QWidget* m_window = nullptr;
};

void TstComplaints::init()
{
    m_window = new QWidget;
    m_window->setObjectName(QStringLiteral("window"));
    m_window->setWindowTitle(QStringLiteral("Window"));
    m_window->resize(400, 300);
    auto* corner = place<QLabel>("corner", {10, 270, 200, 24});
    corner->setText(QStringLiteral("a text that is exempt"));
    corner->setEnabled(false);
}

void TstComplaints::cleanup()
{
    delete m_window;
    QApplication::setPalette(QApplication::style()->standardPalette());
}

QStringList TstComplaints::complaints()
{
    m_window->show();
    QApplication::processEvents();
    return complaintsAbout(*m_window);
}

QLabel* TstComplaints::label(const QString& text, const QRect& where)
{
    auto* shown = place<QLabel>("label", where);
    shown->setText(text);
    return shown;
}

void TstComplaints::goodWindowGetsNone()
{
    label(QStringLiteral("Server address"), {10, 10, 200, 24});
    place<QLineEdit>("edit", {10, 40, 200, 26})->setText(QStringLiteral("192.0.2.1"));
    place<QPushButton>("button", {10, 80, 100, 26})->setText(QStringLiteral("&OK"));
    place<QCheckBox>("box", {10, 110, 200, 26})->setText(QStringLiteral("Enabled"));
    place<QGroupBox>("group", {10, 140, 200, 60})->setTitle(QStringLiteral("Group"));
    QCOMPARE(complaints(), QStringList());
}

void TstComplaints::windowWithoutItsTitle()
{
    m_window->setWindowTitle(QStringLiteral("NULL"));
    QCOMPARE(complaints(), QStringList{QStringLiteral("window \"\" has no title")});
}

void TstComplaints::windowThatIsNotDrawn()
{
    QCOMPARE(complaints(), QStringList());
    m_window->setUpdatesEnabled(false);
    QCOMPARE(complaints(), QStringList{QStringLiteral("window \"\" shows no text")});
}

void TstComplaints::textThatIsMissing()
{
    label(QStringLiteral("NULL"), {10, 10, 200, 24});
    QCOMPARE(complaints(), QStringList{QStringLiteral("label \"NULL\" has no text")});
}

void TstComplaints::textThatIsWiderThanItsWidget()
{
    QLabel* shown = label(QStringLiteral("Server address"), {10, 10, 50, 24});
    QCOMPARE(complaints(), QStringList{QStringLiteral("label \"Server address\" is clipped")});
    shown->resize(shown->sizeHint());
    QCOMPARE(complaints(), QStringList());
}

void TstComplaints::wrappedTextThatIsHigherThanItsWidget()
{
    QLabel* shown = label(QStringLiteral("The name of the server takes two lines here"), {10, 10, 150, 18});
    shown->setWordWrap(true);
    QVERIFY(complaints().contains(QStringLiteral("label \"%1\" is clipped").arg(shown->text())));
    shown->resize(150, shown->heightForWidth(150));
    QCOMPARE(complaints(), QStringList());
}

void TstComplaints::buttonThatIsTooNarrow()
{
    auto* button = place<QPushButton>("button", {10, 10, 40, 26});
    button->setText(QStringLiteral("Delete all"));
    QCOMPARE(complaints(), QStringList{QStringLiteral("button \"Delete all\" is clipped")});
    button->resize(button->sizeHint());
    QCOMPARE(complaints(), QStringList());
}

void TstComplaints::tabThatIsTooNarrow()
{
    auto* tabs = place<QTabWidget>("tabs", {10, 10, 300, 100});
    tabs->addTab(new QWidget, QStringLiteral("General options"));
    QCOMPARE(complaints(), QStringList());
    tabs->setUsesScrollButtons(false);
    tabs->resize(60, 100);
    QCOMPARE(complaints(), QStringList{QStringLiteral("tabs \"General options\" is clipped")});
}

void TstComplaints::textThatReachesOutOfItsParent()
{
    auto* area = place<QWidget>("area", {10, 10, 60, 30});
    auto* inside = place<QLabel>("inside", {0, 0, 200, 24}, area);
    inside->setText(QStringLiteral("Server address"));
    QCOMPARE(complaints(), QStringList{QStringLiteral("inside \"Server address\" reaches out of what is around it")});
    area->resize(200, 30);
    QCOMPARE(complaints(), QStringList());
}

void TstComplaints::textThatIsHiddenAltogether()
{
    label(QStringLiteral("Server"), {500, 10, 100, 24});
    QCOMPARE(complaints(), QStringList{QStringLiteral("label \"Server\" is out of sight")});
    m_window->resize(600, 300);
    QCOMPARE(complaints(), QStringList());
}

void TstComplaints::lineEditThatCutsOff()
{
    auto* edit = place<QLineEdit>("edit", {10, 10, 60, 26});
    edit->setText(QStringLiteral("gateway.branch.example"));
    edit->setCursorPosition(0);
    QCOMPARE(complaints(), QStringList{QStringLiteral("edit \"gateway.branch.example\" is clipped")});
    edit->setToolTip(edit->text());
    QCOMPARE(complaints(), QStringList());
}

void TstComplaints::cellThatEndsInDots()
{
    auto* table = place<QTreeWidget>("table", {10, 10, 100, 80});
    table->setHeaderLabels({QStringLiteral("Name")});
    auto* row = new QTreeWidgetItem(table, {QStringLiteral("gateway.branch.example")});
    QCOMPARE(complaints().size(), 1);
    QVERIFY(complaints().first().startsWith(QLatin1String("table \"")));
    QVERIFY(complaints().first().endsWith(QLatin1String("ends in dots and has no tool tip")));
    row->setToolTip(0, row->text(0));
    QCOMPARE(complaints(), QStringList());
    row->setToolTip(0, QStringLiteral("another text"));
    QCOMPARE(complaints().size(), 1);
}

void TstComplaints::cellThatEndsInDotsThoughThereIsRoom()
{
    auto* table = place<QTreeWidget>("table", {10, 10, 300, 80});
    table->setHeaderLabels({QStringLiteral("Name")});
    table->header()->setStretchLastSection(false);
    table->setColumnWidth(0, 80);
    auto* row = new QTreeWidgetItem(table, {QStringLiteral("gateway.branch.example")});
    row->setToolTip(0, row->text(0));
    QCOMPARE(complaints().size(), 1);
    QVERIFY(complaints().first().endsWith(QLatin1String("ends in dots though there is room")));
    table->setColumnWidth(0, 250);
    QCOMPARE(complaints(), QStringList());
}

void TstComplaints::headerThatEndsInDots()
{
    auto* table = place<QTreeWidget>("table", {10, 10, 60, 80});
    table->header()->setTextElideMode(Qt::ElideRight);
    table->setHeaderLabels({QStringLiteral("Additional information")});
    QCOMPARE(complaints().size(), 1);
    QVERIFY(complaints().first().endsWith(QLatin1String("ends in dots and has no tool tip")));
    table->headerItem()->setToolTip(0, table->headerItem()->text(0));
    QCOMPARE(complaints(), QStringList());
}

void TstComplaints::whatScrollsIsNotClipped()
{
    auto* area = place<QScrollArea>("area", {10, 10, 200, 60});
    auto* inside = new QLabel(QStringLiteral("one\ntwo\nthree\nfour\nfive\nsix\nseven"));
    inside->setObjectName(QStringLiteral("inside"));
    area->setWidget(inside);
    QCOMPARE(complaints(), QStringList());
    auto* list = place<QListWidget>("list", {10, 100, 200, 50});
    list->addItems({QStringLiteral("one"), QStringLiteral("two"), QStringLiteral("three"), QStringLiteral("four"),
                    QStringLiteral("five")});
    QCOMPARE(complaints(), QStringList());
}

void TstComplaints::areaThatScrollsSidewaysThoughThereIsRoom()
{
    auto* area = place<QScrollArea>("area", {10, 10, 100, 60});
    auto* inside = new QLabel(QStringLiteral("a text that is wider than the area"));
    area->setWidget(inside);
    QCOMPARE(complaints(), QStringList{QStringLiteral("area \"\" scrolls sideways")});
    area->resize(inside->sizeHint().width() + 10, 60);
    QCOMPARE(complaints(), QStringList());
}

void TstComplaints::widgetsThatOverlap()
{
    auto* first = place<QLineEdit>("first", {10, 10, 100, 30});
    auto* second = place<QLineEdit>("second", {10, 35, 100, 30});
    const QStringList found = complaints();
    QCOMPARE(found.size(), 1);
    QVERIFY(found.first() == QLatin1String("first \"\" overlaps second") ||
            found.first() == QLatin1String("second \"\" overlaps first"));
    second->move(10, first->geometry().bottom() + 1);
    QCOMPARE(complaints(), QStringList());
}

// The greys on white on either side of the limit.
void TstComplaints::contrastOnTheGroundOfTheWindow_data()
{
    QTest::addColumn<QColor>("text");
    QTest::addColumn<QColor>("ground");
    QTest::addColumn<QStringList>("found");
    const QStringList none;
    QTest::newRow("enough on white") << QColor(0x76, 0x76, 0x76) << QColor(Qt::white) << none;
    QTest::newRow("too little on white") << QColor(0x77, 0x77, 0x77) << QColor(Qt::white)
                                         << QStringList{QStringLiteral("label \"Server\" has a contrast of 4.48")};
    QTest::newRow("enough on black") << QColor(0x75, 0x75, 0x75) << QColor(Qt::black) << none;
    QTest::newRow("too little on black") << QColor(0x74, 0x74, 0x74) << QColor(Qt::black)
                                         << QStringList{QStringLiteral("label \"Server\" has a contrast of 4.49")};
    QTest::newRow("white on white") << QColor(Qt::white) << QColor(Qt::white)
                                    << QStringList{QStringLiteral("label \"Server\" has a contrast of 1.00")};
}

void TstComplaints::contrastOnTheGroundOfTheWindow()
{
    QFETCH(QColor, text);
    QFETCH(QColor, ground);
    QPalette palette = m_window->palette();
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Window, ground);
    m_window->setPalette(palette);
    label(QStringLiteral("Server"), {10, 10, 100, 24});
    QTEST(complaints(), "found");
}

void TstComplaints::contrastOnAStyleSheet()
{
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::WindowText, Qt::white);
    palette.setColor(QPalette::Window, Qt::black);
    QApplication::setPalette(palette);
    auto* box = place<QCheckBox>("box", {10, 10, 200, 26});
    box->setText(QStringLiteral("Enabled"));
    QCOMPARE(complaints(), QStringList());
    box->setStyleSheet(QStringLiteral("background-color: rgb(255, 255, 255);"));
    QCOMPARE(complaints(), QStringList{QStringLiteral("box \"Enabled\" has a contrast of 1.00")});
    box->setStyleSheet(QStringLiteral("background-color: rgb(255, 255, 255); color: rgb(0, 0, 0);"));
    QCOMPARE(complaints(), QStringList());
}

void TstComplaints::contrastOfATranslucentText()
{
    QPalette palette = m_window->palette();
    palette.setColor(QPalette::Window, Qt::white);
    palette.setColor(QPalette::WindowText, QColor(0, 0, 0, 128)); // as #7f7f7f
    m_window->setPalette(palette);
    label(QStringLiteral("Server"), {10, 10, 100, 24});
    QCOMPARE(complaints(), QStringList{QStringLiteral("label \"Server\" has a contrast of 4.00")});
}

void TstComplaints::contrastOfAPlaceholder()
{
    auto* edit = place<QLineEdit>("edit", {10, 10, 200, 26});
    QPalette palette = edit->palette();
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::PlaceholderText, QColor(0x77, 0x77, 0x77));
    edit->setPalette(palette);
    edit->setPlaceholderText(QStringLiteral("Address"));
    QCOMPARE(complaints(), QStringList{QStringLiteral("edit \"Address\" has a contrast of 4.48")});
}

void TstComplaints::contrastOfSelectedCells()
{
    auto* list = place<QListWidget>("list", {10, 10, 200, 100});
    QPalette palette = list->palette();
    palette.setColor(QPalette::Highlight, QColor(0xff, 0, 0));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    list->setPalette(palette);
    list->addItems({QStringLiteral("chosen"), QStringLiteral("other")});
    QCOMPARE(complaints(), QStringList());
    list->setCurrentRow(0);
    QCOMPARE(complaints().size(), 1); // the style shades the selection
    QVERIFY(complaints().first().startsWith(QLatin1String("list \"chosen\" has a contrast of ")));
}

void TstComplaints::contrastOfASelectionInALineEdit()
{
    auto* edit = place<QLineEdit>("edit", {10, 10, 200, 26});
    QPalette palette = edit->palette();
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::Highlight, Qt::black);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    edit->setPalette(palette);
    edit->setText(QStringLiteral("half of this"));
    edit->setSelection(0, 7);
    QCOMPARE(complaints(), QStringList());
    palette.setColor(QPalette::HighlightedText, QColor(0x74, 0x74, 0x74));
    edit->setPalette(palette);
    QCOMPARE(complaints(), QStringList{QStringLiteral("edit \"half of this\" has a contrast of 4.49")});
}

void TstComplaints::disabledTextsAreExempt()
{
    QLabel* shown = label(QStringLiteral("Server"), {10, 10, 100, 24});
    QPalette palette = shown->palette();
    palette.setColor(QPalette::WindowText, palette.color(QPalette::Window));
    shown->setPalette(palette);
    QCOMPARE(complaints().size(), 1);
    shown->setEnabled(false);
    QCOMPARE(complaints(), QStringList());
}

void TstComplaints::disabledEntriesAreExempt()
{
    auto* list = place<QListWidget>("list", {10, 10, 200, 60});
    list->addItem(QStringLiteral("entry"));
    list->item(0)->setForeground(list->palette().base());
    auto* tabs = place<QTabWidget>("tabs", {10, 80, 300, 100});
    tabs->addTab(new QWidget, QStringLiteral("first"));
    tabs->addTab(new QWidget, QStringLiteral("second"));
    tabs->tabBar()->setTabTextColor(1, tabs->palette().color(QPalette::Window));
    QCOMPARE(complaints().size(), 2);
    list->item(0)->setFlags(Qt::NoItemFlags);
    tabs->setTabEnabled(1, false);
    QCOMPARE(complaints(), QStringList());

    QMenu menu;
    QPalette palette = menu.palette();
    palette.setColor(QPalette::Disabled, QPalette::Text, palette.color(QPalette::Base));
    palette.setColor(QPalette::Disabled, QPalette::WindowText, palette.color(QPalette::Base));
    menu.setPalette(palette);
    menu.addAction(QStringLiteral("action"))->setEnabled(false);
    menu.popup(QPoint());
    QCOMPARE(complaintsAbout(menu), QStringList());
}

void TstComplaints::underlineOfAMnemonicIsNoGround()
{
    place<QPushButton>("button", {10, 10, 100, 26})->setText(QStringLiteral("&I"));
    QCOMPARE(complaints(), QStringList());
}

void TstComplaints::hiddenPagesDoNotCount()
{
    auto* pages = place<QStackedWidget>("pages", {10, 10, 300, 200});
    for (const char* text : {"page", "NULL"}) {
        auto* page = new QWidget;
        auto* shown = place<QLabel>("label", {0, 0, 10, 24}, page);
        shown->setText(QLatin1String(text));
        pages->addWidget(page);
    }
    QCOMPARE(complaints(), QStringList{QStringLiteral("label \"page\" is clipped")});
    pages->setCurrentIndex(1);
    QVERIFY(complaints().contains(QStringLiteral("label \"NULL\" has no text")));
    QVERIFY(!complaints().contains(QStringLiteral("label \"page\" is clipped")));
}

TEST_ENTRY(complaints, runWindowTest<TstComplaints>)

#include "tst_complaints.moc"
