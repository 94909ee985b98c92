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
    enum class Buttons { YesNo, OkCancel };
    virtual ~Dialogs() = default;
    // A notice or refusal: information icon, one OK button.
    virtual void info(const QString& title, const QString& text) = 0;
    // A caution after which the operation goes on: warning icon, one OK button.
    virtual void warning(const QString& title, const QString& text) { info(title, text); }
    // A question; true only for Yes (or OK).
    virtual bool ask(const QString& title, const QString& text, Icon icon = Icon::Question,
                     Buttons buttons = Buttons::YesNo) = 0;
};

// QMessageBox over the window that owns the instance.
class MessageBoxDialogs : public Dialogs {
public:
    explicit MessageBoxDialogs(QWidget* parent) : parent_(parent) {}
    void info(const QString& title, const QString& text) override;
    void warning(const QString& title, const QString& text) override;
    bool ask(const QString& title, const QString& text, Icon icon, Buttons buttons) override;

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
