#pragma once

#include <QByteArray>
#include <QDate>
#include <QObject>
#include <QTcpSocket>

namespace tarvel {

// Asks the update server for its version file and compares the date it holds
// with the program's own (setting software/date_upgrade). The server comes
// from the settings software/update_host and software/update_port; with
// either empty no request is made.
class UpdateCheck : public QObject {
    Q_OBJECT
public:
    explicit UpdateCheck(QObject* parent = nullptr);

    // Connects when a server is configured; false when none is.
    bool start();
    bool requested() const { return requested_; }
    QTcpSocket* Wsk_Getfiles() const { return socket_; }

    // The request as sent: the header lines lack their colons and two blanks
    // stand before the protocol word, as the server has always received them.
    static QByteArray requestText(const QString& host, quint16 port);
    // The date in a reply (status line and headers skipped); invalid when none.
    static QDate replyDate(const QByteArray& reply);

signals:
    // The reply was read: `newer` when its date is after the program's own.
    void finished(bool newer, const QDate& serverDate);

private:
    void judge();

    QTcpSocket* socket_;
    QString host_;
    quint16 port_ = 0;
    QByteArray reply_;
    bool requested_ = false;
    bool judged_ = false;
};

// Reads a date stored as text in a setting ("2024-5-1", "2024-05-01 00:00:00", "2024/5/1").
QDate parseSettingDate(const QString& text);

}  // namespace tarvel
