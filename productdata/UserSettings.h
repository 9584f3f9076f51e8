#pragma once

#include <QHash>
#include <QMutex>
#include <QSettings>
#include <QStringList>

#include <memory>
#include <optional>

/**
 * The per-user settings, "Macro.ini" of the per-user folder. In spite of the file's name it holds no macros.
 * One instance for the process; every operation may be called from any thread.
 */
class UserSettings
{
public:
    /** The settings of the user who runs the program. */
    static UserSettings *instance();
    /** Settings kept in this file. */
    explicit UserSettings(const QString &path);

    void write(const QString &section, const QString &key, const QString &text);
    /** The value as text, empty when absent. */
    QString read(const QString &section, const QString &key) const;
    QStringList readList(const QString &section, const QString &key) const;
    void remove(const QString &section, const QString &key);

    /** Language index of the user, 0 (English) when none was chosen or the value is damaged. */
    int language() const;
    void setLanguage(int index);

private:
    QSettings &settings() const;
    void putDamagedFileAside();
    bool hasRoom() const;
    void save();

    mutable QMutex mutex;
    const QString path;
    bool isDamaged; ///< nothing is read from the file, and the first write puts it aside
    std::unique_ptr<QSettings> store;
    QHash<QString, std::optional<QString>> unsaved; ///< new values, without one for a key to remove; as a rule empty
};
