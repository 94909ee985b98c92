#include "views/seams.h"

#include <QAbstractButton>
#include <QDesktopServices>
#include <QMessageBox>

namespace tarvel {

void MessageBoxDialogs::info(const QString& title, const QString& text) {
    QMessageBox box(QMessageBox::Information, title, text, QMessageBox::Ok, parent_);
    box.button(QMessageBox::Ok)->setText(QStringLiteral("确定"));
    box.exec();
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
