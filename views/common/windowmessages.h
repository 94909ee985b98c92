#pragma once

#include <memory>

#include "views/common/dialogs.h"

namespace tarvel {

// A window's message boxes as the model objects it owns see them. It follows
// the window's seam member, so a seam the window is given later (a test's
// scripted one) is the one that answers.
class WindowMessages : public Messages {
public:
    explicit WindowMessages(const std::shared_ptr<Messages>& dialogs) : dialogs_(dialogs) {}
    void info(const QString& title, const QString& text) override {
        if (dialogs_) dialogs_->info(title, text);
    }
    void warning(const QString& title, const QString& text) override {
        if (dialogs_) dialogs_->warning(title, text);
    }
    bool ask(const QString& title, const QString& text, Icon icon, Buttons buttons) override {
        return dialogs_ && dialogs_->ask(title, text, icon, buttons);
    }
    Answer askYesNoCancel(const QString& title, const QString& text) override {
        return dialogs_ ? dialogs_->askYesNoCancel(title, text) : Answer::Cancel;
    }

private:
    const std::shared_ptr<Messages>& dialogs_;
};

}  // namespace tarvel
