#include "views/common/dialogs.h"

#include <QAbstractButton>
#include <QDesktopServices>
#include <QMessageBox>

namespace tarvel {

namespace {
void showNotice(QMessageBox::Icon icon, const QString& title, const QString& text,
                QWidget* parent) {
    QMessageBox box(icon, title, text, QMessageBox::Ok, parent);
    box.button(QMessageBox::Ok)->setText(QStringLiteral("确定"));
    box.exec();
}

const QString kYes = QStringLiteral("是(&Y)");
const QString kNo = QStringLiteral("否(&N)");
const QString kCancel = QStringLiteral("取消");
}  // namespace

void MessageBoxDialogs::info(const QString& title, const QString& text) {
    showNotice(QMessageBox::Information, title, text, parent_);
}

void MessageBoxDialogs::warning(const QString& title, const QString& text) {
    showNotice(QMessageBox::Warning, title, text, parent_);
}

bool MessageBoxDialogs::ask(const QString& title, const QString& text, Icon icon, Buttons buttons) {
    const bool okCancel = buttons == Buttons::OkCancel;
    const QMessageBox::StandardButton yes = okCancel ? QMessageBox::Ok : QMessageBox::Yes;
    const QMessageBox::StandardButton no = okCancel ? QMessageBox::Cancel : QMessageBox::No;
    QMessageBox box(icon == Icon::Information ? QMessageBox::Information : QMessageBox::Question,
                    title, text, yes | no, parent_);
    box.setDefaultButton(yes);
    box.button(yes)->setText(okCancel ? QStringLiteral("确定") : kYes);
    box.button(no)->setText(okCancel ? kCancel : kNo);
    return box.exec() == yes;
}

Messages::Answer MessageBoxDialogs::askYesNoCancel(const QString& title, const QString& text) {
    QMessageBox box(QMessageBox::Question, title, text,
                    QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, parent_);
    box.setDefaultButton(QMessageBox::Yes);
    box.setEscapeButton(QMessageBox::Cancel);
    box.button(QMessageBox::Yes)->setText(kYes);
    box.button(QMessageBox::No)->setText(kNo);
    box.button(QMessageBox::Cancel)->setText(kCancel);
    switch (box.exec()) {
        case QMessageBox::Yes:
            return Answer::Yes;
        case QMessageBox::No:
            return Answer::No;
        default:  // Cancel, Escape or the close box: stay where you are
            return Answer::Cancel;
    }
}

bool DesktopShellOpener::open(const QUrl& url) {
    return url.isValid() && QDesktopServices::openUrl(url);
}

}  // namespace tarvel
