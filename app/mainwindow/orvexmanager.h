#pragma once

#include "app/myapplication.h"
#include "ui_orvexmanager.h"
#include "xml/CustomInfo.h"

#include <QMainWindow>
#include <QMap>
#include <QSharedPointer>
#include <QVector>

class PackingWait;
class WarningBox;
class WorkThread;

/// The main window: owner of the record in hand and of the history, with a page for each.
class OrvexManager : public QMainWindow
{
    Q_OBJECT

public:
    explicit OrvexManager(QWidget* parent);
    ~OrvexManager() override;

    /// Limit of the history: the scan at start stops at the first directory beyond it.
    static constexpr int MAX_COUTN_CUSTOM = 300;

    /// The chosen components as fixed words, each with two trailing blanks, SSL VPN before WLAN; not translated.
    QString GetCusCompStr(int procomVal, int funcomVal);

    /// Makes the window as large as it takes to show each component without scrolling, and lets it be made smaller as
    /// long as scrolling up and down shows them all; both as far as there is room.
    ///
    /// @param room  the largest size that the window may have
    void growForComponents(const QSize& room);

    const CustomInfo& record() const { return m_customInfo; }
    const QVector<CUSINFOPOLICY>& history() const { return m_cusPolicyList; }

public slots:
    void showPage();
    void showCusAdvProDlg();
    /// The commit: asks, writes the document, makes the packages, enters the history, resets the record.
    void showFinishDlg();
    void showAboutInfo();
    void showCusClient();
    void showCusHis();
    void showToolBar(bool bShow);
    void onViewSetup();
    void onViewCusUpd();
    void onViewUpdate();
    void changEnLanguage();
    void changZhLanguage();
    /// Loads the chosen entry into the record, or the defaults for the empty one. The argument is not used.
    void onDefaultCusChg(int);
    void onItemClicked(QTreeWidgetItem* itemSel);
    void onDetail();
    void onDelete();
    void onDeleteAll();
    void onKefFunc();

private:
    // The frame.
    void createActions();
    void setupMenuBar();
    void createToolBar();
    void createIcons();
    void connectPages();
    void refresh();
    void GetVersion();
    void changeLanguage(unsigned long code);
    void showPackagePlace(const char* directory, int mask);

    // The client page.
    void refreshCusClient();
    void OnRepaintCustomCombo();
    /// Takes the ticked components into the record; refuses when none of them gives access.
    bool takeComponents(WarningBox& box);

    /// No further commit while the worker, which reads the working directory, runs without its window.
    void withholdFinish(const WorkThread& worker);

    // The history page.
    /// The keys of the list, and its menu of the same commands.
    void addHistoryCommands();
    /// The menu shows what would do nothing as disabled.
    void offerHistoryCommands();
    void refreshCusHis();
    /// Whenever the page comes to be shown or changes its language: a start that does not show it loads no font for it.
    void fitTimes();
    bool GetCurAllCustoms();
    int GetIndexByStrTime(QString time);
    QString GetSelCusDir(QString selText);
    void DelCustomInfo(unsigned long stamp);

    QMap<unsigned long, CUSINFOPOLICY> m_cusPolicyMap; // stays empty
    QVector<CUSINFOPOLICY> m_cusPolicyList;            // the history; row n of the tree is entry n
    CustomInfo m_customInfo;                           // the customisation in hand
    Ui_OrvexManagerClass ui;
    QToolBar* m_pToolBar = nullptr;
    QAction* m_pCusClientAction = nullptr;
    QAction* m_pCusHisAction = nullptr;
    QAction* m_pAboutAction = nullptr;
    QMenu* m_pFileMenu = nullptr;
    QMenu* m_pViewMenu = nullptr;
    QMenu* m_pLanguageMenu = nullptr;
    QMenu* m_pHelpMenu = nullptr;
    int m_iSelIndex = -1;                       // row of the last clicked history entry, -1 for none
    unsigned long m_ulLanguageCode = 0;         // 1033 or 2052
    QString m_strAppDir;                        // directory of the executable, without trailing slash
    QSharedPointer<PackingWait> m_pPackingWait; // null from start to end
};
