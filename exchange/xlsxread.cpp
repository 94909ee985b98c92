#include "exchange/xlsxread.h"

#include <zip.h>

#include <QDateTime>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QXmlStreamReader>
#include <cmath>
#include <memory>

#include "exchange/importdate.h"

namespace tarvel::exchange {

namespace {

struct ZipCloser {
    void operator()(zip_t* z) const { zip_discard(z); }
};
using ZipPtr = std::unique_ptr<zip_t, ZipCloser>;

QString brokenText(const QString& path) {
    return QStringLiteral("%1 不是可以读取的Excel文件(.xlsx)：").arg(QFileInfo(path).fileName());
}

// One member of the package; `found` false when it is not there.
QByteArray member(zip_t* zip, const QString& name, bool* found, QString* error) {
    *found = false;
    const QByteArray utf8 = name.toUtf8();
    const zip_int64_t index = zip_name_locate(zip, utf8.constData(), ZIP_FL_NOCASE);
    if (index < 0) return {};
    zip_stat_t st;
    zip_stat_init(&st);
    if (zip_stat_index(zip, zip_uint64_t(index), 0, &st) != 0 || !(st.valid & ZIP_STAT_SIZE) ||
        st.size > zip_uint64_t(512) * 1024 * 1024) {
        *error = QStringLiteral("%1 无法读取").arg(name);
        return {};
    }
    zip_file_t* file = zip_fopen_index(zip, zip_uint64_t(index), 0);
    if (!file) {
        *error = QStringLiteral("%1 无法打开：%2").arg(name, QString::fromUtf8(zip_strerror(zip)));
        return {};
    }
    QByteArray bytes(qsizetype(st.size), Qt::Uninitialized);
    const zip_int64_t read = zip_fread(file, bytes.data(), st.size);
    const bool ok = read == zip_int64_t(st.size);
    if (!ok)
        *error =
            QStringLiteral("%1 已损坏：%2").arg(name, QString::fromUtf8(zip_file_strerror(file)));
    zip_fclose(file);
    if (!ok) return {};
    *found = true;
    return bytes;
}

// The text of an <si> or <is>: its <t> and those of its runs, not the
// phonetic guides (<rPh>) East Asian workbooks carry.
QString stringItem(QXmlStreamReader& xml) {
    QString text;
    int depth = 1, phonetic = 0;
    while (depth > 0 && !xml.atEnd()) {
        const auto token = xml.readNext();
        if (token == QXmlStreamReader::StartElement) {
            ++depth;
            if (xml.name() == QLatin1String("rPh")) {
                ++phonetic;
            } else if (xml.name() == QLatin1String("t")) {
                const QString t = xml.readElementText();  // consumes its end
                --depth;
                if (!phonetic) text += t;
            }
        } else if (token == QXmlStreamReader::EndElement) {
            --depth;
            if (xml.name() == QLatin1String("rPh")) --phonetic;
        }
    }
    return text;
}

QStringList sharedStrings(const QByteArray& bytes) {
    QStringList strings;
    QXmlStreamReader xml(bytes);
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("si"))
            strings << stringItem(xml);
    }
    return strings;
}

// Whether a number format shows a date: the built-in date formats, or a
// format code with day, month or year outside quoted text and [brackets].
bool isDateFormat(int id, const QString& code) {
    if ((id >= 14 && id <= 22) || (id >= 27 && id <= 36) || (id >= 45 && id <= 47) ||
        (id >= 50 && id <= 58))
        return true;
    if (code.isEmpty()) return false;
    bool quoted = false, bracket = false;
    for (qsizetype i = 0; i < code.size(); ++i) {
        const QChar c = code[i];
        if (c == QLatin1Char('"'))
            quoted = !quoted;
        else if (quoted)
            continue;
        else if (c == QLatin1Char('['))
            bracket = true;
        else if (c == QLatin1Char(']'))
            bracket = false;
        else if (c == QLatin1Char('\\'))
            ++i;
        else if (!bracket && QStringLiteral("dDyYmM").contains(c))
            return true;
    }
    return false;
}

