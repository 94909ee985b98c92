#pragma once

#include <QString>
#include <functional>

namespace tarvel::exchange {

// Reports how far a long operation has come (0 to 100); returning false asks
// it to stop, leaving every file it was to replace as it was.
using Progress = std::function<bool(int percent)>;

// The result of an exchange operation: never an exception, always a report.
struct Outcome {
    bool ok = false;
    bool cancelled = false;
    QString path;    // the file written or read
    QString ErrMsg;  // why it failed, in words for the user

    static Outcome failure(const QString& message) { return Outcome{false, false, {}, message}; }
    static Outcome cancel() { return Outcome{false, true, {}, cancelledText()}; }
    static QString cancelledText() { return QStringLiteral("操作已取消"); }
    // A failure, or a cancellation when `error` says the user stopped it.
    static Outcome from(const QString& prefix, const QString& error) {
        return error == cancelledText() ? cancel() : failure(prefix + error);
    }
};

// Maps the progress of one step onto its share [from, to] of the whole.
inline Progress stepProgress(const Progress& whole, int from, int to) {
    return [whole, from, to](int percent) {
        return !whole || whole(from + (to - from) * percent / 100);
    };
}

}  // namespace tarvel::exchange
