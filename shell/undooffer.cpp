#include "shell/undooffer.h"

#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QTextEdit>
#include <QTimer>

#include "exchange/lastaction.h"

namespace tarvel {

namespace {

// Gives Ctrl+Z to the text field being edited; true when one took it.
bool undoTyping(QWidget* focus) {
    if (auto* combo = qobject_cast<QComboBox*>(focus); combo && combo->lineEdit())
        focus = combo->lineEdit();
    if (auto* line = qobject_cast<QLineEdit*>(focus); line && !line->isReadOnly()) {
        line->undo();
        return true;
    }
    if (auto* text = qobject_cast<QTextEdit*>(focus); text && !text->isReadOnly()) {
        text->undo();
        return true;
    }
    if (auto* plain = qobject_cast<QPlainTextEdit*>(focus); plain && !plain->isReadOnly()) {
        plain->undo();
        return true;
    }
    // A date or number box: its typing is its own, and nothing of the data goes back.
    return qobject_cast<QAbstractSpinBox*>(focus) != nullptr;
}

}  // namespace

UndoOffer::UndoOffer(QMainWindow* window, std::shared_ptr<Messages> dialogs,
                     std::function<void()> reread, Later later)
    : QObject(window),
      window_(window),
      dialogs_(std::move(dialogs)),
      reread_(std::move(reread)),
      later_(std::move(later)) {
    if (!later_)
        later_ = [this](int ms, std::function<void()> expired) {
            QTimer::singleShot(ms, this, std::move(expired));
        };
    action_ = new QAction(QStringLiteral("撤销"), window);
    action_->setObjectName(QStringLiteral("act_undo"));
    action_->setShortcut(QKeySequence::Undo);
    action_->setShortcutContext(Qt::WindowShortcut);
    window->addAction(action_);
    connect(action_, &QAction::triggered, this, &UndoOffer::shortcut);

    label_ = new QLabel(window);
    label_->setObjectName(QStringLiteral("lbl_undo"));
    button_ = new QPushButton(QStringLiteral("撤销(&Z)"), window);
    button_->setObjectName(QStringLiteral("cmd_undo"));
    button_->setToolTip(QStringLiteral("撤销刚才的操作（Ctrl+Z）"));
    label_->setBuddy(button_);
    window->statusBar()->addWidget(label_);
    window->statusBar()->addWidget(button_);
    label_->hide();
    button_->hide();
    connect(button_, &QPushButton::clicked, this, &UndoOffer::undo);
    connect(&exchange::LastAction::instance(), &exchange::LastAction::recorded, this,
            &UndoOffer::offer);
    connect(&exchange::LastAction::instance(), &exchange::LastAction::withdrawn, this,
            &UndoOffer::withdraw);
}

void UndoOffer::shortcut() {
    if (undoTyping(QApplication::focusWidget())) return;
    undo();
}

void UndoOffer::offer(const QString& caption) {
    const int shown = ++shown_;
    // A passing message would hide the offer.
    window_->statusBar()->clearMessage();
    label_->setText(caption);
    label_->show();
    button_->show();
    later_(kOfferMs, [this, shown] {
        if (shown == shown_) withdraw();
    });
}

void UndoOffer::withdraw() {
    label_->hide();
    button_->hide();
}

void UndoOffer::undo() {
    withdraw();
    ++shown_;
    QString done;
    const exchange::Outcome o = exchange::LastAction::instance().undo(&done);
    if (!o.ok) {
        window_->statusBar()->showMessage(QStringLiteral("撤销没有完成。"));
        dialogs_->warning(messageTitle(), o.ErrMsg);
        return;
    }
    window_->statusBar()->showMessage(done);
    if (reread_) reread_();
}

}  // namespace tarvel
