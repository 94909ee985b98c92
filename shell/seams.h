#pragma once

#include <QPointer>
#include <QString>
#include <QUrl>
#include <QWidget>

namespace tarvel {

// Modal message boxes. Each window holds its own instance, so a test scripts
// one window's boxes without touching another's.
class Dialogs {
public:
    enum class Icon { Information, Question };
    virtual ~Dialogs() = default;
    // A notice or refusal: information icon, one OK button.
    virtual void info(const QString& title, const QString& text) = 0;
    // A question with Yes and No; true only for Yes.
    virtual bool ask(const QString& title, const QString& text, Icon icon = Icon::Question) = 0;
};

// QMessageBox over the window that owns the instance.
class MessageBoxDialogs : public Dialogs {
public:
    explicit MessageBoxDialogs(QWidget* parent) : parent_(parent) {}
    void info(const QString& title, const QString& text) override;
    bool ask(const QString& title, const QString& text, Icon icon) override;

private:
    QPointer<QWidget> parent_;
};

// The shell "open" verb: a web page in the default browser, a file in its program.
class ShellOpener {
public:
    virtual ~ShellOpener() = default;
    virtual bool open(const QUrl& url) = 0;
};

class DesktopShellOpener : public ShellOpener {
public:
    bool open(const QUrl& url) override;
};

// The title of every message box of the program.
inline QString messageTitle() {
    return QStringLiteral("Tarvel提示");
}

}  // namespace tarvel
