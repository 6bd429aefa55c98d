#include "support/Installation.h"
#include "support/TestEntry.h"
#include "view/OpenViews.h"
#include "xml/Catalogue.h"

#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QTabWidget>
#include <QTreeWidget>

using namespace viewplay;

/// Each field of the catalogue that has a label against what the two views show.
class TstShownFields : public QObject
{
    Q_OBJECT

private slots:
    void changeOfTheFieldIsSeen_data();
    void changeOfTheFieldIsSeen();
    void unseenFieldsAreOfTheCatalogue();
};

namespace {

/// The fields with a label that no view shows.
const char* const unseen[] = {
    "common/cusTimeString", // in the history of the main window
    "common/cusAddInfo",    // in the history of the main window
    "functions/uninstallPassword",
    "x1/defaultConnection",
    "domain/domaindetail/*/domainName",
    "domain/domaindetail/*/domainDesp",
    "domain/domainDefault",
    "domain/domainForce",
    "sslvpn/authMode",
    "sslvpn/ulAuthType",
    "sslvpn/authType",
    "guiOptions/macosDeskIcon", // its label is hidden
};

bool isUnseen(const Field& field)
{
    return std::any_of(std::begin(unseen), std::end(unseen),
                       [&](const char* path) { return field.path() == QLatin1String(path); });
}

/// A record in which no field hides another.
CustomInfo openRecord()
{
    CustomInfo info = fullRecord();
    info.function.wanControl = 1;
    info.function.uninstallPasswordExtend = 0;
    info.vpn.ipseccfg.IPSECUseNatTranversal = 0;
    for (const IconFile& icon : iconFiles()) {
        QImage image(32, 32, QImage::Format_RGB32);
        image.fill(Qt::red);
        info.gui.*icon.path = installation::path(QLatin1String(icon.element) + QLatin1String(".png"));
        image.save(info.gui.*icon.path);
    }
    return info;
}

/// Another value that the views can show.
QString otherValue(const Field& field, const QString& value)
{
    switch (field.type) {
    case Field::Flag:
    case Field::Number: {
        const quint64 number = value.toULongLong();
        return QString::number(number == 0 ? 1 : 0);
    }
    case Field::TrueFalse:
        return value == QLatin1String("false") ? QStringLiteral("true") : QString();
    case Field::Text:
        break;
    }
    if (field.traits.viewed) {
        for (const words::Word& word : *field.traits.viewed) {
            if (value != QLatin1String(word.stored))
                return QString::fromLatin1(word.stored);
        }
    }
    return QLatin1Char('7') + value;
}

void add(QStringList& seen, const QWidget* widget, const QString& text)
{
    seen.append(widget->objectName() + QLatin1Char('=') + text);
}

/// What can be read in the window.
QStringList seenIn(const QDialog& dialog)
{
    QStringList seen;
    for (const QWidget* widget : dialog.findChildren<QWidget*>()) {
        // Also that of another tab is hidden, but not of its own.
        if (widget->testAttribute(Qt::WA_WState_ExplicitShowHide) && widget->isHidden() &&
            !qobject_cast<QTabWidget*>(widget->parentWidget() ? widget->parentWidget()->parentWidget() : nullptr))
            continue;
        if (const auto* edit = qobject_cast<const QLineEdit*>(widget))
            add(seen, edit, edit->text());
        else if (const auto* button = qobject_cast<const QAbstractButton*>(widget))
            add(seen, button, QString::number(button->isChecked()));
        else if (const auto* combo = qobject_cast<const QComboBox*>(widget))
            add(seen, combo, combo->currentText());
        else if (const auto* label = qobject_cast<const QLabel*>(widget))
            add(seen, label, QString::number(label->pixmap(Qt::ReturnByValue).width()));
        else if (const auto* list = qobject_cast<const QListWidget*>(widget)) {
            for (int row = 0; row < list->count(); ++row)
                add(seen, list, list->item(row)->text());
        } else if (const auto* tree = qobject_cast<const QTreeWidget*>(widget)) {
            for (int row = 0; row < tree->topLevelItemCount(); ++row) {
                for (int column = 0; column < tree->columnCount(); ++column)
                    add(seen, tree, tree->topLevelItem(row)->text(column));
            }
        } else if (const auto* tabs = qobject_cast<const QTabWidget*>(widget)) {
            for (int tab = 0; tab < tabs->count(); ++tab)
                add(seen, tabs, tabs->tabText(tab));
        }
    }
    return seen;
}

QStringList seenOf(const CustomInfo& info)
{
    const OpenDetailView detail(info);
    const OpenVpnView vpn(info);
    return seenIn(detail.dialog) + seenIn(vpn.dialog);
}

} // namespace

void TstShownFields::changeOfTheFieldIsSeen_data()
{
    QTest::addColumn<int>("position");
    const auto& fields = catalogue::fields();
    for (int position = 0; position < int(fields.size()); ++position) {
        const Field& field = fields.at(std::size_t(position));
        if (field.label)
            QTest::newRow(field.path().toUtf8().constData()) << position;
    }
}

void TstShownFields::changeOfTheFieldIsSeen()
{
    QFETCH(int, position);
    const Field& field = catalogue::fields().at(std::size_t(position));
    const CustomInfo record = openRecord();
    CustomInfo changed = record;
    field.setValue(changed, 0, otherValue(field, field.value(record, 0)));
    QVERIFY(field.value(changed, 0) != field.value(record, 0));
    QCOMPARE(seenOf(changed) != seenOf(record), !isUnseen(field));
}

void TstShownFields::unseenFieldsAreOfTheCatalogue()
{
    for (const char* path : unseen) {
        const auto& fields = catalogue::fields();
        QVERIFY2(std::any_of(fields.begin(), fields.end(),
                             [&](const Field& field) { return field.label && field.path() == QLatin1String(path); }),
                 path);
    }
}

TEST_ENTRY(shownfields, runTest<TstShownFields>)

#include "tst_shownfields.moc"
