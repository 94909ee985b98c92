#pragma once

#include <QString>

namespace tarvel {

// The program's message boxes, as the model code asks for them: no widget is
// ever created here. The screens implement it over QMessageBox (one instance
// per window, views/common/dialogs.h); tests script the answers and read what
// was shown.
class Messages {
public:
    enum class Icon { Information, Question };
    enum class Buttons { YesNo, OkCancel };
    enum class Answer { Yes, No, Cancel };

    virtual ~Messages() = default;
    // A notice or a refusal: information icon, one OK button.
    virtual void info(const QString& title, const QString& text) = 0;
    // A caution after which the operation goes on: warning icon. Without a
    // warning box of its own an implementation may show it as a notice.
    virtual void warning(const QString& title, const QString& text) { info(title, text); }
    // A question; true only for Yes (or OK). Where no one can be asked, the
    // answer is No, as closing the box would give.
    virtual bool ask(const QString& title, const QString& text, Icon icon = Icon::Question,
                     Buttons buttons = Buttons::YesNo) {
        return false;
    }
    // A question with Yes, No and Cancel (save the edit, drop it, or stay).
    // An implementation without a three-button box offers Yes and No only.
    virtual Answer askYesNoCancel(const QString& title, const QString& text) {
        return ask(title, text) ? Answer::Yes : Answer::No;
    }

    // The title of every message box of the program.
    static QString title() { return QStringLiteral("Tarvel提示"); }
};

}  // namespace tarvel
