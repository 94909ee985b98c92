#include "shell/updatecheck.h"

#include "shell/globals.h"
#include "store/clock.h"

namespace tarvel {

QDate parseSettingDate(const QString& text) {
    const QString t = text.trimmed().section(QLatin1Char(' '), 0, 0);
    for (const char* format : {"yyyy-M-d", "yyyy/M/d", "yyyy.M.d", "yyyyMMdd"}) {
        const QDate d = QDate::fromString(t, QLatin1String(format));
        if (d.isValid()) return d;
    }
    return QDate();
}

UpdateCheck::UpdateCheck(QObject* parent) : QObject(parent), socket_(new QTcpSocket(this)) {
    socket_->setObjectName(QStringLiteral("Wsk_Getfiles"));
    connect(socket_, &QTcpSocket::connected, this,
            [this] { socket_->write(requestText(host_, port_)); });
    connect(socket_, &QTcpSocket::readyRead, this, [this] { reply_ += socket_->readAll(); });
    // HTTP/1.0: the server closes the connection after the reply.
    connect(socket_, &QTcpSocket::disconnected, this, &UpdateCheck::judge);
}

bool UpdateCheck::start() {
    host_ = settingValue(QStringLiteral("software"), QStringLiteral("update_host"));
    bool ok = false;
    const uint port =
        settingValue(QStringLiteral("software"), QStringLiteral("update_port")).toUInt(&ok);
    if (host_.isEmpty() || !ok || port == 0 || port > 65535) return false;
    port_ = quint16(port);
    requested_ = true;
    socket_->connectToHost(host_, port_);
    return true;
}

QByteArray UpdateCheck::requestText(const QString& host, quint16 port) {
    QString address = QStringLiteral("http://") + host;
    if (port != 80) address += QLatin1Char(':') + QString::number(port);
    address += QStringLiteral("/atarvel.txt");
    const QString text = QStringLiteral("GET ") + address + QStringLiteral(" ") +
                         QStringLiteral(" HTTP/1.0") + QStringLiteral("\r\n") +
                         QStringLiteral("Accept/") + QStringLiteral("\r\n") +
                         QStringLiteral("Accept text/html") + QStringLiteral("\r\n");
    return text.toUtf8();
}

QDate UpdateCheck::replyDate(const QByteArray& reply) {
    QByteArray body = reply;
    if (body.startsWith("HTTP/")) {
        const qsizetype end = body.indexOf("\r\n\r\n");
        body = end < 0 ? QByteArray() : body.mid(end + 4);
    }
    for (const QByteArray& line : body.split('\n')) {
        const QString text = QString::fromUtf8(line).trimmed();
        if (!text.isEmpty()) return parseSettingDate(text);
    }
    return QDate();
}

void UpdateCheck::judge() {
    if (judged_) return;
    judged_ = true;
    reply_ += socket_->readAll();
    const QDate server = replyDate(reply_);
    const QDate own =
        parseSettingDate(settingValue(QStringLiteral("software"), QStringLiteral("date_upgrade")));
    // Only bookkeeping: a date that could not be stored is asked for again next time.
    if (server.isValid())
        softwareSetting().ChangeValue(QStringLiteral("software"),
                                      QStringLiteral("date_recent_getfile"),
                                      Clock::today().toString(QStringLiteral("yyyy-MM-dd")));
    emit finished(server.isValid() && own.isValid() && server > own, server);
}

}  // namespace tarvel
