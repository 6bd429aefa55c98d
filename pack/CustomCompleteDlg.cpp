#include "pack/CustomCompleteDlg.h"

#include "app/language/LangText.h"
#include "app/widgets/FitToTexts.h"
#include "app/widgets/WarningBox.h"
#include "common/Log.h"
#include "common/ProcessPath.h"
#include "common/ShellCommand.h"
#include "common/StorePaths.h"
#include "pack/WorkThread.h"

#include <cstdio>

namespace {

/// By the package mask.
const char* const successKeys[] = {
    "CusCfgOnlySuccHint",         // nothing
    "CusSuccHint",                // setup
    "GenUpdateSuccHint",          // update
    "GenUpdateAndSetupSuccHint",  // setup, update
    "GenCusUpdSuccHint",          // customised update
    "GenSetupAndCusUpdSuccHint",  // setup, customised update
    "GenCusUpdAndUpdateSuccHint", // update, customised update
    "GenCusUpdAndSetupAndUpdateSuccHint",
};

using Widgets = Ui_CustomCompleteDlg;

struct PackageRow
{
    int bit;
    QWidget* Widgets::*widget;
    QLabel* Widgets::*hint;
    const char* hintKey;
    QToolButton* Widgets::*button;
    QTextEdit* Widgets::*place;
    const char* placeKey;
    const char* directory;
};

const PackageRow packageRows[] = {
    {PackageSetup, &Widgets::widget_setup, &Widgets::label_openSetupHint, "opensetup_hint", &Widgets::toolButton_setup,
     &Widgets::textEdit_setup, "NotOpenSetupDirHint", store::setup},
    {PackageUpdate, &Widgets::widget_update, &Widgets::label_openUpdateHint, "openupdate_hint",
     &Widgets::toolButton_update, &Widgets::textEdit_update, "NotOpenUpdateDirHint", store::update},
    {PackageCusUpd, &Widgets::widget_cusupd, &Widgets::label_openCusUpdHint, "opencusupd_hint",
     &Widgets::toolButton_cusupd, &Widgets::textEdit_cusupd, "NotOpenCusUpdDirHint", store::cusUpdate},
};

} // namespace

CustomCompleteDlg::CustomCompleteDlg(QWidget* parent) : QDialog(parent)
{
    ui.setupUi(this);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);

    connect(ui.toolButton_setup, &QToolButton::clicked, this, &CustomCompleteDlg::onViewSetup);
    connect(ui.toolButton_update, &QToolButton::clicked, this, &CustomCompleteDlg::onViewUpdate);
    connect(ui.toolButton_cusupd, &QToolButton::clicked, this, &CustomCompleteDlg::onViewCusUpd);
    connect(ui.pushButton_exit, &QPushButton::clicked, this, &CustomCompleteDlg::close);

    setWindowTitle(langText("complete_title"));
    ui.pushButton_exit->setText(langText("exitBtnTitle"));
    for (const PackageRow& row : packageRows) {
        (ui.*row.hint)->setText(langText(row.hintKey));
        // Contract: all three buttons bear the text of this one key.
        (ui.*row.button)->setText(langText("CheckSetupBtnTitle"));
        (ui.*row.place)->setAccessibleName(langText(row.placeKey));
    }
}

void CustomCompleteDlg::initalDialog(int mask, bool showSuccessLine)
{
    const QString process = QString::fromUtf8(processDirectory(true));
    for (const PackageRow& row : packageRows) {
        if (!(mask & row.bit))
            (ui.*row.widget)->hide();
        (ui.*row.place)->setPlainText(langText(row.placeKey) + process + QLatin1String(row.directory));
    }
    ui.label_customSuccHint->setText(langText(successKeys[mask & (PackageSetup | PackageUpdate | PackageCusUpd)]));
    if (!showSuccessLine)
        ui.label_customSuccHint->hide();
    // On a low screen the places scroll, so that the button stays in sight.
    layout()->activate();
    if (layout()->totalHeightForWidth(width()) > roomFor(*this).height()) {
        for (const PackageRow& row : packageRows) {
            (ui.*row.place)->setFixedHeight((ui.*row.place)->minimumHeight());
            forgetSizes(ui.*row.place);
        }
    }
    fitToTexts(*this);
}

void CustomCompleteDlg::onViewSetup()
{
    openDirectory(store::setup);
}

void CustomCompleteDlg::onViewUpdate()
{
    openDirectory(store::update);
}

void CustomCompleteDlg::onViewCusUpd()
{
    openDirectory(store::cusUpdate);
}

void CustomCompleteDlg::openDirectory(const char* name)
{
    bool found = false;
    const QByteArray process = processDirectory(true, &found);
    if (!found) {
        // Contract: this one text serves all three directories.
        WarningBox("manager_title", this).say("NotFindSetup");
        return;
    }
    char directory[256] = {};
    if (snprintf(directory, sizeof directory, "%s%s", process.constData(), name) >= int(sizeof directory)) {
        logX(1, "CustomCompleteDlg: path is too long: %s%s", process.constData(), name);
        return;
    }
    runShellCommand("nautilus \"" + QByteArray(directory) + "\" &");
}
