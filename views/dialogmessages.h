#pragma once

#include <memory>

#include "schedule/messages.h"
#include "views/seams.h"

namespace tarvel {

// The model's message boxes shown through a window's own Dialogs seam. It
// holds the window's seam member itself, so a seam the window is given later
// (a test's scripted one) is the one that shows them.
class DialogMessages : public Messages {
public:
    explicit DialogMessages(const std::shared_ptr<Dialogs>& dialogs) : dialogs_(dialogs) {}
    void info(const QString& title, const QString& text) override {
        if (dialogs_) dialogs_->info(title, text);
    }
    void warning(const QString& title, const QString& text) override {
        if (dialogs_) dialogs_->warning(title, text);
    }

private:
    const std::shared_ptr<Dialogs>& dialogs_;
};

}  // namespace tarvel