// Per cell style (index into cellXfs): whether it shows a date.
QList<bool> dateStyles(const QByteArray& bytes) {
    QHash<int, QString> codes;
    QList<bool> styles;
    QXmlStreamReader xml(bytes);
    bool inCellXfs = false;
    while (!xml.atEnd()) {
        const auto token = xml.readNext();
        if (token == QXmlStreamReader::StartElement) {
            if (xml.name() == QLatin1String("numFmt"))
                codes.insert(xml.attributes().value(QLatin1String("numFmtId")).toInt(),
                             xml.attributes().value(QLatin1String("formatCode")).toString());
            else if (xml.name() == QLatin1String("cellXfs"))
                inCellXfs = true;
            else if (inCellXfs && xml.name() == QLatin1String("xf")) {
                const int id = xml.attributes().value(QLatin1String("numFmtId")).toInt();
                styles << isDateFormat(id, codes.value(id));
            }
        } else if (token == QXmlStreamReader::EndElement &&
                   xml.name() == QLatin1String("cellXfs")) {
            inCellXfs = false;
        }
    }
    return styles;
}

// "AB12" -> 27 (0-based column), -1 when there are no letters.
int columnOf(QStringView reference) {
    int column = 0;
    qsizetype i = 0;
    for (; i < reference.size() && reference[i].isLetter(); ++i)
        column = column * 26 + (reference[i].toUpper().unicode() - 'A' + 1);
    return i == 0 ? -1 : column - 1;
}

QString numberText(double value) {
    if (std::floor(value) == value && std::fabs(value) < 1e15)
        return QString::number(qint64(value));
    return QString::number(value, 'g', 15);
}

QString dateText(double serial, bool date1904) {
    const QDate day = excelSerialDate(serial, date1904);
    const double fraction = serial - std::floor(serial);
    if (fraction < 1.0 / 86400) return day.toString(QStringLiteral("yyyy-MM-dd"));
    const QTime time = QTime(0, 0).addSecs(int(std::lround(fraction * 86400)));
    return day.toString(QStringLiteral("yyyy-MM-dd ")) + time.toString(QStringLiteral("HH:mm:ss"));
}

struct Workbook {
    QStringList names;
    QStringList paths;  // members of the sheets, by position
    bool date1904 = false;
};

QString resolvedTarget(const QString& target) {
    if (target.startsWith(QLatin1Char('/'))) return target.mid(1);
    return QStringLiteral("xl/") + target;
}

bool readWorkbook(zip_t* zip, Workbook* book, QString* error) {
    bool found = false;
    const QByteArray workbook = member(zip, QStringLiteral("xl/workbook.xml"), &found, error);
    if (!found) {
        if (error->isEmpty()) *error = QStringLiteral("没有工作簿(xl/workbook.xml)");
        return false;
    }
    const QByteArray rels =
        member(zip, QStringLiteral("xl/_rels/workbook.xml.rels"), &found, error);
    QHash<QString, QString> targets;
    QXmlStreamReader r(rels);
    while (!r.atEnd()) {
        if (r.readNext() == QXmlStreamReader::StartElement &&
            r.name() == QLatin1String("Relationship"))
            targets.insert(
                r.attributes().value(QLatin1String("Id")).toString(),
                resolvedTarget(r.attributes().value(QLatin1String("Target")).toString()));
    }
    QXmlStreamReader xml(workbook);
    int position = 0;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) continue;
        if (xml.name() == QLatin1String("workbookPr")) {
            const auto flag = xml.attributes().value(QLatin1String("date1904"));
            book->date1904 = flag == QLatin1String("1") || flag == QLatin1String("true");
        } else if (xml.name() == QLatin1String("sheet")) {
            ++position;
            QString id;
            for (const auto& a : xml.attributes())
                if (a.name() == QLatin1String("id")) id = a.value().toString();
            book->names << xml.attributes().value(QLatin1String("name")).toString();
            book->paths << targets.value(id,
                                         QStringLiteral("xl/worksheets/sheet%1.xml").arg(position));
        }
    }
    if (xml.hasError()) {
        *error = QStringLiteral("工作簿已损坏：") + xml.errorString();
        return false;
    }
    if (book->names.isEmpty()) {
        *error = QStringLiteral("工作簿中没有工作表");
        return false;
    }
    return true;
}

