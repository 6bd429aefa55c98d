#pragma once

#include "mainwindow/MainWindowFixture.h"

/// Where the clock of the commit tests stands, and its local time in the zone of the tests, Asia/Shanghai.
constexpr time_t commitMoment = 1700000000;
constexpr char commitMomentText[] = "2023-11-15 06:13:20";

/// A path below the working directory of the commit.
QString inWorking(const QString& relative = QString());
/// A path below the directory that a commit at that moment adds to the history.
QString inStored(const QString& relative = QString());
/// The names of a customisation without icons.
QStringList documentFiles();

/// Plays the Finish dialog: the remark, the packages by their mask, Ok.
void expectFinish(ModalScript& script, const QString& remark, int packages = 0);
/// Plays the report at the end; notes its line when one is asked for.
void expectReport(ModalScript& script, QString* line = nullptr);
/// One whole commit. The progress window closes by itself, often before it can be seen. What went wrong with the
/// windows.
QStringList commit(const OrvexManager& window, const QString& remark = QStringLiteral("remark"), int packages = 0);
/// A commit that ends in a message box instead.
QStringList commitInVain(const OrvexManager& window, ShownBox& shown, const QString& remark = QStringLiteral("remark"));
