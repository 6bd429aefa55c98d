#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

class ModalScript;
class QWidget;
struct CustomInfo;

/// The table of the sweep: every field of the record, with the widget that sets it, or with the reason why none does.
namespace sweep {

using Change = std::function<void(CustomInfo&)>;
using Changes = QVector<Change>;
/// Plays the open window; the windows that open from it are handed to the script.
using Step = std::function<void(QWidget& window, ModalScript& script)>;

constexpr qint64 baseStamp = 1600000000;
constexpr qint64 newStamp = 1700000000;
const char baseTime[] = "2020-09-13 20:26:40"; // in the zone of the tests, Asia/Shanghai
const char newTime[] = "2023-11-15 06:13:20";

/// The record from which every case starts: all components but valid contents, so that no check refuses it, and
/// stable, so that pressing OK everywhere changes nothing. Fields with more than two values are no defaults.
CustomInfo baseRecord();

/// The windows where fields are set.
enum class Place
{
    Page,     // the client page of the main window
    Advanced, // the advanced dialog
    Vpn,      // the dialog behind its VPN button
    Finish    // the dialog before the commit
};

/// A widget and the value that it shows: "on" or "off" of a button, the text of an edit, the position in a combo box,
/// the text of a cell.
struct Control
{
    enum Kind
    {
        Button,
        Edit,
        Combo,
        Cell
    };
    Kind kind = Button;
    const char* name = nullptr;
    QString value;
    int row = 0;
    int column = 0;
};

Control button(const char* name, bool on = true);
Control edit(const char* name, const QString& text);
Control combo(const char* name, int index);
Control cell(const char* tree, int row, int column, const QString& text);

/// Gives the widget the control's value by mouse and keys. The test fails when an administrator could not reach it.
void operate(QWidget& window, const Control& control);
QString shownBy(const QWidget& window, const Control& control);
/// Presses a button that may stand on another tab.
void pressIn(QWidget& window, const char* name);

struct Row
{
    QString field; // its path, as differences() names it
    Place place = Place::Advanced;
    Step set;
    Control shown;            // where the value can be seen afterwards
    bool isShownAlone = true; // false: the control looks the same before, for no window shows the value itself
    QString by;               // tells the rows of one field apart
    Changes base;             // what baseRecord() must hold besides
    Changes outcome;          // what becomes of the record
    QStringList along;        // the fields that change together with this one

    QString name() const { return by.isEmpty() ? field : field + QLatin1String(" by ") + by; }
};

/// A field that no widget sets.
struct FixedField
{
    QString field;
    const char* why;
    Changes base;    // gives it a telling value
    Changes outcome; // empty: the value survives
    bool isInDocument = true;
};

/// To be called once the language is loaded: some controls show its texts.
QVector<Row> rows();
QVector<FixedField> fixedFields();

} // namespace sweep
