#include "custom/userprofile.h"

#include "custom/softwaresetting.h"

namespace tarvel {

namespace {
const QString kSection = QStringLiteral("personal");

QString read(const QString& key) {
    SoftwareSetting s;
    s.GetValue(kSection, key);
    return s.Set_Value().trimmed();
}

bool write(const QString& key, const QString& value) {
    return SoftwareSetting().ChangeValue(kSection, key, value);
}
}  // namespace

UserProfile UserProfile::load() {
    return {read(QStringLiteral("user_name")), read(QStringLiteral("user_account")),
            read(QStringLiteral("user_title")), read(QStringLiteral("user_email"))};
}

bool UserProfile::save() const {
    bool ok = write(QStringLiteral("user_name"), name);
    ok = write(QStringLiteral("user_account"), account) && ok;
    ok = write(QStringLiteral("user_title"), title) && ok;
    return write(QStringLiteral("user_email"), email) && ok;
}

bool UserProfile::isComplete() const {
    return !name.trimmed().isEmpty() && !account.trimmed().isEmpty() &&
           !title.trimmed().isEmpty() && !email.trimmed().isEmpty();
}

}  // namespace tarvel
