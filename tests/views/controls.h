#pragma once

#include <QTest>
#include <QWidget>

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

// Types text into a control key by key; unlike QTest::keyClicks it takes
// characters outside Latin-1.
inline void typeText(QWidget* widget, const QString& text) {
    for (const QChar c : text)
        QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString(c), Qt::NoModifier);
}

}  // namespace tarvel::testsupport
