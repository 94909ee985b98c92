#pragma once

#include <QList>
#include <QString>

#include "schedule/messages.h"
#include "tests/records/recordfixture.h"

namespace schedule_test {

using records_test::RecordFixture;

inline QDateTime at(int y, int m, int d, int h = 0, int mi = 0, int s = 0) {
    return tarvel::jetdate::naive(QDate(y, m, d), QTime(h, mi, s));
}

// The message boxes a model asked for, in order.
class RecordedMessages : public tarvel::Messages {
public:
    struct Shown {
        QString icon;  // "info" or "warning"
        QString title;
        QString text;
    };
    void info(const QString& title, const QString& text) override {
        shown << Shown{QStringLiteral("info"), title, text};
    }
    void warning(const QString& title, const QString& text) override {
        shown << Shown{QStringLiteral("warning"), title, text};
    }
    QStringList texts() const {
        QStringList out;
        for (const Shown& s : shown) out << s.text;
        return out;
    }
    QList<Shown> shown;
};

}  // namespace schedule_test
