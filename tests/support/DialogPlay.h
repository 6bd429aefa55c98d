#pragma once

#include "app/myapplication.h"

#include <QDialogButtonBox>
#include <QObject>
#include <QStringList>
#include <QTest>

#include <cstdio>
#include <cstdlib>

class ModalScript;
class QDialog;

/// Plays small dialogs through their widgets. The button box of a dialog is called "buttonBox".
namespace dialogplay {

/// The named child; the test ends at once when there is none.
template <class Widget> Widget* child(const QWidget& window, const char* name)
{
    Widget* const widget = window.findChild<Widget*>(QLatin1String(name));
    if (!widget)
        qFatal("no widget %s", name);
    return widget;
}

/// A mouse click on the button of the button box.
void click(const QDialog& dialog, QDialogButtonBox::StandardButton button);
/// Replaces the text of the line edit by key strokes; ASCII only.
void type(const QDialog& dialog, const char* edit, const QString& text);
/// Clicks the check box unless it has this state already.
void tick(const QDialog& dialog, const char* box, bool ticked);

QString okText(const QDialog& dialog);
QString cancelText(const QDialog& dialog);
/// The name of the widget that has, or would have, the focus of the window.
QString focusOf(const QWidget& window);

/// Clicks OK, answers the one message box that follows by Ok, and tells what the box showed and how the dialog stands
/// behind it; compare this with refusal(). Call it from a step of the same script.
QStringList clickRefusedOk(ModalScript& script, const QDialog& dialog);
/// What clickRefusedOk() tells when a plain warning with the texts of these keys, as showKeysAsTexts() has set them,
/// has come and gone, and the dialog is still open with the focus on the named widget.
QStringList refusal(const char* titleKey, const char* textKey, const char* focus);

/// Counts the close events of the windows that it is installed on as an event filter.
class CloseEvents : public QObject
{
public:
    int count = 0;

    bool eventFilter(QObject* watched, QEvent* event) override;
};

/// Fills the application's table with the keys themselves as texts, so that no key can pass for another.
void showKeysAsTexts();

/// The body of main(): the application object, still without texts, then the tests.
template <class Test> int runTest(int argc, char** argv)
{
    CMyApplication application(argc, argv);
    if (application.m_bAlreadyRunning) {
        std::fprintf(stderr, "another process holds the instance lock\n");
        return EXIT_FAILURE;
    }
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace dialogplay
