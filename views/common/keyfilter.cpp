#include "views/common/keyfilter.h"

#include <QEvent>
#include <QKeyEvent>
#include <QValidator>

namespace tarvel {

namespace {

bool allAccepted(const QString& text, bool (*accepts)(QChar)) {
    for (const QChar c : text)
        if (!accepts(c)) return false;
    return true;
}

class KeyFilter : public QObject {
public:
    KeyFilter(QObject* parent, bool (*accepts)(QChar)) : QObject(parent), accepts_(accepts) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->text().isEmpty() || (key->modifiers() & (Qt::ControlModifier | Qt::MetaModifier)))
            return false;
        switch (key->key()) {
            case Qt::Key_Tab:
            case Qt::Key_Backtab:
            case Qt::Key_Delete:
            case Qt::Key_Escape:
                return false;
            default:
                return !allAccepted(key->text(), accepts_);
        }
    }

private:
    bool (*accepts_)(QChar);
};

// Paste, drag and drop and input methods bypass key presses.
class CharacterValidator : public QValidator {
public:
    CharacterValidator(QObject* parent, bool (*accepts)(QChar))
        : QValidator(parent), accepts_(accepts) {}
    State validate(QString& input, int&) const override {
        return allAccepted(input, accepts_) ? Acceptable : Invalid;
    }

private:
    bool (*accepts_)(QChar);
};

}  // namespace

void acceptOnlyCharacters(QLineEdit* edit, bool (*accepts)(QChar)) {
    edit->installEventFilter(new KeyFilter(edit, accepts));
    edit->setValidator(new CharacterValidator(edit, accepts));
}

}  // namespace tarvel
