#pragma once

#include <QList>
#include <QString>
#include <QUrl>

#include "views/seams.h"

namespace tarvel::testsupport {

// Message boxes that record what they were asked to show and answer from a script.
class ScriptedDialogs : public Dialogs {
public:
    struct Shown {
        QString kind;  // "info", "warning" or "ask"
        QString title;
        QString text;
        Icon icon = Icon::Information;
        Buttons buttons = Buttons::YesNo;
    };
    void info(const QString& title, const QString& text) override {
        shown.append({QStringLiteral("info"), title, text, Icon::Information, Buttons::YesNo});
    }
    void warning(const QString& title, const QString& text) override {
        shown.append({QStringLiteral("warning"), title, text, Icon::Information, Buttons::YesNo});
    }
    bool ask(const QString& title, const QString& text, Icon icon, Buttons buttons) override {
        shown.append({QStringLiteral("ask"), title, text, icon, buttons});
        // An unscripted question is answered No (Cancel), as closing the box would.
        return answers.isEmpty() ? false : answers.takeFirst();
    }
    QString lastText() const { return shown.isEmpty() ? QString() : shown.last().text; }

    QList<Shown> shown;
    QList<bool> answers;
};

class RecordingOpener : public ShellOpener {
public:
    bool open(const QUrl& url) override {
        opened.append(url);
        return true;
    }
    QList<QUrl> opened;
};

}  // namespace tarvel::testsupport
