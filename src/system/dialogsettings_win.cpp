#include "system/dialogsettings.h"

#include <QSettings>
#include <QStringList>
#include <QVariantHash>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kDialogKey = u"QtProject/OrganizationDefaults/FileDialog"_s;

QString parentKey(const QString &key)
{
    return key.section(u'/', 0, -2);
}

bool exists(QSettings &settings, const QString &key)
{
    settings.beginGroup(parentKey(key));
    const bool found = settings.childGroups().contains(key.section(u'/', -1), Qt::CaseInsensitive);
    settings.endGroup();
    return found;
}

bool isEmpty(QSettings &settings, const QString &key)
{
    settings.beginGroup(key);
    const bool empty = settings.childGroups().isEmpty() && settings.childKeys().isEmpty();
    settings.endGroup();
    return empty;
}

QVariantHash values(QSettings &settings, const QString &key)
{
    QVariantHash result;
    settings.beginGroup(key);
    for (const QString &name : settings.childKeys())
        result.insert(name, settings.value(name));
    settings.endGroup();
    return result;
}

} // namespace

void withoutDialogSettings(const std::function<void()> &showDialog)
{
    // Open a key that always exists: QSettings creates the key that it is opened on.
    QSettings settings(uR"(HKEY_CURRENT_USER\Software)"_s, QSettings::NativeFormat);
    QStringList missing; // the innermost first
    for (QString key = kDialogKey; !key.isEmpty(); key = parentKey(key)) {
        if (!exists(settings, key))
            missing << key;
    }
    const QVariantHash before = values(settings, kDialogKey);

    showDialog();

    const QVariantHash after = values(settings, kDialogKey);
    for (auto value = after.begin(); value != after.end(); ++value) {
        if (!before.contains(value.key()))
            settings.remove(kDialogKey + u'/' + value.key());
    }
    for (auto value = before.begin(); value != before.end(); ++value) {
        if (after.value(value.key()) != value.value())
            settings.setValue(kDialogKey + u'/' + value.key(), value.value());
    }
    for (const QString &key : std::as_const(missing)) {
        if (exists(settings, key) && isEmpty(settings, key))
            settings.remove(key);
    }
}
