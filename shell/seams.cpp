#include "shell/seams.h"

#include <QAbstractButton>
#include <QDesktopServices>
#include <QMessageBox>

namespace tarvel {

void MessageBoxDialogs::info(const QString& title, const QString& text) {
    QMessageBox box(QMessageBox::Information, title, text, QMessageBox::Ok, parent_);
    box.button(QMessageBox::Ok)->setText(QStringLiteral("确定"));
    box.exec();
}

bool MessageBoxDialogs::ask(const QString& title, const QString& text, Icon icon) {
    QMessageBox box(icon == Icon::Information ? QMessageBox::Information : QMessageBox::Question,
                    title, text, QMessageBox::Yes | QMessageBox::No, parent_);
    box.setDefaultButton(QMessageBox::Yes);
    box.button(QMessageBox::Yes)->setText(QStringLiteral("是(&Y)"));
    box.button(QMessageBox::No)->setText(QStringLiteral("否(&N)"));
    return box.exec() == QMessageBox::Yes;
}

bool DesktopShellOpener::open(const QUrl& url) {
    return url.isValid() && QDesktopServices::openUrl(url);
}

}  // namespace tarvel
