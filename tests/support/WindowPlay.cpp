#include "support/WindowPlay.h"

#include "support/Installation.h"

#include <QApplication>
#include <QWheelEvent>

namespace windowplay {

QString focusOf(const QWidget& window)
{
    const QWidget* const focus = window.focusWidget();
    return focus ? focus->objectName() : QString();
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
