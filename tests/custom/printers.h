#pragma once

#include <QString>
#include <QStringList>
#include <ostream>

QT_BEGIN_NAMESPACE
// Readable failure output for texts and lists of texts.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}
inline void PrintTo(const QStringList& l, std::ostream* os) {
    *os << '{' << l.join(QStringLiteral(" | ")).toStdString() << '}';
}
QT_END_NAMESPACE
