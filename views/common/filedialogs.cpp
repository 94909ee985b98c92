#include "views/common/filedialogs.h"

#include <QFileDialog>

namespace tarvel {

QString QtFileDialogs::getOpenFileName(const QString& caption, const QString& directory,
                                       const QString& filter) {
    return QFileDialog::getOpenFileName(parent_, caption, directory, filter);
}

QString QtFileDialogs::getSaveFileName(const QString& caption, const QString& proposed,
                                       const QString& filter) {
    return QFileDialog::getSaveFileName(parent_, caption, proposed, filter);
}

}  // namespace tarvel
