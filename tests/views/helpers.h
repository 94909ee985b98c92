#pragma once
// Helpers of the screen tests: controls by name, the test's data file, and
// message boxes and the shell-open verb that record what they were asked.
#include <QLabel>
#include <QList>
#include <QPushButton>
#include <QTest>
#include <QUrl>
#include <QVariant>
#include <QWidget>

#include "store/connectionstring.h"
#include "store/sqlitehandle.h"
#include "tests/support/dataquery.h"
#include "views/common/dialogs.h"
#include "views/common/filedialogs.h"

namespace tarvel::testsupport {

// A control by its name; the test stops when the screen lacks it.
template <typename T>
T* child(const QWidget& parent, const char* name) {
    T* w = parent.findChild<T*>(QLatin1String(name));
    if (!w) qFatal("no control %s", name);
    return w;
}

// A member of a control array: the controls share a name, told apart by index.
template <typename T>
T* indexed(const QWidget& parent, const char* name, int index) {
    for (T* w : parent.findChildren<T*>(QLatin1String(name)))
        if (w->property("Index").toInt() == index) return w;
    qFatal("no control %s(%d)", name, index);
    return nullptr;
}

inline void click(const QWidget& parent, const char* button) {
    child<QPushButton>(parent, button)->click();
}

// Types text key by key; unlike QTest::keyClicks it takes characters outside Latin-1.
inline void typeText(QWidget* widget, const QString& text) {
    for (const QChar c : text)
        QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString(c), Qt::NoModifier);
}

// While it lives, the test's data file refuses every write as a read-only
// file does. The tests run as root, whom file modes do not stop, so the
// program's one shared handle on the file is switched to query-only instead.
class ReadOnlyDataFile {
public:
    ReadOnlyDataFile() { set(true); }
    ~ReadOnlyDataFile() { set(false); }
    ReadOnlyDataFile(const ReadOnlyDataFile&) = delete;
    ReadOnlyDataFile& operator=(const ReadOnlyDataFile&) = delete;

private:
    static void set(bool readOnly) {
        const std::shared_ptr<Handle> handle = acquireHandle(globalConnectionString(), nullptr);
        if (!handle || !handle->exec(readOnly ? QStringLiteral("PRAGMA query_only = 1")
                                              : QStringLiteral("PRAGMA query_only = 0"),
                                     nullptr))
            qFatal("the data file cannot be made read-only");
    }
};

// Message boxes that record what they were asked to show and answer from a script.
class ScriptedDialogs : public Messages {
public:
    struct Shown {
        QString kind;  // "info", "warning" or "ask"
        QString text;
    };
    void info(const QString&, const QString& text) override { shown.append({"info", text}); }
    void warning(const QString&, const QString& text) override { shown.append({"warning", text}); }
    bool ask(const QString&, const QString& text, Icon, Buttons) override {
        shown.append({QStringLiteral("ask"), text});
        // An unscripted question is answered No (Cancel), as closing the box would.
        return answers.isEmpty() ? false : answers.takeFirst();
    }
    Answer askYesNoCancel(const QString&, const QString& text) override {
        shown.append({QStringLiteral("askYesNoCancel"), text});
        return threeWay.isEmpty() ? Answer::Cancel : threeWay.takeFirst();
    }
    QString lastText() const { return shown.isEmpty() ? QString() : shown.last().text; }

    QList<Shown> shown;
    QList<bool> answers;
    QList<Answer> threeWay;
};

// File dialogs that hand out the scripted names in turn; an empty name (or
// none left) is a cancelled dialog. Records the captions it was opened with.
class ScriptedFileDialogs : public FileDialogs {
public:
    QString getOpenFileName(const QString& caption, const QString&, const QString&) override {
        return next(caption);
    }
    QString getSaveFileName(const QString& caption, const QString&, const QString&) override {
        return next(caption);
    }
    QStringList names;
    QStringList captions;

private:
    QString next(const QString& caption) {
        captions << caption;
        return names.isEmpty() ? QString() : names.takeFirst();
    }
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
