#include "inspect/Output.h"

#include "inspect/Translation.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

constexpr int s_widthWithoutTerminal = 100;
constexpr int s_leastWidth = 40;
constexpr int s_gap = 2; // between two columns
constexpr int s_leastCell = 8;
constexpr int s_leastLastCell = 20;

struct Range
{
    uint first;
    uint last;
};

// The blocks of Unicode whose characters are wide (East_Asian_Width W and F), as far as terminals agree on them.
constexpr Range wideRanges[] = {{0x1100, 0x115F}, {0x2E80, 0x303E},   {0x3041, 0xA4CF},   {0xA960, 0xA97F},
                                {0xAC00, 0xD7A3}, {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},
                                {0xFFE0, 0xFFE6}, {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};

bool isWide(uint character)
{
    return std::any_of(std::begin(wideRanges), std::end(wideRanges),
                       [=](const Range& range) { return character >= range.first && character <= range.last; });
}

constexpr uint s_endOfAscii = 0x80;

bool isObeyed(uint character)
{
    if (character < s_endOfAscii)
        return character < ' ' || character == 0x7F;
    const QChar::Category category = QChar::category(character);
    return category == QChar::Other_Control || category == QChar::Other_Format || category == QChar::Other_Surrogate ||
           category == QChar::Separator_Line || category == QChar::Separator_Paragraph;
}

int columnsOfCharacter(uint character)
{
    if (character < s_endOfAscii)
        return 1;
    const QChar::Category category = QChar::category(character);
    if (category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing)
        return 0;
    return isWide(character) ? 2 : 1;
}

/// The longest beginning of the text that takes at most so many columns.
QString beginningOf(const QString& text, int columns)
{
    QString beginning;
    int used = 0;
    for (const uint character : text.toUcs4()) {
        used += columnsOfCharacter(character);
        if (used > columns)
            break;
        beginning += QString::fromUcs4(&character, 1);
    }
    return beginning;
}

QString cut(const QString& text, int columns)
{
    if (output::columnsOf(text) <= columns)
        return text;
    return beginningOf(text, columns - 1) + QChar(0x2026);
}

QString padded(const QString& text, int columns)
{
    return text + QString(std::max(0, columns - output::columnsOf(text)), QLatin1Char(' '));
}

/// The pieces of a text, broken at blanks where there are any.
QStringList wrapped(const QString& text, int columns)
{
    QStringList lines;
    QString rest = text;
    while (output::columnsOf(rest) > columns) {
        QString line = beginningOf(rest, columns);
        const int blank = line.lastIndexOf(QLatin1Char(' '));
        if (blank > 0 && rest.at(line.size()) != QLatin1Char(' '))
            line.truncate(blank);
        if (line.isEmpty())
            break;
        lines.append(line);
        rest = rest.mid(line.size());
        while (rest.startsWith(QLatin1Char(' ')))
            rest.remove(0, 1);
    }
    lines.append(rest);
    return lines;
}

/// As wide as the widest cell; where that does not fit, the last column gives way first, then the widest.
QVector<int> widthsOf(const QStringList& headings, const QVector<QStringList>& rows, int width)
{
    QVector<int> widths;
    for (const QString& heading : headings)
        widths.append(output::columnsOf(heading));
    for (const QStringList& row : rows) {
        for (int column = 0; column < widths.size() && column < row.size(); ++column)
            widths[column] = std::max(widths[column], output::columnsOf(row.at(column)));
    }
    int excess = s_gap * (widths.size() - 1) - width;
    for (int column : qAsConst(widths))
        excess += column;
    const int given = std::max(0, std::min(excess, widths.last() - s_leastLastCell));
    widths.last() -= given;
    for (excess -= given; excess > 0; --excess) {
        const auto widest = std::max_element(widths.begin(), widths.end());
        if (*widest <= s_leastCell)
            break;
        --*widest;
    }
    return widths;
}

} // namespace

