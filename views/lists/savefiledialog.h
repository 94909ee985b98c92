#pragma once

#include <QString>

class QWidget;

namespace tarvel::lists {

// The save-file dialog of the list exports, a seam so tests script the
// answer. An empty name means the user cancelled.
class SaveFileDialog {
public:
    virtual ~SaveFileDialog() = default;
    virtual QString getSaveFileName(const QString& caption, const QString& proposedName,
                                    const QString& filter) = 0;
};

// QFileDialog over the list screen.
class QtSaveFileDialog : public SaveFileDialog {
public:
    explicit QtSaveFileDialog(QWidget* parent) : parent_(parent) {}
    QString getSaveFileName(const QString& caption, const QString& proposedName,
                            const QString& filter) override;

private:
    QWidget* parent_;
};

}  // namespace tarvel::lists
