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

// QFileDialog over the window that owns the instance. Filters come as
// QFileDialog takes them or as "描述(*.ext)|*.ext" pairs.
class QtFileDialogs : public FileDialogs {
public:
    // Who asks before an existing file is replaced: the file dialog, or the
    // caller in the program's own words.
    enum class Overwrite { DialogAsks, CallerAsks };
    explicit QtFileDialogs(QWidget* parent, Overwrite overwrite = Overwrite::DialogAsks)
        : parent_(parent), overwrite_(overwrite) {}
    QString getOpenFileName(const QString& caption, const QString& directory,
                            const QString& filter) override;
    QString getSaveFileName(const QString& caption, const QString& proposed,
                            const QString& filter) override;

private:
    QPointer<QWidget> parent_;
    Overwrite overwrite_;
};

// "Tarvel备份文件(*.tbk)|*.tbk" as a file dialog writes it: "Tarvel备份文件(*.tbk)".
QString dialogFilter(const QString& filter);

}  // namespace tarvel
