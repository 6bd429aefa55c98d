#pragma once

#include "app/myapplication.h"
#include "xml/CustomInfo.h"
#include "xml/CustomInfoHolder.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QStringList>
#include <QTest>

#include <cstdio>
#include <cstdlib>

/// What the tests of all windows need. The functions that take a name play or read the named child of the window.
namespace windowplay {

/// The named child; the test ends at once when there is none.
template <class Widget> Widget* child(const QWidget& window, const char* name)
{
    Widget* const widget = window.findChild<Widget*>(QLatin1String(name));
    if (!widget)
        qFatal("no widget %s", name);
    return widget;
}

/// The name of the widget that has, or would have, the focus of the window.
QString focusOf(const QWidget& window);

/// Brings the tab of the widget to the front and scrolls to it.
void bringToFront(QWidget* widget);

/// A mouse click on the indicator of a check box or radio button, or on another button.
void click(QAbstractButton* button);
/// The same, with its tab in front.
void click(const QWidget& window, const char* button);
/// A mouse click on a button of the one button box.
void press(const QWidget& window, QDialogButtonBox::StandardButton button);
/// Clicks the box unless it is in that state already.
void tick(const QWidget& window, const char* box, bool ticked = true);
/// Adds the text by key strokes.
void typeText(QLineEdit* edit, const QString& text);
/// Replaces the text by key strokes, with the tab of the line edit in front.
void type(const QWidget& window, const char* edit, const QString& text);

QString textOf(const QWidget& window, const char* edit);
bool isOn(const QWidget& window, const char* button);
bool isEnabled(const QWidget& window, const char* name);
int indexOf(const QWidget& window, const char* combo);
QStringList itemsOf(const QWidget& window, const char* combo);
/// The names among these whose widgets are enabled, in the given order.
QStringList enabledOf(const QWidget& window, const QStringList& names);

/// What a message box showed.
struct ShownBox
{
    const QObject* parent = nullptr; // not to be looked into
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons = QMessageBox::NoButton;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    QString focus; // the focus of the window behind, while the box is open
};
/// Reads a box that is on screen, and the focus of the window behind it.
ShownBox shown(const QMessageBox& box, const QWidget* behind = nullptr);

/// One notch of the wheel over the middle of the widget, as the window system sends it; 120 is away from the user.
void turnWheel(QWidget* widget, int angle);

/// Words of test tables, one blank between two.
QStringList words(const char* text);

/// The program's texts in a language, "en" or "zh".
QString languageFile(const QString& code);
/// Fills the application's table with them.
void useLanguage(const QString& code);
void useEnglish();
/// Fills the application's table with the keys themselves as texts, so that no key can pass for another. Each stands
/// between the two marks.
void showKeysAsTexts(const char* before = "", const char* behind = "");

/// While it lives, the application's font has this size.
class ApplicationFont
{
public:
    explicit ApplicationFont(int pointSize) : m_before(QApplication::font())
    {
        QFont font = m_before;
        font.setPointSize(pointSize);
        QApplication::setFont(font);
    }
    ~ApplicationFont() { QApplication::setFont(m_before); }
    ApplicationFont(const ApplicationFont&) = delete;
    ApplicationFont& operator=(const ApplicationFont&) = delete;

private:
    QFont m_before;
};

/// While it lives, windows that come are not painted: for long plays that look at controls alone, half of whose time
/// painting would take.
class NoPainting : public QObject
{
public:
    NoPainting() { qApp->installEventFilter(this); }

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        QWidget* const window = event->type() == QEvent::Polish ? qobject_cast<QWidget*>(object) : nullptr;
        if (window && window->isWindow())
            window->setUpdatesEnabled(false);
        return false;
    }
};

/// The opener of a dialog, reduced to the record that it lends.
class RecordHolder : public QDialog, public CustomInfoHolder
{
    Q_OBJECT
    Q_INTERFACES(CustomInfoHolder)

public:
    CustomInfo* customInfo() override { return lends ? &info : nullptr; }

    CustomInfo info;
    bool lends = true;
};

inline void prepareNothing()
{
}

/// The test within the application object, still without texts.
///
/// @tparam prepare  runs once the application is there
template <class Test, void (*prepare)() = prepareNothing> int runTest(int argc, char** argv)
{
    CMyApplication application(argc, argv);
    if (application.m_bAlreadyRunning) {
        std::fprintf(stderr, "another process holds the instance lock\n");
        return EXIT_FAILURE;
    }
    prepare();
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace windowplay
