#include "inspect/PackageWorkshop.h"

#include "common/PackageGenerators.h"
#include "common/Version.h"
#include "inspect/InspectSupport.h"
#include "support/Installation.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <cstdio>

using installation::path;

void workshop::makeInstallation()
{
    installation::clear();
    QDir(path(QStringLiteral("work"))).removeRecursively();
    QVERIFY(QDir().mkpath(path(QStringLiteral("work"))));
    QVERIFY(QDir::setCurrent(installation::root()));
    installation::installLanguageFiles();
    installation::installArchiver();
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_MacOS"), QStringLiteral("OrvexClient.pkg"));
    utl_SetVersionStrings("V7.2-R0408E", "7.2.0408.115");

    const QByteArray document = inspecting::documentWithStamp(stamp);
    installation::makeCustomisation("icons");
    const QString custom = path(QStringLiteral("custom"));
    installation::writeFile(custom + QLatin1String("/OrvexCustom.xml"), document);
    installation::writeFile(custom + QLatin1String("/OrvexCustomXml.vrf"), inspecting::verificationOf(document));
    const QString entry = path(QStringLiteral("UpdateCustom/%1").arg(stamp));
    QVERIFY(QDir().mkpath(path(QStringLiteral("UpdateCustom"))));
    installation::run(QStringLiteral("cp"), {QStringLiteral("-a"), custom, entry});

    const installation::QuietOutput quiet;
    const QByteArray time = "2026-09-10 08:26:40";
    QVERIFY(utl_GenLinuxSetup());
    QVERIFY(utl_GenLinuxUpdate(time.constData(), QByteArray::number(stamp).constData()));
    QVERIFY(utl_GenLinuxCusUpd(time.constData(), QByteArray::number(stamp).constData()));
    for (const Kind kind : {Setup, Update, CusUpdate})
        QVERIFY2(QFile::exists(package(kind)), qPrintable(package(kind)));
}

QString workshop::package(Kind kind)
{
    static const char* const names[] = {"OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz",
                                        "OrvexUpdate/OrvexUpdate7.2 (E0408)_64.zip",
                                        "OrvexCusUpd/OrvexCusUpd7.2 (E0408)_64.zip"};
    return path(QString::fromLatin1(names[kind]));
}

QString workshop::customIn(Kind kind, const QString& client)
{
    return client + QLatin1String(kind == CusUpdate ? "/custom" : "/OrvexClient/custom");
}

QString workshop::remade(Kind kind, const std::function<void(const QString& client, const QString& zip)>& edit)
{
    const QString client = path(QStringLiteral("work/client"));
    const QString zip = path(QStringLiteral("work/zip"));
    const QString result = path(QLatin1String("work/") + QFileInfo(package(kind)).fileName());
    QFile::remove(result);
    QDir(zip).removeRecursively();
    QString archive = package(kind);
    if (kind != Setup) {
        installation::unpackZip(package(kind), zip);
        archive =
            zip + QLatin1Char('/') + QDir(zip).entryList({QStringLiteral("Dot1X_*")}, QDir::Files, QDir::Name).first();
    }
    installation::unpackTar(archive, client);
    const auto pack = [&](const QString& target) {
        QStringList arguments = {QStringLiteral("-czf"), target, QStringLiteral("-C"), client};
        const QStringList names = QDir(client).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
        arguments += names.isEmpty() ? QStringList{QStringLiteral("-T"), QStringLiteral("/dev/null")} : names;
        installation::run(QStringLiteral("tar"), arguments);
    };
    if (kind == Setup) {
        edit(client, QString());
        pack(result);
        return result;
    }
    // The edited manifest and archives count; the archive itself is packed anew before them.
    edit(client, QString());
    pack(archive);
    edit(QString(), zip);
    const QStringList members = QDir(zip).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    installation::run(QStringLiteral(ORVEX_ARCHIVER), QStringList{QStringLiteral("a"), result} + members, zip);
    return result;
}

QString workshop::written(const QString& name, const QByteArray& bytes)
{
    const QString target = path(QLatin1String("work/") + name);
    installation::writeFile(target, bytes);
    return target;
}

QByteArray workshop::tarMember(const QByteArray& name, const QByteArray& content, char type, const QByteArray& target,
                               long long size)
{
    QByteArray header(512, '\0');
    const auto put = [&](int place, const QByteArray& text) { header.replace(place, text.size(), text); };
    const auto octal = [](long long value, int digits) {
        char text[32];
        snprintf(text, sizeof text, "%0*llo", digits, value);
        return QByteArray(text);
    };
    put(0, name.left(100));
    put(100, octal(type == '5' ? 0755 : 0644, 7));
    put(108, octal(0, 7));
    put(116, octal(0, 7));
    put(124, octal(size >= 0 ? size : content.size(), 11));
    put(136, octal(1704067200, 11));
    put(148, QByteArray(8, ' '));
    header[156] = type;
    put(157, target.left(100));
    put(257, QByteArray("ustar\0"
                        "00",
                        8));
    unsigned int sum = 0;
    for (const char byte : qAsConst(header))
        sum += static_cast<unsigned char>(byte);
    put(148, octal(sum, 6) + QByteArray("\0 ", 2));
    return header + content + QByteArray((512 - content.size() % 512) % 512, '\0');
}

QByteArray workshop::tarEnd()
{
    return QByteArray(1024, '\0');
}

QByteArray workshop::gzipped(const QByteArray& bytes)
{
    const QString plain = written(QStringLiteral("plain"), bytes);
    const QByteArray packed = installation::run(QStringLiteral("gzip"), {QStringLiteral("-nc"), plain});
    QFile::remove(plain);
    return packed;
}
