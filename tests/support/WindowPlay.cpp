#include "support/WindowPlay.h"

#include "support/Installation.h"

#include <QApplication>
#include <QComboBox>
#include <QPushButton>
#include <QScrollArea>
#include <QTabWidget>
#include <QWheelEvent>

namespace windowplay {

QString focusOf(const QWidget& window)
{
    const QWidget* const focus = window.focusWidget();
    return focus ? focus->objectName() : QString();
}

void bringToFront(QWidget* widget)
{
    QScrollArea* area = nullptr;
    for (QWidget* above = widget; above && !above->isWindow(); above = above->parentWidget()) {
        if (QTabWidget* tabs = qobject_cast<QTabWidget*>(above->parentWidget())) {
            for (int index = 0; index < tabs->count(); ++index) {
                if (tabs->widget(index)->isAncestorOf(widget))
                    tabs->setCurrentIndex(index);
            }
        }
        if (!area)
            area = qobject_cast<QScrollArea*>(above->parentWidget());
    }
    if (area) {
        // A page that has just come to the front is not laid out before.
        QCoreApplication::processEvents();
        area->ensureWidgetVisible(widget);
    }
}

void click(QAbstractButton* button)
{
    QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(8, button->height() / 2));
}

void click(const QWidget& window, const char* name)
{
    QAbstractButton* const button = child<QAbstractButton>(window, name);
    bringToFront(button);
    click(button);
}

void press(const QWidget& window, QDialogButtonBox::StandardButton button)
{
    const QDialogButtonBox* const box = window.findChild<QDialogButtonBox*>();
    QPushButton* const found = box ? box->button(button) : nullptr;
    if (!found)
        qFatal("no button %x in a button box", unsigned(button));
    QTest::mouseClick(found, Qt::LeftButton);
}

void tick(const QWidget& window, const char* box, bool ticked)
{
    if (isOn(window, box) != ticked)
        click(window, box);
}

void typeText(QLineEdit* edit, const QString& text)
{
    for (const QChar& character : text)
        QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, QString(character), Qt::NoModifier);
}

void type(const QWidget& window, const char* name, const QString& text)
{
    QLineEdit* const edit = child<QLineEdit>(window, name);
    bringToFront(edit);
    edit->setFocus();
    QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(edit, Qt::Key_Delete);
    typeText(edit, text);
}

QString textOf(const QWidget& window, const char* edit)
{
    return child<QLineEdit>(window, edit)->text();
}

bool isOn(const QWidget& window, const char* button)
{
    return child<QAbstractButton>(window, button)->isChecked();
}

bool isEnabled(const QWidget& window, const char* name)
{
    return child<QWidget>(window, name)->isEnabled();
}

int indexOf(const QWidget& window, const char* combo)
{
    return child<QComboBox>(window, combo)->currentIndex();
}

QStringList itemsOf(const QWidget& window, const char* name)
{
    const QComboBox* const combo = child<QComboBox>(window, name);
    QStringList items;
    for (int index = 0; index < combo->count(); ++index)
        items.append(combo->itemText(index));
    return items;
}

QStringList enabledOf(const QWidget& window, const QStringList& names)
{
    QStringList enabled;
    for (const QString& name : names) {
        if (isEnabled(window, name.toLatin1().constData()))
            enabled.append(name);
    }
    return enabled;
}

ShownBox shown(const QMessageBox& box, const QWidget* behind)
{
    return {box.parent(),
            box.windowTitle(),
            box.text(),
            box.icon(),
            box.standardButtons(),
            box.standardButton(box.defaultButton()),
            behind ? focusOf(*behind) : QString()};
}

void turnWheel(QWidget* widget, int angle)
{
    const QPoint middle = widget->rect().center();
    QWheelEvent event(middle, widget->mapToGlobal(middle), QPoint(), QPoint(0, angle), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(widget, &event);
}

QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QString languageFile(const QString& code)
{
    return QStringLiteral(ORVEX_SOURCE_DIR "/Resources/Language_%1.xml").arg(code);
}

void useLanguage(const QString& code)
{
    CMyApplication::current()->m_LanguageParser.LoadLanguage(languageFile(code));
}

void useEnglish()
{
    useLanguage(QStringLiteral("en"));
}

void showKeysAsTexts(const char* before, const char* behind)
{
    QByteArray xml = "<language>";
    const QByteArray keys = installation::readFile(QStringLiteral(ORVEX_SOURCE_DIR "/tests/data/language_keys.txt"));
    for (const QByteArray& key : keys.simplified().split(' '))
        xml += "<control key=\"" + key + "\">" + before + key + behind + "</control>";
    const QString path = installation::path(QStringLiteral("keys.xml"));
    installation::writeFile(path, xml + "</language>");
    CMyApplication::current()->m_LanguageParser.LoadLanguage(path);
}

} // namespace windowplay
