#include "app/myapplication.h"
#include "screenshots/Complaints.h"
#include "screenshots/Look.h"
#include "screenshots/Visit.h"
#include "support/Installation.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QPixmap>
#include <QWidget>

#include <cstdio>

// Takes a picture of each window and says what is wrong with its looks. The scale is that of QT_SCALE_FACTOR, one for
// a process.

namespace {

QStringList s_complaints;

void savePicture(QWidget& window, const QString& path)
{
    QDir().mkpath(QFileInfo(path).path());
    if (!window.grab().save(path))
        s_complaints.append(QLatin1String("not written: ") + path);
}

QVector<Look> everyLook()
{
    QVector<Look> looks;
    for (const char* language : {"en", "zh"}) {
        for (bool isDark : {false, true}) {
            for (int pointSize = 9; pointSize <= 14; ++pointSize)
                looks.append({QLatin1String(language), isDark, pointSize});
        }
    }
    return looks;
}

/// One row of pictures for each page, one column for each look, behind the list of complaints.
void appendToContactSheet(const QString& directory, const QString& scale, const QVector<Look>& looks,
                          const QStringList& pages)
{
    QFile file(directory + QLatin1String("/index.html"));
    const bool isNew = !file.exists();
    if (!file.open(QIODevice::Append))
        return;
    QString html;
    if (isNew) {
        html += QStringLiteral("<!DOCTYPE html><meta charset=\"utf-8\"><title>Gallery</title>\n"
                               "<style>body{font:13px sans-serif;background:#888} td{vertical-align:top}"
                               " img{width:260px} h3{position:sticky;left:0;margin:8px 0 0}</style>\n");
    }
    html += QStringLiteral("<h1>%1 %</h1>\n<p>%2 complaints</p>\n<ul>\n").arg(scale).arg(s_complaints.size());
    for (const QString& complaint : qAsConst(s_complaints))
        html += QLatin1String("<li>") + complaint.toHtmlEscaped() + QLatin1Char('\n');
    html += QLatin1String("</ul>\n");
    for (const QString& page : pages) {
        html += QStringLiteral("<h3>%1</h3>\n<table><tr>\n").arg(page);
        for (const Look& look : looks) {
            html +=
                QStringLiteral("<td>%1<br><a href=\"%2/%1/%3.png\"><img loading=\"lazy\" src=\"%2/%1/%3.png\"></a>\n")
                    .arg(look.name(), scale, page);
        }
        html += QLatin1String("</table>\n");
    }
    file.write(html.toUtf8());
}

/// Without a directory no pictures are taken.
void makeGallery(const QString& directory, const QVector<Look>& looks)
{
    const QString scale = QString::number(qRound(qApp->devicePixelRatio() * 100));
    QStringList pages;
    for (const Look& look : looks) {
        const LookOfTheDesktop desktop(look);
        visitEveryWindow(look.language, [&](const QString& page, QWidget& window) {
            if (!pages.contains(page))
                pages.append(page);
            for (const QString& complaint : complaintsAbout(window))
                s_complaints.append(QStringLiteral("%1 % %2 %3: %4").arg(scale, look.name(), page, complaint));
            if (!directory.isEmpty())
                savePicture(window, QStringLiteral("%1/%2/%3/%4.png").arg(directory, scale, look.name(), page));
        });
    }
    if (!directory.isEmpty())
        appendToContactSheet(directory, scale, looks, pages);
}

/// The pictures of the documents, in the light palette and the font of an undecorated desktop.
void makeDocumentPictures(const QString& directory)
{
    for (const char* language : {"en", "zh"}) {
        const QString code = QLatin1String(language);
        visitDocumentedWindows(code, [&](const QString& page, QWidget& window) {
            for (const QString& complaint : complaintsAbout(window))
                s_complaints.append(QStringLiteral("%1 %2: %3").arg(code, page, complaint));
            savePicture(window, QStringLiteral("%1/%2.%3.png").arg(directory, page, code));
        });
    }
}

} // namespace

int main(int argc, char** argv)
{
    installation::clear();
    installation::installLanguageFiles();
    // The local server has the name of the application: one for each process.
    QCoreApplication::setApplicationName(
        QStringLiteral("orvex_screenshots-%1").arg(QCoreApplication::applicationPid()));
    CMyApplication application(argc, argv);
    if (application.m_bAlreadyRunning) {
        fprintf(stderr, "another process of the same build is running\n");
        return 2;
    }
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    const QString what = arguments.value(0);
    const QString directory = arguments.value(1);
    const bool takesDirectory =
        QStringList{QStringLiteral("--gallery"), QStringLiteral("--default"), QStringLiteral("--documents")}.contains(
            what);
    const bool isUnderstood =
        takesDirectory ? arguments.size() == 2 : arguments == QStringList{QStringLiteral("--check")};
    if (!isUnderstood) {
        fprintf(stderr, "usage: orvex_screenshots --check | --gallery DIRECTORY | --default DIRECTORY |"
                        " --documents DIRECTORY\n");
        return 2;
    }
    if (takesDirectory)
        QDir().mkpath(directory);
    if (what == QLatin1String("--default"))
        makeGallery(directory, {{QStringLiteral("en")}, {QStringLiteral("zh")}});
    else if (what == QLatin1String("--documents"))
        makeDocumentPictures(directory);
    else
        makeGallery(directory, everyLook());
    for (const QString& complaint : qAsConst(s_complaints))
        printf("%s\n", complaint.toUtf8().constData());
    return s_complaints.isEmpty() ? 0 : 1;
}
