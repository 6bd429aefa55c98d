#include "player/Player.h"

#include <QApplication>
#include <QDateTime>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPixmap>
#include <QScreen>
#include <QTimer>
#include <QtTest/QTest>

#include <unistd.h>

namespace {

constexpr int s_lookIntervalMs = 10;
constexpr qint64 s_patienceMs = 180000;

} // namespace

bool Player::s_bHolding = false;

Player::Player(QObject* parent) : QObject(parent)
{
}

void Player::step(const QString& title, std::function<bool()> ready, std::function<void()> act)
{
    m_steps.push_back({title, std::move(ready), std::move(act)});
}

void Player::start()
{
    m_waitingSinceMs = QDateTime::currentMSecsSinceEpoch();
    QTimer::singleShot(s_lookIntervalMs, this, &Player::look);
}

// A fresh single shot each time: a repeating timer is silent inside its own slot, and the steps run nested windows.
void Player::look()
{
    if (m_steps.empty())
        return;
    QTimer::singleShot(s_lookIntervalMs, this, &Player::look);
    if (s_bHolding)
        return;
    const Step next = m_steps.front();
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (!next.ready()) {
        if (now - m_waitingSinceMs > s_patienceMs)
            fail(QStringLiteral("waited in vain: ") + next.title);
        return;
    }
    m_steps.pop_front();
    m_waitingSinceMs = now;
    if (!next.title.isEmpty())
        say(QStringLiteral("- ") + next.title);
    next.act();
    m_waitingSinceMs = QDateTime::currentMSecsSinceEpoch();
}

QWidget* Player::window(const char* className)
{
    const auto matches = [className](const QWidget* widget) {
        return widget && widget->isVisible() && widget->inherits(className);
    };
    if (matches(QApplication::activeModalWidget()))
        return QApplication::activeModalWidget();
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* widget : widgets) {
        if (matches(widget))
            return widget;
    }
    return nullptr;
}

void Player::click(QWidget* widget)
{
    if (!widget || !widget->isEnabled() || !widget->isVisible())
        fail(QStringLiteral("not to be clicked: ") + (widget ? widget->objectName() : QStringLiteral("nothing")));
    // The tick of a check box stands at its left end; the middle may be empty.
    const QPoint place = widget->inherits("QCheckBox") || widget->inherits("QRadioButton")
                             ? QPoint(10, widget->height() / 2)
                             : widget->rect().center();
    QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, place);
}

void Player::type(QWidget* edit, const QString& text)
{
    QLineEdit* line = qobject_cast<QLineEdit*>(edit);
    if (!line || !line->isEnabled())
        fail(QStringLiteral("not to be typed into: ") + (edit ? edit->objectName() : QStringLiteral("nothing")));
    line->setFocus();
    line->selectAll();
    QInputMethodEvent commit;
    commit.setCommitString(text);
    QApplication::sendEvent(line, &commit);
}

void Player::say(const QString& line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    bool isNumber = false;
    const int descriptor = qEnvironmentVariableIntValue("ORVEX_PLAY_FD", &isNumber);
    const ssize_t written = write(isNumber ? descriptor : STDOUT_FILENO, bytes.constData(), size_t(bytes.size()));
    if (written != bytes.size())
        _exit(71);
}

void Player::shoot(const QString& name)
{
    const QString directory = qEnvironmentVariable("ORVEX_PLAY_SHOTS");
    if (directory.isEmpty())
        return;
    s_bHolding = true;
    QTest::qWait(200);
    s_bHolding = false;
    const QString path = directory + QLatin1Char('/') + name + QLatin1String(".png");
    if (!QApplication::primaryScreen()->grabWindow(0).save(path))
        fail(QStringLiteral("no screenshot: ") + path);
    say(QStringLiteral("  screenshot ") + path);
}

void Player::fail(const QString& reason)
{
    say(QStringLiteral("FAILED: ") + reason);
    _exit(70);
}
