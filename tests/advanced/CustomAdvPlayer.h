#pragma once

#include "advanced/CustomAdvProperty.h"
#include "app/language/LangText.h"
#include "support/ModalScript.h"
#include "support/WindowPlay.h"
#include "xml/CustomInfo.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QMessageBox>
#include <QPushButton>
#include <QStringList>
#include <QTabWidget>
#include <QTreeWidget>
#include <QtTest>

#include <functional>

/// Plays the advanced dialog and its small dialogs through their widgets.
namespace advplay {

using windowplay::bringToFront;
using windowplay::child;
using windowplay::click;
using windowplay::focusOf;
using windowplay::press;
using windowplay::type;
using windowplay::words;

/// Everything that a message box shows, in one line.
QString describe(const QMessageBox& box);
/// What describe() says of the plain warning with these texts; a null title key stands for an empty title.
QString warning(const char* titleKey, const char* textKey);
/// The defaults, with these components.
CustomInfo recordFor(quint64 procomVal, quint64 funcomVal = 0);
/// A record with all components and hardly a default in it, which OK stores back unchanged.
CustomInfo settledRecord();
/// The fields of the record that the dialog has changed, see differences().
QStringList changes(const CustomInfo& before, const CustomInfo& after);

/// The advanced dialog, open over a record of its own.
class OpenDialog
{
public:
    explicit OpenDialog(const CustomInfo& start);

    CustomInfo info; // the record, as the dialog has left it
    CustomAdvProperty dialog;
    ModalScript script;

    /// The next modal window is a small dialog, which the step plays to its end.
    template <class Window> void expect(std::function<void(Window&)> play) { script.expect<Window>(std::move(play)); }
    /// The next modal window is a small dialog, which is cancelled.
    template <class Window> void expectCancel()
    {
        script.expect<Window>([](Window& window) { press(window, QDialogButtonBox::Cancel); });
    }
    /// The next modal window is a message box, which is noted and answered by Ok.
    void expectBox();
    /// The boxes so far, as describe() says, and then everything that went otherwise than expected.
    QStringList shown() const;

    template <class Widget> Widget* widget(const char* name) const { return child<Widget>(dialog, name); }
    void clickOn(const char* button) { click(dialog, button); }
    void tick(const char* box, bool on = true) { windowplay::tick(dialog, box, on); }
    void typeInto(const char* edit, const QString& text) { type(dialog, edit, text); }
    void choose(const char* combo, int index);
    void selectRow(const char* tree, int row);
    void pressOk() { press(dialog, QDialogButtonBox::Ok); }
    void pressCancel() { press(dialog, QDialogButtonBox::Cancel); }

    bool isOpen() const { return dialog.isVisible(); }
    bool isOn(const char* box) const { return windowplay::isOn(dialog, box); }
    bool isEnabled(const char* name) const { return windowplay::isEnabled(dialog, name); }
    QString textOf(const char* edit) const { return windowplay::textOf(dialog, edit); }
    int indexOf(const char* combo) const { return windowplay::indexOf(dialog, combo); }
    QString choiceOf(const char* combo) const { return widget<QComboBox>(combo)->currentText(); }
    QStringList itemsOf(const char* combo) const { return windowplay::itemsOf(dialog, combo); }
    /// The rows of a table, the columns parted by "|".
    QStringList rowsOf(const char* tree) const;
    /// The names among these whose widgets are enabled.
    QStringList enabledOf(const QStringList& names) const { return windowplay::enabledOf(dialog, names); }
    /// The names among these whose boxes are ticked.
    QStringList tickedOf(const QStringList& names) const;
    /// The object names of the tabs, in their order.
    QStringList tabs() const;

private:
    QStringList m_boxes;
};

/// The test within the application object with the English texts.
template <class Test> int runTest(int argc, char** argv)
{
    return windowplay::runTest<Test, windowplay::useEnglish>(argc, argv);
}

} // namespace advplay
