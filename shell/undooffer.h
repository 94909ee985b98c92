#pragma once

#include <QObject>
#include <functional>
#include <memory>

#include "views/common/dialogs.h"

class QAction;
class QLabel;
class QMainWindow;
class QPushButton;

namespace tarvel {

// Ctrl+Z anywhere in the main window, and the 撤销 button the status bar
// shows for a while beside what was just done ("已删除 3 条联系人记录。"):
// both take back the last delete, bulk delete, merge or import. A text field
// being edited keeps Ctrl+Z for its own typing.
class UndoOffer : public QObject {
    Q_OBJECT
public:
    // Calls `expired` once `ms` milliseconds have passed; tests step it by hand.
    using Later = std::function<void(int ms, std::function<void()> expired)>;
    static constexpr int kOfferMs = 10000;

    // `reread` makes every open screen read the data again after an undo.
    UndoOffer(QMainWindow* window, std::shared_ptr<Messages> dialogs, std::function<void()> reread,
              Later later = {});

    QAction* action() const { return action_; }
    QPushButton* button() const { return button_; }
    QLabel* label() const { return label_; }

public slots:
    // Ctrl+Z: to the focused text field when one is being edited, else undo().
    void shortcut();
    // Takes the last action back and says in the status bar what happened.
    void undo();

private:
    void offer(const QString& caption);
    void withdraw();

    QMainWindow* window_;
    std::shared_ptr<Messages> dialogs_;
    std::function<void()> reread_;
    Later later_;
    QAction* action_;
    QLabel* label_;
    QPushButton* button_;
    int shown_ = 0;  // counts offers, so an old offer's time does not hide a newer one
};

}  // namespace tarvel
