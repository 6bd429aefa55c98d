#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <list>

/// Plays modal windows while the tested code sits in their exec(): each new modal window is handed to the next step.
/// A window of another class than the step expects, and one that nobody expects, is noted and closed, so that a
/// surprise fails the test instead of hanging it; so is a step whose window is still open after the time limit.
///
///     ModalScript script;
///     script.expect<QMessageBox>([&](QMessageBox& box) { shown = box.text(); box.button(QMessageBox::Ok)->click(); });
///     QTest::mouseClick(button, Qt::LeftButton);
///     QCOMPARE(script.complaints(), QStringList());
class ModalScript : public QObject
{
    Q_OBJECT

public:
    explicit ModalScript(int timeoutMs = 20000);
    ~ModalScript() override;

    /// The step runs once the window is visible and must end or lead on to the end of the window.
    template <class Window> void expect(std::function<void(Window&)> play)
    {
        m_steps.push_back({QString::fromLatin1(Window::staticMetaObject.className()), [play](QWidget& widget) {
                               Window* window = dynamic_cast<Window*>(&widget);
                               if (window)
                                   play(*window);
                               return window != nullptr;
                           }});
    }

    /// Windows of this class may come and go by themselves, any number of times, and no step is spent on them.
    template <class Window> void tolerate()
    {
        m_tolerated.append(QString::fromLatin1(Window::staticMetaObject.className()));
    }

    /// What went wrong so far, and the steps whose windows have not come.
    QStringList complaints() const;

private:
    struct Step
    {
        QString className;
        std::function<bool(QWidget&)> play;
    };
    struct Seen
    {
        QPointer<QWidget> window;
        qint64 sinceMs;
    };

    void scheduleLook();
    void look();
    void abandon(QWidget* window, const QString& complaint);
    bool isKnown(const QWidget* window) const;

    std::list<Step> m_steps;
    std::list<Seen> m_seen;
    QStringList m_complaints;
    QStringList m_tolerated;
    int m_timeoutMs;
};
