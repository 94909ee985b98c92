#pragma once

#include <QList>
#include <QString>

namespace tarvel::exchange {

// What a column of another program's table fills. Besides the columns of the
// record's table, a target may be one of these parts, which the row is put
// together from (see TableRowReader):
//   :given :middle :family           parts of the name
//   :company :department :jobtitle   the account and the department/title
//   :phone :mobile :fax :email :im   the next free slot of that kind
//   :phone.gN / :label.gN            a telephone whose kind the label column gN says
//   :addr.G.PART                     G home, work, other or gN (kind from :label.gN);
//                                    PART street, city, region, postcode, country
//   :birth.year :birth.month :birth.day
//   :note                            a line "header：value" in the note
namespace layout {

// The target a header cell of a known layout (Outlook in English and Chinese,
// Google Contacts old and current, Thunderbird, Yahoo, Apple, the small
// business sheet 姓名/公司/手机/…) means for `kind` ("contacts" or
// "accounts"); empty when it is not known.
QString targetOf(const QString& header, const QString& kind);

// The parts above a user may choose in the preview, with their captions.
struct Part {
    QString key;
    QString caption;
};
QList<Part> choosableParts(const QString& kind);
// A caption for any target that is a part (including grouped ones); empty
// for a table column.
QString partCaption(const QString& target);

}  // namespace layout

}  // namespace tarvel::exchange
