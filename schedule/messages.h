#pragma once

#include <QString>

namespace tarvel {

// The message boxes the schedule model needs. The screens implement it over
// their own message-box seam (information icon, one OK button); tests record
// what was shown. No widget is ever created here.
class Messages {
public:
    virtual ~Messages() = default;
    // A notice or a refusal: information icon.
    virtual void info(const QString& title, const QString& text) = 0;
    // A caution that lets the operation go on: warning icon. Screens without a
    // warning box of their own may show it as a notice.
    virtual void warning(const QString& title, const QString& text) { info(title, text); }

    // The title of every message box of the program.
    static QString title() { return QStringLiteral("Tarvel提示"); }
};

}  // namespace tarvel
