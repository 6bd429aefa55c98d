#include "support/DialogPlay.h"

#include "support/ModalScript.h"

#include <QDialog>
#include <QEvent>
#include <QMessageBox>
#include <QPushButton>

#include <memory>

namespace dialogplay {

namespace {

QPushButton* buttonOf(const QDialog& dialog, QDialogButtonBox::StandardButton button)
{
    QPushButton* const found = child<QDialogButtonBox>(dialog, "buttonBox")->button(button);
    if (!found)
        qFatal("no button %x in the button box", unsigned(button));
    return found;
}

} // namespace

QString okText(const QDialog& dialog)
{
    return buttonOf(dialog, QDialogButtonBox::Ok)->text();
}

QString cancelText(const QDialog& dialog)
{
    return buttonOf(dialog, QDialogButtonBox::Cancel)->text();
}

QStringList clickRefusedOk(ModalScript& script, const QDialog& dialog)
{
    // Shared with the step, which outlives this call when no box comes.
    const auto told = std::make_shared<QStringList>();
    script.expect<QMessageBox>([told](QMessageBox& box) {
        QPushButton* const ok = qobject_cast<QPushButton*>(box.button(QMessageBox::Ok));
        told->append({box.windowTitle(), box.text(), QString::number(box.icon()),
                      QString::number(box.standardButtons(), 16), QString::number(ok && box.defaultButton() == ok)});
        if (ok)
            QTest::mouseClick(ok, Qt::LeftButton);
        else
            box.reject();
    });
    press(dialog, QDialogButtonBox::Ok);
    told->append({focusOf(dialog), QString::number(dialog.isVisible())});
    return *told;
}

QStringList refusal(const char* titleKey, const char* textKey, const char* focus)
{
    const QString yes = QStringLiteral("1");
    return {QLatin1String(titleKey),
            QLatin1String(textKey),
            QString::number(QMessageBox::Warning),
            QString::number(QMessageBox::Ok, 16),
            yes,
            QLatin1String(focus),
            yes};
}

bool CloseEvents::eventFilter(QObject* watched, QEvent* event)
{
    count += event->type() == QEvent::Close ? 1 : 0;
    return QObject::eventFilter(watched, event);
}

} // namespace dialogplay
