#pragma once

#include <QObject>
#include <QString>
#include <QWidget>

#include <functional>
#include <list>

/// Plays a list of steps in a running program. Each step waits for its condition, prints its title and acts on the real
/// widgets. A step whose condition does not come true in time ends the program with exit code 70.
///
/// Environment: ORVEX_PLAY_FD, descriptor for the lines that tell what is played, standard output without it;
/// ORVEX_PLAY_SHOTS, directory of the screenshots (none are taken without it); ORVEX_PLAY_REMARK, the
/// remark to type; ORVEX_PLAY_ICONS, directory with client.png and client.ico.
class Player : public QObject
{
    Q_OBJECT

public:
    explicit Player(QObject* parent = nullptr);

    void step(const QString& title, std::function<bool()> ready, std::function<void()> act);
    void start();

    /// The visible window whose class bears the name; null when there is none.
    static QWidget* window(const char* className);
    /// The child of the window of that class; null when one of them is missing or the window is not visible.
    template <class Widget> static Widget* child(const char* className, const char* objectName)
    {
        QWidget* owner = window(className);
        return owner ? owner->findChild<Widget*>(QString::fromLatin1(objectName)) : nullptr;
    }

    static void click(QWidget* widget);
    /// Replaces the text of an edit as an input method would, so that any character can be typed.
    static void type(QWidget* edit, const QString& text);
    /// Prints a line.
    static void say(const QString& line);
    /// Saves the whole screen as <name>.png.
    static void shoot(const QString& name);
    [[noreturn]] static void fail(const QString& reason);

private:
    struct Step
    {
        QString title;
        std::function<bool()> ready;
        std::function<void()> act;
    };

    void look();

    std::list<Step> m_steps;
    qint64 m_waitingSinceMs = 0;
    static bool s_bHolding; // no step begins while a screenshot waits for the windows to be painted
};

/// Adds the steps of the named script; false when there is no such script.
bool addScript(Player& player, const QString& name);
