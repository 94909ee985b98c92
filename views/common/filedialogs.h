#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>

namespace tarvel {

// The common file dialog. Each window holds its own instance, so a test
// scripts the file one window is given. An empty name means the user
// cancelled.
class FileDialogs {
public:
    virtual ~FileDialogs() = default;
    // An existing file to read; `directory` is where the dialog starts.
    virtual QString getOpenFileName(const QString& caption, const QString& directory,
                                    const QString& filter) = 0;
    // A file to write; `proposed` is the name (with or without folder) offered.
    // Replacing an existing file has been confirmed when a name comes back.
    virtual QString getSaveFileName(const QString& caption, const QString& proposed,
                                    const QString& filter) = 0;
};

// QFileDialog over the window that owns the instance.
class QtFileDialogs : public FileDialogs {
public:
    explicit QtFileDialogs(QWidget* parent) : parent_(parent) {}
    QString getOpenFileName(const QString& caption, const QString& directory,
                            const QString& filter) override;
    QString getSaveFileName(const QString& caption, const QString& proposed,
                            const QString& filter) override;

private:
    QPointer<QWidget> parent_;
};

}  // namespace tarvel
