#pragma once

#include <QString>

namespace tarvel {

// The user's own details (section "personal" of `setting`): they identify
// the sender of a report file, whose export refuses to run without them.
struct UserProfile {
    QString name;     // user_name
    QString account;  // user_account
    QString title;    // user_title
    QString email;    // user_email

    // Reads the four values trimmed; a missing row or value reads as empty.
    static UserProfile load();
    // Writes the four values, keeping each row's name, mark and description.
    bool save() const;
    bool isComplete() const;
};

}  // namespace tarvel
