#include "records/columnlimit.h"

#include <QHash>
#include <QTextBoundaryFinder>

#include "store/schema.h"

namespace tarvel::columnlimit {

namespace {

// Names, numbers and addresses that the record pages have always kept to 50
// characters; every other short text column holds 255, as its file format did.
constexpr int kNarrow = 50;
constexpr int kWide = 255;

const QHash<QString, int>& narrowColumns() {
    static const QHash<QString, int> columns = [] {
        QHash<QString, int> c;
        for (const char* name : {"acc_name",       "acc_telephone", "con_department_title",
                                 "acc_fax",        "acc_website",   "acc_important",
                                 "acc_type",       "acc_industry",  "acc_relation",
                                 "acc_province",   "con_lastname",  "con_nickname",
                                 "con_title",      "con_telephone", "con_telephone2",
                                 "con_telephone3", "con_mobile",    "con_mobile2",
                                 "con_mobile3",    "con_fax",       "con_fax2",
                                 "con_fax3",       "con_email",     "con_email2",
                                 "con_email3",     "con_province",  "con_important",
                                 "con_relation",   "opp_important", "opp_phase",
                                 "opp_type",       "opp_industry",  "opp_province",
                                 "tas_type",       "tas_important"})
            c.insert(QLatin1String(name), kNarrow);
        return c;
    }();
    return columns;
}

}  // namespace

int width(const QString& column) {
    const QString name = column.toLower();
    if (!schema::isShortTextColumn(name)) return 0;
    return narrowColumns().value(name, kWide);
}

qsizetype length(const QString& text) {
    qsizetype n = 0;
    for (qsizetype i = 0; i < text.size(); ++i, ++n)
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) ++i;
    return n;
}

qsizetype cutPosition(const QString& text, int limit) {
    if (limit <= 0) return text.size();
    // The UTF-16 position after `limit` code points.
    qsizetype end = 0;
    for (int n = 0; n < limit && end < text.size(); ++n) {
        const bool pair =
            text[end].isHighSurrogate() && end + 1 < text.size() && text[end + 1].isLowSurrogate();
        end += pair ? 2 : 1;
    }
    if (end >= text.size()) return text.size();
    // Back to the start of the character that the limit falls into.
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, text);
    graphemes.setPosition(end);
    if (graphemes.isAtBoundary()) return end;
    const qsizetype start = graphemes.toPreviousBoundary();
    return start < 0 ? 0 : start;
}

QString cut(const QString& text, int limit) {
    return text.left(cutPosition(text, limit));
}

bool exceeds(const QString& text, int limit) {
    return limit > 0 && length(text) > limit;
}

QString limitNote(int limit) {
    return QStringLiteral("最多%1个字").arg(limit);
}

}  // namespace tarvel::columnlimit
