#include "exchange/csv.h"

namespace tarvel::exchange {

QString spreadsheetText(const QString& value) {
    if (value.isEmpty()) return value;
    static const QString risky = QStringLiteral("=+-@\t\r");
    return risky.contains(value.front()) ? QLatin1Char('\'') + value : value;
}

QString csvField(const QString& value) {
    QString quoted = spreadsheetText(value);
    quoted.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

QString csvLine(const QStringList& values) {
    QStringList fields;
    for (const QString& v : values) fields << csvField(v);
    return fields.join(QLatin1Char(',')) + QStringLiteral("\r\n");
}

QChar detectSeparator(const QString& text) {
    int comma = 0, semicolon = 0, tab = 0;
    bool quoted = false;
    for (const QChar c : text) {
        if (c == QLatin1Char('"'))
            quoted = !quoted;
        else if (quoted)
            continue;
        else if (c == QLatin1Char('\n') || c == QLatin1Char('\r'))
            break;
        else if (c == QLatin1Char(','))
            ++comma;
        else if (c == QLatin1Char(';'))
            ++semicolon;
        else if (c == QLatin1Char('\t'))
            ++tab;
    }
    if (tab > comma && tab >= semicolon) return QLatin1Char('\t');
    if (semicolon > comma) return QLatin1Char(';');
    return QLatin1Char(',');
}

QList<CsvRow> parseCsv(const QString& text, QChar separator) {
    QList<CsvRow> rows;
    CsvRow row{1, {}};
    QString field;
    bool quoted = false;
    bool rowHasText = false;
    int line = 1;
    auto endRow = [&] {
        row.fields << field;
        if (rowHasText) rows << row;
        row = CsvRow{line, {}};
        field.clear();
        rowHasText = false;
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (quoted) {
            if (c == QLatin1Char('"') && i + 1 < text.size() && text[i + 1] == QLatin1Char('"')) {
                field += c;
                ++i;
            } else if (c == QLatin1Char('"')) {
                quoted = false;
            } else {
                if (c == QLatin1Char('\n')) ++line;
                field += c;
            }
        } else if (c == QLatin1Char('"')) {
            quoted = rowHasText = true;
        } else if (c == separator) {
            row.fields << field;
            field.clear();
            rowHasText = true;
        } else if (c == QLatin1Char('\n') || c == QLatin1Char('\r')) {
            if (c == QLatin1Char('\r') && i + 1 < text.size() && text[i + 1] == QLatin1Char('\n'))
                ++i;
            ++line;
            endRow();
        } else {
            field += c;
            if (!c.isSpace()) rowHasText = true;
        }
    }
    endRow();
    return rows;
}

}  // namespace tarvel::exchange
