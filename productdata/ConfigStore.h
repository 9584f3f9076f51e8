#pragma once

#include <QMutex>
#include <QSettings>
#include <QStringList>

#include <memory>

/**
 * Read access to the product file "usersetting/Config.ini" beside the executable: the models that this build knows, the
 * USB ids to search for and the theme colours. The program never writes it.
 *
 * Reads come from the GUI thread, the connect thread and the report callback; one lock guards the QSettings object.
 */
class ConfigStore
{
public:
    /** The store of the product file beside the executable. */
    static ConfigStore *instance();
    /** A store of another file of that form. */
    explicit ConfigStore(const QString &path);

    /** One value; empty if the key doesn't exist. The coding of identity keys is taken off. */
    QString value(const QString &group, const QString &key) const;
    /** A comma-separated value; empty if the key doesn't exist. */
    QStringList valueList(const QString &group, const QString &key) const;
    /** A decimal number; text that isn't one counts as 0. */
    int number(const QString &group, const QString &key) const;
    /** A list of decimal numbers, as `number`. */
    QList<int> numberList(const QString &group, const QString &key) const;

    /** True if the product file holds the value of this key Base64-coded. */
    static bool isCodedKey(const QString &key);

private:
    QString decoded(const QString &text) const;

    mutable QMutex mutex;
    std::unique_ptr<QSettings> Settings;
    QString FilePath;
    int DecodeKeys = 1;
};
