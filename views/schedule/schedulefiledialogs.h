#pragma once

#include <QFileDialog>
#include <QString>
#include <QWidget>

namespace tarvel {

// The file dialogs of the schedule screens (the calendar file to export to or
// import from), behind a seam so tests choose the files. To give way to the
// program-wide file-dialog seam once there is one.
class ScheduleFileDialogs {
public:
    virtual ~ScheduleFileDialogs() = default;
    // Empty when the user cancels.
    virtual QString saveFileName(QWidget* parent, const QString& caption, const QString& suggested,
                                 const QString& filter) = 0;
    virtual QString openFileName(QWidget* parent, const QString& caption,
                                 const QString& filter) = 0;
};

class QtScheduleFileDialogs : public ScheduleFileDialogs {
public:
    QString saveFileName(QWidget* parent, const QString& caption, const QString& suggested,
                         const QString& filter) override {
        return QFileDialog::getSaveFileName(parent, caption, suggested, filter);
    }
    QString openFileName(QWidget* parent, const QString& caption, const QString& filter) override {
        return QFileDialog::getOpenFileName(parent, caption, QString(), filter);
    }
};

}  // namespace tarvel
