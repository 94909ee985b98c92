#include "views/seams.h"

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
    box.button(yes)->setText(okCancel ? QStringLiteral("确定") : QStringLiteral("是(&Y)"));
    box.button(no)->setText(okCancel ? QStringLiteral("取消") : QStringLiteral("否(&N)"));
    return box.exec() == yes;
}

bool DesktopShellOpener::open(const QUrl& url) {
    return url.isValid() && QDesktopServices::openUrl(url);
}

}  // namespace tarvel
