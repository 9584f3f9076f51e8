#pragma once

#include "portwire/virtual/Scene.h"

#include <QByteArray>
#include <QString>

#include <map>
#include <optional>

namespace portwire {

/**
 * Keeps a scene in a folder: `scene.json` with what is on the bus, and a file with the four stored profiles for each
 * mouse. A file is replaced as a whole or not at all. One that can't be read is put aside under the name with
 * ".damaged" behind it and reported in the log; what it held is then as from the factory.
 */
class SceneStore
{
public:
    /** \param folder is made if it isn't there. */
    explicit SceneStore(QString folder);

    /** \return nothing if there is no scene, or none that can be read. */
    std::optional<Scene> load();

    /** Writes what has changed since the last call. A folder that can't be written is reported once. */
    void save(const Scene &scene);

private:
    QByteArray read(const QString &name) const;
    void write(const QString &name, const QByteArray &content);
    void putAside(const QString &name, const char *reason);
    void loadFlash(Scene::Mouse &mouse);

    const QString path;
    std::map<QString, QByteArray> written; ///< what the files hold, by their names
    bool isComplaintMade = false;
};

} // namespace portwire
