#include "support/ModalScript.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>

namespace {

qint64 nowMs()
{
    static QElapsedTimer timer;
    if (!timer.isValid())
        timer.start();
    return timer.elapsed();
}

QString describe(const QWidget* window)
{
    return QStringLiteral("%1 \"%2\"")
        .arg(QString::fromLatin1(window->metaObject()->className()), window->windowTitle());
}

} // namespace

ModalScript::ModalScript(int timeoutMs) : m_timeoutMs(timeoutMs)
{
    nowMs();
    scheduleLook();
}

ModalScript::~ModalScript() = default;

QStringList ModalScript::complaints() const
{
    QStringList all = m_complaints;
    for (const Step& step : m_steps)
        all.append(QStringLiteral("never came: ") + step.className);
    return all;
}

// A fresh single shot each time: a repeating timer is silent inside its own slot, and the steps run nested windows.
void ModalScript::scheduleLook()
{
    QTimer::singleShot(2, this, &ModalScript::look);
}

bool ModalScript::isKnown(const QWidget* window) const
{
    return std::any_of(m_seen.begin(), m_seen.end(), [&](const Seen& seen) { return seen.window == window; });
}

void ModalScript::abandon(QWidget* window, const QString& complaint)
{
    m_complaints.append(complaint);
    if (QDialog* dialog = qobject_cast<QDialog*>(window))
        dialog->done(QDialog::Rejected);
    else
        window->close();
}

void ModalScript::look()
{
    scheduleLook();
    m_seen.remove_if([](const Seen& seen) { return !seen.window || !seen.window->isVisible(); });
    QWidget* window = QApplication::activeModalWidget();
    if (!window || !window->isVisible())
        return;
    if (isKnown(window)) {
        for (Seen& seen : m_seen) {
            if (seen.window == window && nowMs() - seen.sinceMs > m_timeoutMs) {
                seen.sinceMs = nowMs();
                abandon(window, QStringLiteral("stayed open: ") + describe(window));
                return;
            }
        }
        return;
    }
    m_seen.push_back({window, nowMs()});
    if (m_tolerated.contains(QString::fromLatin1(window->metaObject()->className())))
        return;
    if (m_steps.empty()) {
        abandon(window, QStringLiteral("nobody expected: ") + describe(window));
        return;
    }
    const Step step = m_steps.front();
    m_steps.pop_front();
    if (!step.play(*window))
        abandon(window, QStringLiteral("expected %1, got ").arg(step.className) + describe(window));
}
