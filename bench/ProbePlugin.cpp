#include "bench/Probe.h"

#include <QGenericPlugin>

class ProbePlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "probe.json")

public:
    QObject* create(const QString&, const QString& script) override { return new Probe(script, this); }
};

#include "ProbePlugin.moc"
