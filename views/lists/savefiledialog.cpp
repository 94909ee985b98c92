#include "views/lists/savefiledialog.h"

#include <QFileDialog>

namespace tarvel::lists {

QString QtSaveFileDialog::getSaveFileName(const QString& caption, const QString& proposedName,
                                          const QString& filter) {
    return QFileDialog::getSaveFileName(parent_, caption, proposedName, filter);
}

}  // namespace tarvel::lists
