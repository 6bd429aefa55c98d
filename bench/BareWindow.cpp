#include <QApplication>
#include <QDomDocument>
#include <QFile>
#include <QIcon>
#include <QMainWindow>
#include <QMenuBar>
#include <QToolBar>

// The floor of the program's start: a main window with a menu bar and a row of buttons, which loads the same pictures
// as often and as large as the program shows them, and parses both language files.
//
//   bench_bare_window <directory of the language files>

namespace {

QIcon picture(const char* name)
{
    return QIcon(QLatin1String(":/OrvexManager/Resources/") + QLatin1String(name));
}

bool parse(const QString& path)
{
    QFile file(path);
    QDomDocument document;
    return file.open(QIODevice::ReadOnly) && document.setContent(&file);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    if (argc != 2)
        return 2;
    const QString directory = QString::fromLocal8Bit(argv[1]);
    QApplication::setWindowIcon(picture("Orvex.ico"));
    QMainWindow window;
    window.setWindowIcon(picture("Orvex.ico"));
    for (const char* title : {"&File", "&View", "&Language", "&Help"})
        window.menuBar()->addMenu(QString::fromLatin1(title));
    QToolBar* bar = window.addToolBar(QStringLiteral("Bar"));
    for (const char* name : {"icon4.ico", "63.ico", "Toolbarabout.ico"})
        bar->addAction(picture(name), QString());
    // The list of the pages, and the head of each page.
    const QPixmap pages[] = {picture("icon4.ico").pixmap(96, 84), picture("63.ico").pixmap(96, 84),
                             QPixmap(QStringLiteral(":/OrvexManager/Resources/icon4.ico")),
                             QPixmap(QStringLiteral(":/OrvexManager/Resources/63.ico"))};
    for (const char* name : {"/Language_en.xml", "/Language_zh.xml"}) {
        if (!parse(directory + QLatin1String(name)))
            return 1;
    }
    window.resize(800, 600);
    window.show();
    return QApplication::exec() + (pages[0].isNull() ? 1 : 0);
}