QString output::printable(const QString& text)
{
    const auto isPlain = [](QChar unit) { return unit >= QLatin1Char(' ') && unit < QChar(0x7F); };
    if (std::all_of(text.begin(), text.end(), isPlain))
        return text;
    QString shown;
    for (int at = 0; at < text.size(); ++at) {
        const QChar unit = text.at(at);
        const bool isPair = unit.isHighSurrogate() && at + 1 < text.size() && text.at(at + 1).isLowSurrogate();
        const uint character = isPair ? QChar::surrogateToUcs4(unit, text.at(at + 1)) : unit.unicode();
        if (isObeyed(character))
            shown += QStringLiteral("\\u%1").arg(character, 4, 16, QLatin1Char('0'));
        else
            shown += text.midRef(at, isPair ? 2 : 1);
        at += isPair ? 1 : 0;
    }
    return shown;
}

int output::columnsOf(const QString& text)
{
    int columns = 0;
    for (const uint character : text.toUcs4())
        columns += columnsOfCharacter(character);
    return columns;
}

int output::terminalWidth()
{
    winsize size = {};
    if (isatty(STDOUT_FILENO) != 0 && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return std::max<int>(size.ws_col, s_leastWidth);
    bool isNumber = false;
    const int columns = qEnvironmentVariableIntValue("COLUMNS", &isNumber);
    return isNumber && columns > 0 ? std::max(columns, s_leastWidth) : s_widthWithoutTerminal;
}

QString output::table(const QStringList& headings, const QVector<QStringList>& rows, int width)
{
    QVector<QStringList> shown;
    for (const QStringList& row : rows) {
        QStringList cells;
        for (const QString& cell : row)
            cells.append(printable(cell));
        shown.append(cells);
    }
    const QVector<int> widths = widthsOf(headings, shown, width);
    const int last = widths.size() - 1;
    QString text;
    const auto addLine = [&](QString line) {
        while (line.endsWith(QLatin1Char(' ')))
            line.chop(1);
        text += line + QLatin1Char('\n');
    };
    const auto addRow = [&](const QStringList& cells) {
        QString line;
        for (int column = 0; column < last; ++column)
            line += padded(cut(cells.value(column), widths.at(column)), widths.at(column) + s_gap);
        const int indent = columnsOf(line);
        const QStringList pieces = wrapped(cells.value(last), widths.at(last));
        addLine(line + pieces.first());
        for (const QString& piece : pieces.mid(1))
            addLine(QString(indent, QLatin1Char(' ')) + piece);
    };
    addRow(headings);
    QStringList rules;
    for (int column : widths)
        rules.append(QString(column, QLatin1Char('-')));
    addRow(rules);
    for (const QStringList& row : qAsConst(shown))
        addRow(row);
    return text;
}

void output::write(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
}

void output::write(const QJsonValue& json)
{
    const QJsonDocument document = json.isArray() ? QJsonDocument(json.toArray()) : QJsonDocument(json.toObject());
    // Beyond ASCII and DEL the writer escapes nothing by itself; such characters stand in strings only.
    QString text = QString::fromUtf8(document.toJson());
    for (int at = 0; at < text.size(); ++at) {
        const QChar unit = text.at(at);
        if (unit.unicode() >= 0x7F && !unit.isSurrogate() && isObeyed(unit.unicode()))
            text.replace(at, 1, QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QLatin1Char('0')));
    }
    write(text);
}

bool output::writeTo(const QString& path, const QByteArray& bytes)
{
    if (path.isEmpty()) {
        fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
        return true;
    }
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        complain(translated("%1: %2; name a file that does not exist yet").arg(path, file.errorString()));
        return false;
    }
    if (file.write(bytes) == bytes.size() && file.flush())
        return true;
    complain(translated("%1: %2; the file is removed").arg(path, file.errorString()));
    file.remove();
    return false;
}

void output::complain(const QString& message)
{
    fprintf(stderr, "orvex-inspect: %s\n", printable(message).toUtf8().constData());
}
