#include "player/Player.h"

#include <QGenericPlugin>

class PlayerPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "player.json")

public:
    QObject* create(const QString&, const QString& script) override
    {
        Player* player = new Player(this);
        if (!addScript(*player, script))
            Player::fail(QStringLiteral("no such script: ") + script);
        player->start();
        return player;
    }
};

#include "PlayerPlugin.moc"
