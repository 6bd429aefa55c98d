#pragma once

#include "app/language/CLanguageParser.h"
#include "app/language/LanguageChoice.h"

#include <QApplication>

class QLocalServer;
class QTranslator;

/// The application object. Its constructor decides whether this process is the one instance of the machine or a
/// second one, which tells its user, nudges the first and is to leave.
class CMyApplication : public QApplication
{
    Q_OBJECT

public:
    CMyApplication(int& argc, char** argv);
    ~CMyApplication() override;

    /// The one application object, or null before it is built and after it is destroyed.
    static CMyApplication* current();

    /// True when another process holds the instance lock or the lock file cannot be opened. The lock taken is held for
    /// the life of the process.
    bool isAlreadyRunning();

    /// Reads config.ini beside the executable, each time anew, and sets `g_ucAreaCode`.
    ///
    /// @param code  0 on entry; becomes 1033 (English) or 2052 (Chinese), by the settings or else by LANG
    /// @return      true only when the settings name a known language
    bool GetCurrentLanguageCode(unsigned long& code);

    /// Brings the main window back from any state.
    void showMainWindow();

    CLanguageParser m_LanguageParser;       // every window reads its texts here
    bool m_bAlreadyRunning = false;         // this process found another instance and must leave
    QWidget* m_pMainWindow = nullptr;       // not owned
    QTranslator* m_pTranslator = nullptr;   // installed while the language is Chinese
    QLocalServer* m_pLocalServer = nullptr; // listener of the first instance

public slots:
    /// A second instance has connected: the bare connection is its whole message.
    void newLocalSocketConnection();

private:
    void leaveToFirstInstance(const QString& serverName);
    void becomeFirstInstance(const QString& serverName);
};
