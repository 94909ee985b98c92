#include "views/common/filedialogs.h"

#include <QFileDialog>

namespace tarvel {

QString dialogFilter(const QString& filter) {
    const QStringList parts = filter.split(QLatin1Char('|'));
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) filters << parts[i];
    return filters.isEmpty() ? filter : filters.join(QStringLiteral(";;"));
}

QString QtFileDialogs::getOpenFileName(const QString& caption, const QString& directory,
                                       const QString& filter) {
    return QFileDialog::getOpenFileName(parent_, caption, directory, dialogFilter(filter));
}

QString QtFileDialogs::getSaveFileName(const QString& caption, const QString& proposed,
                                       const QString& filter) {
    const auto options = overwrite_ == Overwrite::CallerAsks ? QFileDialog::DontConfirmOverwrite
                                                             : QFileDialog::Options();
    return QFileDialog::getSaveFileName(parent_, caption, proposed, dialogFilter(filter), nullptr,
                                        options);
}

}  // namespace tarvel
