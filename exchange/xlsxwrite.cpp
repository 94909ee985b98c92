#include "exchange/xlsxwrite.h"

#include <xlsxwriter.h>

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>

#include "exchange/filetools.h"

namespace tarvel::exchange {

namespace {

constexpr int kMaxCellText = 32767;  // what one cell of a workbook holds

lxw_datetime toLxw(const QDateTime& t) {
    const QDate d = t.date();
    const QTime time = t.time();
    return lxw_datetime{d.year(),    d.month(),     d.day(),
                        time.hour(), time.minute(), double(time.second())};
}

}  // namespace

struct XlsxTable::Impl {
    QString path;
    QTemporaryFile temporary;
    QByteArray temporaryName;
    lxw_workbook* book = nullptr;
    lxw_worksheet* sheet = nullptr;
    lxw_format* dateFormat = nullptr;
    lxw_format* timeFormat = nullptr;
    lxw_format* headerFormat = nullptr;
    lxw_row_t row = 0;
    QString error;

    void fail(lxw_error e) {
        if (e != LXW_NO_ERROR && error.isEmpty()) error = QString::fromUtf8(lxw_strerror(e));
    }
    void write(lxw_col_t column, const QVariant& value, lxw_format* format = nullptr) {
        if (value.isNull()) return;
        switch (value.typeId()) {
            case QMetaType::QDateTime:
            case QMetaType::QDate: {
                const QDateTime t = value.typeId() == QMetaType::QDate
                                        ? QDateTime(value.toDate(), QTime(0, 0))
                                        : value.toDateTime();
                lxw_datetime when = toLxw(t);
                fail(worksheet_write_datetime(sheet, row, column, &when,
                                              t.time() == QTime(0, 0) ? dateFormat : timeFormat));
                return;
            }
            case QMetaType::Int:
            case QMetaType::UInt:
            case QMetaType::LongLong:
            case QMetaType::ULongLong:
            case QMetaType::Short:
            case QMetaType::Double:
            case QMetaType::Float:
                fail(worksheet_write_number(sheet, row, column, value.toDouble(), format));
                return;
            case QMetaType::Bool:
                fail(worksheet_write_boolean(sheet, row, column, value.toBool(), format));
                return;
            default: {
                const QString text = value.toString().left(kMaxCellText);
                if (text.isEmpty()) return;
                fail(worksheet_write_string(sheet, row, column, text.toUtf8().constData(), format));
            }
        }
    }
};

XlsxTable::XlsxTable(const QString& path, const QStringList& captions) : d(new Impl) {
    d->path = path;
    const QFileInfo target(path);
    d->temporary.setFileTemplate(target.absoluteDir().filePath(
        QStringLiteral(".") + target.completeBaseName() + QStringLiteral("-XXXXXX.xlsx")));
    if (!d->temporary.open()) {
        d->error =
            QStringLiteral("无法在 %1 写入文件：%2")
                .arg(QDir::toNativeSeparators(target.absolutePath()), d->temporary.errorString());
        return;
    }
    d->temporaryName = QFile::encodeName(d->temporary.fileName());
    d->temporary.close();
    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;  // rows go to disk as they come
    d->book = workbook_new_opt(d->temporaryName.constData(), &options);
    if (d->book) d->sheet = workbook_add_worksheet(d->book, nullptr);
    if (!d->book || !d->sheet) {
        d->error = QStringLiteral("无法创建Excel文件");
        return;
    }
    d->dateFormat = workbook_add_format(d->book);
    format_set_num_format(d->dateFormat, "yyyy-mm-dd");
    d->timeFormat = workbook_add_format(d->book);
    format_set_num_format(d->timeFormat, "yyyy-mm-dd hh:mm");
    d->headerFormat = workbook_add_format(d->book);
    format_set_bold(d->headerFormat);
    for (qsizetype c = 0; c < captions.size(); ++c)
        d->write(lxw_col_t(c), captions[c], d->headerFormat);
    worksheet_freeze_panes(d->sheet, 1, 0);
    ++d->row;
}

XlsxTable::~XlsxTable() {
    // Unfinished: the workbook is dropped; the temporary file goes with d.
    if (d->book) workbook_close(d->book);
}

bool XlsxTable::addRow(const QVariantList& cells) {
    if (!d->sheet || !d->error.isEmpty()) return false;
    if (d->row >= LXW_ROW_MAX) {
        d->error = QStringLiteral("记录太多，一个Excel工作表最多 %1 行").arg(LXW_ROW_MAX);
        return false;
    }
    for (qsizetype c = 0; c < cells.size(); ++c) d->write(lxw_col_t(c), cells[c]);
    ++d->row;
    return d->error.isEmpty();
}

bool XlsxTable::finish(QString* error) {
    if (d->book && d->error.isEmpty()) {
        const lxw_error closed = workbook_close(d->book);
        d->book = nullptr;
        d->fail(closed);
    }
    QString moved;
    if (d->error.isEmpty() && !replaceFile(d->temporary.fileName(), d->path, &moved))
        d->error = moved;
    if (d->error.isEmpty()) return true;
    *error = QStringLiteral("无法写入文件 %1：%2").arg(d->path, d->error);
    return false;
}

bool isXlsxName(const QString& path) {
    return path.endsWith(QStringLiteral(".xlsx"), Qt::CaseInsensitive);
}

}  // namespace tarvel::exchange