bool readSheet(const QByteArray& bytes, const QStringList& strings, const QList<bool>& dates,
               bool date1904, QList<CsvRow>* rows, QString* error) {
    QXmlStreamReader xml(bytes);
    CsvRow row;
    int nextRow = 1;
    int column = 0;
    QString type, style, reference, value;
    bool inCell = false;
    while (!xml.atEnd()) {
        const auto token = xml.readNext();
        if (token == QXmlStreamReader::StartElement) {
            const auto name = xml.name();
            if (name == QLatin1String("row")) {
                const int r = xml.attributes().value(QLatin1String("r")).toInt();
                row = CsvRow{r > 0 ? r : nextRow, {}};
                nextRow = row.line + 1;
                column = 0;
            } else if (name == QLatin1String("c")) {
                const auto a = xml.attributes();
                type = a.value(QLatin1String("t")).toString();
                style = a.value(QLatin1String("s")).toString();
                reference = a.value(QLatin1String("r")).toString();
                value.clear();
                inCell = true;
            } else if (inCell && name == QLatin1String("v")) {
                value = xml.readElementText();
            } else if (inCell && name == QLatin1String("is")) {
                value = stringItem(xml);
            }
        } else if (token == QXmlStreamReader::EndElement) {
            if (xml.name() == QLatin1String("c") && inCell) {
                inCell = false;
                const int at = reference.isEmpty() ? column : columnOf(reference);
                if (at < 0 || at > 16383) continue;
                column = at + 1;
                QString text;
                if (type == QLatin1String("s")) {
                    text = strings.value(value.toInt());
                } else if (type == QLatin1String("b")) {
                    text = value.trimmed() == QLatin1String("1") ? QStringLiteral("TRUE")
                                                                 : QStringLiteral("FALSE");
                } else if (type == QLatin1String("e")) {
                    // "#N/A", "#REF!": a formula that failed holds no value.
                } else if (type == QLatin1String("inlineStr") || type == QLatin1String("str") ||
                           type == QLatin1String("d")) {
                    text = type == QLatin1String("d") ? value.left(10) : value;
                } else if (!value.isEmpty()) {
                    bool isNumber = false;
                    const double n = value.toDouble(&isNumber);
                    text = !isNumber                    ? value
                           : dates.value(style.toInt()) ? dateText(n, date1904)
                                                        : numberText(n);
                }
                if (text.isEmpty()) continue;
                while (row.fields.size() < at) row.fields << QString();
                row.fields << text;
            } else if (xml.name() == QLatin1String("row")) {
                if (!row.fields.isEmpty()) rows->append(row);
            }
        }
    }
    if (xml.hasError()) {
        *error = QStringLiteral("工作表已损坏：") + xml.errorString();
        return false;
    }
    return true;
}

ZipPtr openPackage(const QString& path, QString* error) {
    int code = 0;
    zip_t* zip = zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY, &code);
    if (!zip) {
        zip_error_t e;
        zip_error_init_with_code(&e, code);
        *error = brokenText(path) + QString::fromUtf8(zip_error_strerror(&e));
        zip_error_fini(&e);
    }
    return ZipPtr(zip);
}

}  // namespace

QStringList xlsxSheetNames(const QString& path) {
    QString error;
    const ZipPtr zip = openPackage(path, &error);
    Workbook book;
    if (!zip || !readWorkbook(zip.get(), &book, &error)) return {};
    return book.names;
}

bool readXlsx(const QString& path, const QString& sheet, QList<CsvRow>* rows, QString* error) {
    rows->clear();
    const ZipPtr zip = openPackage(path, error);
    if (!zip) return false;
    Workbook book;
    QString problem;
    if (!readWorkbook(zip.get(), &book, &problem))
        return (*error = brokenText(path) + problem, false);
    const qsizetype index = sheet.isEmpty() ? 0 : book.names.indexOf(sheet);
    if (index < 0) {
        *error = QStringLiteral("%1 中没有名为“%2”的工作表；工作表有：%3")
                     .arg(QFileInfo(path).fileName(), sheet, book.names.join(QStringLiteral("，")));
        return false;
    }
    bool found = false;
    const QStringList strings =
        sharedStrings(member(zip.get(), QStringLiteral("xl/sharedStrings.xml"), &found, &problem));
    const QList<bool> dates =
        dateStyles(member(zip.get(), QStringLiteral("xl/styles.xml"), &found, &problem));
    const QByteArray sheetXml = member(zip.get(), book.paths[index], &found, &problem);
    if (!found || !problem.isEmpty()) {
        *error = brokenText(path) +
                 (problem.isEmpty() ? QStringLiteral("缺少工作表 ") + book.paths[index] : problem);
        return false;
    }
    if (!readSheet(sheetXml, strings, dates, book.date1904, rows, &problem)) {
        *error = brokenText(path) + problem;
        return false;
    }
    return true;
}

}  // namespace tarvel::exchange
