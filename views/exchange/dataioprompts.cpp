#include "views/exchange/dataioprompts.h"

#include <QFileDialog>

#include "views/exchange/csvpreview.h"

namespace tarvel {

QString dialogFilter(const QString& filter) {
    const QStringList parts = filter.split(QLatin1Char('|'));
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) filters << parts[i];
    return filters.isEmpty() ? filter : filters.join(QStringLiteral(";;"));
}

QString DialogDataIoPrompts::getOpenFileName(const QString& caption, const QString& dir,
                                             const QString& filter) {
    return QFileDialog::getOpenFileName(parent_, caption, dir, dialogFilter(filter));
}

QString DialogDataIoPrompts::getSaveFileName(const QString& caption, const QString& proposed,
                                             const QString& filter) {
    // The overwrite question is the caller's, in the program's own words.
    return QFileDialog::getSaveFileName(parent_, caption, proposed, dialogFilter(filter), nullptr,
                                        QFileDialog::DontConfirmOverwrite);
}

bool DialogDataIoPrompts::confirmCsvImport(exchange::CsvImportPlan* plan) {
    CsvPreview preview(plan, parent_);
    return preview.exec() == QDialog::Accepted;
}

}  // namespace tarvel
