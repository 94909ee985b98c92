#pragma once

#include <QPointer>
#include <QString>
#include <QUrl>
#include <QWidget>

#include "schedule/messages.h"

namespace tarvel {

// The model's Messages over QMessageBox, one instance per window (so a test
// scripts one window's boxes without touching another's).
class MessageBoxDialogs : public Messages {
public:
    explicit MessageBoxDialogs(QWidget* parent) : parent_(parent) {}
    void info(const QString& title, const QString& text) override;
    void warning(const QString& title, const QString& text) override;
    bool ask(const QString& title, const QString& text, Icon icon, Buttons buttons) override;
    Answer askYesNoCancel(const QString& title, const QString& text) override;

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

inline QString messageTitle() {
    return Messages::title();
}

// The title of the questions about links and accounts.
inline QString questionTitle() {
    return QStringLiteral("Tarvel提示您");
}

}  // namespace tarvel
