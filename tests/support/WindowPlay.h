#pragma once

#include "app/myapplication.h"
#include "xml/CustomInfo.h"
#include "xml/CustomInfoHolder.h"

#include <QApplication>
#include <QDialog>
#include <QStringList>
#include <QTest>

#include <cstdio>
#include <cstdlib>

/// What the tests of all windows need.
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
